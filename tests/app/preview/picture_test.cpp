#include "app/preview/picture.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "app/drawing/display_palette.h"
#include "app/drawing/dxf_reader.h"
#include "tests/app/drawing/drawing_text.h"
#include "tests/app/preview/picture_pixels.h"

namespace dxf2d {

namespace {

// A picture of 400 by 400 pixels of the square from (0, 0) to (100, 100), whose frame is drawn.
constexpr int kSize = 400;

std::string framed(const std::string& blocks, const std::string& entities) {
  return drawingText(blocks, polylineText(7, true, "0,0 100,0 100,100 0,100") + entities);
}

double pageX(double x) { return 10.0 + 3.8 * x; }
double pageY(double y) { return 390.0 - 3.8 * y; }

PicturePixels draw(const std::string& blocks, const std::string& entities) {
  return PicturePixels::OfDrawing(framed(blocks, entities), kSize);
}

Pixel inkAt(const PicturePixels& picture, double x, double y) {
  return picture.InkNear(pageX(x), pageY(y));
}

PixelBox insideFrame() { return {14, 14, kSize - 15, kSize - 15}; }

void expectNear(const DisplayColor& shown, double red, double green, double blue) {
  EXPECT_NEAR(shown.red, red, 1e-12);
  EXPECT_NEAR(shown.green, green, 1e-12);
  EXPECT_NEAR(shown.blue, blue, 1e-12);
}

TEST(DisplayPalette, BasicHueAndGrayEntries) {
  expectNear(displayColor(1), 1, 0, 0);
  expectNear(displayColor(6), 1, 0, 1);
  expectNear(displayColor(10), 1, 0, 0);
  expectNear(displayColor(12), 0.65, 0, 0);
  expectNear(displayColor(13), 0.65, 0.325, 0.325);
  expectNear(displayColor(19), 0.15, 0.075, 0.075);
  expectNear(displayColor(20), 1, 0.25, 0);
  expectNear(displayColor(60), 0.75, 1, 0);
  expectNear(displayColor(100), 0, 1, 0.25);
  expectNear(displayColor(178), 0, 0, 0.15);
  expectNear(displayColor(190), 0.5, 0, 1);
  expectNear(displayColor(240), 1, 0, 0.25);
  expectNear(displayColor(250), 0.33, 0.33, 0.33);
  expectNear(displayColor(254), 0.866, 0.866, 0.866);
}

TEST(DisplayPalette, WhiteIsBlackOnPaper) {
  for (const int index : {7, 8, 9, 255}) {
    expectNear(displayColor(index), 0, 0, 0);
  }
}

TEST(DisplayPalette, NumbersOutsideThePaletteAreBlack) {
  for (const int index : {std::numeric_limits<int>::min(), -1, 0, 256, 300}) {
    expectNear(displayColor(index), 0, 0, 0);
  }
}

TEST(Picture, LinesHaveTheColorsOfTheirIndices) {
  const PicturePixels picture = draw(
      "", lineText(1, 10, 20, 90, 20) + lineText(3, 10, 40, 90, 40) + lineText(5, 10, 60, 90, 60));
  const Pixel red = inkAt(picture, 50, 20);
  EXPECT_GT(red.red, 240);
  EXPECT_LT(red.green, 110);
  const Pixel green = inkAt(picture, 50, 40);
  EXPECT_GT(green.green, 240);
  EXPECT_LT(green.red, 110);
  const Pixel blue = inkAt(picture, 50, 60);
  EXPECT_GT(blue.blue, 240);
  EXPECT_LT(blue.red, 110);
}

TEST(Picture, LinesByLayerHaveTheColorOfTheirLayer) {
  const std::string layers =
      "  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nLAYER\n  0\nLAYER\n  2\nWalls\n 62\n1\n"
      "  0\nENDTAB\n  0\nENDSEC\n";
  const PicturePixels picture = PicturePixels::OfDrawing(
      layers + framed("", entityText("LINE", "8=Walls 10=10 20=20 11=90 21=20")), kSize);
  const Pixel red = inkAt(picture, 50, 20);
  EXPECT_GT(red.red, 240);
  EXPECT_LT(red.green, 110);
}

TEST(Picture, StandsOnWhite) {
  const PicturePixels picture = draw("", "");
  EXPECT_TRUE(picture.At(0, 0).IsWhite());
  EXPECT_TRUE(picture.At(kSize / 2, kSize / 2).IsWhite());
  EXPECT_EQ(picture.Width(), kSize);
  EXPECT_EQ(picture.Height(), kSize);
}

TEST(Picture, FrameOfColor7IsBlackAndAtTheMargin) {
  const PicturePixels picture = draw("", "");
  EXPECT_LT(inkAt(picture, 50, 0).red, 110);
  EXPECT_LT(inkAt(picture, 0, 50).red, 110);
  const PixelBox ink = picture.InkBox();
  EXPECT_NEAR(ink.left, 10, 2);
  EXPECT_NEAR(ink.bottom, 390, 2);
}

TEST(Picture, YRunsUpwards) {
  const PicturePixels picture = draw("", lineText(1, 10, 90, 90, 90));
  EXPECT_FALSE(inkAt(picture, 50, 90).IsWhite());
  EXPECT_TRUE(inkAt(picture, 50, 10).IsWhite());
}

TEST(Picture, TurnedNestedInsertLandsWhereItsPlacementsSay) {
  const std::string blocks = blockText("GO_1", insertText("GO_2", 10, 0, 90)) +
                             blockText("GO_2", lineText(1, 10, 0, 30, 0));
  // (10, 0) and (30, 0) turn to (0, 10) and (0, 30), move by (10, 0), turn by 90 degrees to
  // (-10, 10) and (-30, 10), and move by (60, 50).
  const PicturePixels picture = draw(blocks, insertText("GO_1", 60, 50, 90));
  EXPECT_GT(inkAt(picture, 40, 60).red, 200);
  EXPECT_LT(inkAt(picture, 40, 60).green, 110);
  const PixelBox ink = picture.InkBoxWithin(insideFrame());
  EXPECT_NEAR(ink.left, pageX(30), 2);
  EXPECT_NEAR(ink.right, pageX(50), 2);
  EXPECT_NEAR(ink.top, pageY(60), 2);
}

TEST(Picture, BlockThatIsNotInsertedIsNotShown) {
  const PicturePixels picture = draw(blockText("GO_1", lineText(1, 10, 50, 90, 50)), "");
  EXPECT_TRUE(inkAt(picture, 50, 50).IsWhite());
}

TEST(Picture, ClosedPolylineHasItsLastEdge) {
  const PicturePixels closed = draw("", polylineText(5, true, "20,20 80,20 80,80"));
  EXPECT_FALSE(inkAt(closed, 50, 50).IsWhite());
  const PicturePixels open = draw("", polylineText(5, false, "20,20 80,20 80,80"));
  EXPECT_TRUE(inkAt(open, 50, 50).IsWhite());
}

TEST(Picture, PolylineOfManyVerticesIsUnbroken) {
  std::string points;
  for (int step = 0; step <= 3000; ++step) {
    points += std::to_string(10 + step * 80 / 3000.0) + "," + (step % 2 == 0 ? "40 " : "60 ");
  }
  const PicturePixels picture = draw("", polylineText(5, false, points));
  for (int x = 11; x < 90; ++x) {
    EXPECT_FALSE(inkAt(picture, x, 50).IsWhite()) << x;
  }
}

TEST(Picture, CircleIsRound) {
  const PicturePixels picture = draw("", entityText("CIRCLE", "62=1 40=30 10=50 20=50"));
  EXPECT_FALSE(inkAt(picture, 80, 50).IsWhite());
  EXPECT_FALSE(inkAt(picture, 50, 20).IsWhite());
  EXPECT_FALSE(inkAt(picture, 50 + 30 * 0.7071, 50 + 30 * 0.7071).IsWhite());
  EXPECT_TRUE(inkAt(picture, 50, 50).IsWhite());
}

TEST(Picture, FaceIsItsOutline) {
  const PicturePixels picture =
      draw("", entityText("3DFACE", "62=1 10=20 20=20 11=80 21=20 12=80 22=80 13=20 23=80"));
  EXPECT_FALSE(inkAt(picture, 20, 50).IsWhite());
  EXPECT_FALSE(inkAt(picture, 80, 50).IsWhite());
  EXPECT_TRUE(inkAt(picture, 50, 50).IsWhite());
}

TEST(Picture, LeftTextBeginsAtItsPoint) {
  const PixelBox ink = draw("", labelText("HHH", 8, 50, 50, 0)).InkBoxWithin(insideFrame());
  EXPECT_NEAR(ink.left, pageX(50), 6);
  EXPECT_GT(ink.right, pageX(60));
}

TEST(Picture, CenteredTextHasItsMiddleOnItsPoint) {
  const PixelBox ink = draw("", labelText("HHH", 8, 50, 50, 1)).InkBoxWithin(insideFrame());
  EXPECT_NEAR((ink.left + ink.right) / 2.0, pageX(50), 2);
  EXPECT_NEAR((ink.top + ink.bottom) / 2.0, pageY(50), 2);
}

TEST(Picture, RightTextEndsAtItsPoint) {
  const PixelBox ink = draw("", labelText("HHH", 8, 50, 50, 2)).InkBoxWithin(insideFrame());
  EXPECT_NEAR(ink.right, pageX(50), 6);
  EXPECT_LT(ink.left, pageX(40));
}

TEST(Picture, HeightIsThatOfACapitalLetter) {
  const PixelBox ink = draw("", labelText("HHH", 20, 50, 50, 1)).InkBoxWithin(insideFrame());
  EXPECT_NEAR(ink.bottom - ink.top + 1, 20 * 3.8, 2);
}

TEST(Picture, WidthFactorSqueezesLetters) {
  const auto widthOf = [](const char* factor) {
    const std::string text = "62=7 40=10 10=20 20=50 41=" + std::string(factor) + " 1=HHHH";
    const PixelBox ink = draw("", entityText("TEXT", text)).InkBoxWithin(insideFrame());
    return ink.right - ink.left;
  };
  EXPECT_NEAR(widthOf("0.5"), widthOf("1.0") / 2.0, 4);
}

TEST(Picture, TurnedTextRunsUpwards) {
  const PixelBox ink =
      draw("", labelText("HHHHHH", 8, 50, 20, 0, 2, 90)).InkBoxWithin(insideFrame());
  EXPECT_NEAR((ink.left + ink.right) / 2.0, pageX(50), 2);
  EXPECT_NEAR(ink.bottom, pageY(20), 6);
  EXPECT_GT(ink.bottom - ink.top, 2 * (ink.right - ink.left));
}

TEST(Picture, TextTurnsWithItsBlock) {
  const std::string block = blockText("GO_1", labelText("HHHHHH", 8, 0, 0, 1));
  const PixelBox ink = draw(block, insertText("GO_1", 50, 50, 90)).InkBoxWithin(insideFrame());
  EXPECT_GT(ink.bottom - ink.top, 2 * (ink.right - ink.left));
  EXPECT_NEAR((ink.top + ink.bottom) / 2.0, pageY(50), 2);
}

TEST(Picture, TinyTextIsALineOfItsLength) {
  const PicturePixels picture = draw("", labelText(std::string(400, 'H'), 0.1, 50, 50, 1));
  const PixelBox ink = picture.InkBoxWithin(insideFrame());
  EXPECT_GT(ink.right - ink.left, 80);
  EXPECT_LT(ink.bottom - ink.top, 4);
}

TEST(Picture, PageHoldsTheWholeText) {
  const PicturePixels picture =
      PicturePixels::OfDrawing(drawingText("", labelText("\xC5Wide label gj", 1, 0, 0, 2)), kSize);
  const PixelBox ink = picture.InkBox();
  EXPECT_GE(ink.left, 8);
  EXPECT_LE(ink.right, picture.Width() - 8);
  EXPECT_GE(ink.top, 8);
  EXPECT_LE(ink.bottom, picture.Height() - 8);
  EXPECT_GT(ink.right - ink.left, kSize * 8 / 10);
}

TEST(Picture, OnePointIsADot) {
  const PicturePixels picture =
      PicturePixels::OfDrawing(drawingText("", lineText(1, 3, 3, 3, 3)), kSize);
  EXPECT_FALSE(picture.InkNear(picture.Width() / 2.0, picture.Height() / 2.0).IsWhite());
}

TEST(Picture, DrawingThatShowsNothingHasNoBytes) {
  for (const std::string& entities :
       {std::string(), insertText("GO_9", 0, 0), polylineText(1, true, ""),
        labelText("   ", 1, 0, 0, 0), labelText("a", 0, 0, 0, 0), labelText("", 1, 0, 0, 0)}) {
    const Drawing drawing = parseDrawing(drawingText("", entities), "plan.dxf");
    EXPECT_TRUE(drawPicture(drawing, {}).bytes.empty()) << entities;
  }
}

TEST(Picture, ExtremesOfTheNumbersAreDrawn) {
  for (const std::string& entities :
       {entityText("LINE", "10=-1.7e308 20=-1.7e308 11=1.7e308 21=1.7e308"),
        entityText("LINE", "10=0 20=0 11=1e-307 21=1e-307"),
        entityText("CIRCLE", "10=0 20=0 40=8e307"), entityText("CIRCLE", "10=0 20=0 40=1e-300"),
        entityText("TEXT", "40=1e300 41=1e-5 50=1e300 1=abc"),
        entityText("TEXT", "40=1e-300 41=1e300 1=abc"),
        entityText("TEXT", "40=1 41=1e-300 1=abc") + lineText(1, 0, 0, 1, 1)}) {
    const PicturePixels picture = PicturePixels::OfDrawing(drawingText("", entities), kSize);
    EXPECT_LE(picture.InkBox().left, picture.InkBox().right) << entities;
  }
}

TEST(Picture, EntityBeyondTheRangeOfNumbersIsLeftOut) {
  const std::string block = blockText("GO_1", entityText("LINE", "10=1e308 20=0 11=1e308 21=1"));
  const std::string far = entityText("INSERT", "2=GO_1 10=1e308 20=0");
  const Picture picture =
      drawPicture(parseDrawing(framed(block, far), "plan.dxf"), {PictureFormat::kPng, kSize, 1252});
  EXPECT_EQ(picture.leftOut, 1U);
  EXPECT_FALSE(PicturePixels(picture.bytes).InkNear(pageX(50), pageY(0)).IsWhite());
}

TEST(Picture, VectorFormatsHaveTheirFormsAndTexts) {
  const Drawing drawing = parseDrawing(framed("", labelText("Raum 1", 8, 50, 50, 1)), "plan.dxf");
  const std::string svg = drawPicture(drawing, {PictureFormat::kSvg, kSize, 1252}).bytes;
  EXPECT_NE(svg.find("<svg"), std::string::npos);
  EXPECT_NE(svg.find("width=\"400px\""), std::string::npos);
  const std::string pdf = drawPicture(drawing, {PictureFormat::kPdf, kSize, 1252}).bytes;
  EXPECT_EQ(pdf.substr(0, 5), "%PDF-");
}

TEST(Picture, SameDrawingMakesTheSamePng) {
  const Drawing drawing = parseDrawing(framed("", labelText("Raum 1", 8, 50, 50, 1)), "plan.dxf");
  EXPECT_EQ(drawPicture(drawing, {}).bytes, drawPicture(drawing, {}).bytes);
}

TEST(PictureFormat, IsTheExtension) {
  EXPECT_EQ(pictureFormat("a.png"), PictureFormat::kPng);
  EXPECT_EQ(pictureFormat("out.d/A.SVG"), PictureFormat::kSvg);
  EXPECT_EQ(pictureFormat("a.b.Pdf"), PictureFormat::kPdf);
  for (const char* name : {"", "png", "a.jpg", "a.png.", "a.png/x"}) {
    EXPECT_FALSE(pictureFormat(name).has_value()) << name;
  }
}

}  // namespace

}  // namespace dxf2d
