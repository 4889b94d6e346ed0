#include "app/preview/sheet.h"

#include <gtest/gtest.h>

#include "app/cli/failure.h"
#include "app/preview/picture.h"
#include "app/preview/title_line.h"

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
