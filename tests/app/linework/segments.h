// Linework for tests, and what it covers.
#pragma once

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <vector>

#include "app/linework/edges.h"
#include "app/linework/linework.h"

namespace dxf2d::linework {

// The segments of a polyline, as joinSegments takes them.
inline std::vector<PlanPoint> segmentsOf(std::initializer_list<PlanPoint> points,
                                         bool closed = false) {
  std::vector<PlanPoint> ends;
  const std::vector<PlanPoint> line(points);
  for (std::size_t i = 0; i + 1 < line.size(); ++i) {
    ends.push_back(line[i]);
    ends.push_back(line[i + 1]);
  }
  if (closed) {
    ends.push_back(line.back());
    ends.push_back(line.front());
  }
  return ends;
}

inline void append(std::vector<PlanPoint>& ends, const std::vector<PlanPoint>& more) {
  ends.insert(ends.end(), more.begin(), more.end());
}

// The segments of polylines.
inline std::vector<PlanPoint> segmentsOf(const Paths& paths) {
  std::vector<PlanPoint> ends;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const auto path = paths[i];
    for (std::size_t j = 0; j + 1 < path.size(); ++j) {
      ends.push_back(path[j]);
      ends.push_back(path[j + 1]);
    }
    if (paths.closed[i] != 0) {
      ends.push_back(path.back());
      ends.push_back(path.front());
    }
  }
  return ends;
}

inline Paths join(const std::vector<PlanPoint>& ends) {
  return joinSegments(ends, joinTolerance(ends));
}

inline double distanceToSegment(PlanPoint point, PlanPoint begin, PlanPoint end) {
  const PlanPoint vector = end - begin;
  const double squared = dot(vector, vector);
  const double along =
      squared > 0.0 ? std::clamp(dot(point - begin, vector) / squared, 0.0, 1.0) : 0.0;
  return length(point - PlanPoint{begin.x + along * vector.x, begin.y + along * vector.y});
}

// The largest distance from a point of `ends`' segments, seen at seventeen places of each, to the
// nearest of those of `others`.
inline double largestGap(const std::vector<PlanPoint>& ends, const std::vector<PlanPoint>& others) {
  constexpr int kPlaces = 16;
  double largest = 0.0;
  for (std::size_t i = 0; i < ends.size(); i += 2) {
    for (int place = 0; place <= kPlaces; ++place) {
      const double share = static_cast<double>(place) / kPlaces;
      const PlanPoint point{ends[i].x + share * (ends[i + 1].x - ends[i].x),
                            ends[i].y + share * (ends[i + 1].y - ends[i].y)};
      double nearest = HUGE_VAL;
      for (std::size_t j = 0; j < others.size(); j += 2) {
        nearest = std::min(nearest, distanceToSegment(point, others[j], others[j + 1]));
      }
      largest = std::max(largest, nearest);
    }
  }
  return largest;
}

inline double totalLength(const std::vector<PlanPoint>& ends) {
  double sum = 0.0;
  for (std::size_t i = 0; i < ends.size(); i += 2) {
    sum += length(ends[i + 1] - ends[i]);
  }
  return sum;
}

}  // namespace dxf2d::linework
