// Segments joined into polylines.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mesh/polygon_mesh.h"
#include "mesh/slot_table.h"

namespace dxf2d::projection {

using mesh::Index;

// x and y in drawing units.
using PlanPoint = std::array<double, 2>;

// A segment in plan. Segments of different groups (say, of a part and a kind) have nothing to do
// with each other.
struct GroupedSegment {
  PlanPoint from;
  PlanPoint to;
  std::uint64_t group;
};

// Polylines, one behind the other: polyline i is points[starts[i]] .. points[starts[i + 1] - 1] and
// of group groups[i]. A closed one ends with the point that it begins with.
struct Polylines {
  std::vector<PlanPoint> points;
  std::vector<std::size_t> starts = {0};
  std::vector<std::uint64_t> groups;

  std::size_t Count() const { return groups.size(); }
  std::span<const PlanPoint> At(std::size_t i) const {
    return {points.data() + starts[i], points.data() + starts[i + 1]};
  }
  bool IsClosed(std::size_t i) const { return At(i).size() > 2 && At(i).front() == At(i).back(); }
  // Appends a polyline without the points on a straight line with their neighbors, give or take
  // `tolerance`.
  void Add(std::span<const PlanPoint> polyline, std::uint64_t group, double tolerance);
};

struct JoinedSegments {
  Polylines polylines;
  // Ends of polylines at which no other segment of the group ends.
  std::size_t openEnds = 0;
};

// Joins segments that end at the same place, within `weld`, into polylines as long as possible,
// whatever the segments' directions. What would be a loop without width is a line. Of segments with
// the same ends one stays, of no length none. Where more than two meet, those that go straightest
// on are joined. Takes linear time.
JoinedSegments joinSegments(std::span<const GroupedSegment> segments, double weld);

// Makes numbers of places: points of one group get the number of the nearest point before them, if
// the first point of that number is within `weld`, and else a new one. A point thus has the same
// number whenever it is asked for.
class PlaceTable {
 public:
  // Makes room for `expected` places; more may come.
  explicit PlaceTable(double weld, std::size_t expected = 0);

  Index NumberOf(const PlanPoint& place, std::uint64_t group) {
    return NumberOf(QueryOf(place, group));
  }
  // The numbers of both ends of each segment, one behind the other.
  std::vector<Index> NumbersOf(std::span<const GroupedSegment> segments);
  // The point that was first to have the number.
  const PlanPoint& At(Index number) const { return points_[places_[number]].point; }
  std::size_t Count() const { return places_.size(); }

 private:
  struct NumberedPoint {
    PlanPoint point;
    std::uint64_t group;
    Index number;
  };
  // A point that is looked for, its cell and the hash of that.
  struct Query {
    std::uint32_t hash;
    PlanPoint place;
    PlanPoint cell;
    std::uint64_t group;
  };
  // The nearest point so far whose number a point can have.
  struct Nearest {
    Index number;
    double distance;
  };

  Index NumberOf(const Query& query);
  void Search(std::uint32_t hash, const Query& query, Nearest& nearest) const;
  void SearchAround(const Query& query, Nearest& nearest) const;
  Query QueryOf(const PlanPoint& place, std::uint64_t group) const;
  double CellOf(double value) const;

  double weld_;
  // Cells in a drawing unit.
  double perUnit_;
  // By number, its first point.
  std::vector<Index> places_;
  std::vector<NumberedPoint> points_;
  // The points by the hashes of their cells.
  mesh::SlotTable table_;
};

}  // namespace dxf2d::projection
