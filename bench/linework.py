"""Measures sections, hidden lines and outlines against the same export without them.

The models are those of tests/projection/truth/sample_models.py: as much lies above each other in
large ones as in small ones.
"""
import math
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Key, what is measured, goal, as in bench/run.
MEASURES = [
    ("H boxes", "`--hidden remove` : `show`, 1,000,000 triangles", "<", 8.0),
    ("H smooth", "the same", "<", 6.0),
    ("H piercing", "the same where boxes pierce each other, for comparison", None, None),
    ("H growth", "exponent of the growth of `--hidden remove`, 100,000 to 4,000,000 triangles", "<",
     1.2),
    ("H bytes", "peak bytes, whole process, per triangle", "<", 400.0),
    ("S", "`--cut` at half the height : the plain export, 1,000,000 triangles", "<", 1.3),
    ("O", "`--outline view` : the plain export, 1,000,000 triangles", "<", 6.0),
    ("V", "one thread : two threads, whole processes, 1,000,000 triangles", ">", 1.7),
    ("H Blender", "Blender's line art : `--hidden remove`, whole processes, 1,000,000 triangles", ">",
     3.0),
    ("H OCCT", "OpenCASCADE's HLRBRep_PolyAlgo, without reading : `--hidden remove`, whole process, "
     "48,000 triangles", ">", 10.0),
]
PEERS = ROOT / "bench" / "peers"
# What both peers draw; one run each.
PEER_MODELS = ("piled_boxes", "spheres", "terrain")
OCCT_TRIANGLES = 48_000
KEYS = {"piled_boxes": "H boxes", "spheres": "H smooth", "terrain": "H smooth",
        "interpenetrating_boxes": "H piercing"}


def make_models(directory, triangles):
    """Writes each sample model, and returns its path and half its height by its name."""
    script = ("import sys; sys.path.insert(0, sys.argv[1]); import sample_models as s\n"
              "for name, make in s.MODELS.items():\n"
              "    triangles = make(int(sys.argv[3]))\n"
              "    s.write_stl(f'{sys.argv[2]}/{name}.stl', triangles)\n"
              "    z = triangles[..., 2]\n"
              "    print(name, float(z.max() - z.min()) / 2)\n")
    directory.mkdir()
    output = subprocess.run(
        ["/usr/bin/python3", "-B", "-c", script, ROOT / "tests" / "projection" / "truth", directory,
         str(triangles)], check=True, stdout=subprocess.PIPE, text=True).stdout
    return {name: (directory / f"{name}.stl", half)
            for name, half in (line.split() for line in output.splitlines())}


def run_of(command):
    """Seconds and peak bytes of a process and those that it waits for."""
    start = time.perf_counter()
    with open(os.devnull, "wb") as nowhere:
        process = subprocess.Popen([str(part) for part in command], stdout=nowhere)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f"bench/run: failed: {' '.join(map(str, command))}")
    return time.perf_counter() - start, usage.ru_maxrss * 1024


def compared(key, name, subject, yardstick, repetitions):
    pairs = [(run_of(subject)[0], run_of(yardstick)[0]) for _ in range(repetitions + 1)][1:]
    ours, plain = (statistics.median(times) for times in zip(*pairs))
    return {"measure": key, "subject": name, "value": statistics.median(a / b for a, b in pairs),
            "detail": f"{ours * 1e3:.0f} ms, plain {plain * 1e3:.0f} ms"}


def measure(dxf2d, scratch, size, repetitions, company, peer_timeout=None):
    """Results as in bench/run; `size` divides the numbers of triangles. With a timeout in seconds,
    also compares with other programs."""
    print("measuring H, S and O", file=sys.stderr)
    drawing = scratch / "linework.dxf"

    def export(model, *options):
        return [dxf2d, "export", "--force", model, *options, "-o", drawing]

    triangles = 1_000_000 // size
    results = []
    models = make_models(scratch / "linework", triangles)
    for name, (model, half) in models.items():
        plain = export(model)
        for key, *option in ((KEYS[name], "--hidden", "remove"), ("S", "--cut", half),
                             ("O", "--outline", "view")):
            drawn = export(model, *option)
            results.append(compared(key, name, drawn, plain, repetitions))
            results.append(in_threads(f"{name}, {option[0]}", drawn, repetitions))
            peak = run_of(drawn)[1]
            results.append({"measure": "H bytes", "subject": f"{name}, {option[0]}",
                            "value": peak / triangles, "detail": f"{peak / 2**20:.0f} MiB"})
        company.look()
    results += growth(export, scratch, size, company)
    if peer_timeout and shutil.which("blender"):
        command = ["blender", "--background", "--factory-startup", "--python",
                   PEERS / "line_art_blender.py", "--"]
        results += against_peer("H Blender", command, models, export, peer_timeout, is_whole=True)
    occt = dxf2d.parent / "dxf2d_hidden_lines_occt"
    if peer_timeout and occt.exists():
        small = make_models(scratch / "linework_occt", OCCT_TRIANGLES // size)
        results += against_peer("H OCCT", [occt], small, export, peer_timeout, is_whole=False)
    company.look()
    return results


def in_threads(subject, command, repetitions):
    both = [(run_of([*command, "--threads", 1])[0], run_of([*command, "--threads", 2])[0])
            for _ in range(repetitions + 1)][1:]
    alone, together = (statistics.median(times) for times in zip(*both))
    return {"measure": "V", "subject": subject,
            "value": statistics.median(a / b for a, b in both),
            "detail": f"{alone * 1e3:.0f} ms, {together * 1e3:.0f} ms"}


def against_peer(key, command, models, export, timeout, is_whole):
    """The peer prints the seconds that its algorithm takes. They count, or those of its whole
    process; one that does not finish in time counts as the timeout."""
    results = []
    for name in PEER_MODELS:
        model = models[name][0]
        ours = statistics.median(run_of(export(model, "--hidden", "remove"))[0] for _ in range(3))
        theirs, took = timeout, f"over {timeout} s"
        start = time.perf_counter()
        try:
            output = subprocess.run([str(part) for part in [*command, model]], check=True,
                                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                                    timeout=timeout).stdout
            whole = time.perf_counter() - start
            alone = next(float(line.split()[1]) for line in output.splitlines()
                         if line.startswith("seconds "))
            theirs = whole if is_whole else alone
            took = f"{whole:.1f} s, lines alone {alone:.1f} s"
        except subprocess.TimeoutExpired:
            pass
        results.append({"measure": key, "subject": name, "value": theirs / ours,
                        "detail": f"dxf2d {ours * 1e3:.0f} ms, peer {took}"})
    return results


def growth(export, scratch, size, company):
    few, many = 100_000 // size, 4_000_000 // size
    small = make_models(scratch / "linework_small", few)
    large = make_models(scratch / "linework_large", many)
    results = []
    for name, (model, _) in small.items():
        a = statistics.median(run_of(export(model, "--hidden", "remove"))[0] for _ in range(3))
        b = run_of(export(large[name][0], "--hidden", "remove"))[0]
        results.append({"measure": "H growth", "subject": name,
                        "value": math.log(b / a) / math.log(many / few),
                        "detail": f"{a * 1e3:.0f} ms to {b * 1e3:.0f} ms"})
        company.look()
    return results
