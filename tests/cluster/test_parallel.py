#!/usr/bin/env python3
"""A job of dxf2d-array through GNU parallel on two workers, which are logins over ssh to a private
sshd on this machine; drawings and report are those of one run of dxf2d. Exit code 77 where a program
is missing.

usage: test_parallel.py --dxf2d PROGRAM       in a process namespace of its own, as CMake starts it
"""

import argparse
import contextlib
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True
import drawn_alike  # noqa: E402
import models  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
ARRAY = ROOT / "share/dxf2d/slurm/dxf2d-array"
SSHD = "/usr/sbin/sshd"
AGAIN = 75

SERVER = """
ListenAddress 127.0.0.1
Port {port}
HostKey {place}/host_key
AuthorizedKeysFile {place}/user_key.pub
PidFile {place}/sshd.pid
StrictModes no
UsePAM no
PermitRootLogin prohibit-password
PasswordAuthentication no
"""

CLIENT = """
Host worker-1 worker-2
  HostName 127.0.0.1
  Port {port}
  IdentityFile {place}/user_key
  IdentitiesOnly yes
  UserKnownHostsFile {place}/known_hosts
  StrictHostKeyChecking accept-new
"""


@contextlib.contextmanager
def ssh_server(place: pathlib.Path):
    """Yields the ssh command that reaches it."""
    with socket.socket() as free:
        free.bind(("127.0.0.1", 0))
        port = free.getsockname()[1]
    for key in ("host_key", "user_key"):
        subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", place / key], check=True)
    (place / "sshd_config").write_text(SERVER.format(port=port, place=place))
    (place / "ssh_config").write_text(CLIENT.format(port=port, place=place))
    # sshd puts its children there; only a system that starts it as a service has it.
    pathlib.Path("/run/sshd").mkdir(mode=0o755, exist_ok=True)
    server = subprocess.Popen([SSHD, "-D", "-e", "-f", place / "sshd_config"],
                              stderr=open(place / "sshd.log", "wb"))
    try:
        ssh = f"ssh -F {place}/ssh_config"
        for _ in range(50):
            if subprocess.run([*ssh.split(), "worker-1", "true"], capture_output=True).returncode == 0:
                break
            time.sleep(0.1)
        else:
            sys.exit("sshd does not answer:\n" + (place / "sshd.log").read_text())
        yield ssh
    finally:
        server.terminate()
        server.wait()


def draw(job: pathlib.Path, ssh: str) -> int:
    """Returns the number of rounds."""
    rounds = 0
    code = AGAIN
    while code == AGAIN:
        rounds += 1
        batches = subprocess.run([ARRAY, "batches", job], check=True, capture_output=True, text=True)
        subprocess.run(
            ["parallel", "--will-cite", "--sshlogin", "1/worker-1,1/worker-2", "--retries", "2",
             "--joblog", job / "parallel.log", str(ARRAY), "run", str(job), "{}"],
            input=batches.stdout, text=True, check=True, env=os.environ | {"PARALLEL_SSH": ssh})
        hosts = {line.split("\t")[1] for line in (job / "parallel.log").read_text().splitlines()[1:]}
        if rounds == 1 and hosts != {"worker-1", "worker-2"}:
            sys.exit(f"these drew: {hosts}")
        code = subprocess.run([ARRAY, "collect", job]).returncode
    if code != 0:
        sys.exit(f"collect ends with {code}")
    return rounds


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("--dxf2d", required=True)
    dxf2d = parser.parse_args().dxf2d
    missing = [one for one in ("parallel", "ssh", "ssh-keygen", SSHD) if shutil.which(one) is None]
    if missing or os.geteuid() != 0:
        print(f"skipped: {'no ' + ', '.join(missing) if missing else 'needs to be root'}; run "
              "scripts/install-packages cluster")
        sys.exit(77)
    with tempfile.TemporaryDirectory(prefix="dxf2d-parallel-") as name:
        place = pathlib.Path(name)
        models.make(place / "models")
        subprocess.run(
            [ARRAY, "plan", place / "job", "--models", place / "models", "--output", place / "drawn",
             "--dxf2d", dxf2d, "--memory", str(models.LITTLE), "--batch-models", "25", "--",
             *drawn_alike.OPTIONS], check=True)
        with ssh_server(place) as ssh:
            rounds = draw(place / "job", ssh)
        if rounds != 2:
            sys.exit(f"{rounds} rounds")
        drawn_alike.check(dxf2d, place / "job", place / "models", place / "drawn")


if __name__ == "__main__":
    main()
