#!/usr/bin/python3
"""Fails on British spellings in tracked files and in their names: American ones are used here.

usage: tests/checks/spelling.py [--fix] [FILE...]      default: every tracked text

  --fix  writes the American forms into the files; their names are left

Looks into identifiers too, so `receiveColour` is found.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]

# Where a word of an identifier begins and ends: receiveColour, LEFT_OF_CENTRE.
BEGIN = r"(?:(?<![A-Za-z])|(?<=[a-z])(?=[A-Z]))"
END = r"(?:(?![A-Za-z])|(?<=[a-z])(?=[A-Z]))"
# The British form, with BEGIN for ^ and END for $, and the American one.
FORMS = [(re.compile(british.replace("^", BEGIN).replace("$", END)), american)
         for british, american in (
    (r"((?:[Bb]ehavi|[Cc]ol|[Ff]av|[Ff]lav|[Hh]arb|[Hh]on|[Hh]um|[Nn]eighb|[Vv]ap)o)ur", r"\1r"),
    (r"(BEHAVIO|COLO|NEIGHBO)UR", r"\1R"),
    (r"^([Ll]abo|[Aa]rmo|[Rr]umo)ur", r"\1r"),
    (r"^([Cc]ent|[Ff]ib|[Tt]heat|[Cc]alib)re(?=s?$)", r"\1er"),
    (r"^([Cc]ent)r(?=ed$|ing$)", r"\1er"),
    (r"^(CENT)RE(?=S?$)", r"\1ER"),
    (r"^((?:[Kk]ilo|[Cc]enti|[Mm]illi)?[Mm]et)re(?=s?$)", r"\1er"),
    (r"([Ll]icen|[Dd]efen|[Oo]ffen)ce", r"\1se"),
    (r"^([Gg]r)ey", r"\1ay"),
    (r"^(GR)EY", r"\1AY"),
    (r"([Cc]anonical|[Cc]apital|[Cc]ategor|[Cc]haracter|[Cc]ustom|[Ee]qual|[Ff]inal|[Gg]eneral|"
     r"[Ii]nitial|[Ll]ocal|[Mm]axim|[Mm]inim|[Mm]odern|[Nn]ormal|[Oo]ptim|[Oo]rgan|[Pp]arallel|"
     r"[Rr]andom|[Rr]eal|[Rr]ecogn|[Ss]erial|[Ss]pecial|[Ss]tabil|[Ss]tandard|[Ss]ummar|"
     r"[Ss]ynchron|[Tt]oken|[Uu]til|[Vv]ector|[Vv]isual)is(?=e|ing$|ation)", r"\1iz"),
    (r"^([Aa]nal|[Pp]aral|[Cc]atal)ys(?=e[drs]?$|ing$)", r"\1yz"),
    (r"^([Ll]abel|[Mm]odel|[Ll]evel|[Cc]ancel|[Tt]ravel|[Ss]ignal|[Cc]hannel|[Tt]otal)"
     r"l(?=ed$|ing$|er$)", r"\1"),
    (r"^([Jj]udg)ement", r"\1ment"),
    (r"^([Aa]rt)efact", r"\1ifact"),
    (r"^([Pp]rogram)me(?=s?$)", r"\1"),
    (r"^([Pp]er) cent$", r"\1cent"),
    (r"^([Ww]hil)st$", r"\1e"),
    (r"^([Ff]ulfil)(?=s?$|ment)", r"\1l"),
)]
# Storeys keep their e: the word is that of IFC, and of an option.
# Quoted as they are: the key that a test of scene files has refused, and the units of STEP.
QUOTED = re.compile(r"(\"/?colour\b|\"(?:milli|centi)?metre\")")
# Not our English: drawings, scenes and models, seeds, and this list with its tests.
SKIPPED = re.compile(r"abi/.*\.abi$|tests/golden/.*\.(dxf|json)$|tests/models/.*\.(ifc|obj|mtl|stl|ply|gltf|dae)$|"
                     r"fuzz/(corpus|dictionaries)/|LICENSE$|tests/checks/spelling(_test)?\.py$")


def findings_in(text):
    """The British forms in a text, each with the American one."""
    text = QUOTED.sub("", text)
    return [(match.group(), match.expand(american))
            for british, american in FORMS for match in british.finditer(text)]


def fixed(text):
    """The text with American forms."""
    parts = QUOTED.split(text)
    for british, american in FORMS:
        # Every second part is quoted.
        parts[::2] = [british.sub(american, part) for part in parts[::2]]
    return "".join(parts)


def text_of(path):
    """A file's text, or nothing where it holds something else."""
    try:
        return (ROOT / path).read_text(encoding="utf-8")
    except UnicodeDecodeError:
        return ""


def check(path):
    """The findings in a file and in its name, as lines to print."""
    lines = [f"{path}: the file's name: '{british}', in American '{american}'"
             for british, american in findings_in(path)]
    for number, line in enumerate(text_of(path).splitlines(), 1):
        lines += [f"{path}:{number}: '{british}', in American '{american}'"
                  for british, american in findings_in(line)]
    return lines


def tracked_files():
    listed = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True,
                            stdout=subprocess.PIPE, text=True).stdout
    return [path for path in listed.split("\0")
            if path and (ROOT / path).is_file() and not SKIPPED.match(path)]


def main(arguments):
    paths = [path for path in arguments if path != "--fix"] or tracked_files()
    if "--fix" in arguments:
        for path in paths:
            text = text_of(path)
            if findings_in(text):
                (ROOT / path).write_text(fixed(text), encoding="utf-8")
    lines = [line for path in paths for line in check(path)]
    print("\n".join([*lines, f"spelling: {len(lines)} British spellings"]))
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
