"""One-token mutants of C++ sources: where they can be made and what the source is with one."""

import dataclasses
import itertools
import re


@dataclasses.dataclass(frozen=True)
class Mutant:
    """Columns `begin` to `end` of a line replaced by `token`."""

    path: str
    line: int  # from 1
    text: str  # of the line
    begin: int
    end: int
    token: str
    kind: str

    @property
    def before(self) -> str:
        return self.text.strip()

    @property
    def after(self) -> str:
        return self._mutated_text().strip()

    def __str__(self) -> str:
        return f"{self.path}:{self.line} {self.kind}: {self.before}  ->  {self.after}"

    def mutated(self, source: str) -> str:
        """The file's text with the mutation."""
        lines = source.splitlines(keepends=True)
        assert lines[self.line - 1] == self.text
        lines[self.line - 1] = self._mutated_text()
        return "".join(lines)

    def _mutated_text(self) -> str:
        return self.text[: self.begin] + self.token + self.text[self.end :]


# The spaces around it tell an operator from a template's bracket, a reference or a pointer, since
# clang-format formats the sources.
OPERATORS = {
    "comparison": {
        " < ": (" <= ", " >= "),
        " <= ": (" < ", " > "),
        " > ": (" >= ", " <= "),
        " >= ": (" > ", " < "),
        " == ": (" != ",),
        " != ": (" == ",),
    },
    "arithmetic": {
        " + ": (" - ",),
        " - ": (" + ",),
        " * ": (" / ",),
        " / ": (" * ",),
        " % ": (" * ",),
        " += ": (" -= ",),
        " -= ": (" += ",),
        "++": ("--",),
        "--": ("++",),
    },
    "bits": {
        " & ": (" | ",),
        " | ": (" & ",),
        " >> ": (" << ",),
        " << ": (" >> ",),
        " |= ": (" &= ",),
    },
    "logic": {" && ": (" || ",), " || ": (" && ",)},
    "choice": {"std::min": ("std::max",), "std::max": ("std::min",)},
}

PATTERNS = [
    ("truth", re.compile(r"\b(?:true|false)\b"), lambda t: "false" if t == "true" else "true"),
    ("negation", re.compile(r"(?<![\w)\]])!(?=[\w(*])"), lambda t: ""),
    ("constant", re.compile(r"(?<![\w.+\-])\d+(?![\w.])"), lambda t: str(int(t) + 1)),
    ("constant", re.compile(r"(?<![\w.])[1-9]\d*(?![\w.])"), lambda t: str(int(t) - 1)),
    ("constant", re.compile(r"(?<![\w.])\d+\.\d+(?![\w.])"), lambda t: str(float(t) + 1)),
    # An index, not a lambda's captures, which no name precedes.
    ("index", re.compile(r"(?<=[\w)])\[[^\[\]]+\]"), lambda t: t[:-1] + " + 1]"),
    ("index", re.compile(r"(?<=[\w)])\[[^\[\]]+\]"), lambda t: t[:-1] + " - 1]"),
]

# A statement on one line that calls or assigns, or leaves: not a declaration.
STATEMENT = re.compile(
    r"(?:(?:\+\+|--|\*)?[A-Za-z_]\w*(?:(?:\.|->|::)\w+|\[[^\]]*\])*(?:\+\+|--)?"
    r"(?:\(.*\)| [-+*/|&]?= .*)?|break|continue|return);"
)
NO_STATEMENT = re.compile(r"(?:return \w|using|static_assert|typedef|namespace)")
STRING = re.compile(r'u?"(?:[^"\\]|\\.)*"')
SKIPPED_LINE = re.compile(r"\s*(?:#|static_assert|template\b|using\b|friend\b|//)")
# Lines that only reserve or keep memory, or prefetch it: no drawing depends on them.
SPEED_LINE = re.compile(r"capacity\(\)|CapacityBytes|kKeptBytes|\breserve\(|reserveLarge\(|"
                        r"[Pp]refetch\(")


def _blank(match: re.Match) -> str:
    return " " * len(match.group())


def _edits_of_strings(line):
    """Increments each digit of the texts that go into a drawing."""
    for string in STRING.finditer(line):
        for digit in re.finditer(r"\d", string.group()):
            begin = string.start() + digit.start()
            yield begin, begin + 1, str((int(digit.group()) + 1) % 10), "text"


def _edits_of_code(code):
    for kind, table in OPERATORS.items():
        for operator, others in table.items():
            for match in re.finditer(re.escape(operator), code):
                for other in others:
                    yield *match.span(), other, kind
    for kind, pattern, change in PATTERNS:
        for match in pattern.finditer(code):
            yield *match.span(), change(match.group()), kind


def _edits_of_statement(line, code, before):
    statement = code.strip()
    if (before.endswith((";", "{", "}", ":")) and STATEMENT.fullmatch(statement)
            and not NO_STATEMENT.match(statement)):
        yield len(line) - len(line.lstrip()), len(line.rstrip()), ";", "dropped statement"


def mutants_of(path: str, source: str) -> list[Mutant]:
    """All mutants of the file at `path`, in its order."""
    mutants = {}
    before = ";"
    for number, line in enumerate(source.splitlines(keepends=True), 1):
        if SKIPPED_LINE.match(line) or SPEED_LINE.search(line):
            continue
        code = re.sub(r"//.*", _blank, STRING.sub(_blank, line.rstrip("\n")))
        for edit in itertools.chain(_edits_of_strings(line), _edits_of_code(code),
                                    _edits_of_statement(line, code, before)):
            mutants[Mutant(path, number, line, *edit)] = None
        before = code.strip() or before
    return list(mutants)
