// Repair of a soup of polygons, and the edges that show of it.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "fuzz/geometry_input.h"
#include "fuzz/require.h"
#include "mesh/drawn_edges.h"
#include "mesh/polygon_mesh.h"
#include "mesh/repair.h"

using namespace dxf2d::mesh;

namespace {

// Polygons of up to six corners and lines, of three parts, between any points.
PolygonMesh takeMesh(FuzzedDataProvider& data) {
  PolygonMesh mesh;
  const std::vector<double> coords = takeCoords(data, 40);
  for (std::size_t i = 0; i + 2 < coords.size(); i += 3) {
    mesh.points.push_back({coords[i], coords[i + 1], coords[i + 2]});
  }
  if (mesh.points.empty()) {
    return mesh;
  }
  const auto last = static_cast<Index>(mesh.points.size() - 1);
  const auto takePoint = [&] { return data.ConsumeIntegralInRange<Index>(0, last); };
  while (data.remaining_bytes() != 0 && mesh.PolygonCount() < 100) {
    if (data.ConsumeIntegralInRange(0, 7) == 0) {
      const Index a = takePoint();
      mesh.segments.push_back({a, takePoint(), data.ConsumeIntegralInRange<Index>(0, 2)});
      continue;
    }
    std::vector<Index> corners(data.ConsumeIntegralInRange<std::size_t>(0, 6));
    std::generate(corners.begin(), corners.end(), takePoint);
    mesh.Add(corners, data.ConsumeIntegralInRange<Index>(0, 2));
  }
  return mesh;
}

void requireWhole(const PolygonMesh& mesh) {
  require(mesh.starts.size() == mesh.parts.size() + 1, "a start for each polygon and one more");
  require(mesh.starts.front() == 0 && mesh.starts.back() == mesh.corners.size(),
          "the polygons cover the corners");
  for (std::size_t p = 0; p < mesh.PolygonCount(); ++p) {
    require(mesh.starts[p] + 3 <= mesh.starts[p + 1], "a polygon has three corners");
  }
  for (const Index corner : mesh.corners) {
    require(corner < mesh.points.size(), "corners name points");
  }
  for (const Segment& segment : mesh.segments) {
    require(segment.a < mesh.points.size() && segment.b < mesh.points.size(), "lines name points");
    require(segment.a != segment.b, "lines have length");
  }
  for (const Point& point : mesh.points) {
    require(std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]),
            "points are finite");
  }
}

void requireSound(const PolygonMesh& mesh, const DrawnEdges& drawn) {
  require(drawn.starts.size() == drawn.PartCount() + 1, "a start for each part and one more");
  for (std::size_t part = 0; part < drawn.PartCount(); ++part) {
    for (const DrawnEdge& edge : drawn.Part(part)) {
      require(edge.part == part, "an edge stands with its part");
      require(edge.a < mesh.points.size() && edge.b < mesh.points.size(), "edges name points");
      const Point& a = mesh.points[edge.a];
      const Point& b = mesh.points[edge.b];
      require(a[0] != b[0] || a[1] != b[1], "edges have length in plan");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  constexpr std::optional<double> kShares[] = {0.0, 1e-12, std::nullopt, 0.05};
  constexpr double kCreases[] = {0.0, kDefaultCreaseDegrees, 90.0, kNoCreases};
  FuzzedDataProvider data(bytes, size);
  const RepairOptions options = {kShares[data.ConsumeIntegralInRange(0, 3)]};
  const double creaseDegrees = kCreases[data.ConsumeIntegralInRange(0, 3)];
  PolygonMesh mesh = takeMesh(data);
  const Repaired repaired = repair(mesh, options);
  requireWhole(mesh);
  PolygonMesh again = mesh;
  const Repaired second = repair(again, options);
  requireWhole(again);
  // What closes a T-junction bends a polygon, by less than the weld distance; and that distance may
  // be another the second time: greater where short edges are gone that kept it small, and less, so
  // that more quads count as bent, where polygons far away are gone.
  if (repaired.counts.tJunctionsClosed == 0 && second.counts.tJunctionsClosed == 0 &&
      second.counts.bentPolygonsSplit == 0 && second.distance <= repaired.distance) {
    require(again == mesh, "a second repair changes nothing");
  }
  const DrawnEdges drawn = findDrawnEdges(mesh, repaired.edges, {creaseDegrees, repaired.distance});
  requireSound(mesh, drawn);
  return 0;
}
