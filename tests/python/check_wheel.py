"""A wheel with the libraries in it draws in a directory of its own, without any other installation.

usage: check_wheel.py SOURCE_TREE INSTALL_COMMAND...

Ends with 77, which skips the test, where setuptools or wheel are not installed.
"""
import importlib.util
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

DRAW = """
import ktscene, sys
with ktscene.Scene() as scene:
    scene.add_object("a").add_faces([0, 0, 0, 1, 0, 0, 0, 1, 0], [0, 1, 2], counts=[3])
    scene.draw(sys.argv[1])
print(ktscene.__file__)
"""


def main():
    for module in ("pip", "setuptools", "wheel"):
        if importlib.util.find_spec(module) is None:
            print(f"left out: python3-{module} is not installed")
            sys.exit(77)
    source, *install = sys.argv[1:]
    environment = {name: value for name, value in os.environ.items() if name not in (
        "DESTDIR", "KTSCENE_LIBRARY", "PYTHONPATH", "LD_LIBRARY_PATH")}
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        subprocess.run([*install, "--component", "runtime", "--prefix", work / "prefix"], check=True,
                       env=environment, stdout=subprocess.DEVNULL)
        [library] = (work / "prefix").rglob("libKtScene.so.1")
        shutil.copytree(pathlib.Path(source, "python"), work / "python")
        subprocess.run([sys.executable, "-m", "pip", "--quiet", "wheel", "--no-build-isolation", "--no-deps",
                        "--no-index", "--wheel-dir", work, work / "python"], check=True,
                       env=dict(environment, KTSCENE_LIBDIR=str(library.parent)))
        shutil.rmtree(work / "prefix")
        [wheel] = work.glob("ktscene-*.whl")
        assert "linux" in wheel.name, wheel
        shutil.unpack_archive(wheel, work / "site", "zip")
        printed = subprocess.run([sys.executable, "-c", DRAW, work / "a.dxf"], check=True,
                                 env=dict(environment, PYTHONPATH=str(work / "site")),
                                 stdout=subprocess.PIPE, text=True).stdout
        assert printed.startswith(str(work / "site")), printed
        assert "POLYLINE" in (work / "a.dxf").read_text(encoding="latin-1")


if __name__ == "__main__":
    main()
