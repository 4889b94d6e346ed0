#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <variant>

#include "app/drawing/dxf_reader.h"
#include "tests/app/drawing/drawing_text.h"

namespace dxf2d {
namespace {

// A drawing of release `version` with these layers and entities, given as entityText takes them.
std::string releaseText(std::string_view version, std::string_view tables,
                        std::string_view entities) {
  return "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\n" + std::string(version) +
         "\n  9\n$INSUNITS\n 70\n4\n  0\nENDSEC\n  0\nSECTION\n  2\nTABLES\n" +
         std::string(tables) + "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n" +
         std::string(entities) + "  0\nENDSEC\n  0\nEOF\n";
}

Drawing parse(const std::string& text) { return parseDrawing(text, "plan.dxf"); }

TEST(DxfReleaseReader, ReadsReleaseAndUnits) {
  EXPECT_EQ(parse(releaseText("AC1015", "", "")).release, Release::kR2000);
  EXPECT_EQ(parse(releaseText("AC1018", "", "")).release, Release::kR2004);
  EXPECT_EQ(parse(releaseText("AC1018", "", "")).units, 4);
  EXPECT_EQ(parse(drawingText("", "")).release, Release::kR10);
}

TEST(DxfReleaseReader, ReadsALightweightPolyline) {
  const Drawing drawing = parse(releaseText(
      "AC1015", "",
      entityText("LWPOLYLINE",
                 "5=2A 330=17 100=AcDbEntity 8=0 62=3 100=AcDbPolyline 90=3 70=1 43=0 10=0 20=1 "
                 "10=4 20=1 42=0 10=4 20=3")));
  const auto& polyline = std::get<PolylineEntity>(drawing.entities.at(0));
  EXPECT_TRUE(polyline.closed);
  EXPECT_EQ(polyline.color, 3);
  ASSERT_EQ(polyline.vertices.size(), 3U);
  EXPECT_EQ(polyline.vertices[2].x, 4.0);
  EXPECT_EQ(polyline.vertices[2].y, 3.0);
}

TEST(DxfReleaseReader, RefusesABulge) {
  const std::string text =
      releaseText("AC1015", "", entityText("LWPOLYLINE", "90=2 10=0 20=0 42=1 10=1 20=0"));
  EXPECT_NE(complaintOf(text).find("a bulge makes an arc"), std::string::npos);
}

TEST(DxfReleaseReader, RefusesALightweightPointWithoutOrdinate) {
  const std::string text =
      releaseText("AC1015", "", entityText("LWPOLYLINE", "90=2 10=0 20=0 10=1"));
  EXPECT_NE(complaintOf(text).find("a point has no group 20"), std::string::npos);
}

TEST(DxfReleaseReader, ReadsLayersWithTheirStyle) {
  const Drawing drawing = parse(releaseText(
      "AC1018",
      entityText("TABLE", "2=LAYER 70=2") + entityText("LAYER", "2=0 70=0 62=7 6=Continuous") +
          entityText("LAYER", "2=Walls 70=0 62=-3 420=255 6=DASHED 370=50") +
          entityText("ENDTAB", ""),
      entityText("LINE", "8=Walls 10=0 20=0 11=1 21=0")));
  ASSERT_EQ(drawing.layers.size(), 2U);
  const Layer& layer = drawing.layers[1];
  EXPECT_EQ(layer.name, "Walls");
  EXPECT_EQ(layer.color, 3);
  EXPECT_EQ(layer.trueColor, 255);
  EXPECT_EQ(layer.lineWeight, 50);
  EXPECT_EQ(layer.lineType, LineType::kDashed);
  const auto& line = std::get<LineEntity>(drawing.entities.at(0));
  EXPECT_EQ(line.layer, 1U);
  EXPECT_EQ(line.color, kColorByLayer);
  EXPECT_EQ(line.lineType, LineType::kByLayer);
}

TEST(DxfReleaseReader, ReadsTheStyleOfEntities) {
  const Drawing drawing =
      parse(releaseText("AC1018", entityText("LTYPE", "2=DASHED 40=0.75 49=0.5 49=-0.25"),
                        entityText("LINE", "8=0 6=dashed 370=18 420=16711680 10=0 20=0 11=1 21=0") +
                            entityText("LINE", "8=0 370=-1 10=0 20=0 11=1 21=0")));
  const auto& styled = std::get<LineEntity>(drawing.entities.at(0));
  EXPECT_EQ(styled.lineType, LineType::kDashed);
  EXPECT_EQ(styled.lineWeight, 18);
  EXPECT_EQ(styled.trueColor, 0xFF0000);
  EXPECT_EQ(drawing.dashLength, 0.5);
  EXPECT_EQ(std::get<LineEntity>(drawing.entities.at(1)).lineWeight, kDefaultLineWeight);
}

TEST(DxfReleaseReader, ALayerThatIsNotInTheTableIsThere) {
  const Drawing drawing =
      parse(releaseText("AC1015", "", entityText("LINE", "8=Roof 10=0 20=0 11=1 21=0")));
  ASSERT_EQ(drawing.layers.size(), 2U);
  EXPECT_EQ(drawing.layers[1].name, "Roof");
  EXPECT_EQ(drawing.layers[1].color, 7);
}

}  // namespace
}  // namespace dxf2d
