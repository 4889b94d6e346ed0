"""The API reference is made without a warning, and docs/reference.md has an entry for each function in it.

usage: check_reference.py SOURCE_TREE DIRECTORY LIBRARY...

DIRECTORY is where the reference goes. The functions are those of the public headers as Doxygen reads them, and those
that the libraries export. Ends with 77, which skips the test, where Doxygen is not installed.
"""
import pathlib
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree

from pages import names_in, parts_of

# A constructor, destructor or assignment has the entry of its class; nobody calls what is deleted.
SPECIAL = re.compile(r"^(.*?)(\w+)::(~?\2|operator=)$")


def entry_of(name):
    found = SPECIAL.match(name)
    return found[1] + found[2] if found else name


def declared(directory):
    """The entries that the functions of the public headers need."""
    entries = set()
    for path in (directory / "xml").glob("*.xml"):
        for compound in xml.etree.ElementTree.parse(path).getroot().iter("compounddef"):
            is_scope = compound.get("kind") in ("class", "struct", "namespace")
            scope = compound.findtext("compoundname") + "::" if is_scope else ""
            for member in compound.iter("memberdef"):
                is_function = member.get("kind") in ("function", "friend") and member.get("prot") == "public"
                if is_function and not member.findtext("argsstring").endswith("=delete"):
                    entries.add(entry_of(scope + member.findtext("name")))
    return entries


def exported(library):
    """Likewise, of the functions that `library` exports."""
    printed = subprocess.run(["nm", "-DC", "--defined-only", "--without-symbol-versions", library], check=True, capture_output=True,
                             text=True).stdout
    for line in printed.splitlines():
        found = re.match(r"^\S+ T ([^(]+?)(\[abi:\w+\])?(\(.*)?$", line)
        # What one class uses within its headers is not for others.
        if found and found[1] not in ("kt_platform::CFile::WriteSlow", "kt_platform::CFile::MakeRoom"):
            yield entry_of(found[1].removeprefix("kt_platform::"))


def main():
    source, directory, *libraries = map(pathlib.Path, sys.argv[1:])
    if not shutil.which("doxygen"):
        print("left out: doxygen is not installed")
        sys.exit(77)
    subprocess.run([source / "scripts" / "api-reference", directory], check=True)
    page = source / "docs" / "reference.md"
    entries = {name for part in parts_of(page) if part.level == 3 for name in names_in(part.title)}
    functions = declared(directory)
    assert len(functions) > 100, functions
    faults = [f"{page}: {name} has no entry" for name in sorted(functions - entries)]
    faults += [f"{page}: {name} is no public function" for name in sorted(entries - functions)]
    for library in libraries:
        names = set(exported(library))
        assert len(names) > 10, names
        faults += [f"{library}: {name} is exported and not in the reference" for name in sorted(names - functions)]
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
