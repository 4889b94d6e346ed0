"""The libraries export what their public headers declare, under a version each, and nothing else.

usage: check_exports.py SOURCE_TREE [LIBRARY VERSION]...
"""
import pathlib
import re
import subprocess
import sys

PUBLIC = re.compile(r"^\s*PATTERN (\w+\.h)\)?$", re.MULTILINE)
# A defined symbol: its name in C++, and its version.
SYMBOL = re.compile(r"^\S* *[A-Zuv] (.*?)(?:@@?(\S+))?$")


def public_names(source):
    """Every identifier of the installed headers."""
    names = set()
    for header in PUBLIC.findall((source / "cmake" / "install.cmake").read_text(encoding="utf-8")):
        for folder in ("ktscene", "platform"):
            path = source / folder / header
            if path.exists():
                names.update(re.findall(r"~?\w+", path.read_text(encoding="utf-8")))
    return names


def unqualified(name):
    """KtTraverser::Walk(KtScene&) const -> ["KtTraverser", "Walk"]."""
    name = re.sub(r"^(typeinfo name|typeinfo|vtable) for ", "", name)
    name = re.sub(r"\[abi:\w+\]", "", name)
    return name.split("(")[0].split("::")


def faults(library, versions, names):
    printed = subprocess.run(["nm", "-DC", "--defined-only", "--with-symbol-versions", library],
                             check=True, capture_output=True, text=True).stdout
    exported = 0
    for line in printed.splitlines():
        name, version = SYMBOL.match(line).groups()
        if name in versions:
            continue
        exported += 1
        if version not in versions:
            yield f"{library}: {name} has no version"
        for part in unqualified(name):
            if not part.startswith("operator") and part not in names:
                yield f"{library}: {name} is exported, and no public header has {part}"
    assert exported > 20, (library, exported)


def main():
    source = pathlib.Path(sys.argv[1])
    names = public_names(source)
    found = []
    for library, version in zip(sys.argv[2::2], sys.argv[3::2]):
        found.extend(faults(library, version.split(","), names))
    print("\n".join(found))
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
