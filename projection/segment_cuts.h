// Where segments have to be cut so that each piece is of one kind from end to end.
#pragma once

#include <vector>

#include "projection/plan_cell.h"

namespace dxf2d::projection {

// Appends to `cuts` the positions on `segment` at which `other` crosses it in plan, touches it with
// an end, or begins and ends to run along it; all within `plan` of it. Positions may lie beyond the
// segment's ends. If `touch` is not infinite, only those at which `other` is no lower than `touch`
// below the segment.
void appendCrossings(const PlanSegment& segment, const PlanSegment& other, double plan,
                     double touch, std::vector<double>& cuts);

// Appends to `cuts` the positions on `segment` between which `other`, nearly parallel to it, is
// within `plan` of it: from there on, none of the two can be told to be on the left of the other.
// Those of `other` along `segment` are at the same places. Nothing for segments that cross at an
// angle: there the stretch is as short as a point.
void appendNearness(const PlanSegment& segment, const PlanSegment& other, double plan,
                    std::vector<double>& cuts);

// The smallest rectangle around the part of the segment, and `slack` more on all sides.
Rectangle boxAround(const PlanSegment& segment, const Interval& range, double slack);

// Appends to `cuts` the positions within `range` at which the triangle begins or ends to hide the
// segment and no other edge need be: where the segment passes through the triangle; else where it
// comes below the triangle, or leaves it, if it touches the triangle there and is hidden elsewhere,
// or if it is hidden there but might touch a neighbor, whose tolerance is `mostTouch` at most.
void appendPiercing(const PlanSegment& segment, const Interval& range, const PlanTriangle& triangle,
                    double plan, double mostTouch, std::vector<double>& cuts);

// Sorts `cuts` and leaves of them those that make pieces longer than `plan`: the ends of `range`
// are the first and the last, which may then be all.
void trimCuts(const PlanSegment& segment, const Interval& range, double plan,
              std::vector<double>& cuts);

}  // namespace dxf2d::projection
