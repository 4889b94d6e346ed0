#include "projection/triangulation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace dxf2d::projection {
namespace {

// Corners looked at for each corner of a polygon; simple polygons stay far below.
constexpr std::size_t kWorkPerCorner = 2000;

// Twice the polygon's area as a vector along its normal.
Point newellNormal(const std::vector<Point>& points, std::span<const Index> corners) {
  const Point& origin = points[corners[0]];
  Point sum = {0, 0, 0};
  for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
    const Point& p = points[corners[i]];
    const Point& q = points[corners[i + 1]];
    const Point u = {p[0] - origin[0], p[1] - origin[1], p[2] - origin[2]};
    const Point v = {q[0] - origin[0], q[1] - origin[1], q[2] - origin[2]};
    sum[0] += u[1] * v[2] - u[2] * v[1];
    sum[1] += u[2] * v[0] - u[0] * v[2];
    sum[2] += u[0] * v[1] - u[1] * v[0];
  }
  return sum;
}

}  // namespace

void Triangulation::Run(const std::vector<Point>& points, std::span<const Index> corners) {
  triangles_.clear();
  if (corners.size() == 3) {
    triangles_.push_back({{corners[0], corners[1], corners[2]}, 7});
    return;
  }
  Flatten(points, corners);
  if (IsStrictlyConvex()) {
    CutFan();
  } else {
    CutEars();
  }
}

void Triangulation::Flatten(const std::vector<Point>& points, std::span<const Index> corners) {
  const Point normal = newellNormal(points, corners);
  std::size_t drop = 2;
  for (const std::size_t axis : {std::size_t{0}, std::size_t{1}}) {
    if (std::abs(normal[axis]) > std::abs(normal[drop])) {
      drop = axis;
    }
  }
  std::size_t u = (drop + 1) % 3;
  std::size_t v = (drop + 2) % 3;
  if (normal[drop] < 0) {
    std::swap(u, v);  // counter-clockwise, whichever side the polygon shows
  }
  const auto count = static_cast<Index>(corners.size());
  corners_.clear();
  for (Index i = 0; i < count; ++i) {
    const Point& point = points[corners[i]];
    corners_.push_back(
        {point[u], point[v], corners[i], (i + count - 1) % count, (i + 1) % count, false});
  }
}

double Triangulation::DoubledArea(Index a, Index b, Index c) const {
  const Corner& p = corners_[a];
  const Corner& q = corners_[b];
  const Corner& r = corners_[c];
  return (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x);
}

// Every corner turns left, and the polygon goes around once: its edges run upwards and downwards in
// one stretch each.
bool Triangulation::IsStrictlyConvex() const {
  int changes = 0;
  const auto isUpwards = [&](Index i) {
    const Corner& corner = corners_[i];
    const Corner& next = corners_[corner.after];
    return next.y > corner.y || (next.y == corner.y && next.x > corner.x);
  };
  for (Index i = 0; i < corners_.size(); ++i) {
    if (!(DoubledArea(corners_[i].before, i, corners_[i].after) > 0)) {
      return false;
    }
    changes += isUpwards(i) != isUpwards(corners_[i].after) ? 1 : 0;
  }
  return changes == 2;
}

void Triangulation::Emit(Index a, Index b, Index c) {
  const auto count = static_cast<Index>(corners_.size());
  const auto isEdge = [&](Index from, Index to) { return to == (from + 1) % count; };
  const int edges = (isEdge(a, b) ? 1 : 0) | (isEdge(b, c) ? 2 : 0) | (isEdge(c, a) ? 4 : 0);
  triangles_.push_back({{corners_[a].point, corners_[b].point, corners_[c].point},
                        static_cast<std::uint8_t>(edges)});
}

void Triangulation::CutFan() {
  for (Index i = 1; i + 1 < corners_.size(); ++i) {
    Emit(0, i, i + 1);
  }
}

std::size_t Triangulation::Column(double x) const {
  return std::min(static_cast<std::size_t>((x - lowX_) * perCellX_), side_ - 1);
}

std::size_t Triangulation::Row(double y) const {
  return std::min(static_cast<std::size_t>((y - lowY_) * perCellY_), side_ - 1);
}

void Triangulation::BuildGrid() {
  const auto [left, right] = std::ranges::minmax(corners_, {}, &Corner::x);
  const auto [bottom, top] = std::ranges::minmax(corners_, {}, &Corner::y);
  side_ = static_cast<std::size_t>(std::sqrt(static_cast<double>(corners_.size()))) + 1;
  lowX_ = left.x;
  lowY_ = bottom.y;
  const auto cells = static_cast<double>(side_);
  const auto perCell = [&](double extent) {
    const double rate = extent > 0 ? cells / extent : 0;
    return std::isfinite(rate) ? rate : 0;
  };
  perCellX_ = perCell(right.x - left.x);
  perCellY_ = perCell(top.y - bottom.y);
  cellStarts_.assign(side_ * side_ + 1, 0);
  const auto cellOf = [&](const Corner& corner) {
    return Row(corner.y) * side_ + Column(corner.x);
  };
  for (Corner& corner : corners_) {
    const auto i = static_cast<Index>(&corner - corners_.data());
    corner.isReflex = !(DoubledArea(corner.before, i, corner.after) > 0);
    if (corner.isReflex) {
      ++cellStarts_[cellOf(corner) + 1];
    }
  }
  for (std::size_t cell = 1; cell < cellStarts_.size(); ++cell) {
    cellStarts_[cell] += cellStarts_[cell - 1];
  }
  cellCorners_.resize(cellStarts_.back());
  std::vector<Index> next(cellStarts_.begin(), cellStarts_.end() - 1);
  for (const Corner& corner : corners_) {
    if (corner.isReflex) {
      cellCorners_[next[cellOf(corner)]++] = static_cast<Index>(&corner - corners_.data());
    }
  }
}

// Whether a reflex corner lies in the triangle that cutting off `corner` would take away. Corners
// at the same place as one of its own do not count: polygons with holes run along a bridge twice.
bool Triangulation::HoldsCorner(Index corner) {
  const Index before = corners_[corner].before;
  const Index after = corners_[corner].after;
  const Corner& a = corners_[before];
  const Corner& b = corners_[corner];
  const Corner& c = corners_[after];
  const auto isAt = [](const Corner& p, const Corner& q) { return p.x == q.x && p.y == q.y; };
  const std::size_t firstRow = Row(std::min({a.y, b.y, c.y}));
  const std::size_t lastRow = Row(std::max({a.y, b.y, c.y}));
  const std::size_t firstColumn = Column(std::min({a.x, b.x, c.x}));
  const std::size_t lastColumn = Column(std::max({a.x, b.x, c.x}));
  for (std::size_t row = firstRow; row <= lastRow; ++row) {
    const Index begin = cellStarts_[row * side_ + firstColumn];
    const Index end = cellStarts_[row * side_ + lastColumn + 1];
    work_ += end - begin;
    for (Index i = begin; i < end; ++i) {
      const Index other = cellCorners_[i];
      const Corner& p = corners_[other];
      if (!p.isReflex || isAt(p, a) || isAt(p, b) || isAt(p, c)) {
        continue;
      }
      if (DoubledArea(before, corner, other) >= 0 && DoubledArea(corner, after, other) >= 0 &&
          DoubledArea(after, before, other) >= 0) {
        return true;
      }
    }
  }
  return false;
}

bool Triangulation::IsEar(Index corner, bool allowFlat) {
  ++work_;
  const double area = DoubledArea(corners_[corner].before, corner, corners_[corner].after);
  if (!(area > 0)) {
    return allowFlat && area == 0;
  }
  return !HoldsCorner(corner);
}

void Triangulation::CutOff(Index corner) {
  const Index before = corners_[corner].before;
  const Index after = corners_[corner].after;
  Emit(before, corner, after);
  corners_[before].after = after;
  corners_[after].before = before;
  corners_[corner].isReflex = false;
  for (const Index neighbor : {before, after}) {
    const Corner& it = corners_[neighbor];
    // A corner that is convex stays so; one that is reflex may become convex.
    if (it.isReflex && DoubledArea(it.before, neighbor, it.after) > 0) {
      corners_[neighbor].isReflex = false;
    }
  }
}

void Triangulation::CutEars() {
  BuildGrid();
  std::size_t left = corners_.size();
  std::size_t misses = 0;
  Index corner = 0;
  work_ = 0;
  const std::size_t mostWork = kWorkPerCorner * corners_.size();
  // Each round of misses lowers what is asked for: an ear, then a flat corner too, then any.
  while (left > 3) {
    const bool isForced = misses >= 2 * left || work_ > mostWork;
    if (isForced || IsEar(corner, misses >= left)) {
      CutOff(corner);
      --left;
      misses = 0;
      // Going on behind the next corner spreads the cuts and avoids slivers from one corner.
      corner = corners_[corners_[corner].after].after;
    } else {
      ++misses;
      corner = corners_[corner].after;
    }
  }
  Emit(corners_[corner].before, corner, corners_[corner].after);
}

}  // namespace dxf2d::projection
