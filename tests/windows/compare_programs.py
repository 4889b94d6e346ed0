#!/usr/bin/python3
"""Runs dxf2d for Windows, under Wine, and that for Linux, and compares drawings, messages and exit codes.

usage: compare_programs.py --windows BUILD --linux BUILD [--models N] [--keep DIR]

They draw the golden scenes and N models of Debian's assimp-testmodels (default 60), of all formats in
turn and seen from all sides, and are given files that cannot be drawn and limits that are too low. Wine is
that of the environment (WINEPREFIX).
"""
import argparse
import itertools
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
MODELS = pathlib.Path("/usr/share/assimp/models")
FORMATS = ["obj", "stl", "ply", "gltf", "glb", "3ds", "dae", "off", "lwo", "fbx", "3mf", "ase", "x", "ac",
           "b3d", "amf", "ms3d", "nff", "xml", "smd"]
# Options whose drawings no sine but that of a named view goes into.
OPTIONS = [["--view", "top"], ["--view", "iso"], ["--view", "front", "--hidden", "remove"],
           ["--view", "right", "--labels", "name"], ["--view", "back", "--scale", "25.4"],
           ["--view", "left", "--hidden", "dash"], ["--view", "bottom", "--release", "r2000", "--explode"]]
LARGEST = 1 << 20
PATIENCE = 120


def chosen_models(count):
    """So many models, of each format in turn."""
    by_format = [sorted(path for path in MODELS.rglob("*")
                        if path.suffix.lower() == f".{end}" and path.stat().st_size <= LARGEST)
                 for end in FORMATS]
    if not any(by_format):
        sys.exit(f"compare_programs: there are no models in {MODELS}; run scripts/install-packages test")
    turns = itertools.zip_longest(*by_format)
    return [model for model in itertools.chain.from_iterable(turns) if model][:count]


def cases(options):
    """Names and command lines; "OUT" in them is the drawing."""
    for scene in sorted((ROOT / "tests" / "golden").glob("*.json")):
        yield scene.stem, ["export", str(scene), "-o", "OUT.dxf"]
    for number, model in enumerate(chosen_models(options.models)):
        yield str(model.relative_to(MODELS)), ["export", str(model), "-o", "OUT.dxf",
                                               *OPTIONS[number % len(OPTIONS)]]
    spider = str(MODELS / "OBJ" / "spider.obj")
    yield "release 2004", ["export", spider, "-o", "OUT.dxf", "--release", "r2004"]
    yield "page", ["export", spider, "-o", "OUT.html"]
    yield "list", ["export", spider, "--list"]
    yield "standard output", ["export", spider, "-q", "-o", "-"]
    yield "no such file", ["export", str(MODELS / "missing.obj"), "-o", "OUT.dxf"]
    yield "no such directory", ["export", spider, "-o", "missing/OUT.dxf"]
    yield "a directory", ["export", spider, "-o", str(ROOT)]
    yield "no model", ["export", str(ROOT / "tests" / "golden" / "labels.dxf.obj"), "-o", "OUT.dxf"]
    yield "too little memory", ["export", spider, "-o", "OUT.dxf", "--max-memory", "1"]
    yield "wrong option", ["export", spider, "-o", "OUT.dxf", "--veiw", "top"]


def run(program, words, folder):
    # Not by pipes, which what Wine starts beside the program would keep open.
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
        ended = subprocess.run([*program, *words], cwd=folder, stdin=subprocess.DEVNULL, stdout=output,
                               stderr=errors, timeout=PATIENCE)
        output.seek(0)
        errors.seek(0)
        results = output.read(), errors.read()
    # Times differ.
    printed, said = (re.sub(rb"\d+\.\d{3} s", b"TIME s", text) for text in results)
    files = {path.name: path.read_bytes() for path in sorted(folder.iterdir())}
    return {"exit code": ended.returncode, "standard output": printed, "messages": said, "files": files}


def difference(name, words, programs, folder):
    results = []
    for system, program in programs.items():
        place = folder / f"{name.replace('/', '-')}-{system}"
        place.mkdir()
        results.append(run(program, words, place))
    ours, theirs = results
    differing = [what for what in ours if ours[what] != theirs[what]]
    return "; ".join(f"{what}: {shown(ours[what])} and not {shown(theirs[what])}" for what in differing)


def shown(result):
    if isinstance(result, dict):
        return ", ".join(f"{name} of {len(content)} bytes" for name, content in result.items()) or "none"
    return repr(result)[:300]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--windows", required=True, type=pathlib.Path)
    parser.add_argument("--linux", required=True, type=pathlib.Path)
    parser.add_argument("--models", type=int, default=60)
    parser.add_argument("--keep", metavar="DIR", help="leave the drawings here")
    options = parser.parse_args()
    programs = {"windows": ["wine", str(options.windows.resolve() / "bin" / "dxf2d.exe")],
                "linux": [str(options.linux.resolve() / "bin" / "dxf2d")]}
    failed = count = 0
    with tempfile.TemporaryDirectory(prefix="dxf2d-windows-") as scratch:
        folder = pathlib.Path(options.keep or scratch)
        for name, words in cases(options):
            count += 1
            found = difference(name, words, programs, folder)
            if found:
                failed += 1
                print(f"{name}: {found}")
    print(f"{count - failed} equal, {failed} different")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
