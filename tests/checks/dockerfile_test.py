"""Whether what container/Dockerfile names is there: it can only be built where a registry is."""
import json
import pathlib
import re
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


class Dockerfile(unittest.TestCase):
    def setUp(self):
        text = (ROOT / "container/Dockerfile").read_text()
        text = re.sub(r"^#.*\n", "", text, flags=re.MULTILINE).replace("\\\n", " ")
        self.lines = [line.split(maxsplit=1) for line in text.splitlines() if line]

    def arguments(self, instruction):
        return [rest for name, rest in self.lines if name == instruction]

    def test_only_known_instructions(self):
        self.assertLessEqual({name for name, _ in self.lines},
                             {"FROM", "ENV", "COPY", "WORKDIR", "RUN", "USER", "ENTRYPOINT"})

    def test_what_is_copied_is_there(self):
        stages = {match.group(1) for match in map(re.compile(r".* AS (\w+)").match,
                                                  self.arguments("FROM")) if match}
        for copied in self.arguments("COPY"):
            words = copied.split()
            if words[0].startswith("--from="):
                self.assertIn(words[0].removeprefix("--from="), stages)
            else:
                self.assertTrue((ROOT / words[0]).exists(), words[0])

    def test_what_is_run_is_there(self):
        run = " ".join(self.arguments("RUN"))
        groups = (ROOT / "scripts/install-packages").read_text()
        for group in re.search(r"scripts/install-packages ([\w ]+)", run).group(1).split():
            self.assertRegex(groups, rf"(?m)^{group}=\(")
        presets = json.loads((ROOT / "CMakePresets.json").read_text())
        for kind, options in (("configurePresets", r"cmake --preset (\S+)"),
                              ("buildPresets", r"cmake --build --preset (\S+)")):
            self.assertIn(re.search(options, run).group(1), [each["name"] for each in presets[kind]])

    def test_trees_of_builds_are_not_copied(self):
        ignored = (ROOT / ".dockerignore").read_text().split("\n")
        for path in (".git", "build"):
            self.assertIn(path, ignored)

    def test_packages_are_debians(self):
        packages = (ROOT / "container/packages").read_text().split()
        try:
            found = subprocess.run(["apt-cache", "show", "--no-all-versions", *packages], check=False,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        except FileNotFoundError:
            self.skipTest("this is not Debian")
        if not found.stdout:
            self.skipTest("apt has no lists of packages")
        self.assertEqual(set(re.findall(r"(?m)^Package: (\S+)", found.stdout)), set(packages))

    def test_it_makes_the_same_as_the_way_without_a_registry(self):
        other = (ROOT / "container/build-image").read_text()
        self.assertIn("bookworm", self.arguments("FROM")[-1])
        self.assertIn('RELEASE = "bookworm"', other)
        user = re.search(r"(?m)^USER = (\d+)", other).group(1)
        self.assertEqual(self.arguments("USER"), [f"{user}:{user}"])
        self.assertEqual(self.arguments("WORKDIR")[-1],
                         re.search(r'"WorkingDir": "([^"]+)"', other).group(1))
        self.assertEqual(json.loads(self.arguments("ENTRYPOINT")[0]),
                         json.loads(re.search(r'"Entrypoint": (\[.*?\])', other).group(1)))
        for variable in self.arguments("ENV")[-1].split():
            self.assertIn(f'"{variable}"', other)


if __name__ == "__main__":
    unittest.main()
