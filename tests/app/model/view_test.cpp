#include "app/model/view.h"

#include <gtest/gtest.h>

#include <cmath>

namespace dxf2d {
namespace {

using Rows = std::array<double, 9>;

Rows rowsOf(const char* view) { return parseView(view).value().linear; }

TEST(ParseView, TopIsTheIdentity) { EXPECT_EQ(parseView("top").value(), Affine{}); }

TEST(ParseView, NamedViewsAreExactSignedPermutations) {
  EXPECT_EQ(rowsOf("bottom"), (Rows{1, 0, 0, 0, -1, 0, 0, 0, -1}));
  EXPECT_EQ(rowsOf("front"), (Rows{1, 0, 0, 0, 0, -1, 0, 1, 0}));
  EXPECT_EQ(rowsOf("back"), (Rows{-1, 0, 0, 0, 0, 1, 0, 1, 0}));
  EXPECT_EQ(rowsOf("left"), (Rows{0, 0, -1, -1, 0, 0, 0, 1, 0}));
  EXPECT_EQ(rowsOf("right"), (Rows{0, 0, 1, 1, 0, 0, 0, 1, 0}));
}

TEST(ParseView, AnglesOfNamedViewsGiveTheSameView) {
  EXPECT_EQ(rowsOf("0,90"), rowsOf("top"));
  EXPECT_EQ(rowsOf("0,-90"), rowsOf("bottom"));
  EXPECT_EQ(rowsOf("360,0"), rowsOf("front"));
  EXPECT_EQ(rowsOf("-180,0"), rowsOf("back"));
  EXPECT_EQ(rowsOf("-90,0"), rowsOf("left"));
  EXPECT_EQ(rowsOf("90,0"), rowsOf("right"));
}

TEST(ParseView, IsoShowsAllAxesAtOneLength) {
  const Rows rows = rowsOf("iso");
  for (std::size_t axis = 0; axis < 3; ++axis) {
    EXPECT_NEAR(std::hypot(rows[3 * axis], rows[3 * axis + 1]), std::sqrt(2.0 / 3.0), 1e-15);
  }
  // The vertical stays upright on the sheet.
  EXPECT_EQ(rows[6], 0.0);
  EXPECT_GT(rows[7], 0.0);
}

TEST(ParseView, EveryViewIsATurn) {
  for (const char* view : {"iso", "17.5,-33", "211,4.25", "-300,89.999"}) {
    const Rows m = rowsOf(view);
    for (std::size_t a = 0; a < 3; ++a) {
      for (std::size_t b = 0; b < 3; ++b) {
        const double dot =
            m[3 * a] * m[3 * b] + m[3 * a + 1] * m[3 * b + 1] + m[3 * a + 2] * m[3 * b + 2];
        EXPECT_NEAR(dot, a == b ? 1.0 : 0.0, 1e-12) << view;
      }
    }
    const double determinant = m[0] * (m[4] * m[8] - m[5] * m[7]) -
                               m[1] * (m[3] * m[8] - m[5] * m[6]) +
                               m[2] * (m[3] * m[7] - m[4] * m[6]);
    EXPECT_NEAR(determinant, 1.0, 1e-12) << view;
  }
}

TEST(ParseView, LetterCaseAndBlanksDoNotMatter) {
  EXPECT_EQ(parseView(" Front ")->linear, parseView("front")->linear);
  EXPECT_EQ(parseView("ISO")->linear, parseView("iso")->linear);
  EXPECT_EQ(parseView(" 45, 30 ")->linear, parseView("45,30")->linear);
}

TEST(ParseView, RefusesOtherTexts) {
  for (const char* text : {"", "above", "45", "45,", ",45", "45,91", "45,-90.5", "nan,0", "inf,0",
                           "1e400,0", "45,30,0"}) {
    EXPECT_FALSE(parseView(text)) << text;
  }
}

}  // namespace
}  // namespace dxf2d
