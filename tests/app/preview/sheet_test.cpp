#include "app/preview/sheet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/cli/failure.h"
#include "app/preview/picture.h"
#include "app/preview/title_line.h"
#include "tests/app/preview/picture_pixels.h"

namespace dxf2d {
namespace {

constexpr int kMillimeters = 4;
constexpr int kMeters = 6;
constexpr PaperSize kA4{210.0, 297.0};

PlanExtents extentsOf(PlanPoint low, PlanPoint high) {
  PlanExtents extents;
  extents.Add(low);
  extents.Add(high);
  return extents;
}

TEST(LayOutSheet, AFittingPageIsTheDrawingAtItsSizeWithMargins) {
  const SheetLayout layout =
      layOutSheet(extentsOf({0, 0}, {100, 50}), {.margin = 5.0}, kMillimeters, "plan");
  EXPECT_DOUBLE_EQ(layout.width, 110.0);
  EXPECT_DOUBLE_EQ(layout.height, 60.0);
  EXPECT_DOUBLE_EQ(layout.scale, 1.0);
}

TEST(LayOutSheet, UnitsAndScaleMakeTheSizeOnPaper) {
  Sheet sheet{.plotScale = 0.02, .margin = 0.0};
  const SheetLayout layout = layOutSheet(extentsOf({0, 0}, {10, 5}), sheet, kMeters, "plan");
  EXPECT_DOUBLE_EQ(layout.width, 200.0);
  EXPECT_DOUBLE_EQ(layout.height, 100.0);
}

TEST(LayOutSheet, PaperIsTurnedAsTheDrawingNeedsIt) {
  const Sheet sheet{.paper = kA4};
  EXPECT_EQ(layOutSheet(extentsOf({0, 0}, {10, 5}), sheet, 0, "plan").width, 297.0);
  EXPECT_EQ(layOutSheet(extentsOf({0, 0}, {5, 10}), sheet, 0, "plan").width, 210.0);
}

TEST(LayOutSheet, WithoutAScaleTheDrawingFillsThePaper) {
  const Sheet sheet{.paper = kA4};
  const SheetLayout layout = layOutSheet(extentsOf({0, 0}, {277, 10}), sheet, kMillimeters, "plan");
  EXPECT_DOUBLE_EQ(layout.scale, 1.0);
}

TEST(LayOutSheet, WhatDoesNotFitIsRefused) {
  const Sheet sheet{.paper = kA4, .plotScale = 1.0};
  EXPECT_THROW(layOutSheet(extentsOf({0, 0}, {278, 10}), sheet, kMillimeters, "plan"), UsageError);
  EXPECT_NO_THROW(layOutSheet(extentsOf({0, 0}, {277, 190}), sheet, kMillimeters, "plan"));
}

TEST(LayOutSheet, MarginsThatLeaveNoRoomAreRefused) {
  const Sheet sheet{.paper = kA4, .margin = 105.0};
  EXPECT_THROW(layOutSheet(extentsOf({0, 0}, {1, 1}), sheet, kMillimeters, "plan"), UsageError);
}

// What these options of the command line make.
std::optional<Sheet> sheetOf(const std::vector<std::pair<std::string, std::string>>& given) {
  std::optional<Sheet> sheet;
  const std::vector<Option> options = sheetOptions(sheet);
  for (const auto& [name, value] : given) {
    const auto option = std::ranges::find(options, name, &Option::names);
    EXPECT_TRUE(option != options.end() && option->take(value)) << name;
  }
  return sheet;
}

TEST(SheetOptions, AResolutionAloneNeedsNoUnits) {
  const std::optional<Sheet> sheet = sheetOf({{"--dpi", "150"}});
  ASSERT_TRUE(sheet);
  const SheetLayout layout = layOutSheet(extentsOf({0, 0}, {20, 10}), *sheet, 0, "plan");
  EXPECT_DOUBLE_EQ(layout.width, 297.0);
  EXPECT_DOUBLE_EQ(layout.height, 2 * 10.0 + 277.0 / 2);
}

TEST(SheetOptions, AResolutionAloneIsNoLifeSizeHouse) {
  const std::optional<Sheet> sheet = sheetOf({{"--dpi", "150"}});
  ASSERT_TRUE(sheet);
  EXPECT_DOUBLE_EQ(layOutSheet(extentsOf({0, 0}, {10, 20}), *sheet, kMeters, "plan").height, 297.0);
}

TEST(SheetOptions, AScaleWithAResolutionInAnyOrderNeedsUnits) {
  const PlanExtents extents = extentsOf({0, 0}, {20, 10});
  for (const auto& sheet : {sheetOf({{"--dpi", "150"}, {"--plot-scale", "1:2"}}),
                            sheetOf({{"--plot-scale", "1:2"}, {"--dpi", "150"}}),
                            sheetOf({{"--paper", "fit"}, {"--dpi", "150"}})}) {
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->dpi, 150);
    EXPECT_THROW(layOutSheet(extents, *sheet, 0, "plan"), UsageError);
  }
}

// A square of 40 mm with a hidden line, on a page that fits it.
std::string squareAs(PictureFormat format) {
  Drawing drawing;
  drawing.units = kMillimeters;
  drawing.dashLength = 4.0;
  drawing.entities.push_back(
      PolylineEntity{{.lineWeight = 50}, true, {{0, 0}, {40, 0}, {40, 40}, {0, 40}}});
  drawing.entities.push_back(LineEntity{
      {.trueColor = 0x336699, .lineWeight = 18, .lineType = LineType::kDashed}, {0, 5}, {40, 5}});
  PictureStyle style;
  style.format = format;
  style.sheet = Sheet{.margin = 0.0};
  return drawPicture(drawing, style).bytes;
}

TEST(SheetPicture, SvgIsInMillimetersWithAViewBox) {
  const std::string svg = squareAs(PictureFormat::kSvg);
  EXPECT_NE(svg.find("width=\"40mm\" height=\"40mm\" viewBox=\"0 0 40 40\""), svg.npos) << svg;
}

TEST(SheetPicture, LinesHaveTheirWeightsDashesAndTrueColors) {
  const std::string svg = squareAs(PictureFormat::kSvg);
  EXPECT_NE(svg.find("stroke-width:0.5;"), svg.npos) << svg;
  EXPECT_NE(svg.find("stroke-width:0.18;"), svg.npos) << svg;
  EXPECT_NE(svg.find("stroke-dasharray:4,2;"), svg.npos) << svg;
  EXPECT_NE(svg.find("rgb(20%,40%,60%)"), svg.npos) << svg;
}

TEST(SheetPicture, RingsAreClosed) {
  EXPECT_NE(squareAs(PictureFormat::kSvg).find("Z"), std::string::npos);
}

TEST(SheetPicture, PdfPagesHaveTheirSizeInPoints) {
  EXPECT_NE(squareAs(PictureFormat::kPdf).find("MediaBox [ 0 0 113.385827 113.385827 ]"),
            std::string::npos);
}

TEST(SheetPicture, PngSaysItsResolution) {
  const std::string png = squareAs(PictureFormat::kPng);
  // 300 pixels per inch are 11,811 per meter, whose unit is 1; then the checksum.
  const std::string chunk("\0\0\0\x09pHYs\0\0\x2E\x23\0\0\x2E\x23\x01\x78\xA5\x3F\x76", 21);
  EXPECT_EQ(png.substr(33, chunk.size()), chunk);
  // 40 mm at 300 pixels per inch.
  EXPECT_EQ(PicturePixels(png).Width(), 473);
}

TEST(SheetPicture, AResolutionAloneChangesNoPictureWithoutPixels) {
  Drawing drawing;
  drawing.entities.push_back(LineEntity{{}, {0, 0}, {40, 40}});
  PictureStyle style;
  style.format = PictureFormat::kSvg;
  style.sheet = sheetOf({{"--dpi", "600"}});
  const std::string svg = drawPicture(drawing, style).bytes;
  EXPECT_NE(svg.find("width=\"1600px\""), svg.npos) << svg;
}

TEST(RoundLength, IsOneTwoOrFiveTimesAPowerOfTen) {
  EXPECT_DOUBLE_EQ(roundLength(7.3), 5.0);
  EXPECT_DOUBLE_EQ(roundLength(49.0), 20.0);
  EXPECT_DOUBLE_EQ(roundLength(0.19), 0.1);
}

TEST(ScaleText, IsARatio) {
  EXPECT_EQ(scaleText(0.02), "1:50");
  EXPECT_EQ(scaleText(2.0), "2:1");
}

}  // namespace
}  // namespace dxf2d
