// The reader of drawings: any text gives a drawing that keeps the rules, or one sentence.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

#include "app/drawing/dxf_reader.h"
#include "app/drawing/text_decoding.h"
#include "fuzz/require.h"

namespace {

using namespace dxf2d;

constexpr std::string_view kName = "drawing.dxf";

void checkPoint(PlanPoint point) {
  require(std::isfinite(point.x) && std::isfinite(point.y), "every coordinate is finite");
}

// What a picture relies on.
struct EntityCheck {
  const Drawing& drawing;

  void operator()(const LineEntity& line) const {
    checkPoint(line.start);
    checkPoint(line.end);
  }
  void operator()(const PolylineEntity& polyline) const {
    std::ranges::for_each(polyline.vertices, checkPoint);
  }
  void operator()(const FaceEntity& face) const { std::ranges::for_each(face.corners, checkPoint); }
  void operator()(const CircleEntity& circle) const {
    checkPoint(circle.center);
    require(circle.radius >= 0.0 && std::isfinite(circle.radius), "a circle has a radius");
  }
  void operator()(const TextEntity& text) const {
    checkPoint(text.at);
    require(std::isfinite(text.height) && std::isfinite(text.rotation), "a text has a place");
    require(text.widthFactor > 0.0, "a text has a width");
    decodeText(text.bytes, 1252);
  }
  void operator()(const InsertEntity& insert) const {
    checkPoint(insert.at);
    require(std::isfinite(insert.rotation), "an INSERT has a place");
    require(insert.block < drawing.blocks.size(), "an INSERT names a block");
  }
};

void checkDrawing(const Drawing& drawing) {
  const EntityCheck check{drawing};
  const auto checkAll = [&](const std::vector<DrawingEntity>& entities) {
    for (const DrawingEntity& entity : entities) {
      std::visit(check, entity);
    }
  };
  checkAll(drawing.entities);
  for (const DrawingBlock& block : drawing.blocks) {
    checkPoint(block.base);
    checkAll(block.entities);
  }
  require(drawing.blockNumbers.size() == drawing.blocks.size(), "every block has one name");
}

void checkSentence(std::string_view sentence) {
  require(sentence.starts_with(kName), "a refusal begins with the file");
  require(std::ranges::all_of(sentence, [](char byte) { return byte >= ' ' && byte <= '~'; }),
          "a refusal is one printable line");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  try {
    checkDrawing(parseDrawing({reinterpret_cast<const char*>(bytes), size}, kName));
  } catch (const DxfError& error) {
    checkSentence(error.what());
  } catch (const LimitError& error) {
    checkSentence(error.what());
  }
  return 0;
}
