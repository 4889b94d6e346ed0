// Sections, hidden lines and outlines of a few polygons against all triangles, one by one.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "fuzz/geometry_input.h"
#include "fuzz/require.h"
#include "projection/section.h"
#include "projection/union_outline.h"
#include "projection/visibility.h"
#include "tests/projection/reference_projection.h"

namespace {

using namespace dxf2d::projection;  // NOLINT: the target is about this room alone

constexpr int kMostPoints = 40;
constexpr int kMostPolygons = 24;

dxf2d::mesh::PolygonMesh takeMesh(FuzzedDataProvider& data) {
  dxf2d::mesh::PolygonMesh mesh;
  const std::vector<double> coords = takeCoords(data, kMostPoints);
  for (std::size_t i = 0; i + 2 < coords.size(); i += 3) {
    mesh.points.push_back({coords[i], coords[i + 1], coords[i + 2]});
  }
  if (mesh.points.empty()) {
    return mesh;
  }
  const auto takePoint = [&] {
    return data.ConsumeIntegral<std::uint8_t>() % static_cast<Index>(mesh.points.size());
  };
  for (int i = 0; i < kMostPolygons && data.remaining_bytes() > 0; ++i) {
    const auto kind = data.ConsumeIntegral<std::uint8_t>();
    if (kind >= 250) {
      mesh.segments.push_back({takePoint(), takePoint(), 0});
      continue;
    }
    std::vector<Index> polygon(kind < 180 ? 3 : kind % 8);
    std::ranges::generate(polygon, takePoint);
    mesh.Add(polygon, kind % 3);
  }
  return mesh;
}

// How far the reference implementation, which knows nothing of the tolerances, may be off for each:
//   - in plan, every triangle may be narrower than `plan`, hide nothing, and lie beside the next;
//   - pieces are cut where edges pass through a face, not where they are `touch` below it, and
//     judged by their middles: one whose middle is less than `touch` below a face is twice that at
//     its end, and one that is hidden may begin in the face.
//   - points on edges and corners of loops are rounded to what coordinates of their size can tell.
PointSlack slackFor(const Tolerances& tolerances, double rounding) {
  return {2.0L * kMostPolygons * tolerances.plan + rounding, 4.0L * tolerances.touch + rounding,
          1e-3L * tolerances.touch};
}

double roundingOf(const Bounds& bounds) {
  double largest = 0;
  for (const Point& corner : {bounds.low, bounds.high}) {
    for (const double coordinate : corner) {
      largest = std::max(largest, std::abs(coordinate));
    }
  }
  return 4 * std::numeric_limits<double>::epsilon() * largest;
}

Point pointOn(const Point& a, const Point& b, double t) {
  return {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])};
}

void requireInside(const Point& point, const Bounds& bounds, double slack) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    require(std::isfinite(point[axis]), "all coordinates are finite");
    require(point[axis] >= bounds.low[axis] - slack && point[axis] <= bounds.high[axis] + slack,
            "every piece lies inside of the scene");
  }
}

double heightOf(const Scene& scene, const std::array<Index, 3>& corners) {
  const Point& a = scene.points[corners[0]];
  const Point& b = scene.points[corners[1]];
  const Point& c = scene.points[corners[2]];
  const auto length = [](const Point& p) { return std::hypot(p[0], p[1], p[2]); };
  const Point u = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
  const Point v = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
  const Point w = {c[0] - b[0], c[1] - b[1], c[2] - b[2]};
  const double area =
      length({u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]});
  const double longest = std::max({length(u), length(v), length(w)});
  return longest > 0 ? area / longest : 0;
}

// Whether the scene has details that drawings do not promise to show (docs/drawings.md): points
// nearer to each other, or triangles lower, than ten times the distance within which ends are
// joined. What is smaller than rounding is none.
bool hasFineDetails(const Scene& scene, const Tolerances& tolerances) {
  const auto isFine = [&](double size) {
    return size > tolerances.plan && size < 10 * tolerances.weld;
  };
  for (std::size_t i = 0; i < scene.points.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const Point& p = scene.points[i];
      const Point& q = scene.points[j];
      if (isFine(std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]))) {
        return true;
      }
    }
  }
  return std::ranges::any_of(scene.triangles, [&](const std::array<Index, 3>& corners) {
    return isFine(heightOf(scene, corners));
  });
}

void checkVisibility(const Scene& scene, const std::vector<CandidateEdge>& edges,
                     const Tolerances& tolerances) {
  const Bounds bounds = boundsOf(scene);
  const PointSlack slack = slackFor(tolerances, roundingOf(bounds));
  const bool isFine = hasFineDetails(scene, tolerances);
  const VisibleLines lines = findVisibleLines(scene, edges, tolerances);
  const auto check = [&](const EdgePiece& piece, Seen never, const char* fact) {
    require(0 <= piece.begin && piece.begin < piece.end && piece.end <= 1,
            "pieces are parts of edges");
    const Point& a = scene.points[edges[piece.edge].from];
    const Point& b = scene.points[edges[piece.edge].to];
    const double length = std::hypot(b[0] - a[0], b[1] - a[1]) * (piece.end - piece.begin);
    for (const double share : {0.21, 0.5, 0.83}) {
      // Between faces that meet on the edge, a single point of it can be seen.
      bool isWrong = !isFine && length > 100 * static_cast<double>(slack.plan);
      for (const double aside : {-0.01, 0.0, 0.01}) {
        const Point point =
            pointOn(a, b, piece.begin + (share + aside) * (piece.end - piece.begin));
        requireInside(point, bounds, static_cast<double>(slack.plan));
        isWrong = isWrong && seenFrom(scene, point, slack) == never;
      }
      require(!isWrong, fact);
    }
  };
  for (const EdgePiece& piece : lines.pieces) {
    check(piece, Seen::kHidden, "what is drawn as visible can be seen");
  }
  for (const EdgePiece& piece : hiddenPieces(edges.size(), lines.pieces)) {
    check(piece, Seen::kVisible, "what is drawn as hidden is hidden");
  }
  for (const PiercingPiece& piece : lines.piercings) {
    requireInside(piece.from, bounds, 3 * static_cast<double>(slack.touch));
    requireInside(piece.to, bounds, 3 * static_cast<double>(slack.touch));
  }
}

int windingAround(const Polylines& loops, double x, double y) {
  int winding = 0;
  for (std::size_t i = 0; i < loops.Count(); ++i) {
    require(loops.IsClosed(i) && loops.At(i).size() >= 4, "every loop is closed, of three points");
    const auto loop = loops.At(i);
    for (std::size_t j = 0; j + 1 < loop.size(); ++j) {
      const PlanPoint& p = loop[j];
      const PlanPoint& q = loop[j + 1];
      require(std::isfinite(p[0]) && std::isfinite(p[1]), "loops are finite");
      if ((p[1] > y) != (q[1] > y) && x < p[0] + (y - p[1]) / (q[1] - p[1]) * (q[0] - p[0])) {
        winding += q[1] > p[1] ? 1 : -1;
      }
    }
  }
  return winding;
}

void checkOutline(const Scene& scene, const std::vector<CandidateEdge>& cuts) {
  const Tolerances tolerances = outlineTolerancesFor(boundsOf(scene));
  std::vector<CandidateEdge> edges = findCandidateEdges(scene, tolerances);
  edges.insert(edges.end(), cuts.begin(), cuts.end());
  const std::vector<Index> groups(3, 0);
  const UnionOutline outline = findUnionOutline(scene, edges, groups, tolerances);
  const Bounds bounds = boundsOf(scene);
  for (int i = 1; i < 8; ++i) {
    for (int j = 1; j < 8; ++j) {
      const double x = bounds.low[0] + (i + 0.013) / 8 * (bounds.high[0] - bounds.low[0]);
      const double y = bounds.low[1] + (j + 0.017) / 8 * (bounds.high[1] - bounds.low[1]);
      const int winding = windingAround(outline.loops, x, y);
      const Seen cover = coverAt(scene, x, y, 10 * tolerances.weld + roundingOf(bounds));
      require(outline.droppedPieces != 0 || cover == Seen::kEither ||
                  winding == (cover == Seen::kVisible ? 1 : 0),
              "the outline goes once around what is covered");
    }
  }
}

// How much of a triangle's plan lies below the height, as its area; by clipping it.
long double areaBelow(const Scene& scene, std::size_t t, double height) {
  std::array<Point, 3> p;
  for (std::size_t i = 0; i < 3; ++i) {
    p[i] = scene.points[scene.triangles[t][i]];
  }
  std::vector<std::array<long double, 2>> kept;
  for (std::size_t i = 0; i < 3; ++i) {
    const Point& a = p[i];
    const Point& b = p[(i + 1) % 3];
    if (a[2] < height) {
      kept.push_back({a[0], a[1]});
    }
    if ((a[2] < height) != (b[2] < height)) {
      const long double share =
          (static_cast<long double>(height) - a[2]) / (static_cast<long double>(b[2]) - a[2]);
      kept.push_back({a[0] + share * (static_cast<long double>(b[0]) - a[0]),
                      a[1] + share * (static_cast<long double>(b[1]) - a[1])});
    }
  }
  long double area = 0;
  for (std::size_t i = 0; i < kept.size(); ++i) {
    const auto& a = kept[i];
    const auto& b = kept[(i + 1) % kept.size()];
    area += (a[0] - kept[0][0]) * (b[1] - kept[0][1]) - (b[0] - kept[0][0]) * (a[1] - kept[0][1]);
  }
  return std::abs(area) / 2;
}

// What is left of the faces has the area that clipping leaves of each; the cap and the cut lie in
// the plane.
void checkSection(const Scene& scene, const Section& section, double height) {
  const Bounds bounds = boundsOf(scene);
  require(section.below.triangles.empty() || boundsOf(section.below).high[2] <= height,
          "nothing is left above the cut");
  long double expected = 0;
  for (std::size_t t = 0; t < scene.triangles.size(); ++t) {
    expected += areaBelow(scene, t, height);
  }
  long double left = 0;
  for (std::size_t t = 0; t < section.below.triangles.size(); ++t) {
    const auto& corners = section.below.triangles[t];
    const bool isCap = std::ranges::all_of(
        corners, [&](Index corner) { return section.below.points[corner][2] == height; });
    left += isCap ? 0 : areaBelow(section.below, t, std::numeric_limits<double>::infinity());
  }
  const double diagonal = bounds.Diagonal();
  require(std::abs(left - expected) <= 1e-9L * diagonal * diagonal,
          "as much of the faces is left as clipping leaves");
  for (const CandidateEdge& cut : section.cuts) {
    for (const Index end : {cut.from, cut.to}) {
      requireInside(section.below.points[end], bounds, 1e-9 * diagonal);
      require(section.below.points[end][2] == height, "cuts lie in the plane");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const double height = takeCoordinate(data);
  const bool isCut = data.ConsumeBool();
  const dxf2d::mesh::PolygonMesh mesh = takeMesh(data);
  const PlacedMesh placed{&mesh, {}, 0};
  Scene scene = assembleScene({&placed, 1});
  const Tolerances tolerances = tolerancesFor(boundsOf(scene));
  std::vector<CandidateEdge> cuts;
  if (isCut && std::isfinite(height)) {
    Section section = cutScene(scene, height, tolerances.weld);
    checkSection(scene, section, height);
    scene = std::move(section.below);
    cuts = std::move(section.cuts);
  }
  std::vector<CandidateEdge> edges = findCandidateEdges(scene, tolerances);
  edges.insert(edges.end(), cuts.begin(), cuts.end());
  checkVisibility(scene, edges, tolerances);
  checkOutline(scene, cuts);
  return 0;
}
