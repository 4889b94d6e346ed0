"""Slurm on this machine alone: munged, slurmctld and slurmd, as root, for a test."""

import os
import pathlib
import shutil
import socket
import subprocess
import time

PROGRAMS = ("munged", "slurmctld", "slurmd", "sbatch", "squeue", "sinfo")

CONFIGURATION = """
ClusterName=test
SlurmctldHost={host}(127.0.0.1)
AuthType=auth/munge
AuthInfo=socket={run}/munge.socket
CredType=cred/munge
SlurmUser=root
SlurmdUser=root
SlurmctldPidFile={run}/slurmctld.pid
SlurmdPidFile={run}/slurmd.pid
SlurmctldLogFile={run}/slurmctld.log
SlurmdLogFile={run}/slurmd.log
StateSaveLocation={run}/state
SlurmdSpoolDir={run}/spool
SlurmctldPort={ports[0]}
SlurmdPort={ports[1]}
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
ReturnToService=2
MpiDefault=none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SchedulerParameters=sched_min_interval=0,batch_sched_delay=0,bf_interval=1
InactiveLimit=0
MinJobAge=300
NodeName={host} NodeAddr=127.0.0.1 CPUs=2 RealMemory=4000 State=UNKNOWN
PartitionName=test Nodes=ALL Default=YES MaxTime=INFINITE State=UP
"""


def missing() -> list[str]:
    return [program for program in PROGRAMS if shutil.which(program) is None]


def free_ports(count: int) -> list[int]:
    held = [socket.socket() for _ in range(count)]
    for one in held:
        one.bind(("127.0.0.1", 0))
    ports = [one.getsockname()[1] for one in held]
    for one in held:
        one.close()
    return ports


class Slurm:
    """Up from `with` on. To be used in a process namespace of its own, which ends its programs."""

    def __init__(self, run: pathlib.Path):
        self.run = run
        self._started = []

    def __enter__(self):
        for folder in ("state", "spool"):
            (self.run / folder).mkdir(parents=True)
        key = self.run / "munge.key"
        key.write_bytes(os.urandom(128))
        key.chmod(0o600)
        configuration = self.run / "slurm.conf"
        configuration.write_text(CONFIGURATION.format(
            run=self.run, ports=free_ports(2), host=socket.gethostname().split(".")[0]))
        os.environ["SLURM_CONF"] = str(configuration)
        self._start("munged", "--foreground", "--force", f"--key-file={key}",
                    f"--socket={self.run}/munge.socket", f"--pid-file={self.run}/munged.pid",
                    f"--log-file={self.run}/munged.log", f"--seed-file={self.run}/munged.seed")
        self._wait(lambda: (self.run / "munge.socket").exists(), "munged")
        self._start("slurmctld", "-D")
        self._start("slurmd", "-D")
        self._wait(lambda: "idle" in self._output("sinfo", "--noheader", "--format=%T"), "slurmd")
        return self

    def __exit__(self, *error):
        for process in reversed(self._started):
            process.terminate()
        for process in reversed(self._started):
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()

    def wait_until_idle(self, seconds: float) -> None:
        """Until no job is left."""
        self._wait(lambda: self._output("squeue", "--noheader", "--all") == "", "the queue", seconds)

    def _start(self, *command: str) -> None:
        with open(self.run / f"{command[0]}.out", "wb") as output:
            self._started.append(subprocess.Popen(command, stdout=output, stderr=output))

    @staticmethod
    def _output(*command: str) -> str:
        end = subprocess.run(command, capture_output=True, text=True, timeout=30)
        return end.stdout if end.returncode == 0 else "?"

    @staticmethod
    def _wait(is_done, what: str, seconds: float = 30) -> None:
        end = time.monotonic() + seconds
        while not is_done():
            if time.monotonic() > end:
                raise TimeoutError(f"{what} is not ready after {seconds} s")
            time.sleep(0.2)
