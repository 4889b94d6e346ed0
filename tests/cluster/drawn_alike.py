"""Compares what a job of dxf2d-array drew with what one run of dxf2d draws."""

import json
import pathlib
import subprocess
import sys

import models

OPTIONS = ["--release", "r2000"]


def drawings(folder: pathlib.Path) -> dict[str, bytes]:
    return {str(file.relative_to(folder)): file.read_bytes() for file in folder.rglob("*.dxf")}


def check(dxf2d: str, job: pathlib.Path, folder: pathlib.Path, drawn: pathlib.Path) -> None:
    """Exits with a message where they differ."""
    alone = drawn.with_name("alone")
    end = subprocess.run([dxf2d, "export", str(folder), "-r", "-q", "-o", f"{alone}/", *OPTIONS],
                         capture_output=True, text=True)
    expected = drawings(alone)
    problems = []
    if end.returncode != 10 or len(expected) != models.COUNT - 2:
        problems.append(f"one run ends with {end.returncode} and {len(expected)} drawings")
    actual = drawings(drawn)
    problems += [f"{name}: is not the same" for name in sorted(expected.keys() | actual.keys())
                 if expected.get(name) != actual.get(name)]
    records = [json.loads(line) for line in (job / "report.jsonl").read_text().splitlines()]
    codes = {record["input"]: record["exit_code"] for record in records}
    if len(records) != models.COUNT or len(codes) != models.COUNT:
        problems.append(f"the report has {len(records)} lines about {len(codes)} models")
    failed = {path: code for path, code in codes.items() if code != 0}
    if failed != {str(folder / models.BROKEN): 3, str(folder / models.EMPTY): 4}:
        problems.append(f"failed: {failed}")
    for name in (models.BROKEN, models.EMPTY):
        tries = sum(name in json.loads(batch.read_text())["models"]
                    for batch in job.glob("round-*/[0-9]*.json"))
        if tries != 1:
            problems.append(f"{name} was tried {tries} times")
    totals = subprocess.run([dxf2d, "report", job / "report.jsonl"], capture_output=True, text=True)
    if not totals.stdout.startswith(f"{models.COUNT} inputs: {models.COUNT - 2} drawn"):
        problems.append(f"dxf2d report: {totals.stdout}{totals.stderr}")
    for problem in problems:
        print(problem, file=sys.stderr)
    if problems:
        sys.exit(1)
