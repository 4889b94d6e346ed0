"""Installs the build tree and removes it again with the target uninstall: nothing of it is left, and
everything else is."""
import argparse
import os
import pathlib
import subprocess
import tempfile


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build tree")
    parser.add_argument("--cmake", required=True)
    parser.add_argument("--config", required=True, help="the build type")
    return parser.parse_args()


def run(command, destination=""):
    environment = {**os.environ, "DESTDIR": str(destination)}
    done = subprocess.run(command, env=environment, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True)
    assert done.returncode == 0, f"{command} ended with {done.returncode}\n{done.stdout}"
    return done.stdout


def below(directory):
    return sorted(path.relative_to(directory).as_posix() for path in directory.rglob("*"))


def check(args, root, prefix, destination):
    """`prefix` stands below `root` once installed; `destination` is what DESTDIR says."""
    foreign = root / "share" / "doc" / "dxf2d" / "notes of somebody else"
    foreign.parent.mkdir(parents=True)
    foreign.touch()
    (root / "bin").mkdir()
    before = below(root)
    run([args.cmake, "--install", args.build, "--config", args.config, "--prefix", prefix],
        destination)
    assert (root / "include" / "ktscene-1" / "ktscene" / "kt_traverser.h").exists(), below(root)
    run([args.cmake, "--build", args.build, "--config", args.config, "--target", "uninstall"],
        destination)
    return before, below(root)


def main():
    args = arguments()
    with tempfile.TemporaryDirectory(prefix="dxf2d-uninstall-") as work:
        own = pathlib.Path(work) / "a prefix"
        before, after = check(args, own, own, "")
        assert after == [name for name in before if name != "bin"], after

        # The system's directories stay, although nothing is in them.
        staged = pathlib.Path(work) / "staged"
        before, after = check(args, staged / "usr", "/usr", staged)
        assert [name for name in after if (staged / "usr" / name).is_file()] == [
            "share/doc/dxf2d/notes of somebody else"], after
        assert "bin" in after and "include" in after, after
        assert "include/ktscene-1" not in after, after


if __name__ == "__main__":
    main()
