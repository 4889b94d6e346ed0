#include "projection/section.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

#include "mesh/slot_table.h"
#include "platform/large_memory.h"
#include "projection/caps.h"
#include "projection/gap_bridges.h"

namespace dxf2d::projection {
namespace {

class SceneCutter {
 public:
  SceneCutter(Scene&& scene, double height)
      : scene_(std::move(scene)), height_(height), cutPoints_(CountCuts()) {}

  Section Run() {
    for (std::size_t t = 0; t < scene_.triangles.size(); ++t) {
      CutTriangle(t);
    }
    for (const Scene::Line& line : scene_.lines) {
      CutLine(line);
    }
    section_.below.points = std::move(scene_.points);
    section_.below.deviations = std::move(scene_.deviations);
    section_.below.noise = std::move(scene_.noise);
    return std::move(section_);
  }

 private:
  bool IsAbove(Index point) const { return isAbove_[point] != 0; }

  std::size_t CornersAbove(const std::array<Index, 3>& corners) const {
    return static_cast<std::size_t>(isAbove_[corners[0]]) +
           static_cast<std::size_t>(isAbove_[corners[1]]) +
           static_cast<std::size_t>(isAbove_[corners[2]]);
  }

  // Tells the points above from those below, makes room for what the cut leaves, and returns how
  // many triangles are cut.
  std::size_t CountCuts() {
    isAbove_.reserve(scene_.points.size());
    for (const Point& point : scene_.points) {
      isAbove_.push_back(point[2] >= height_ ? 1 : 0);
    }
    std::array<std::size_t, 4> counts{};
    for (const auto& corners : scene_.triangles) {
      ++counts[CornersAbove(corners)];
    }
    const std::size_t left = counts[0] + 2 * counts[1] + counts[2];
    reserveLarge(section_.below.triangles, left);
    reserveLarge(section_.below.parts, left);
    reserveLarge(section_.below.polygonEdges, left);
    section_.cuts.reserve(counts[1] + counts[2]);
    return counts[1] + counts[2];
  }

  // A triangle of polygon `polygon_`.
  void Add(const std::array<Index, 3>& corners, Index part, unsigned polygonEdges) {
    const unsigned samePolygon = polygon_ == lastPolygon_ ? kSamePolygon : 0;
    section_.below.triangles.push_back(corners);
    section_.below.parts.push_back(part);
    section_.below.polygonEdges.push_back(static_cast<std::uint8_t>(polygonEdges | samePolygon));
    lastPolygon_ = polygon_;
  }

  // The point at the height between two points of which one is above; one for both triangles of an
  // edge.
  Index PointBetween(Index a, Index b) {
    const Index low = IsAbove(a) ? b : a;
    const Index high = IsAbove(a) ? a : b;
    const std::uint64_t key = std::uint64_t{low} << 32U | high;
    const std::uint32_t hash = mesh::mixed(key);
    const Index known = cutPoints_.Find(hash, [&](Index i) { return cutKeys_[i] == key; });
    if (known != mesh::kNone) {
      return firstCutPoint_ + known;
    }
    cutPoints_.Keep(hash, static_cast<Index>(cutKeys_.size()));
    cutKeys_.push_back(key);
    const Point& p = scene_.points[low];
    const Point& q = scene_.points[high];
    const double share = (height_ - p[2]) / (q[2] - p[2]);
    const auto between = [&](std::size_t axis) {
      return share < 1 ? p[axis] + share * (q[axis] - p[axis]) : q[axis];
    };
    scene_.points.push_back({between(0), between(1), height_});
    return static_cast<Index>(scene_.points.size() - 1);
  }

  void CutTriangle(std::size_t t) {
    const auto& corners = scene_.triangles[t];
    const Index part = scene_.parts[t];
    const unsigned edges = scene_.polygonEdges[t] & kAllPolygonEdges;
    polygon_ += (scene_.polygonEdges[t] & kSamePolygon) == 0 ? 1 : 0;
    const std::size_t above = CornersAbove(corners);
    if (above == 0) {
      Add(corners, part, edges);
    }
    if (above == 0 || above == 3) {
      return;
    }
    // The corner that stands alone on its side of the plane, and its two neighbors.
    std::size_t alone = 0;
    while (IsAbove(corners[alone]) != (above == 1)) {
      ++alone;
    }
    const Index a = corners[alone];
    const Index b = corners[(alone + 1) % 3];
    const Index c = corners[(alone + 2) % 3];
    const unsigned ab = edges >> alone & 1U;
    const unsigned bc = edges >> (alone + 1) % 3 & 1U;
    const unsigned ca = edges >> (alone + 2) % 3 & 1U;
    const Index cutB = PointBetween(a, b);
    const Index cutC = PointBetween(a, c);
    if (above == 1) {
      Add({b, c, cutC}, part, bc | ca << 1U);
      Add({b, cutC, cutB}, part, ab << 2U);
    } else {
      Add({a, cutB, cutC}, part, ab | ca << 2U);
    }
    section_.cuts.push_back({cutB, cutC, part, EdgeKind::kCut});
  }

  void CutLine(const Scene::Line& line) {
    const bool isFromAbove = IsAbove(line.from);
    const bool isToAbove = IsAbove(line.to);
    if (isFromAbove && isToAbove) {
      return;
    }
    const Index from = isFromAbove ? PointBetween(line.from, line.to) : line.from;
    const Index to = isToAbove ? PointBetween(line.from, line.to) : line.to;
    section_.below.lines.push_back({from, to, line.part});
  }

  // Gets the points of the cut behind its own.
  Scene scene_;
  double height_;
  Section section_;
  // Counted from 1: of the triangle at hand, and of the last one added.
  std::size_t polygon_ = 0;
  std::size_t lastPolygon_ = 0;
  // By point: 1 if it is at the height or above.
  std::vector<char> isAbove_;
  Index firstCutPoint_ = static_cast<Index>(scene_.points.size());
  // Both ends of the edge that each cut point is on, the lower first.
  std::vector<std::uint64_t> cutKeys_;
  mesh::SlotTable cutPoints_;
};

// The bodies whose cut is made of closed polylines only, in order.
std::vector<std::uint64_t> bodiesWithoutGaps(const Polylines& lines) {
  std::vector<std::uint64_t> bodies = lines.groups;
  std::vector<std::uint64_t> withGaps;
  for (std::size_t i = 0; i < lines.Count(); ++i) {
    if (!lines.IsClosed(i)) {
      withGaps.push_back(lines.groups[i]);
    }
  }
  std::ranges::sort(bodies);
  std::ranges::sort(withGaps);
  std::erase_if(bodies,
                [&](std::uint64_t body) { return std::ranges::binary_search(withGaps, body); });
  return bodies;
}

void addTriangles(const std::vector<std::array<PlanPoint, 3>>& triangles, double height, Index part,
                  Scene& scene) {
  for (const auto& corners : triangles) {
    const auto first = static_cast<Index>(scene.points.size());
    for (const PlanPoint& corner : corners) {
      scene.points.push_back({corner[0], corner[1], height});
    }
    scene.triangles.push_back({first, first + 1, first + 2});
    scene.parts.push_back(part);
    scene.polygonEdges.push_back(0);
  }
}

// The numbers of polylines by their groups.
class LinesByGroup {
 public:
  explicit LinesByGroup(const Polylines& lines) : lines_(lines), numbers_(lines.Count()) {
    std::iota(numbers_.begin(), numbers_.end(), Index{0});
    std::ranges::stable_sort(numbers_, {}, [&](Index line) { return lines_.groups[line]; });
  }

  std::span<const Index> Of(std::uint64_t group) const {
    const auto groupOf = [&](Index line) { return lines_.groups[line]; };
    const auto begin = std::ranges::lower_bound(numbers_, group, {}, groupOf);
    return {begin, std::ranges::upper_bound(numbers_, group, {}, groupOf)};
  }

 private:
  const Polylines& lines_;
  std::vector<Index> numbers_;
};

// A side of a cut, and the part that it belongs to.
struct CutSide {
  GroupedSegment segment;  // in the group of the body
  Index part;
};

void addBridges(const std::vector<GroupedSegment>& bridges, double height, Index part,
                Section& section) {
  for (const GroupedSegment& bridge : bridges) {
    const auto first = static_cast<Index>(section.below.points.size());
    for (const PlanPoint& end : {bridge.from, bridge.to}) {
      section.below.points.push_back({end[0], end[1], height});
    }
    section.cuts.push_back({first, first + 1, part, EdgeKind::kBridge});
  }
}

// Fills the cuts of the bodies without gaps, or with gaps that can be bridged; `sides` are the
// cuts.
void fillCuts(std::vector<CutSide>& sides, double height, double weld, Section& section) {
  std::ranges::stable_sort(
      sides, [](const CutSide& a, const CutSide& b) { return a.segment.group < b.segment.group; });
  const LinesByGroup linesOfBodies(section.lines.polylines);
  const std::vector<std::uint64_t> whole = bodiesWithoutGaps(section.lines.polylines);
  std::vector<std::array<PlanPoint, 3>> triangles;
  std::vector<GroupedSegment> segments;
  for (std::size_t begin = 0; begin < sides.size();) {
    const std::uint64_t body = sides[begin].segment.group;
    Index part = sides[begin].part;
    segments.clear();
    for (; begin < sides.size() && sides[begin].segment.group == body; ++begin) {
      segments.push_back(sides[begin].segment);
      part = std::min(part, sides[begin].part);
    }
    triangles.clear();
    bool isWhole = std::ranges::binary_search(whole, body);
    std::vector<GroupedSegment> bridges;
    if (!isWhole) {
      bridges = bridgesOverGaps(section.lines.polylines, linesOfBodies.Of(body));
      segments.insert(segments.end(), bridges.begin(), bridges.end());
      isWhole = !bridges.empty();
    }
    if (!isWhole || !appendCap(segments, weld, triangles)) {
      ++section.unfilledBodies;
      bridges.clear();
    }
    addBridges(bridges, height, part, section);
    addTriangles(triangles, height, part, section.below);
  }
}

}  // namespace

Section cutScene(Scene scene, double height, double weld, std::span<const Index> bodyOfPart,
                 Caps caps) {
  Section section = SceneCutter(std::move(scene), height).Run();
  std::vector<GroupedSegment> segments;
  segments.reserve(section.cuts.size());
  for (const CandidateEdge& cut : section.cuts) {
    const Point& from = section.below.points[cut.from];
    const Point& to = section.below.points[cut.to];
    const Index body = bodyOfPart.empty() ? cut.part : bodyOfPart[cut.part];
    segments.push_back({{from[0], from[1]}, {to[0], to[1]}, body});
  }
  section.lines = joinSegments(segments, weld);
  if (caps == Caps::kFilled) {
    std::vector<CutSide> sides;
    sides.reserve(segments.size());
    for (std::size_t i = 0; i < segments.size(); ++i) {
      sides.push_back({segments[i], section.cuts[i].part});
    }
    fillCuts(sides, height, weld, section);
  }
  return section;
}

}  // namespace dxf2d::projection
