"""A copy of the sources in which faults are made, built and tested."""

import dataclasses
import pathlib
import resource
import shutil
import subprocess

from faults import Fault

COPIED = ["CMakeLists.txt", "cmake", "dxf", "geometry", "ktscene", "labels", "platform", "plugin",
          "session", "shapes", "tests"]
# The tests of a folder, which see most of its faults, and the others that draw.
NEAREST = {"geometry": ["geometry_tests"], "dxf": ["dxf_tests"]}
FURTHER = ["plugin_tests", "session_tests", "labels_tests", "shapes_tests", "geometry_tests",
           "dxf_tests"]
# What a test may take: a fault may make it ask for endless memory or write an endless file.
MEMORY_BYTES = 4 << 30
FILE_BYTES = 1 << 30


@dataclasses.dataclass(frozen=True)
class Verdict:
    result: str  # caught, survived, does not compile, same object
    by: str = ""


# How much longer than its own time a test may take by the clock, where others use the machine.
PATIENCE = 20


def _limit(seconds: int) -> None:
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_BYTES, FILE_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Workshop:
    """One copy and its build; several work side by side."""

    def __init__(self, root: pathlib.Path, place: pathlib.Path, seconds: int):
        self._sources = place / "sources"
        self._build = place / "build"
        self._files = place / "files"
        self._seconds = seconds
        # The objects without a fault.
        self._objects: dict[pathlib.Path, bytes] = {}
        self._sources.mkdir(parents=True)
        self._files.mkdir()
        for name in COPIED:
            if (root / name).is_dir():
                shutil.copytree(root / name, self._sources / name)
            else:
                shutil.copy2(root / name, self._sources / name)

    def prepare(self) -> None:
        """Builds the tests without a fault; raises RuntimeError where they do not pass."""
        subprocess.run(
            ["cmake", "-S", self._sources, "-B", self._build, "-G", "Ninja",
             "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1 -D_GLIBCXX_ASSERTIONS",
             "-DDXF2D_BUILD_APP=OFF"],
            check=True, stdout=subprocess.DEVNULL)
        if not self._make(FURTHER):
            raise RuntimeError("the sources do not build")
        for name in FURTHER:
            if not self._passes(name):
                raise RuntimeError(f"{name} fails without a fault")
        self._objects = {object: object.read_bytes() for object in self._build.rglob("*.o")}

    def judge(self, fault: Fault) -> Verdict:
        file = self._sources / fault.path
        text = file.read_text()
        file.write_text(fault.faulty(text))
        try:
            return self._judge(fault)
        finally:
            file.write_text(text)

    def _judge(self, fault: Fault) -> Verdict:
        nearest = NEAREST[fault.path.split("/")[0]]
        for names in (nearest, [name for name in FURTHER if name not in nearest]):
            if not self._make(names):
                return Verdict("does not compile")
            if self._gives_same_object(fault):
                return Verdict("same object")
            for name in names:
                if not self._passes(name):
                    return Verdict("caught", name)
        return Verdict("survived")

    def _gives_same_object(self, fault: Fault) -> bool:
        """Only asked of sources: a header goes into many objects."""
        name = f"{fault.path.split('/')[-1]}.o"
        objects = [object for object in self._objects if object.name == name]
        return bool(objects) and all(object.read_bytes() == self._objects[object]
                                     for object in objects)

    def _make(self, names: list[str]) -> bool:
        made = subprocess.run(["ninja", "-C", self._build, "-j1", *names],
                              stdout=subprocess.DEVNULL, check=False)
        return made.returncode == 0

    def _passes(self, name: str) -> bool:
        """A test that hangs has seen the fault."""
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
