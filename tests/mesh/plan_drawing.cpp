#include "tests/mesh/plan_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "geometry/outline/outline.h"

namespace dxf2d::mesh {

namespace {

constexpr double kPerUnit = 1e6;

PlanLine planLine(double ax, double ay, double bx, double by, double perUnit = kPerUnit) {
  PlanLine line = {std::llround(ax * perUnit), std::llround(ay * perUnit),
                   std::llround(bx * perUnit), std::llround(by * perUnit)};
  if (std::pair(line[2], line[3]) < std::pair(line[0], line[1])) {
    std::swap(line[0], line[2]);
    std::swap(line[1], line[3]);
  }
  return line;
}

// What a host sends of a part.
std::vector<int> runsOf(const DrawnEdges& drawn, std::size_t part) {
  std::vector<int> runs;
  for (const DrawnEdge& edge : drawn.Part(part)) {
    runs.insert(runs.end(), {static_cast<int>(edge.a), static_cast<int>(edge.b), -1});
  }
  return runs;
}

using PlanPoint = std::array<double, 2>;
using PlanPiece = std::array<PlanPoint, 2>;

// Lengths in plan below this are noise of test meshes.
constexpr double kNoise = 1e-5;

bool isOnLine(const PlanPiece& piece, const PlanPoint& point) {
  const double dx = piece[1][0] - piece[0][0];
  const double dy = piece[1][1] - piece[0][1];
  const double across = (point[0] - piece[0][0]) * dy - (point[1] - piece[0][1]) * dx;
  return std::fabs(across) <= kNoise * std::hypot(dx, dy);
}

// Whether the two lie on one line and touch.
bool isContinued(const PlanPiece& piece, const PlanPiece& other) {
  if (!isOnLine(piece, other[0]) || !isOnLine(piece, other[1]) || !isOnLine(other, piece[0]) ||
      !isOnLine(other, piece[1])) {
    return false;
  }
  const auto along = [&](const PlanPoint& point) {
    return (point[0] - piece[0][0]) * (piece[1][0] - piece[0][0]) +
           (point[1] - piece[0][1]) * (piece[1][1] - piece[0][1]);
  };
  const auto [begin, end] = std::minmax({along(other[0]), along(other[1])});
  return end >= -kNoise && begin <= along(piece[1]) + kNoise;
}

// The two ends farthest apart.
PlanPiece unionOf(const PlanPiece& piece, const PlanPiece& other) {
  const std::array<PlanPoint, 4> ends = {piece[0], piece[1], other[0], other[1]};
  PlanPiece longest = piece;
  double size = 0.0;
  for (const PlanPoint& a : ends) {
    for (const PlanPoint& b : ends) {
      const double apart = std::hypot(b[0] - a[0], b[1] - a[1]);
      if (apart > size) {
        size = apart;
        longest = {a, b};
      }
    }
  }
  return longest;
}

}  // namespace

std::vector<PlanLine> segmentsOfPlugin(const PolygonMesh& mesh, const DrawnEdges& drawn) {
  std::vector<PlanLine> segments;
  for (std::size_t part = 0; part < drawn.PartCount(); ++part) {
    std::vector<KtPoint3> points;
    for (const Point& point : mesh.points) {
      points.emplace_back(point[0], point[1], point[2]);
    }
    std::vector<int> indices = runsOf(drawn, part);
    if (!BuildLineOutline(points, indices)) {
      continue;
    }
    for (std::size_t i = 0; i + 1 < indices.size(); ++i) {
      if (indices[i] >= 0 && indices[i + 1] >= 0) {
        const KtPoint3& a = points[static_cast<std::size_t>(indices[i])];
        const KtPoint3& b = points[static_cast<std::size_t>(indices[i + 1])];
        segments.push_back(planLine(a.Get0(), a.Get1(), b.Get0(), b.Get1()));
      }
    }
  }
  std::sort(segments.begin(), segments.end());
  return segments;
}

std::vector<PlanLine> segmentsOf(const PolygonMesh& mesh, const DrawnEdges& drawn) {
  std::vector<PlanLine> segments;
  for (const DrawnEdge& edge : drawn.edges) {
    const Point& a = mesh.points[edge.a];
    const Point& b = mesh.points[edge.b];
    segments.push_back(planLine(a[0], a[1], b[0], b[1]));
  }
  std::sort(segments.begin(), segments.end());
  return segments;
}

std::vector<PlanLine> joined(const std::vector<PlanLine>& segments) {
  std::vector<PlanPiece> pieces;
  for (const PlanLine& segment : segments) {
    PlanPiece piece;
    for (std::size_t i = 0; i < 4; ++i) {
      piece[i / 2][i % 2] = static_cast<double>(segment[i]) / kPerUnit;
    }
    // A piece that grew may reach others.
    const auto isPartOfIt = [&](const PlanPiece& other) { return isContinued(other, piece); };
    for (auto other = std::find_if(pieces.begin(), pieces.end(), isPartOfIt); other != pieces.end();
         other = std::find_if(pieces.begin(), pieces.end(), isPartOfIt)) {
      piece = unionOf(piece, *other);
      pieces.erase(other);
    }
    pieces.push_back(piece);
  }
  std::vector<PlanLine> lines;
  for (const PlanPiece& piece : pieces) {
    constexpr double kPerStep = 1e4;
    lines.push_back(planLine(piece[0][0], piece[0][1], piece[1][0], piece[1][1], kPerStep));
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::vector<PlanLine> joinedPlan(const std::vector<Line>& lines, const View& view) {
  std::vector<PlanLine> segments;
  for (const Line& line : lines) {
    PolygonMesh ends;
    ends.points = {line[0], line[1]};
    ends = seenFrom(ends, view);
    const Point& a = ends.points[0];
    const Point& b = ends.points[1];
    if (std::hypot(a[0] - b[0], a[1] - b[1]) > 1e-4) {
      segments.push_back(planLine(a[0], a[1], b[0], b[1]));
    }
  }
  return joined(segments);
}

std::vector<PlanLine> repairedPlan(const PolygonMesh& mesh, const View& view,
                                   double creaseDegrees) {
  PolygonMesh seen = seenFrom(mesh, view);
  const Repaired repaired = repair(seen, {});
  const DrawnEdges drawn =
      findDrawnEdges(seen, repaired.edges, {creaseDegrees, repaired.distance, {}, true});
  const std::vector<PlanLine> segments = segmentsOfPlugin(seen, drawn);
  EXPECT_EQ(segments, segmentsOf(seen, drawn));
  EXPECT_EQ(std::adjacent_find(segments.begin(), segments.end()), segments.end())
      << "a segment is drawn twice";
  return joined(segments);
}

}  // namespace dxf2d::mesh
