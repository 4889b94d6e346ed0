#include "dxf/palette/color_palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <set>
#include <vector>

#include "session/export_session.h"
#include "tests/support/drawing_session.h"
#include "tests/support/expected_groups.h"

namespace dxf2d {

namespace {

const PaletteColor& entryOf(int index) {
  for (const PaletteColor& color : kColorPalette) {
    if (color.index == index) {
      return color;
    }
  }
  throw std::runtime_error("no such index");
}

void expectEntry(int index, double red, double green, double blue) {
  const PaletteColor& color = entryOf(index);
  EXPECT_EQ(color.red, red) << index;
  EXPECT_EQ(color.green, green) << index;
  EXPECT_EQ(color.blue, blue) << index;
}

void receiveMaterial(double red, double green, double blue) {
  const double color[3] = {red, green, blue};
  DXF2dMaterial(nullptr, color, nullptr, nullptr, nullptr, nullptr);
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

}  // namespace

TEST(ColorPalette, EveryIndexOccursOnce) {
  std::set<int> indices;
  for (const PaletteColor& color : kColorPalette) {
    indices.insert(color.index);
  }
  EXPECT_EQ(indices.size(), 255U);
  EXPECT_EQ(*indices.begin(), 1);
  EXPECT_EQ(*indices.rbegin(), 255);
}

TEST(ColorPalette, IsSearchedInThisOrder) {
  // Of colors that are equally near, the first one is chosen.
  const std::vector<int> order = {
      178, 176, 174, 172, 5,   170, 168, 158, 166, 148, 164, 98,  108, 128, 138, 156, 118, 162, 146,
      154, 160, 96,  106, 116, 126, 136, 152, 144, 142, 94,  104, 114, 124, 134, 150, 92,  102, 112,
      122, 132, 140, 3,   90,  100, 110, 120, 4,   130, 188, 88,  198, 186, 179, 169, 159, 149, 78,
      99,  109, 119, 129, 139, 86,  189, 89,  208, 199, 68,  79,  184, 84,  209, 69,  18,  248, 238,
      228, 218, 196, 28,  38,  19,  249, 239, 229, 219, 29,  48,  39,  49,  58,  59,  177, 167, 157,
      147, 76,  97,  107, 117, 127, 137, 182, 82,  187, 87,  206, 197, 66,  77,  194, 180, 175, 165,
      155, 145, 74,  95,  105, 115, 125, 135, 80,  207, 67,  16,  246, 236, 226, 216, 26,  36,  17,
      247, 237, 227, 217, 27,  46,  37,  47,  56,  57,  185, 85,  192, 173, 163, 153, 143, 72,  93,
      103, 113, 123, 133, 250, 204, 195, 64,  75,  183, 83,  205, 65,  251, 202, 193, 62,  73,  14,
      244, 234, 224, 214, 190, 24,  34,  15,  245, 235, 225, 215, 25,  44,  35,  45,  54,  55,  171,
      161, 151, 141, 70,  91,  101, 111, 121, 131, 203, 63,  252, 181, 81,  12,  242, 232, 222, 212,
      22,  32,  13,  243, 233, 223, 213, 23,  42,  33,  43,  52,  53,  253, 200, 191, 60,  71,  254,
      201, 61,  1,   10,  240, 230, 220, 6,   210, 20,  30,  11,  241, 231, 221, 211, 21,  40,  31,
      41,  2,   50,  51,  7,   8,   9,   255};
  std::vector<int> found;
  for (const PaletteColor& color : kColorPalette) {
    found.push_back(color.index);
  }
  EXPECT_EQ(found, order);
}

TEST(ColorPalette, EightAndNineAreWhite) {
  expectEntry(7, 1, 1, 1);
  expectEntry(8, 1, 1, 1);
  expectEntry(9, 1, 1, 1);
  expectEntry(255, 1, 1, 1);
}

TEST(ColorPalette, HuesHaveFiveFullAndFiveHalfSaturatedShades) {
  expectEntry(10, 1, 0, 0);
  expectEntry(11, 1, 0.5, 0.5);
  expectEntry(12, 0.65, 0, 0);
  expectEntry(13, 0.65, 0.65 * 0.5, 0.65 * 0.5);
  expectEntry(19, 0.15, 0.15 * 0.5, 0.15 * 0.5);
  expectEntry(178, 0, 0, 0.15);
  expectEntry(249, 0.15, 0.15 * 0.5, 0.15 * (0.5 + 0.5 * 0.25));
}

TEST(ColorPalette, HuesGoRoundTheColorCircleInQuartersOfAPrimary) {
  const auto part = [](double full) { return std::clamp(full, 0.0, 1.0); };
  for (int hue = 0; hue < 24; ++hue) {
    const double red = part(std::abs(hue - 12) / 4.0 - 1);
    const double green = part(2 - std::abs(hue - 8) / 4.0);
    const double blue = part(2 - std::abs(hue - 16) / 4.0);
    expectEntry(10 + 10 * hue, red, green, blue);
    expectEntry(14 + 10 * hue, 0.5 * red, 0.5 * green, 0.5 * blue);
    expectEntry(16 + 10 * hue, 0.3 * red, 0.3 * green, 0.3 * blue);
  }
}

TEST(ColorPalette, TwoEntriesDepartFromTheirRow) {
  expectEntry(108, 0, 0.15, 0.09375);
  expectEntry(118, 0, 0.15, 0.75);
}

TEST(ColorPalette, GraysCloseTheTable) {
  expectEntry(250, 0.33, 0.33, 0.33);
  expectEntry(251, 0.464, 0.464, 0.464);
  expectEntry(252, 0.598, 0.598, 0.598);
  expectEntry(253, 0.732, 0.732, 0.732);
  expectEntry(254, 0.866, 0.866, 0.866);
}

TEST(NearestPaletteIndex, BasicColorsAreTheirOwnIndices) {
  EXPECT_EQ(nearestPaletteIndex(1, 1, 1), 7);
  EXPECT_EQ(nearestPaletteIndex(1, 0, 0), 1);
  EXPECT_EQ(nearestPaletteIndex(1, 1, 0), 2);
  EXPECT_EQ(nearestPaletteIndex(0, 1, 0), 3);
  EXPECT_EQ(nearestPaletteIndex(0, 1, 1), 4);
  EXPECT_EQ(nearestPaletteIndex(0, 0, 1), 5);
  EXPECT_EQ(nearestPaletteIndex(1, 0, 1), 6);
}

TEST(NearestPaletteIndex, HalfGrayIsTheGrayBelowIt) {
  EXPECT_EQ(nearestPaletteIndex(0.5, 0.5, 0.5), 251);
}

TEST(NearestPaletteIndex, DepartingEntriesAreFoundByTheirOwnValues) {
  EXPECT_EQ(nearestPaletteIndex(0, 0.15, 0.75), 118);
  EXPECT_EQ(nearestPaletteIndex(0, 0.15, 0.09375), 108);
  EXPECT_EQ(nearestPaletteIndex(0, 0.15, 0.0375), 98);
}

TEST(NearestPaletteIndex, FirstInSearchOrderWinsForBlack) {
  EXPECT_EQ(nearestPaletteIndex(0, 0, 0), 178);
}

TEST(NearestPaletteIndex, EveryEntryIsNearestToItselfOrToAnEarlierTwin) {
  for (const PaletteColor& color : kColorPalette) {
    const int index = nearestPaletteIndex(color.red, color.green, color.blue);
    const PaletteColor& found = entryOf(index);
    EXPECT_EQ(found.red, color.red) << color.index;
    EXPECT_EQ(found.green, color.green) << color.index;
    EXPECT_EQ(found.blue, color.blue) << color.index;
  }
}

TEST(NearestPaletteIndex, ComponentsOutsideTheRangeAreNotClamped) {
  EXPECT_EQ(nearestPaletteIndex(-100, -100, 50), 5);
  EXPECT_EQ(nearestPaletteIndex(200, 200, 200), 7);
}

TEST(NearestPaletteIndex, NanAndEnormousComponentsHaveNoNearestColor) {
  EXPECT_EQ(nearestPaletteIndex(kNaN, 0, 0), 0);
  EXPECT_EQ(nearestPaletteIndex(0, 1e300, 0), 0);
  EXPECT_EQ(nearestPaletteIndex(0, 0, 10001.0), 0);
  EXPECT_EQ(nearestPaletteIndex(0, 0, 10000.5), 5);
}

TEST(Material, NullColorLeavesTheNodesColor) {
  DrawingSession session;
  receiveMaterial(1, 0, 0);
  const double unread[3] = {0, 1, 0};
  DXF2dMaterial(unread, nullptr, unread, unread, unread, unread);
  EXPECT_EQ(exportSession().currentNode->colorIndex, 1);
}

TEST(Material, OnlyTheSecondArgumentIsRead) {
  DrawingSession session;
  const double unread[3] = {0, 1, 0};
  const double color[3] = {0, 0, 1};
  DXF2dMaterial(unread, color, unread, unread, unread, unread);
  EXPECT_EQ(exportSession().currentNode->colorIndex, 5);
}

TEST(Material, OutsideAnExportChangesNothing) {
  { DrawingSession session; }
  receiveMaterial(1, 0, 0);
  DrawingSession session;
  EXPECT_EQ(exportSession().currentNode->colorIndex, -1);
}

TEST(Material, GeometryWithoutAnyIsWrittenAs254) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  EXPECT_TRUE(drawUnitLine());
  EXPECT_EQ(session.Body(), blockText(1, unitLineText(254)));
}

TEST(Material, AppliesFromWhereItIsReceived) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  drawUnitLine();
  receiveMaterial(1, 0, 0);
  drawUnitLine();
  receiveMaterial(1, 1, 1);
  drawUnitLine();
  EXPECT_EQ(session.Body(), blockText(1, unitLineText(254)) + blockText(1, unitLineText(1)) +
                                blockText(1, unitLineText(7)));
}

TEST(Material, NanComponentIsStoredAndWrittenAsZero) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  receiveMaterial(0, kNaN, 0);
  EXPECT_EQ(exportSession().currentNode->colorIndex, 0);
  drawUnitLine();
  EXPECT_EQ(session.Body(), blockText(1, unitLineText(0)));
}

}  // namespace dxf2d
