#!/usr/bin/env python3
"""Facts of the reference implementation that were worked out by hand."""

import json
import math
import unittest

from host_arithmetic import IDENTITY, relative, rotation_angles, rotation_axis
from reference_drawing import drawing_of
from reference_groups import converted, real
from reference_head import head
from reference_label import parse_label, widest
from reference_outline import face_outline, line_outline
from reference_palette import nearest_color_index
from reference_shapes import box
from random_scenes import about_x, about_z, random_scene, rows

TRIANGLE = {"faceSet": {"coords": [0, 0, 0, 1, 0, 0, 0, 1, 0], "indices": [0, 1, 2, -7]}}
SQUARE = [(0.0, 0.0, 0.0), (1.0, 0.0, 0.0), (1.0, 1.0, 0.0), (0.0, 1.0, 0.0)]
PLACES = (1, 0, 0), (0, 1, 0), (0, 0, 1)


def groups(nodes):
    """What a scene adds to the fixed head, as (code, value) pairs."""
    lines = drawing_of({"nodes": nodes})[len(head()):].decode("cp1252").split("\n")
    return list(zip(map(int, lines[0:-1:2]), lines[1::2]))


def entities(nodes):
    listed = groups(nodes)
    return listed[listed.index((2, "ENTITIES")) + 1:]


def block_names(nodes):
    listed = groups(nodes)
    return [value for (code, value) in listed if code == 3]


def values(listed, code):
    return [value for key, value in listed if key == code]


def placed(nodes):
    return values(entities(nodes), 2)


def named(**fields):
    return {"graphicName": "g", "objectId": "A", **fields}


def label(rest, **fields):
    return {"label": {"text": "T:" + rest, **fields}}


def segments(chains):
    return {frozenset(pair) for chain in chains for pair in zip(chain, chain[1:])}


class Session(unittest.TestCase):
    def test_empty_scene_has_empty_blocks_and_entities(self):
        self.assertEqual(drawing_of({"nodes": []}).decode("ascii"), head() +
                         "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n")

    def test_no_carriage_return_and_no_lost_line_end(self):
        data = drawing_of({"nodes": [named(geometry=[TRIANGLE])]})
        self.assertNotIn(b"\r", data)
        self.assertTrue(data.endswith(b"  0\nEOF\n"))

    def test_head_starts_with_header_and_ends_with_blocks(self):
        lines = head().split("\n")
        self.assertEqual(lines[:4], ["  0", "SECTION", "  2", "HEADER"])
        self.assertEqual(lines[-5:], ["  0", "SECTION", "  2", "BLOCKS", ""])
        start = lines.index("$EXTMIN")
        self.assertEqual(lines[start:start + 6],
                         ["$EXTMIN", " 10", "-100.000000", " 20", "-100.000000", "  9"])
        self.assertEqual(lines[lines.index("$DIMBLK") + 1:][:3], ["  1", "", "  9"])
        self.assertEqual(lines[lines.index("Ausgezogene Linie") + 1], " 72")


class Nodes(unittest.TestCase):
    def test_second_plain_occurrence_borrows_the_first_block(self):
        node = named(realObjectId="R", geometry=[TRIANGLE])
        self.assertEqual(placed([node, dict(node, matrix=rows(*PLACES, (5, 6, 7)))]),
                         ["GO_1", "GO_1"])

    def test_a_borrowing_node_consumes_its_number(self):
        node = named(realObjectId="R", geometry=[TRIANGLE])
        self.assertEqual(placed([node, node, named(geometry=[TRIANGLE])]), ["GO_1", "GO_1", "GO_3"])

    def test_tilted_or_colored_occurrence_has_a_block_of_its_own(self):
        node = named(realObjectId="R", geometry=[TRIANGLE])
        tilted = dict(node, matrix=rows(*about_x(0.031)))
        colored = dict(node, color=[1, 0, 0])
        self.assertEqual(placed([node, tilted, colored]), ["GO_1", "GO_2", "GO_3"])

    def test_node_without_item_or_name_is_not_registered(self):
        for missing in ({"item": False}, {"realObjectId": ""}):
            first = {**named(realObjectId="R", geometry=[TRIANGLE]), **missing}
            second = named(realObjectId="R", geometry=[TRIANGLE])
            self.assertEqual(placed([first, second]), ["GO_1", "GO_2"])

    def test_refused_instance_does_not_replace_the_registered_node(self):
        first = named(realObjectId="R", geometry=[TRIANGLE])
        colored = dict(first, color=[1, 0, 0])
        self.assertEqual(placed([first, colored, first]), ["GO_1", "GO_2", "GO_1"])

    def test_children_inherit_the_color_and_the_root_has_none(self):
        child = named(geometry=[TRIANGLE])
        self.assertEqual(values(groups([child]), 62), ["254"])
        self.assertEqual(values(groups([{"color": [1, 0, 0], "children": [child]}]), 62), ["1"])

    def test_only_the_first_level_of_detail_is_walked(self):
        levels = [named(geometry=[TRIANGLE]), named(geometry=[TRIANGLE])]
        self.assertEqual(placed([{"lod": {"levels": levels}}]), ["GO_1"])
        self.assertEqual(groups([{"lod": {"levels": []}}]), groups([]))


class Blocks(unittest.TestCase):
    def test_object_is_in_the_root_block_and_placed(self):
        node = named(geometry=[TRIANGLE], matrix=rows(*PLACES, (5, 6, 7)))
        self.assertEqual(block_names([node]), ["GO_1", "GO_0"])
        self.assertEqual(entities([node]), [
            (0, "INSERT"), (8, "0"), (66, "    1"), (2, "GO_1"), (10, "5.000000"), (20, "6.000000"),
            (30, "0.000000"), (0, "SEQEND"), (0, "ENDSEC"), (0, "EOF")])

    def test_group_of_objects_has_a_block_and_only_its_parts_are_placed(self):
        leaf = named(geometry=[TRIANGLE])
        group = {"objectId": "G", "children": [leaf, leaf]}
        self.assertEqual(block_names([group]), ["GO_2", "GO_3", "GO_1", "GO_0"])
        self.assertEqual(placed([group]), ["GO_2", "GO_3"])

    def test_tilted_placement_is_the_origin_without_rotation(self):
        node = named(geometry=[TRIANGLE], matrix=rows(*about_x(0.011), (5, 6, 7)))
        listed = entities([node])
        self.assertEqual(values(listed, 10) + values(listed, 20), ["0.000000", "0.000000"])
        self.assertEqual(values(listed, 50), [])

    def test_small_rotation_is_left_out_and_a_larger_one_is_in_degrees(self):
        for angle, expected in ((0.0005, []), (0.5, ["28.647890"])):
            node = named(geometry=[TRIANGLE], matrix=rows(*about_z(angle)))
            self.assertEqual(values(entities([node]), 50), expected)

    def test_leaf_without_graphic_name_is_never_placed(self):
        self.assertEqual(placed([{"objectId": "A", "geometry": [TRIANGLE]}]), [])

    def test_placement_that_is_not_finite_is_zero(self):
        huge = rows((1e15, 0, 0), (0, 1e15, 0), (0, 0, 1e15), (1e15, 0, 0))
        node = named(matrix=huge)
        for _ in range(30):
            node = {"matrix": huge, "children": [node]}
        self.assertEqual(values(entities([node]), 10), ["0.000000"])


class Outline(unittest.TestCase):
    def test_single_triangle_is_one_closed_chain(self):
        self.assertEqual(face_outline(SQUARE[:3], [0, 1, 2, -7], False),
                         [[(0.0, 0.0), (1.0, 0.0), (1.0, 1.0), (0.0, 0.0)]])

    def test_coplanar_neighbors_hide_their_common_edge(self):
        chains = face_outline(SQUARE, [0, 1, 2, -7, 0, 2, 3, -7], False)
        self.assertEqual(len(segments(chains)), 4)
        self.assertNotIn(frozenset([(0.0, 0.0), (1.0, 1.0)]), segments(chains))

    def test_closed_cube_from_above_is_its_square(self):
        points, indices = box(2.0, 2.0, 2.0)
        corners = [(-1.0, -1.0), (1.0, -1.0), (1.0, 1.0), (-1.0, 1.0)]
        self.assertEqual(segments(face_outline(points, indices, False)),
                         {frozenset(pair) for pair in zip(corners, corners[1:] + corners[:1])})

    def test_equal_points_are_one(self):
        points = [SQUARE[0], SQUARE[1], SQUARE[2], SQUARE[0], SQUARE[2], SQUARE[3]]
        self.assertEqual(len(segments(face_outline(points, [0, 1, 2, -7, 3, 4, 5, -7], False))), 4)

    def test_negative_zero_equals_zero(self):
        points = [(0.0, 0.0, 0.0), (-0.0, 0.0, -0.0), (1.0, 0.0, 0.0)]
        self.assertEqual(face_outline(points, [0, 1, -1], False), [])
        self.assertEqual(line_outline(points, [0, 2, -1, 1, 2, -1]), [[(0.0, 0.0), (1.0, 0.0)]])

    def test_ignored_and_short_runs_have_no_outline(self):
        for indices in ([0, 1, 2, -2], [0, 1, -7], [0, 1, -5], [0, 1, -4], [0, 1, -3], [0, -6],
                        [0, 1, 2, -8], [0, 1, 2]):
            self.assertEqual(face_outline(SQUARE, indices, False), [])

    def test_long_segment_run_is_ignored_in_a_face_set_and_a_strip_in_a_line_set(self):
        self.assertEqual(face_outline(SQUARE, [0, 1, 2, -1], False), [])
        self.assertEqual(line_outline(SQUARE, [0, 1, 2, -1]),
                         [[(0.0, 0.0), (1.0, 0.0), (1.0, 1.0)]])

    def test_line_set_polygons_show_their_unshared_edges(self):
        points = [(0.0, 0.0, 0.0), (1.0, 0.0, 0.0), (1.0, 1.0, 5.0), (0.0, 1.0, -9.0)]
        self.assertEqual(len(segments(line_outline(points, [0, 1, 2, -7, 0, 2, 3, -7]))), 4)

    def test_upright_line_is_dropped(self):
        self.assertEqual(line_outline([(1.0, 1.0, 0.0), (1.0, 1.0, 4.0)], [0, 1, -6]), [])

    def test_two_entries_after_a_code_are_not_codes(self):
        # The second -6 stands where an entry is expected, so that its run goes on to the last code.
        self.assertEqual(face_outline(SQUARE, [0, 1, -6, 2, -6, 3, -6], False),
                         [[(0.0, 0.0), (1.0, 0.0)]])

    def test_last_triangle_takes_what_follows(self):
        chains = face_outline(SQUARE, [0, 1, 2, 0, 3, -5], False)
        self.assertIn(frozenset([(0.0, 0.0), (0.0, 1.0)]), segments(chains))

    def test_invalid_point_numbers_take_part_in_no_edge(self):
        self.assertEqual(segments(face_outline(SQUARE, [0, 1, 9, 3, -7], False)),
                         {frozenset([(0.0, 0.0), (1.0, 0.0)]), frozenset([(0.0, 0.0), (0.0, 1.0)])})
        self.assertEqual(line_outline(SQUARE, [0, 9, 1, -6]), [])

    def test_point_that_is_not_finite_takes_part_in_no_edge(self):
        points = SQUARE[:3] + [(0.0, math.inf, 0.0)]
        self.assertEqual(len(segments(line_outline(points, [0, 1, 2, 3, 0, -6]))), 2)

    def test_faces_that_face_apart_show_their_edge(self):
        points = [(0.0, 0.0, 0.0), (0.0, 1.0, 0.0), (1.0, 0.0, 0.0), (2.0, 0.0, 3.0)]
        edge = frozenset([(0.0, 0.0), (0.0, 1.0)])
        self.assertIn(edge, segments(face_outline(points, [0, 1, 2, -7, 1, 0, 3, -7], False)))
        self.assertNotIn(edge, segments(face_outline(points, [0, 1, 2, -7, 0, 1, 3, -7], False)))

    def test_edge_of_three_faces_is_hidden(self):
        points = [(0.0, 0.0, 0.0), (0.0, 1.0, 0.0), (1.0, 0.0, 0.0), (2.0, 0.0, 3.0),
                  (-1.0, 0.0, 0.0)]
        chains = face_outline(points, [0, 1, 2, -7, 1, 0, 3, -7, 0, 1, 4, -7], False)
        self.assertNotIn(frozenset([(0.0, 0.0), (0.0, 1.0)]), segments(chains))

    def test_remainder_of_coordinates_is_ignored(self):
        line = {"lineSet": {"coords": [0, 0, 0, 1, 0, 0, 7], "indices": [0, 1, 2, -6]}}
        self.assertEqual(len(values(groups([named(geometry=[line])]), 10)),
                         len(values(groups([named(geometry=[
                             {"lineSet": {"coords": [0, 0, 0, 1, 0, 0], "indices": [0, 1, -6]}}])]),
                             10)))


class Arithmetic(unittest.TestCase):
    def test_equal_transforms_are_the_identity_to_each_other(self):
        m = tuple(map(float, rows((0, 0, 0), (0, 1, 0), (0, 0, 1), (4, 5, 6))))
        self.assertEqual(relative(m, m), IDENTITY)

    def test_singular_frame_is_ignored(self):
        flat = tuple(map(float, rows((0, 0, 0), (0, 1, 0), (0, 0, 1))))
        moved = tuple(map(float, rows(*PLACES, (4, 5, 6))))
        self.assertEqual(relative(moved, flat), moved)

    def test_mirrored_transform_shows_as_a_tilt(self):
        a, b, _ = rotation_angles(tuple(map(float, rows((-1, 0, 0), (0, 1, 0), (0, 0, 1)))))
        self.assertGreater(abs(a) + abs(b), 3.0)

    def test_half_turn_has_the_axis_of_its_largest_element(self):
        m = tuple(map(float, rows((-1, 0, 0), (0, 1, 0), (0, 0, -1))))
        self.assertEqual(rotation_axis(m), (0.0, 1.0, 0.0, math.pi))
        self.assertEqual(rotation_axis(IDENTITY), (0.0, 0.0, 0.0, 0.0))

    def test_reals_have_six_decimals_and_keep_the_sign_of_zero(self):
        self.assertEqual([real(v) for v in (-100.0, 0.15, -0.0, -4e-7, 1e15)],
                         ["-100.000000", "0.150000", "-0.000000", "-0.000000",
                          "1000000000000000.000000"])


class Colors(unittest.TestCase):
    def test_nearest_colors(self):
        for color, index in (((1, 1, 1), 7), ((1, 0, 0), 1), ((0, 0, 1), 5), ((0.5, 0.5, 0.5), 251),
                             ((0, 0.15, 0.75), 118), ((0, 0.15, 0.0375), 98), ((0, 0, 0), 178),
                             ((20000, 0, 0), 0)):
            self.assertEqual(nearest_color_index(*color), index)


class Labels(unittest.TestCase):
    def test_example_is_one_text(self):
        node = named(**label('1 2.5 0 10 20 5 30 C 0 1 0 0 0 "Ab"', colorIndex=3))
        listed = groups([node])
        start = listed.index((0, "TEXT"))
        self.assertEqual(listed[start:start + 17], [
            (0, "TEXT"), (40, "2.500000"), (62, "3"), (10, "10.000000"), (20, "20.000000"),
            (30, "0.000000"), (11, "10.000000"), (21, "20.000000"), (31, "0.000000"), (72, "1"),
            (73, "2"), (50, "30.000000"), (41, "0.800000"), (1, "Ab"), (7, "STANDARD"), (8, "0"),
            (0, "ENDBLK")])
        self.assertEqual(block_names([node]), ["GO_1", "GO_0"])

    def test_three_lines_are_centered_and_right_aligned_ones_hang(self):
        for align, expected in (("C", ["1.500000", "0.000000", "-1.500000"]),
                                ("R", ["-1.500000", "-3.000000", "-4.500000"])):
            node = label(f'1 1 0 0 0 0 0 {align} 0 1 0 0 0 "a" "b" "c"')
            self.assertEqual(values(groups([node]), 21), expected)

    def test_narrow_letters_count_less(self):
        self.assertAlmostEqual(widest(["iii"]), 0.96)
        self.assertEqual(values(groups([label('1 1 0 0 0 0 0 L 0 1 0 0 0 "iiiii"')]), 11),
                         ["-0.800000"])

    def test_unknown_alignment_has_no_points(self):
        listed = groups([label('1 1 0 0 0 0 0 X 0 1 0 0 0 "a"')])
        self.assertEqual(values(listed, 11) + values(listed, 72) + values(listed, 73), [])
        self.assertEqual(values(listed, 1), ["a"])

    def test_tiny_angle_turns_the_layout_but_is_not_written(self):
        node = label('1 1e6 0 0 0 0 5e-4 C 0 1 0 0 0 "a" "b"')
        listed = groups([node])
        self.assertEqual(values(listed, 50), [])
        self.assertNotEqual(values(listed, 11)[0], "0.000000")

    def test_color_index_out_of_range_gives_way_to_the_color(self):
        for index, expected in ((0, "1"), (256, "1"), (-1, "1"), (255, "255"), (1, "1")):
            node = label('1 1 0 0 0 0 0 C 0 1 0 0 0 "a"', colorIndex=index)
            self.assertEqual(values(groups([node]), 62), [expected])
        node = label('1 1 0 0 0 0 0 C 0 1e15 0 0 0 "a"')
        self.assertEqual(values(groups([node]), 62), ["7"])

    def test_tilted_node_and_empty_label_write_nothing(self):
        text = '1 1 0 0 0 0 0 C 0 1 0 0 0'
        self.assertEqual(groups([label(text)]), groups([{}]))
        self.assertEqual(groups([dict(label(text + ' "a"'), matrix=rows(*about_x(0.02)))]),
                         groups([{}]))

    def test_short_and_malformed_labels_write_nothing(self):
        for text in ("", "T", "T:", 'T:1 1 0 0 0 0 0 C 0 1 0 0 0 "a"b',
                     'T:1 1 0 0 0 0 0 C 2 1 0 0 0 "a"', 'T:1,5 1 0 0 0 0 0 C 0 1 0 0 0 "a"',
                     'T:1 1 0 0 0 0 0 C 0 1 0 0 4294967296 "a"'):
            self.assertEqual(groups([{"label": {"text": text}}]), groups([{}]))

    def test_escapes_and_control_characters(self):
        parsed = parse_label('1 1 0 0 0 0 0 C 0 1 0 0 0 "a\\"b\\\\" "x\ny\x85"')
        self.assertEqual(parsed.lines, ['a"b\\', "x y "])
        self.assertIsNone(parse_label('1 1 0 0 0 0 0 C 0 1 0 0 0 "a\\n"'))

    def test_letters_outside_the_code_page_become_question_marks(self):
        self.assertEqual(converted("a€\u03a9\ud83d\ude00", "cp1252"), b"a\x80???")
        self.assertEqual(converted("ä", "utf-8"), b"\xc3")


class Scenes(unittest.TestCase):
    def test_random_scenes_never_write_what_is_not_a_number(self):
        for seed in range(60):
            data = drawing_of(random_scene(seed))
            self.assertNotIn(b"inf", data)
            self.assertNotIn(b"nan", data)

    def test_a_scene_depends_on_its_seed_alone(self):
        self.assertEqual(json.dumps(random_scene(7)), json.dumps(random_scene(7)))
        self.assertNotEqual(random_scene(7), random_scene(8))


if __name__ == "__main__":
    unittest.main()
