#!/usr/bin/env python3
"""A job of dxf2d-array through Slurm on this machine: 200 models in an array, one of whose tasks is
killed; drawings and report are those of one run of dxf2d. Exit code 77 where Slurm is missing.

usage: test_slurm.py --dxf2d PROGRAM       in a process namespace of its own, as CMake starts it
"""

import argparse
import os
import pathlib
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True
import drawn_alike  # noqa: E402
import models  # noqa: E402
import slurm_cluster  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
ARRAY = ROOT / "share/dxf2d/slurm/dxf2d-array"


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("--dxf2d", required=True)
    dxf2d = parser.parse_args().dxf2d
    missing = slurm_cluster.missing()
    if missing or os.geteuid() != 0:
        print(f"skipped: {'no ' + ', '.join(missing) if missing else 'needs to be root'}; run "
              "scripts/install-packages cluster")
        sys.exit(77)
    with tempfile.TemporaryDirectory(prefix="dxf2d-slurm-") as name:
        place = pathlib.Path(name)
        models.make(place / "models")
        os.environ |= {"DXF2D": dxf2d, "KILLED": str(place / "killed")}
        began = time.monotonic()
        with slurm_cluster.Slurm(place / "run") as slurm:
            print(f"Slurm is up after {time.monotonic() - began:.1f} s")
            subprocess.run(
                [ARRAY, "plan", place / "job", "--models", place / "models", "--output",
                 place / "drawn", "--dxf2d", ROOT / "tests/cluster/killed_once", "--memory",
                 str(models.LITTLE), "--batch-models", "25", "--", *drawn_alike.OPTIONS], check=True)
            subprocess.run([ARRAY, "submit", place / "job"], check=True)
            slurm.wait_until_idle(120)
            print(f"the job is done after {time.monotonic() - began:.1f} s")
        if not (place / "killed").exists():
            sys.exit("no task was killed")
        for log in sorted((place / "job").glob("round-*/slurm-collect.log")):
            print(log.read_text().strip())
        drawn_alike.check(dxf2d, place / "job", place / "models", place / "drawn")


if __name__ == "__main__":
    main()
