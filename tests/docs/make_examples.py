"""Makes a program of a page's examples, each a function, and says in it where they come from.

usage: make_examples.py PAGE PROGRAM.cpp PROGRAM.c

A part of level 2 may have a block that stands above the examples behind it: the first such part in C++, or one in
C, which begins with the header of the C API. Each part of level 3 is an example of the functions that its heading
names in backticks, all of which must occur in it.
"""
import pathlib
import re
import sys

from pages import names_in, parts_of

MAIN = """
#include <cstdlib>
#include <exception>

int main() {
  const std::filesystem::path work = std::filesystem::current_path() / "reference_examples";
  for (const Example& example : kExamples) {
    std::fprintf(stderr, "%s\\n", example.name);
    // Each in a directory of its own.
    std::filesystem::remove_all(work);
    std::filesystem::create_directory(work);
    std::filesystem::current_path(work);
    try {
      example.run();
    } catch (const std::exception& error) {
      std::fprintf(stderr, "docs/reference.md: %s: %s\\n", example.name, error.what());
      return EXIT_FAILURE;
    }
    std::filesystem::current_path(work.parent_path());
  }
  std::filesystem::remove_all(work);
}
"""


def is_c(text):
    return "<ktscene/ktscene_c.h>" in text


def check_names(page, part, text):
    """Fails for a heading that names what its example does not use."""
    for name in names_in(part.title):
        last = name.split("::")[-1]
        word = last.removeprefix("operator").split(" ")[0] if last.startswith("operator") else rf"\b{last}\b"
        if last.startswith("operator"):
            word = re.escape(word) if word else ""
        if not re.search(word, text):
            sys.exit(f"{page}:{part.line}: the example does not use {name}")


def main():
    page, *outputs = map(pathlib.Path, sys.argv[1:])
    sources = {False: [], True: []}
    examples = []
    in_c = False
    for part in parts_of(page):
        text = "\n".join(text for _, text in part.blocks)
        if part.level < 3:
            if part.blocks:
                in_c = is_c(text)
                [(line, text)] = part.blocks
                sources[in_c] += [f'#line {line} "{page}"', text]
            continue
        if not text:
            sys.exit(f"{page}:{part.line}: {part.title} has no example")
        check_names(page, part, text)
        function = f"example_{part.line}"
        examples.append((part.title.replace("`", ""), function, in_c))
        sources[in_c].append(f"void {function}(void);\nvoid {function}(void) {{")
        for line, text in part.blocks:
            sources[in_c] += [f'#line {line} "{page}"', text]
        sources[in_c].append("}")
    sources[False] += [f'extern "C" void {function}(void);' for _, function, in_c in examples if in_c]
    sources[False].append("struct Example {\n  const char* name;\n  void (*run)();\n};\nconst Example kExamples[] = {")
    sources[False] += [f'    {{"{title}", {function}}},' for title, function, _ in examples]
    sources[False] += ["};", MAIN]
    for output, in_c in zip(outputs, (False, True)):
        output.write_text("\n".join(sources[in_c]) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
