#!/usr/bin/python3
"""Tests of tests/checks/spelling.py."""
import unittest

from spelling import findings_in, fixed


class Spelling(unittest.TestCase):
    def assert_fixed(self, british, american):
        self.assertTrue(findings_in(british), british)
        self.assertEqual(fixed(british), american)

    def test_words(self):
        self.assert_fixed("its colours", "its colors")
        self.assert_fixed("The centre, uncoloured.", "The center, uncolored.")
        self.assert_fixed("under the MIT licence", "under the MIT license")
        self.assert_fixed("is normalised", "is normalized")
        self.assert_fixed("an optimisation", "an optimization")
        self.assert_fixed("two labelled plans", "two labeled plans")
        self.assert_fixed("90 per cent", "90 percent")
        self.assert_fixed("a kilometre", "a kilometer")

    def test_parts_of_identifiers(self):
        self.assert_fixed("receiveColour", "receiveColor")
        self.assert_fixed("LEFT_OF_CENTRE", "LEFT_OF_CENTER")
        self.assert_fixed("COLOURS", "COLORS")
        self.assert_fixed("first_grey_row", "first_gray_row")
        self.assert_fixed("kFirstGrey", "kFirstGray")
        self.assert_fixed("centreX", "centerX")
        self.assert_fixed("labelledPlanOf", "labeledPlanOf")
        self.assert_fixed("test_three_lines_are_centred", "test_three_lines_are_centered")

    def test_american_spellings_are_left(self):
        self.assertEqual([], findings_in(
            "The color of the centered label; its license is normalized, the neighbor is gray, "
            "ten percent of the story."))

    def test_words_that_only_look_british(self):
        self.assertEqual([], findings_in(
            "our hours, four pours; a promise, a raised noise, precise, likewise; parameter, "
            "perimeter; optimistic, realistic; analysis, emphasis; called, filled, parallel, "
            "controlled; fence, hence, difference; programmed, fulfilled; percentage"))

    def test_quotations_are_left(self):
        self.assertEqual([], findings_in('{"colour":[1,1,1]}, "/colour: is not a key"'))
        self.assert_fixed('"/colour: not a colour"', '"/colour: not a color"')


if __name__ == "__main__":
    unittest.main()
