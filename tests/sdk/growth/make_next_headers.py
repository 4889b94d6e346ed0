#!/usr/bin/env python3
"""Writes the public headers and the export list of a KtScene 1.1 that has grown by a member in each of
four structs and by one function.

usage: make_next_headers.py SOURCE_TREE DIRECTORY
"""
import pathlib
import shutil
import sys

# What 1.1 changes: a word of the reserve becomes a member whose 0 means what 1.0 means.
STRUCTS = {
    "struct KtMaterial {": ("KtReserved<4> reserved{};", "double clearance = 0.0;\n  KtReserved<3> reserved{};"),
    "struct KtFaceSet {": ("KtReserved<4> reserved{};", "double clearance = 0.0;\n  KtReserved<3> reserved{};"),
    "struct KtLabel {": ("KtReserved<4> reserved{};", "double clearance = 0.0;\n  KtReserved<3> reserved{};"),
    "struct KT_SCENE_API KtSceneNode ": ("KtReserved<8> reserved{};",
                                         "double clearance = 0.0;\n  KtReserved<7> reserved{};"),
}


def replaced(text, old, new, start=0):
    at = text.index(old, start)
    return text[:at] + new + text[at + len(old):]


def grown(text):
    for struct, (old, new) in STRUCTS.items():
        text = replaced(text, old, new, text.index(struct))
    return text


def main():
    source, target = map(pathlib.Path, sys.argv[1:])
    folder = target / "ktscene"
    folder.mkdir(parents=True, exist_ok=True)
    for header in (source / "ktscene").glob("*.h"):
        shutil.copy(header, folder)
    path = folder / "kt_scene.h"
    path.write_text(grown(path.read_text(encoding="utf-8")), encoding="utf-8")
    path = folder / "kt_version.h"
    text = path.read_text(encoding="utf-8")
    path.write_text(replaced(text, "KTSCENE_VERSION_MINOR 0", "KTSCENE_VERSION_MINOR 1"), encoding="utf-8")
    path = folder / "kt_graphic_attribute.h"
    text = path.read_text(encoding="utf-8")
    path.write_text(replaced(text, "  void GetMatrix(double* data) const;",
                             "  void GetMatrix(double* data) const;\n  double GetClearance() const;"),
                    encoding="utf-8")
    text = (source / "ktscene" / "exports.map").read_text(encoding="utf-8")
    (target / "exports.map").write_text(
        text + 'KTSCENE_1.1 { global: extern "C++" { KtGraphicAttribute::GetClearance*; }; } KTSCENE_1.0;\n',
        encoding="utf-8")


if __name__ == "__main__":
    main()
