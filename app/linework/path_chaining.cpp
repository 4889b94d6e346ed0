#include "app/linework/path_chaining.h"

#include <cmath>

namespace dxf2d::linework {

namespace {

class Chaining {
 public:
  Chaining(std::span<const PlanPoint> points, const DistinctEdges& distinct,
           std::span<const EndNumber> partners, double exactness)
      : points_(points),
        distinct_(distinct),
        partners_(partners),
        exactness_(exactness),
        used_(distinct.edges.size(), 0) {}

  Chains Run() {
    for (EdgeNumber i = 0; i < distinct_.edges.size(); ++i) {
      if (used_[i] == 0) {
        Follow(StartOf(i));
      }
    }
    return std::move(chains_);
  }

 private:
  static constexpr std::size_t kTriangle = 3;

  struct Start {
    // The end at which the polyline begins.
    EndNumber end;
    bool closed;
  };

  // The beginning of the line through `edge`, against the edge's direction; in a loop the edge's
  // own.
  Start StartOf(EdgeNumber edge) const {
    EndNumber end = 2 * edge;
    while (partners_[end] != kNoEnd) {
      // The other end of the edge before.
      end = partners_[end] ^ 1U;
      if (end == 2 * edge) {
        return {end, true};
      }
    }
    return {end, false};
  }

  PointNumber PointAt(EndNumber end) const {
    const Edge edge = distinct_.edges[end / 2];
    return end % 2 == 0 ? edge.from : edge.to;
  }

  void Follow(Start start) {
    begin_ = chains_.points.size();
    Push(start.end);
    EndNumber end = start.end;
    for (;;) {
      used_[end / 2] = 1;
      const EndNumber far = end ^ 1U;
      const EndNumber next = partners_[far];
      if (next == kNoEnd || next == start.end) {
        Close(start, far);
        return;
      }
      DropLast(PointAt(far));
      Push(next);
      isOnSource_ = distinct_.sources[far / 2] == distinct_.sources[next / 2];
      end = next;
    }
  }

  // Adds the point at `end`, from which its edge goes on.
  void Push(EndNumber end) {
    chains_.points.push_back(PointAt(end));
    chains_.changed.push_back(distinct_.isPiece[end / 2]);
  }

  // Takes the last point out where it lies between the one before and `next`.
  void DropLast(PointNumber next) {
    const std::size_t count = chains_.points.size() - begin_;
    if (count < 2) {
      return;
    }
    const PointNumber before = *(chains_.points.end() - 2);
    if (isOnSource_ || LiesBetween(before, chains_.points.back(), next)) {
      chains_.points.pop_back();
      chains_.changed.pop_back();
      chains_.changed.back() = 1;
    }
  }

  bool LiesBetween(PointNumber before, PointNumber point, PointNumber after) const {
    const PlanPoint there = points_[point] - points_[before];
    const PlanPoint onwards = points_[after] - points_[point];
    const PlanPoint whole = points_[after] - points_[before];
    return dot(there, onwards) > 0.0 && std::abs(cross(there, whole)) <= exactness_ * length(whole);
  }

  void Close(Start start, EndNumber last) {
    if (start.closed) {
      DropLast(chains_.points[begin_]);
      DropFirst(distinct_.sources[start.end / 2] == distinct_.sources[last / 2]);
    } else {
      DropLast(PointAt(last));
      chains_.points.push_back(PointAt(last));
      chains_.changed.push_back(0);
    }
    isOnSource_ = false;
    // A ring of two points would draw one segment twice.
    const bool isRing = start.closed && chains_.points.size() - begin_ >= kTriangle;
    chains_.ends.push_back(chains_.points.size());
    chains_.closed.push_back(isRing ? 1 : 0);
  }

  void DropFirst(bool isOnSource) {
    if (chains_.points.size() - begin_ <= kTriangle) {
      return;
    }
    const auto first = static_cast<std::ptrdiff_t>(begin_);
    const std::vector<PointNumber>& points = chains_.points;
    if (isOnSource || LiesBetween(points.back(), points[begin_], points[begin_ + 1])) {
      chains_.points.erase(chains_.points.begin() + first);
      chains_.changed.erase(chains_.changed.begin() + first);
      chains_.changed.back() = 1;
    }
  }

  std::span<const PlanPoint> points_;
  const DistinctEdges& distinct_;
  std::span<const EndNumber> partners_;
  double exactness_;
  std::vector<std::uint8_t> used_;
  Chains chains_;
  // Where the polyline that is being made begins.
  std::size_t begin_ = 0;
  // Whether the last point lies between two edges of one source.
  bool isOnSource_ = false;
};

}  // namespace

Chains chainEdges(std::span<const PlanPoint> points, const DistinctEdges& distinct,
                  std::span<const EndNumber> partners, double exactness) {
  return Chaining(points, distinct, partners, exactness).Run();
}

}  // namespace dxf2d::linework
