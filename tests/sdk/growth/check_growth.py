"""Runs hosts built against KtScene 1.0 and 1.1 on the libraries of both versions.

usage: check_growth.py HOST_1_0 HOST_1_1 LIBRARIES_1_0 LIBRARIES_1_1 PLUGIN CLEARANCE_PLUGIN
"""
import os
import pathlib
import subprocess
import sys
import tempfile


def run(host, libraries, plugin, drawing):
    """What the host prints on standard output and on standard error."""
    environment = dict(os.environ, LD_LIBRARY_PATH=libraries)
    done = subprocess.run([host, plugin, drawing], env=environment, capture_output=True, text=True)
    assert done.returncode == 0, (host, libraries, plugin, done.returncode, done.stderr)
    return done.stdout, done.stderr


def main():
    hosts = {10000: sys.argv[1], 10100: sys.argv[2]}
    libraries = {10000: sys.argv[3], 10100: f"{sys.argv[4]}:{sys.argv[3]}"}
    plugin, clearance_plugin = sys.argv[5:]
    drawings = {}
    with tempfile.TemporaryDirectory(prefix="dxf2d-growth-") as work:
        drawing = pathlib.Path(work) / "drawing.dxf"
        for built, host in hosts.items():
            for loaded, directory in libraries.items():
                _, told = run(host, directory, plugin, drawing)
                assert told == f"headers {built}, library {loaded}\n", told
                drawings[built, loaded] = drawing.read_bytes()
        for pair, bytes_ in drawings.items():
            assert bytes_ == drawings[10000, 10000], f"{pair} draws something else"
        assert b"POLYLINE" in drawings[10000, 10000]
        # A newer library sees 0 where an older host has no member, and what a newer one has put there.
        for built, value in ((10000, "0"), (10100, "2.5")):
            printed, _ = run(hosts[built], libraries[10100], clearance_plugin, drawing)
            assert printed == f"{value}\n" * 120, printed[:40]


if __name__ == "__main__":
    main()
