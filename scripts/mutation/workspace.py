"""A copy of the sources in which mutants are built and tested."""

import dataclasses
import pathlib
import resource
import shutil
import subprocess

from mutants import Mutant

# The tests of a folder, which kill most of its mutants, and the others that draw.
NEAREST = {"geometry": ["geometry_tests"], "dxf": ["dxf_tests"]}
FURTHER = ["plugin_tests", "session_tests", "labels_tests", "shapes_tests", "geometry_tests",
           "dxf_tests"]
# Limits of a test, since a mutant may allocate without end or write an endless file.
MEMORY_BYTES = 4 << 30
FILE_BYTES = 1 << 30


@dataclasses.dataclass(frozen=True)
class Verdict:
    result: str  # killed, survived, does not compile, same object
    by: str = ""


# Wall-clock limit of a test, as a multiple of its limit of processor time, on a busy machine.
PATIENCE = 20


def _limit(seconds: int) -> None:
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_BYTES, FILE_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Workspace:
    """One copy and its build; several run side by side."""

    def __init__(self, root: pathlib.Path, place: pathlib.Path, seconds: int):
        self._sources = place / "sources"
        self._build = place / "build"
        self._files = place / "files"
        self._seconds = seconds
        # The objects of the unchanged sources.
        self._objects: dict[pathlib.Path, bytes] = {}
        shutil.copytree(root, self._sources, ignore=shutil.ignore_patterns("build", ".git"))
        self._files.mkdir()

    def prepare(self) -> None:
        """Builds the tests of the unchanged sources; raises RuntimeError if they do not pass."""
        subprocess.run(
            ["cmake", "-S", self._sources, "-B", self._build, "-G", "Ninja",
             "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1 -D_GLIBCXX_ASSERTIONS",
             "-DDXF2D_BUILD_APP=OFF"],
            check=True, stdout=subprocess.DEVNULL)
        if not self._make(FURTHER):
            raise RuntimeError("the sources do not build")
        for name in FURTHER:
            if not self._passes(name):
                raise RuntimeError(f"{name} fails without a mutation")
        self._objects = {object: object.read_bytes() for object in self._build.rglob("*.o")}

    def judge(self, mutant: Mutant) -> Verdict:
        file = self._sources / mutant.path
        text = file.read_text()
        file.write_text(mutant.mutated(text))
        try:
            return self._judge(mutant)
        finally:
            file.write_text(text)

    def _judge(self, mutant: Mutant) -> Verdict:
        nearest = NEAREST[mutant.path.split("/")[0]]
        for names in (nearest, [name for name in FURTHER if name not in nearest]):
            if not self._make(names):
                return Verdict("does not compile")
            if self._gives_same_object(mutant):
                return Verdict("same object")
            for name in names:
                if not self._passes(name):
                    return Verdict("killed", name)
        return Verdict("survived")

    def _gives_same_object(self, mutant: Mutant) -> bool:
        """For sources only: a header goes into many objects."""
        name = f"{mutant.path.split('/')[-1]}.o"
        objects = [object for object in self._objects if object.name == name]
        return bool(objects) and all(object.read_bytes() == self._objects[object]
                                     for object in objects)

    def _make(self, names: list[str]) -> bool:
        made = subprocess.run(["ninja", "-C", self._build, "-j1", *names],
                              stdout=subprocess.DEVNULL, check=False)
        return made.returncode == 0

    def _passes(self, name: str) -> bool:
        """A test that hangs kills the mutant."""
        try:
            tested = subprocess.run(
                [self._build / "bin" / name, "--gtest_fail_fast", "--gtest_brief=1"],
                cwd=self._files, env={"PATH": "/usr/bin:/bin", "TEST_TMPDIR": f"{self._files}/"},
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                timeout=PATIENCE * self._seconds, preexec_fn=lambda: _limit(self._seconds),
                check=False)
        except subprocess.TimeoutExpired:
            return False
        return tested.returncode == 0
