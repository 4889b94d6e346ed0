"""Whether the workflow of GitHub Actions can be read and does what .ci/run does."""
import pathlib
import re
import unittest

try:
    import yaml
except ImportError:
    yaml = None

ROOT = pathlib.Path(__file__).resolve().parents[2]
# How one command gets git, and lets it read a checkout that another user made.
PREPARATION = ("apt-get ", "git config ")


@unittest.skipIf(yaml is None, "python3-yaml is missing")
class Workflow(unittest.TestCase):
    def setUp(self):
        self.workflow = yaml.safe_load((ROOT / ".github/workflows/ci.yml").read_text())
        # YAML 1.1 takes the key `on` for a truth value.
        self.events = self.workflow[True]
        self.jobs = self.workflow["jobs"]

    @staticmethod
    def commands(job):
        return [step["run"] for step in job["steps"]
                if "run" in step and not step["run"].startswith(PREPARATION)]

    def jobs_of(self, event):
        return [name for name, job in self.jobs.items()
                if event in re.findall(r"github\.event_name == '(\w+)'", job["if"])]

    def test_each_event_starts_one_job(self):
        self.assertEqual(set(self.events), {"push", "pull_request", "schedule", "workflow_dispatch"})
        for event in self.events:
            self.assertEqual(len(self.jobs_of(event)), 1, event)

    def test_changes_are_checked_by_ci_run_and_each_week_is_by_the_full_one(self):
        for event in ("push", "pull_request"):
            self.assertEqual(self.commands(self.jobs[self.jobs_of(event)[0]]), [".ci/run"])
        for event in ("schedule", "workflow_dispatch"):
            self.assertEqual(self.commands(self.jobs[self.jobs_of(event)[0]]), [".ci/run --full"])
        run = ROOT / ".ci/run"
        self.assertTrue(run.stat().st_mode & 0o100, "is not executable")
        self.assertRegex(run.read_text(), r"(?m)^ *--full\) ")

    def test_it_has_what_ci_run_needs(self):
        for job in self.jobs.values():
            kinds = [step.get("uses", step.get("run", "")) for step in job["steps"]]
            checkout = next(i for i, kind in enumerate(kinds) if kind.startswith("actions/checkout@"))
            # Without git, it takes an archive without history, and clang-tidy goes through everything.
            self.assertTrue(any(re.search(r"install .*\bgit\b", kind) for kind in kinds[:checkout]))
            self.assertEqual(job["steps"][checkout]["with"], {"fetch-depth": 0})
            self.assertIn("--privileged", job["container"]["options"])

    def test_packages_are_kept_from_where_they_are_made(self):
        made = re.search(r"default: (\S+)", (ROOT / "tests/packages/reproduce").read_text()).group(1)
        kept = [path for job in self.jobs.values() for step in job["steps"]
                if step.get("uses", "").startswith("actions/upload-artifact@")
                for path in step["with"]["path"].split()]
        self.assertTrue(kept)
        for path in kept:
            self.assertEqual(str(pathlib.PurePath(path).parent), made)


if __name__ == "__main__":
    unittest.main()
