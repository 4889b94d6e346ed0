"""Every public header refuses settings that the libraries were not built with, in its first message.

usage: refused_settings.py COMPILER SOURCE_TREE
"""
import pathlib
import re
import subprocess
import sys

PUBLIC = re.compile(r"^\s*PATTERN (\w+\.h)\)?$", re.MULTILINE)
SETTINGS = {
    "-std=c++17": "KtScene needs C++20: compile with -std=c++20 or later",
    "-D_GLIBCXX_DEBUG": "KtScene's libraries have no _GLIBCXX_DEBUG containers",
    "-D_GLIBCXX_USE_CXX11_ABI=0": "KtScene's libraries use the string ABI of C++11",
    "-D_GLIBCXX_ASSERTIONS": None,
}


def first_error(compiler, source, header, setting):
    done = subprocess.run(
        [compiler, "-std=c++20", setting, "-I", source, "-x", "c++", "-fsyntax-only", "-"],
        input=f'#include "{header}"\n', capture_output=True, text=True)
    errors = [line for line in done.stderr.splitlines() if "error: " in line]
    return errors[0] if errors else None


def main():
    compiler, source = sys.argv[1], pathlib.Path(sys.argv[2])
    listed = PUBLIC.findall((source / "cmake" / "install.cmake").read_text(encoding="utf-8"))
    headers = [f"{folder}/{name}" for folder in ("ktscene", "platform") for name in set(listed)
               if (source / folder / name).exists()]
    assert len(headers) > 20, headers
    # One header of each library with every setting, and every header with one.
    pairs = [(header, setting) for header in ("ktscene/kt_traverser.h", "platform/cfile.h")
             for setting in SETTINGS]
    pairs += [(header, "-std=c++17") for header in headers
              if header not in ("ktscene/kt_reserved.h", "ktscene/kt_run_code.h")]
    for header, setting in pairs:
        error = first_error(compiler, source, header, setting)
        expected = SETTINGS[setting]
        right = error is None if expected is None else error is not None and expected in error
        assert right, (header, setting, error)


if __name__ == "__main__":
    main()
