// The finishing pass: what is finished twice is as if finished once, and covers the same points.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/drawing/drawing_nesting.h"
#include "app/drawing/dxf_reader.h"
#include "app/drawing/plan_extents.h"
#include "app/finish/finishing.h"
#include "app/release/release_writer.h"
#include "fuzz/require.h"
#include "tests/app/linework/segments.h"

namespace {

using namespace dxf2d;
using namespace dxf2d::finish;

constexpr std::string_view kName = "drawing.dxf";
// Comparing all with all takes time that grows with their square.
constexpr std::size_t kMostEnds = 400;

Options optionsOf(std::uint8_t bits) {
  Options options;
  options.release = (bits & 1U) != 0 ? Release::kR2004 : Release::kR2000;
  options.join = (bits & 2U) == 0;
  options.explode = (bits & 4U) != 0;
  return options;
}

void appendLine(std::vector<PlanPoint>& ends, const std::vector<PlanPoint>& points, bool closed,
                const Placement& placement) {
  for (std::size_t i = 0; i + (closed ? 0 : 1) < points.size(); ++i) {
    ends.push_back(placement.Apply(points[i]));
    ends.push_back(placement.Apply(points[(i + 1) % points.size()]));
  }
}

// The ends, in pairs, of all segments that the drawing shows.
std::vector<PlanPoint> shownEnds(const Drawing& drawing) {
  std::vector<PlanPoint> ends;
  forEachPlaced(drawing, [&](const DrawingEntity& entity, const Placement& placement) {
    if (const auto* polyline = std::get_if<PolylineEntity>(&entity)) {
      appendLine(ends, polyline->vertices, polyline->closed, placement);
    } else if (const auto* line = std::get_if<LineEntity>(&entity)) {
      appendLine(ends, {line->start, line->end}, false, placement);
    } else if (const auto* face = std::get_if<FaceEntity>(&entity)) {
      appendLine(ends, {face->corners.begin(), face->corners.end()}, true, placement);
    }
  });
  return ends;
}

// Without segments that may be taken for points.
std::vector<PlanPoint> withoutShort(const std::vector<PlanPoint>& ends, double least) {
  std::vector<PlanPoint> kept;
  for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
    if (linework::length(linework::operator-(ends[i + 1], ends[i])) > least) {
      kept.insert(kept.end(), {ends[i], ends[i + 1]});
    }
  }
  return kept;
}

void checkCover(const Drawing& before, const Drawing& after) {
  std::vector<PlanPoint> given = shownEnds(before);
  const std::vector<PlanPoint> finished = shownEnds(after);
  PlanExtents extents;
  for (const PlanPoint end : given) {
    extents.Add(end);
  }
  const PlanPoint size{extents.High().x - extents.Low().x, extents.High().y - extents.Low().y};
  const double extent = std::max(size.x, size.y);
  constexpr double kMost = 1e9;
  const bool isUsual = extents.IsFinite() && std::abs(extents.Low().x) < kMost &&
                       std::abs(extents.Low().y) < kMost && std::abs(extents.High().x) < kMost &&
                       std::abs(extents.High().y) < kMost && extent > 1e-3;
  if (!isUsual || given.size() > kMostEnds || finished.size() > kMostEnds) {
    return;
  }
  // A millionth of the extent, more than once where cut pieces are cut again, and the six decimals
  // of exploded blocks.
  const double tolerance = 2e-5 * extent + 1e-6;
  given = withoutShort(given, tolerance);
  if (given.empty()) {
    return;
  }
  require(linework::largestGap(given, finished) <= tolerance, "what was drawn is still drawn");
  require(linework::largestGap(finished, shownEnds(before)) <= tolerance, "nothing else is drawn");
}

std::string written(const Drawing& drawing) {
  std::string text;
  release::writeDrawing(drawing, [&](std::string_view bytes) { text += bytes; });
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const Options options = optionsOf(bytes[0]);
  Drawing drawing;
  try {
    drawing = parseDrawing({reinterpret_cast<const char*>(bytes) + 1, size - 1}, kName);
  } catch (const Failure&) {
    return 0;
  }
  const FinishedDrawing once = finishDrawing(drawing, {}, options);
  if (once.summary.outOfRange == 0) {
    checkCover(drawing, once.drawing);
  }
  const std::string text = written(once.drawing);
  const Drawing again = finishDrawing(parseDrawing(text, kName), {}, options).drawing;
  require(written(again) == text, "what is finished twice is as if finished once");
  return 0;
}
