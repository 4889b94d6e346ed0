"""Reads the pages of the SDK: headings, and the code that is indented below them."""
import re
from dataclasses import dataclass, field



@dataclass
class Part:
    """What stands under one heading, up to the next of any level."""

    level: int
    title: str
    line: int
    # Each block: the line that it begins at, and its text.
    blocks: list = field(default_factory=list)


def parts_of(path):
    parts = []
    block = None
    for number, line in enumerate(path.read_text(encoding="utf-8").split("\n"), start=1):
        heading = re.match(r"^(#+) (.*)$", line)
        if heading:
            parts.append(Part(len(heading[1]), heading[2], number))
            block = None
        elif line.startswith("    "):
            if block is None:
                block = (number, [])
                parts[-1].blocks.append(block)
            block[1].append(line[4:])
        elif not line and block is not None:
            block[1].append("")
        else:
            block = None
    for part in parts:
        part.blocks = [(number, "\n".join(lines).strip("\n")) for number, lines in part.blocks]
    return parts


def names_in(title):
    """The functions that a heading names: `KtMatrix::Init`, `KtMatrix::Data`."""
    return re.findall(r"`([^`]+)`", title)
