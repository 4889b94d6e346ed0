#!/usr/bin/env python3
"""Checks that rooms include only what they may.

    check_layering.py --source DIRECTORY --rooms FILE [--not-built FOLDER]...

A room is a folder with a row of its own in the table of docs/architecture.md. FILE lists the rooms of
the build as CMake knows them, one a line, "folder:used folder,used folder". Prints one line for each
violation of these rules and exits with 1 if there is one:

  - the table and the build have the same rooms, with the same rooms that each may use;
  - a file includes only files of its own room and of those in its row;
  - rooms do not use, and files do not include, each other in a circle. A header and its sources
    (x.h, x.cpp, x_posix.cpp, x_win32.cpp) count as one file.

--not-built names a folder that this build leaves out: its rooms are compared with the table only.
"""
import argparse
import os
import re
import sys

ROW = re.compile(r"^\| *`([^`]+)/` *\|.*\|([^|]*)\|$")
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
SOURCE = (".h", ".cpp")
UNRESTRICTED = ("everything", "the SDK")


def table_rows(page):
    """The rows of rooms in the text of the architecture page: {folder: set of used folders}."""
    rows = {}
    for line in page.splitlines():
        match = ROW.match(line)
        if match and match.group(2).strip() not in UNRESTRICTED:
            rows[match.group(1)] = set(re.findall(r"`([^`]+)/`", match.group(2)))
    return rows


def build_rooms(text):
    """The rooms in the list that CMake wrote: {folder: set of used folders}."""
    rooms = {}
    for line in filter(None, text.splitlines()):
        folder, _, used = line.partition(":")
        rooms[folder] = set(filter(None, used.split(",")))
    return rooms


def is_below(path, folder):
    return path == folder or path.startswith(folder + "/")


def room_of(path, rooms):
    """The innermost room that holds the file, None if it is in none."""
    return max((room for room in rooms if path.startswith(room + "/")), key=len, default=None)


def files_of_rooms(source, rooms):
    """The sources below the rooms' folders: {path: its text}."""
    files = {}
    for top in sorted({room.split("/")[0] for room in rooms}):
        for directory, _, names in os.walk(os.path.join(source, top)):
            for name in names:
                if name.endswith(SOURCE):
                    full = os.path.join(directory, name)
                    with open(full, encoding="utf-8") as file:
                        files[os.path.relpath(full, source)] = file.read()
    return files


def unit_of(path):
    return re.sub(r"(_posix|_win32)?\.(h|cpp)$", "", path)


def find_circle(graph):
    """One circle of {node: set of nodes}, as the list of its nodes; None if there is none."""
    done, path = set(), []

    def visit(node):
        if node in path:
            return path[path.index(node):] + [node]
        if node in done:
            return None
        path.append(node)
        for following in sorted(graph.get(node, ())):
            circle = visit(following)
            if circle:
                return circle
        done.add(path.pop())
        return None

    for node in sorted(graph):
        circle = visit(node)
        if circle:
            return circle
    return None


def compare_with_build(rows, built, not_built, files):
    left_out = lambda folder: any(is_below(folder, other) for other in not_built)
    for folder in sorted(rows.keys() | built.keys()):
        if folder not in rows:
            yield f"{folder}/ is a room of the build without a row in the table"
        elif folder in built:
            for used in sorted(rows[folder] - built[folder]):
                yield f"{folder}/ may use {used}/ by the table, but not in the build"
            for used in sorted(built[folder] - rows[folder]):
                yield f"{folder}/ may use {used}/ in the build, but not by the table"
        elif not left_out(folder) and any(room_of(path, rows) == folder for path in files):
            yield f"{folder}/ has a row in the table, but is not a room of the build"


def check_includes(rows, files):
    for path, text in sorted(files.items()):
        room = room_of(path, rows)
        if room is None:
            yield f"{path}: is in no room"
            continue
        for included in INCLUDE.findall(text):
            target = room_of(included, rows)
            if target != room and target not in rows[room]:
                yield f"{path}: includes {included}, which {room}/ may not use"


def check_circles(rows, files):
    units = {}
    for path, text in files.items():
        included = {unit_of(name) for name in INCLUDE.findall(text)}
        units.setdefault(unit_of(path), set()).update(included - {unit_of(path)})
    for graph, kind in ((rows, "rooms"), (units, "files")):
        circle = find_circle(graph)
        if circle:
            yield f"circle of {kind}: " + " -> ".join(circle)


def violations(source, rooms_list, not_built=()):
    with open(os.path.join(source, "docs", "architecture.md"), encoding="utf-8") as page:
        rows = table_rows(page.read())
    built = build_rooms(rooms_list)
    if not rows or not built:
        return ["no rooms in the table, or none in the build"]
    files = files_of_rooms(source, rows.keys() | built.keys())
    return [*compare_with_build(rows, built, not_built, files), *check_includes(rows, files),
            *check_circles(rows, files)]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--source", required=True)
    parser.add_argument("--rooms", required=True)
    parser.add_argument("--not-built", action="append", default=[])
    options = parser.parse_args()
    with open(options.rooms, encoding="utf-8") as rooms:
        found = violations(options.source, rooms.read(), options.not_built)
    for violation in found:
        print(violation)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
