"""Manual pages, completion in bash, zsh and fish, NO_COLOR and the configuration file, as users meet them.

usage: check_habits.py --program BUILD/bin/dxf2d --manuals BUILD/manuals TEST

TEST is one of manuals, bash, zsh, fish, color, config, json, catalog and german.
"""
import argparse
import json
import os
import pathlib
import pty
import re
import select
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[3]
CUBE = """solid
facet normal 0 0 1
outer loop
vertex 0 0 0
vertex 2 0 0
vertex 0 2 0
endloop
endfacet
endsolid
"""
SCENE = {"nodes": [{"graphicName": "a", "objectId": "A", "realObjectId": "A", "geometry": [{"faceSet": {
    "coords": [0, 0, 0, 2, 0, 0, 2, 2, 0], "indices": [0, 1, 2, -7]}}]}]}

LITERAL = re.compile(r'"(?:[^"\\\n]|\\.)*"')
# What xgettext looks for: calls that translate, and those that hand what they are given to one.
KEYWORDS = ("tr", "trn:1,2", "marked", "counted:2,3", "Add:2,3", "noteCount:3,4", "runAll:2",
            "beginStage", "refuse")
MARKING = {keyword.split(":")[0] for keyword in KEYWORDS}
# What takes sentences for users.
SPEAKING = re.compile(r"\w*Error|Failure|Message|[fF]ail\w*|note|blame|NoteFailure")
# Errors that only a fault of this program shows.
INTERNAL = {"logic_error", "invalid_argument", "runtime_error"}
# Scripts of shells, requests of the manual's language, names of formats, and what scenes that plug-ins
# are walked over contain.
NO_SENTENCES = {"completion.cpp", "manual_page.cpp", "stated_unit.cpp", "up_axis.cpp",
                "inspection_scenes.cpp"}
# In reports and drawings, asked of shells and assimp, a part of a text that help lists, and for those
# who start a worker themselves.
OTHER_TEXTS = {"scene file", "source <(dxf2d completion bash)", "a whole number from ", "Solid line", "No suitable reader found",
               "dxf2d-worker is a part of dxf2d, which starts it\\n"}


def openCalls(before):
    """The names before the parentheses and braces that are open at the end of a piece of code, from the
    innermost on, up to the last end of a statement."""
    plain = LITERAL.sub('""', before[-3000:])
    depth = 0
    for at in range(len(plain) - 1, -1, -1):
        if plain[at] in ")}":
            depth += 1
        elif plain[at] == ";" and depth == 0:
            return
        elif plain[at] in "({":
            if depth == 0:
                yield re.search(r"(\w*)\s*$", plain[:at]).group(1)
            depth = max(depth - 1, 0)


class Checks:
    def __init__(self, program, manuals, work):
        self.program = program
        self.manuals = manuals
        self.work = work
        self.environment = {
            "PATH": f"{program.parent}:/usr/bin:/bin", "HOME": str(work), "LC_ALL": "C.UTF-8",
            "TERM": "xterm", "ZDOTDIR": str(work), "XDG_CONFIG_HOME": str(work / "config")}

    def run(self, *words, expect=0, **more):
        done = subprocess.run([str(word) for word in words], cwd=self.work, text=True, check=False,
                              env={**self.environment, **more}, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE)
        assert done.returncode == expect, f"{words}: {done.returncode}\n{done.stdout}{done.stderr}"
        return done

    def dxf2d(self, *words, **more):
        return self.run(self.program, *words, **more)

    # ---- Manual pages

    def manuals_test(self):
        help_text = self.dxf2d("help").stdout
        listed = help_text.split("Commands:\n")[1].split("\nOptions:")[0]
        commands = re.findall(r"^  ([a-z]+)", listed, re.MULTILINE)
        pages = sorted(path.name for path in (self.manuals / "man1").iterdir())
        assert pages == sorted(["dxf2d.1"] + [f"dxf2d-{name}.1" for name in commands]), pages
        assert {"export", "help", "completion"} <= set(commands), commands
        for page in pages:
            found = self.run("mandoc", "-T", "lint", self.manuals / "man1" / page)
            assert found.stdout == "" and found.stderr == "", found
        # The page says what the help says, and nothing gets lost.
        for command in commands:
            page = self.run("mandoc", "-T", "utf8", self.manuals / "man1" / f"dxf2d-{command}.1").stdout
            page = re.sub(".\b", "", page).replace("\N{HYPHEN}", "-")
            for option in re.findall(r"^  (?:-\w, )?(--[\w-]+)", self.dxf2d("help", command).stdout,
                                     re.MULTILINE):
                assert re.search(rf"{option}\b", page), f"{option} is not in the page of {command}"

    # ---- Completion

    def bash_test(self):
        script = self.manuals / "dxf2d.bash"

        def complete(*words):
            listed = " ".join(f"'{word}'" for word in words)
            code = (f"source '{script}'; compopt() {{ :; }}; COMP_WORDS=({listed});"
                    "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _dxf2d; printf '%s\\n' \"${COMPREPLY[@]}\"")
            return self.run("bash", "--norc", "-c", code).stdout.split("\n")[:-1]

        self.check_completions(complete)
        assert complete("dxf2d", "export", "--hidden", "=", "re") == ["remove"]
        assert complete("dxf2d", "export", "--hidden", "=") == ["show", "remove", "dash"]
        # Typed, with the key that completes.
        typed = self.type(["bash", "--norc", "-i"], f"source '{script}'; PS1='rea''dy> '\n", "dxf2d export --hidd\t", "--hidden")
        assert "--hidden" in typed, typed

    def fish_test(self):
        script = self.manuals / "dxf2d.fish"

        def complete(*words):
            line = " ".join(words).replace("'", "\\'")
            listed = self.run("fish", "--no-config", "-c",
                              f"source '{script}'; complete -C '{line}'").stdout
            return [row.split("\t")[0] for row in listed.split("\n") if row]

        self.check_completions(complete)

    def check_completions(self, complete):
        (self.work / "a model.stl").touch()
        assert "export" in complete("dxf2d", "") and "completion" in complete("dxf2d", "")
        assert complete("dxf2d", "exp") == ["export"]
        assert complete("dxf2d", "export", "--hid") == ["--hidden"]
        assert sorted(complete("dxf2d", "export", "--hidden", "")) == ["dash", "remove", "show"]
        assert complete("dxf2d", "export", "--view", "bo") == ["bottom"]
        assert complete("dxf2d", "help", "fin") == ["finish"]
        assert complete("dxf2d", "completion", "z") == ["zsh"]
        files = complete("dxf2d", "export", "a")
        assert len(files) == 1 and files[0].replace("\\", "") == "a model.stl", files
        outputs = complete("dxf2d", "export", "-o", "a")
        assert len(outputs) == 1 and outputs[0].replace("\\", "") == "a model.stl", outputs
        assert "a model.stl" not in complete("dxf2d", "export", "--scale", "")

    def zsh_test(self):
        (self.work / "a model.stl").touch()
        functions = self.work / "functions"
        functions.mkdir()
        (functions / "_dxf2d").write_text((self.manuals / "_dxf2d").read_text())
        start = f"fpath=('{functions}' $fpath); autoload -Uz compinit; compinit -u -D; PS1='rea''dy> '\n"
        for typed, expected in (
                ("dxf2d exp\t", "dxf2d export "), ("dxf2d export --hidd\t", "--hidden"),
                ("dxf2d export --hidden=re\t", "--hidden=remove"),
                ("dxf2d export --view bo\t", "--view bottom"), ("dxf2d help fin\t", "help finish"),
                ("dxf2d export -o a\t", "-o a\\ model.stl"), ("dxf2d export a\t", "a\\ model.stl"),
                ("dxf2d export --creases\t", "--creases")):
            shown = self.type(["zsh", "-f", "-i"], start, typed, expected)
            assert expected in shown, f"{typed!r}: {shown!r}"

    def type(self, shell, start, line, expected):
        """What a terminal shows of the line once the shell has completed it."""
        pid, terminal = pty.fork()
        if pid == 0:
            os.chdir(self.work)
            os.execvpe(shell[0], shell, self.environment)
        try:
            os.write(terminal, start.encode())
            self.read_until(terminal, lambda text: "ready> " in text, 15.0)
            os.write(terminal, line.encode())
            return self.read_until(terminal, lambda text: expected in text, 15.0)
        finally:
            os.kill(pid, 9)
            os.waitpid(pid, 0)
            os.close(terminal)

    @staticmethod
    def read_until(terminal, is_enough, seconds):
        """What the terminal shows, without escape sequences."""
        shown = ""
        end = time.monotonic() + seconds
        while time.monotonic() < end and not is_enough(shown):
            if select.select([terminal], [], [], 0.1)[0]:
                try:
                    shown += os.read(terminal, 65536).decode(errors="replace")
                except OSError:
                    break
                shown = re.sub(r"\x1b(\[[0-9;?]*[ -/]*[@-~]|[=>])", "", shown)
        return shown

    # ---- Terminals

    def color_test(self):
        def on_terminal(**more):
            pid, terminal = pty.fork()
            if pid == 0:
                os.execve(self.program, ["dxf2d", "help", "export"], {**self.environment, **more})
            shown = b""
            try:
                while data := os.read(terminal, 65536):
                    shown += data
            except OSError:
                pass
            os.waitpid(pid, 0)
            return shown
        assert b"\x1b[1m" in on_terminal()
        assert b"\x1b" not in on_terminal(NO_COLOR="1")
        assert b"\x1b" not in on_terminal(TERM="dumb")
        assert "\x1b" not in self.dxf2d("help", "export").stdout

    # ---- Defaults

    def config_test(self):
        (self.work / "cube.stl").write_text(CUBE)
        (self.work / "scene.json").write_text(json.dumps(SCENE))
        (self.work / "config").mkdir()
        config = self.work / "config" / "dxf2d.toml"
        plain = self.export("cube.stl", "plain.dxf")
        scene = self.export("scene.json", "scene.dxf")
        config.write_text("[export]\nrelease = \"r2000\"\nscale = 10\n")
        assert "r2000" in self.dxf2d("export", "--show-config").stdout
        assert self.export("cube.stl", "configured.dxf") != plain
        assert self.export("cube.stl", "not.dxf", "--no-config") == plain
        assert b"AC1015" not in self.export("cube.stl", "given.dxf", "--release", "plain")
        # Scenes are drawn exactly as they are, also beside models.
        assert self.export("scene.json", "scene2.dxf") == scene
        self.dxf2d("export", "cube.stl", "scene.json", "-o", "both/")
        assert (self.work / "both" / "scene.dxf").read_bytes() == scene
        assert (self.work / "both" / "cube.dxf").read_bytes() == (
            self.work / "configured.dxf").read_bytes()
        # What is in the current directory is anybody's.
        (self.work / "dxf2d.toml").write_text("[export]\nscale = 7\n")
        config.unlink()
        assert self.export("cube.stl", "here.dxf") == plain
        for forbidden in ("plugin = \"x\"", "importer = \"x\"", "allow-outside = true", "force = true",
                          "output = \"x\"", "from-file = \"x\"", "codepage = 1252"):
            config.write_text(f"[export]\n{forbidden}\n")
            error = self.dxf2d("export", "cube.stl", "-o", "never.dxf", expect=2).stderr
            assert "cannot be set in a configuration file" in error, error
        config.unlink()

    def export(self, model, drawing, *options):
        self.dxf2d("export", model, "-o", drawing, *options)
        return (self.work / drawing).read_bytes()

    def json_test(self):
        (self.work / "cube.stl").write_text(CUBE)
        record = json.loads(self.dxf2d("export", "cube.stl", "-o", "a.dxf", "--json", "--report",
                                       "r.jsonl").stdout)
        assert record["outcome"] == "drawn" and record["vertices"] == 4, record
        assert record == json.loads((self.work / "r.jsonl").read_text())
        done = self.dxf2d("export", "none.stl", "-o", "b.dxf", "--json", expect=3)
        assert json.loads(done.stdout)["exit_code"] == 3 and done.stderr, done
        done = self.dxf2d("export", "cube.stl", "-o", "-", "--json")
        assert json.loads(done.stderr)["output"] == "-" and done.stdout.endswith("EOF\n"), done
        assert json.loads(self.dxf2d("report", "--json", "r.jsonl").stdout)["drawn"] == 1
        assert isinstance(json.loads(self.dxf2d("formats", "--json").stdout), list)
        assert self.dxf2d("export", "cube.stl", "-o", "q.dxf", "-q").stdout == ""
        assert "done in" in self.dxf2d("preview", "-v", "a.dxf", "-o", "a.png").stderr
        assert self.dxf2d("preview", "-q", "a.dxf", "-o", "b.png").stderr == ""


    # ---- Translations

    def catalog_test(self):
        """Every text that is marked, and every text of the help, is in each catalog and translated."""
        template = self.work / "help.pot"
        template.write_text(self.dxf2d("help", "--messages").stdout)
        sources = [str(path) for path in sorted((ROOT / "app").rglob("*"))
                   if path.suffix in (".cpp", ".h")]
        self.run("xgettext", "-C", *(f"-k{keyword}" for keyword in KEYWORDS), "--from-code=UTF-8",
                 "-o", "marked.pot", *sources)
        self.run("msgcat", "help.pot", "marked.pot", "-o", "all.pot")
        assert (self.work / "all.pot").read_text().count("\nmsgid ") > 600
        for catalog in sorted((ROOT / "app" / "cli" / "po").glob("*.po")):
            self.run("msgfmt", "--check", "-o", "checked.mo", catalog)
            # Also says which texts of the catalog are used no longer.
            found = self.run("msgcmp", catalog, "all.pot")
            assert found.stderr == "", found.stderr
            self.check_placeholders(catalog)
        self.check_marks(template.read_text())

    @staticmethod
    def check_placeholders(catalog):
        text = re.sub(r'"\n"', "", catalog.read_text(encoding="utf-8"))
        pairs = re.findall(r'^msgid "(.+)"\nmsgstr "(.+)"$', text, re.MULTILINE)
        for one, many, *targets in re.findall(
                r'^msgid "(.+)"\nmsgid_plural "(.+)"\nmsgstr\[0\] "(.+)"\nmsgstr\[1\] "(.+)"$', text,
                re.MULTILINE):
            pairs += [(one, many), *((one, target) for target in targets)]
        for source, target in pairs:
            for number in range(1, 10):
                assert (f"%{number}" in source) == (f"%{number}" in target), source

    @staticmethod
    def check_marks(help_text):
        """Every literal that reads like prose is marked or listed by help, and so is every word of what
        takes sentences."""
        listed = {text.replace("\\n", "") for text in re.findall(r'msgid "(.*)"', help_text)}
        count = 0
        for path in sorted((ROOT / "app").rglob("*")):
            if path.suffix not in (".cpp", ".h"):
                continue
            code = re.sub(r"//[^\n]*|#include[^\n]*", "", path.read_text(encoding="utf-8"))
            code = re.sub(r'"\s*\n\s*"', "", code)
            for match in LITERAL.finditer(code):
                text = match.group()[1:-1]
                calls = list(openCalls(code[:match.start()]))
                if calls and calls[0] in MARKING:
                    count += 1
                    continue
                if text in OTHER_TEXTS or text.startswith("--") or INTERNAL & set(calls):
                    continue
                spoken = any(SPEAKING.fullmatch(call) for call in calls[:2])
                isWord = re.search(r"[a-z]{3,}", text) is not None
                isProse = (re.search(r"[a-z]{2,} [a-z]{2,}", text) is not None
                           and path.name not in NO_SENTENCES and not text.startswith("dxf2d "))
                assert not (spoken and isWord) and (not isProse or text in listed), (
                    f"{path.name}: {match.group()} is not marked")
        assert count > 400, count

    def german_test(self):
        german = {"LC_ALL": "C.UTF-8", "LANGUAGE": "de"}
        assert self.dxf2d("help", "export", **german).stdout.startswith("Aufruf: dxf2d export")
        error = self.dxf2d("exprt", expect=2, **german).stderr
        assert "unbekannter Befehl 'exprt'; meinten Sie export?" in error, error
        error = self.dxf2d("export", "a.stl", "-o", "a.dxf", "--hidden", "x", expect=2, **german).stderr
        assert "erwartet wird show, remove oder dash" in error, error
        self.check_german_exports(german)
        self.check_german_inspections(german)
        # In any language without a catalog: English.
        assert "Usage: " in self.dxf2d("help", LC_ALL="C.UTF-8", LANGUAGE="fr").stdout
        for command in ("", "export", "view"):
            page = self.work / "page.1"
            page.write_text(self.dxf2d("help", "--man", *command.split(), **german).stdout)
            found = self.run("mandoc", "-T", "lint", page)
            assert found.stdout == "" and found.stderr == "", found
            assert "BEZEICHNUNG" in page.read_text()
        # A tree that was moved takes its catalog with it.
        moved = self.work / "moved here"
        (moved / "bin").mkdir(parents=True)
        (moved / "bin" / "dxf2d").write_bytes(self.program.read_bytes())
        (moved / "bin" / "dxf2d").chmod(0o755)
        catalog = moved / "share" / "locale" / "de" / "LC_MESSAGES" / "dxf2d.mo"
        catalog.parent.mkdir(parents=True)
        environment = {**german, "LD_LIBRARY_PATH": str(self.program.parent.parent / "lib")}
        self.run("msgfmt", "-o", catalog, ROOT / "app" / "cli" / "po" / "de.po")
        assert "Aufruf: " in self.run(moved / "bin" / "dxf2d", "help", **environment).stdout
        catalog.unlink()
        assert "Usage: " in self.run(moved / "bin" / "dxf2d", "help", **environment).stdout

    def check_german_inspections(self, german):
        """Reports on plug-ins and scenes: printed ones are in German, JSON is not."""
        plugin = next(path for path in (self.program.parent.parent / "lib").rglob("dxf2d_plugin.so"))
        report = self.dxf2d("inspect", plugin, **german).stdout
        assert report.startswith("Beschreibung:\n  Name       "), report
        assert re.search(r"^   9  Flächengeometrie             leer$", report, re.MULTILINE), report
        assert re.search(r"^  zweiter Durchlauf      bestanden$", report, re.MULTILINE), report
        assert "passes" not in report and "random" not in report, report
        assert self.dxf2d("inspect", "--json", plugin, **german).stdout == (
            self.dxf2d("inspect", "--json", plugin).stdout)
        # One that leaves files open, in the language of the user and, for programs, in English.
        fault, title = ("gibt true für eine Datei zurück, die nicht geschrieben werden kann",
                        "nicht anlegbare Datei")
        if (faulty := plugin.parent.parent / "tests/app/inspect/inspected_writes_nothing.so").exists():
            failed = self.dxf2d("inspect", faulty, expect=8, **german).stdout
            assert re.search(rf"^  {title} +nicht bestanden: {fault}$", failed, re.MULTILINE), failed
            told = [self.dxf2d("inspect", "--json", faulty, expect=8, **more).stdout
                    for more in ({}, german)]
            assert told[0] == told[1] and "returns true for a file" in told[0], told
        (self.work / "scene.json").write_text(json.dumps(SCENE))
        assert self.dxf2d("inspect", "scene.json", **german).stdout == "scene.json: keine Befunde\n"

    def check_german_exports(self, german):
        """What workers say is in German, too; what programs read is not, and no drawing depends on it."""
        (self.work / "cube.stl").write_text(CUBE)
        (self.work / "empty.stl").write_text("solid\nendsolid\n")
        summary = self.dxf2d("export", "cube.stl", "-o", "german.dxf", **german).stdout
        assert "1 Objekt (0 Instanzen geteilt), 1 Teil, 1 Polylinie, 4 Eckpunkte" in summary, summary
        assert "ausgelassen: nichts" in summary, summary
        self.dxf2d("export", "cube.stl", "-o", "english.dxf")
        assert (self.work / "german.dxf").read_bytes() == (self.work / "english.dxf").read_bytes()
        error = self.dxf2d("export", "none.stl", "-o", "a.dxf", expect=3, **german).stderr
        assert error == ("dxf2d: none.stl: kann nicht gelesen werden: es gibt keine solche Datei; "
                         "den Namen prüfen\n"), error
        error = self.dxf2d("export", "cube.stl", "-o", "no/a.dxf", expect=5, **german).stderr
        assert "das Verzeichnis 'no' gibt es nicht; es anlegen oder ein anderes wählen" in error, error
        error = self.dxf2d("finish", "german.dxf", "--units", "mm", "-o", "f.dxf", expect=2, **german).stderr
        assert "ihre Einheiten mit --source-units angeben" in error, error
        # Reports and JSON.
        told = [self.dxf2d("export", "none.stl", "empty.stl", "cube.stl", "-o", language, "--report",
                           f"{language}.jsonl", expect=10, **more).stderr
                for language, more in (("en", {}), ("de", german))]
        assert told[0] != told[1] and "2 von 3 Modellen wurden nicht gezeichnet" in told[1], told[1]
        for name in ("sentence", "outcome", "repairs", "skipped", "reader"):
            said = [[json.loads(line).get(name) for line in sorted((self.work / f"{language}.jsonl")
                                                                   .read_text().splitlines())]
                    for language in ("en", "de")]
            assert said[0] == said[1], said
        assert self.dxf2d("formats", "--json", **german).stdout == self.dxf2d("formats", "--json").stdout
        totals = self.dxf2d("report", "de.jsonl", **german).stdout
        assert totals.startswith("3 Eingaben: 1 gezeichnet, 0 ausgelassen, 2 fehlgeschlagen\n"), totals


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, type=pathlib.Path)
    parser.add_argument("--manuals", required=True, type=pathlib.Path)
    parser.add_argument("test")
    args = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="dxf2d-habits-") as work:
        checks = Checks(args.program.resolve(), args.manuals.resolve(), pathlib.Path(work))
        getattr(checks, f"{args.test}_test")()


if __name__ == "__main__":
    sys.exit(main())
