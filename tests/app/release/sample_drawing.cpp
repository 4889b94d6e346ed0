#include "tests/app/release/sample_drawing.h"

#include "app/release/release_writer.h"

namespace dxf2d::release {

namespace {

PolylineEntity polyline(EntityProperties properties, bool closed, std::vector<PlanPoint> vertices) {
  return {properties, closed, std::move(vertices)};
}

TextEntity label(PlanPoint at, TextAcross across, TextUp up) {
  TextEntity text;
  text.at = at;
  text.across = across;
  text.up = up;
  text.height = 3.5;
  text.widthFactor = 0.8;
  text.rotation = 30.0;
  text.bytes = "K\\U+00FCche";
  return text;
}

}  // namespace

Drawing sampleDrawing(Release release) {
  Drawing drawing;
  drawing.release = release;
  drawing.units = 4;
  drawing.dashLength = 2.0;
  drawing.layers.push_back({"Walls", 1, 0xFE0000, 50, LineType::kContinuous});
  drawing.layers.push_back({"Hidden", 8, kNoTrueColor, 18, LineType::kDashed});
  drawing.layerNumbers = {{"0", 0}, {"Walls", 1}, {"Hidden", 2}};

  DrawingBlock inner{"GO_1", true, {1.0, 1.0}, {}};
  inner.entities.emplace_back(polyline({}, true, {{1, 1}, {11, 1}, {11, 6}, {1, 6}}));
  DrawingBlock outer{"GO_2", true, {}, {}};
  outer.entities.emplace_back(InsertEntity{{}, 0, {5.0, 5.0}, 0.0});
  drawing.blocks = {inner, outer};
  drawing.blockNumbers = {{"GO_1", 0}, {"GO_2", 1}};

  EntityProperties walls{.layer = 1};
  EntityProperties hidden{.layer = 2};
  EntityProperties own{.color = 3, .trueColor = 0x00FE01, .lineWeight = 35};
  own.lineType = LineType::kDashed;
  auto& entities = drawing.entities;
  entities.emplace_back(polyline(walls, true, {{0, 0}, {100, 0}, {100, 50}}));
  entities.emplace_back(polyline(own, false, {{0, 0}, {0.1, 0.2}, {1.0 / 3.0, 2}}));
  entities.emplace_back(LineEntity{hidden, {-5, -2}, {120, 60}});
  entities.emplace_back(CircleEntity{{}, {20, 20}, 7.5});
  entities.emplace_back(FaceEntity{{}, {PlanPoint{0, 0}, {4, 0}, {4, 4}, {0, 4}}});
  entities.emplace_back(label({50, 25}, TextAcross::kCenter, TextUp::kMiddle));
  entities.emplace_back(label({60, 25}, TextAcross::kLeft, TextUp::kBaseline));
  entities.emplace_back(InsertEntity{walls, 1, {40.0, 30.0}, 90.0});
  return drawing;
}

std::string written(const Drawing& drawing) {
  std::string text;
  writeDrawing(drawing, [&](std::string_view bytes) { text += bytes; });
  return text;
}

}  // namespace dxf2d::release
