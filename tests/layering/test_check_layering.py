#!/usr/bin/env python3
"""Plants violations in small trees and expects the checker to report them."""
import os
import tempfile
import unittest

import check_layering

TABLE = """## The rooms

| folder | what lives there | may use |
|---|---|---|
| `low/` | values | – |
| `high/inner/` | records | `low/` |
| `high/` | the rest | `high/inner/`, `low/` |
| `tests/` | tests | everything |
| `docs/`, `examples/` | pages | the SDK |
"""
ROOMS = "low:\nhigh/inner:low\nhigh:high/inner,low\n"
FILES = {
    "low/value.h": "#include <vector>\n",
    "low/value_posix.cpp": '#include "low/value.h"\n',
    "high/inner/record.h": '#include "low/value.h"\n',
    "high/session.h": '#include "high/inner/record.h"\n',
    "high/session.cpp": '#include "high/session.h"\n#include "low/value.h"\n',
    "tests/any.cpp": '#include "high/session.h"\n',
}


def check(files=None, table=TABLE, rooms=ROOMS, not_built=()):
    """What the checker reports of the good tree with `files` put in its place."""
    with tempfile.TemporaryDirectory() as source:
        for path, text in {**FILES, **(files or {}), "docs/architecture.md": table}.items():
            full = os.path.join(source, path)
            os.makedirs(os.path.dirname(full), exist_ok=True)
            with open(full, "w", encoding="utf-8") as file:
                file.write(text)
        return check_layering.violations(source, rooms, not_built)


class CheckLayering(unittest.TestCase):
    def test_good_tree_has_no_violations(self):
        self.assertEqual(check(), [])

    def test_include_upwards(self):
        self.assertIn("low/other.h: includes high/session.h, which low/ may not use",
                      check({"low/other.h": '#include "high/session.h"\n'}))

    def test_nested_room_does_not_belong_to_the_room_around_it(self):
        self.assertIn("high/inner/other.h: includes high/free.h, which high/inner/ may not use",
                      check({"high/inner/other.h": '#include "high/free.h"\n', "high/free.h": ""}))

    def test_include_from_outside_the_rooms(self):
        self.assertIn("high/other.cpp: includes tests/support.h, which high/ may not use",
                      check({"high/other.cpp": '#include "tests/support.h"\n'}))

    def test_include_by_a_short_name(self):
        self.assertIn("low/other.h: includes value.h, which low/ may not use",
                      check({"low/other.h": '#include "value.h"\n'}))

    def test_indirect_use_is_not_enough(self):
        table = TABLE.replace("`high/inner/`, `low/`", "`high/inner/`")
        rooms = ROOMS.replace("high:high/inner,low", "high:high/inner")
        self.assertEqual(check(table=table, rooms=rooms),
                         ["high/session.cpp: includes low/value.h, which high/ may not use"])

    def test_table_allows_more_than_the_build(self):
        rooms = ROOMS.replace("high:high/inner,low", "high:high/inner")
        self.assertEqual(check(rooms=rooms),
                         ["high/ may use low/ by the table, but not in the build"])

    def test_build_allows_more_than_the_table(self):
        rooms = ROOMS.replace("low:\n", "low:extra\n") + "extra:\n"
        self.assertEqual(check(rooms=rooms),
                         ["extra/ is a room of the build without a row in the table",
                          "low/ may use extra/ in the build, but not by the table"])

    def test_room_that_is_not_in_the_build(self):
        rooms = ROOMS.replace("high/inner:low\n", "")
        self.assertIn("high/inner/ has a row in the table, but is not a room of the build",
                      check(rooms=rooms))

    def test_room_that_the_build_leaves_out(self):
        table = TABLE + "| `program/part/` | part | `low/` |\n"
        part = {"program/part/main.cpp": '#include "low/value.h"\n'}
        self.assertEqual(check(part, table=table, not_built=["program"]), [])
        self.assertEqual(check(part, table=table),
                         ["program/part/ has a row in the table, but is not a room of the build"])

    def test_left_out_room_may_not_include_more_than_its_row_allows(self):
        table = TABLE + "| `program/` | program | `low/` |\n"
        part = {"program/main.cpp": '#include "high/session.h"\n'}
        self.assertEqual(check(part, table=table, not_built=["program"]),
                         ["program/main.cpp: includes high/session.h, which program/ may not use"])

    def test_file_between_rooms(self):
        table = TABLE + "| `program/part/` | part | – |\n"
        self.assertIn("program/loose.cpp: is in no room",
                      check({"program/loose.cpp": ""}, table=table))

    def test_circle_of_rooms(self):
        table = TABLE.replace("| values | – |", "| values | `high/` |")
        rooms = ROOMS.replace("low:\n", "low:high\n")
        self.assertIn("circle of rooms: high -> high/inner -> low -> high",
                      check(table=table, rooms=rooms))

    def test_circle_of_headers(self):
        self.assertIn("circle of files: low/a -> low/b -> low/a",
                      check({"low/a.h": '#include "low/b.h"\n', "low/b.h": '#include "low/a.h"\n'}))

    def test_circle_through_sources(self):
        self.assertIn("circle of files: low/a -> low/b -> low/a",
                      check({"low/a.h": "", "low/a_posix.cpp": '#include "low/b.h"\n',
                             "low/b.h": "", "low/b.cpp": '#include "low/a.h"\n'}))

    def test_table_that_cannot_be_read(self):
        self.assertEqual(check(table="no table"),
                         ["no rooms in the table, or none in the build"])


if __name__ == "__main__":
    unittest.main()
