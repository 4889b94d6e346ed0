#include "app/model/part_color.h"

#include <assimp/material.h>
#include <gtest/gtest.h>

#include "dxf/palette/color_palette.h"

namespace dxf2d {
namespace {

int writtenIndex(const Color& color) { return nearestPaletteIndex(color[0], color[1], color[2]); }

TEST(DrawnColor, WithoutAColorIsTheDefaultPen) {
  for (const PlanColors choice : {PlanColors::kModel, PlanColors::kDark, PlanColors::kNone}) {
    EXPECT_EQ(writtenIndex(drawnColor(std::nullopt, choice)), 7);
  }
}

std::optional<Color> colorOfGray(const char* materialName, float gray) {
  aiMaterial material;
  const aiString name(materialName);
  const aiColor3D color(gray, gray, gray);
  material.AddProperty(&name, AI_MATKEY_NAME);
  material.AddProperty(&color, 1, AI_MATKEY_COLOR_DIFFUSE);
  return materialColor(material);
}

TEST(MaterialColor, IsNoneForTheGrayOfReadersWhereThereIsNoMaterial) {
  EXPECT_FALSE(colorOfGray(AI_DEFAULT_MATERIAL_NAME, 0.6F));
  EXPECT_FALSE(colorOfGray("", 0.6F));
  EXPECT_TRUE(colorOfGray(AI_DEFAULT_MATERIAL_NAME, 0.5F));
  EXPECT_TRUE(colorOfGray("concrete", 0.6F));
}

TEST(DrawnColor, NoneIsTheDefaultPenThroughout) {
  EXPECT_EQ(writtenIndex(drawnColor(Color{1, 0, 0}, PlanColors::kNone)), 7);
}

TEST(DrawnColor, OfTheModelIsLeftAsItIs) {
  const Color pale{0.9, 0.95, 0.7};
  EXPECT_EQ(drawnColor(pale, PlanColors::kModel), pale);
}

TEST(DrawnColor, EveryDarkColorStandsOutOnWhite) {
  constexpr int kSteps = 12;
  for (int r = 0; r <= kSteps; ++r) {
    for (int g = 0; g <= kSteps; ++g) {
      for (int b = 0; b <= kSteps; ++b) {
        const Color color{double(r) / kSteps, double(g) / kSteps, double(b) / kSteps};
        const int index = writtenIndex(drawnColor(color, PlanColors::kDark));
        if (index == 7) {
          continue;
        }
        for (const PaletteColor& entry : kColorPalette) {
          if (entry.index == index) {
            EXPECT_GE(contrastOnWhite({entry.red, entry.green, entry.blue}), kMinContrast)
                << index << " for " << r << " " << g << " " << b;
          }
        }
      }
    }
  }
}

TEST(DrawnColor, DarkKeepsTheHue) {
  EXPECT_EQ(writtenIndex(drawnColor(Color{1, 0, 0}, PlanColors::kDark)), 1);
  // Yellow, at the first shade that stands out.
  const int yellow = writtenIndex(drawnColor(Color{1, 1, 0}, PlanColors::kDark));
  EXPECT_GE(yellow, 50);
  EXPECT_LT(yellow, 60);
}

TEST(DrawnColor, WhiteStaysTheDefaultPenAndNearlyWhiteBecomesGray) {
  EXPECT_EQ(writtenIndex(drawnColor(Color{1, 1, 1}, PlanColors::kDark)), 7);
  EXPECT_EQ(writtenIndex(drawnColor(Color{0.87, 0.87, 0.87}, PlanColors::kDark)), 251);
}

TEST(ContrastOnWhite, IsThatOfTheStandard) {
  EXPECT_DOUBLE_EQ(contrastOnWhite({1, 1, 1}), 1.0);
  EXPECT_DOUBLE_EQ(contrastOnWhite({0, 0, 0}), 21.0);
  // #767676, the well-known lightest gray with 4.5 : 1.
  EXPECT_NEAR(contrastOnWhite({118 / 255.0, 118 / 255.0, 118 / 255.0}), 4.54, 0.005);
}

}  // namespace
}  // namespace dxf2d
