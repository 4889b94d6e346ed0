#!/usr/bin/env python3
"""Exports random scenes with dxf2d and with the reference implementation, and compares.

Every scene comes from its seed, so that a difference can be had again:

    compare_drawings.py --dxf2d build/bin/dxf2d --seed 1234 --scenes 1 --keep /some/folder

Prints each difference with its seed, then "N passed, M failed". Exit status 1 when any failed.
"""

import argparse
import json
import random
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from reference_drawing import drawing_of
from random_scenes import random_scene

# Seconds after which an export counts as hung.
PATIENCE = 60

# The pages whose tables are the same everywhere; None leaves the choice to the program.
CODE_PAGES = [None, 1250, 1251, 1252, 1253, 1254, 1256, 1257, 874]


def main():
    options = parse_options()
    with tempfile.TemporaryDirectory(prefix="dxf2d-differential-") as scratch:
        folder = Path(options.keep or scratch)
        folder.mkdir(parents=True, exist_ok=True)
        seeds = range(options.seed, options.seed + options.scenes)
        with ThreadPoolExecutor(options.jobs) as pool:
            failures = sum(report(seed, complaint) for seed, complaint in
                           zip(seeds, pool.map(lambda s: compared(s, options, folder), seeds)))
    print(f"{options.scenes - failures} passed, {failures} failed")
    return 1 if failures else 0


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--dxf2d", required=True, help="the program to test")
    parser.add_argument("--scenes", type=positive, default=400, help="how many (%(default)s)")
    parser.add_argument("--seed", type=int, default=1, help="the first scene's seed (%(default)s)")
    parser.add_argument("--keep", metavar="DIR",
                        help="leave the scene and both drawings of every failure here")
    parser.add_argument("--jobs", type=positive, default=2, help="exports at a time (%(default)s)")
    return parser.parse_args()


def positive(text):
    value = int(text)
    if value < 1:
        raise argparse.ArgumentTypeError("must be at least 1")
    return value


def report(seed, complaint):
    if complaint is None:
        return 0
    print(f"seed {seed}: {complaint}", flush=True)
    return 1


def compared(seed, options, folder):
    """None when both drawings are the same, otherwise what is wrong."""
    text = scene_text(seed)
    code_page = random.Random(f"code page {seed}").choice(CODE_PAGES)
    scene_path = folder / f"scene-{seed}.json"
    drawing_path = folder / f"scene-{seed}.dxf"
    scene_path.write_bytes(text)
    expected = drawing_of(json.loads(text.decode("utf-8-sig")), code_page or 1252)
    complaint = exported(options.dxf2d, scene_path, drawing_path, code_page)
    if complaint is None:
        complaint = first_difference(drawing_path.read_bytes(), expected)
    if complaint is None:
        scene_path.unlink()
        drawing_path.unlink()
    elif options.keep:
        (folder / f"scene-{seed}.expected.dxf").write_bytes(expected)
    return complaint


def scene_text(seed):
    """The scene as a file, in one of the forms that a scene file may have."""
    rng = random.Random(seed)
    text = json.dumps(random_scene(seed), ensure_ascii=rng.random() < 0.5,
                      indent=rng.choice([None, 1]))
    mark = b"\xef\xbb\xbf" if rng.random() < 0.1 else b""
    return mark + text.encode("utf-8")


def exported(program, scene_path, drawing_path, code_page):
    """None when the program made a drawing, otherwise how it ended."""
    drawing_path.unlink(missing_ok=True)
    command = [program, "export", str(scene_path), "-o", str(drawing_path)]
    if code_page is not None:
        command += ["--codepage", str(code_page)]
    try:
        run = subprocess.run(command, capture_output=True, timeout=PATIENCE, check=False)
    except subprocess.TimeoutExpired:
        return f"no end after {PATIENCE} s"
    if run.returncode != 0:
        return f"exit status {run.returncode}: {run.stderr.decode('utf-8', 'replace').strip()}"
    if not drawing_path.exists():
        return "no drawing was written"
    return None


def first_difference(actual, expected):
    """None when equal; otherwise the first line that differs, with the lines around it."""
    if actual == expected:
        return None
    ours, theirs = expected.split(b"\n"), actual.split(b"\n")
    number = 0
    while number < min(len(ours), len(theirs)) and ours[number] == theirs[number]:
        number += 1
    start = max(0, number - 12)
    return "\n".join([
        f"line {number + 1} differs ({len(theirs)} lines, expected {len(ours)})",
        "  before:   " + shown(ours[start:number]),
        "  expected: " + shown(ours[number:number + 12]),
        "  actual:   " + shown(theirs[number:number + 12])])


def shown(lines):
    return " | ".join(repr(line.decode("latin-1").strip())[1:-1] for line in lines)


if __name__ == "__main__":
    sys.exit(main())
