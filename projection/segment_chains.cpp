#include "projection/segment_chains.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <tuple>

#include "platform/prefetch.h"

namespace dxf2d::projection {
namespace {

constexpr Index kNone = std::numeric_limits<Index>::max();
// Points this far from a straight line, in parts of the weld distance, count as on it.
constexpr double kStraightShare = 0.01;
// At places with more ends than this, none are joined.
constexpr std::size_t kMostEnds = 32;

// Whether `middle` lies on the way from `from` to `to`. Not where the way there leads back again.
bool isOnTheWay(const PlanPoint& from, const PlanPoint& middle, const PlanPoint& to,
                double tolerance) {
  const double dx = to[0] - from[0];
  const double dy = to[1] - from[1];
  const double mx = middle[0] - from[0];
  const double my = middle[1] - from[1];
  const double length = std::hypot(dx, dy);
  const double along = mx * dx + my * dy;
  return length > 0 && std::abs(dx * my - dy * mx) <= tolerance * length && along >= 0 &&
         along <= length * length;
}

// A segment between two places; end 2 i + s of all ends is its start (s = 0) or its end (s = 1).
struct Link {
  Index from;
  Index to;
  std::uint64_t group;
};

std::vector<Link> makeLinks(std::span<const GroupedSegment> segments, PlaceTable& places) {
  std::vector<Link> links;
  links.reserve(segments.size());
  const std::vector<Index> numbers = places.NumbersOf(segments);
  for (std::size_t i = 0; i < segments.size(); ++i) {
    const auto [from, to] = std::minmax(numbers[2 * i], numbers[2 * i + 1]);
    if (from != to) {
      links.push_back({from, to, segments[i].group});
    }
  }
  std::ranges::sort(links, {}, [](const Link& l) { return std::pair(l.from, l.to); });
  const auto areTwins = [](const Link& a, const Link& b) {
    return a.from == b.from && a.to == b.to;
  };
  links.erase(std::unique(links.begin(), links.end(), areTwins), links.end());
  return links;
}

// Decides which ends are joined, and follows them.
class Joiner {
 public:
  Joiner(const PlaceTable& places, const std::vector<Link>& links, double weld)
      : places_(places), links_(links), straight_(kStraightShare * weld) {
    CollectEnds();
    partners_.assign(2 * links.size(), kNone);
    for (Index place = 0; place < places.Count(); ++place) {
      JoinAt(place);
    }
  }

  JoinedSegments Run() {
    JoinedSegments joined;
    std::vector<char> isDone(links_.size());
    for (Index end = 0; end < partners_.size(); ++end) {
      if (partners_[end] == kNone && isDone[end / 2] == 0) {
        const Index last = Follow(end, isDone, joined.polylines);
        for (const Index loose : {end, last}) {
          joined.openEnds += EndsAt(PlaceOf(loose)).size() == 1 ? 1 : 0;
        }
      }
    }
    for (Index link = 0; link < links_.size(); ++link) {
      if (isDone[link] == 0) {
        Follow(2 * link, isDone, joined.polylines);
      }
    }
    return joined;
  }

 private:
  Index PlaceOf(Index end) const {
    return end % 2 == 0 ? links_[end / 2].from : links_[end / 2].to;
  }
  std::span<const Index> EndsAt(Index place) const {
    return {ends_.data() + starts_[place], ends_.data() + starts_[place + 1]};
  }

  void CollectEnds() {
    starts_.assign(places_.Count() + 2, 0);
    for (Index end = 0; end < 2 * links_.size(); ++end) {
      ++starts_[PlaceOf(end) + 2];
    }
    for (std::size_t i = 2; i < starts_.size(); ++i) {
      starts_[i] += starts_[i - 1];
    }
    ends_.resize(2 * links_.size());
    for (Index end = 0; end < 2 * links_.size(); ++end) {
      ends_[starts_[PlaceOf(end) + 1]++] = end;
    }
  }

  void JoinAt(Index place) {
    const std::span<const Index> ends = EndsAt(place);
    if (ends.size() == 2) {
      partners_[ends[0]] = ends[1];
      partners_[ends[1]] = ends[0];
    } else if (ends.size() > 2 && ends.size() <= kMostEnds) {
      JoinStraightest(ends);
    }
  }

  void JoinStraightest(std::span<const Index> ends) {
    std::vector<std::tuple<double, Index, Index>> pairs;
    for (std::size_t i = 0; i < ends.size(); ++i) {
      for (std::size_t j = i + 1; j < ends.size(); ++j) {
        const PlanPoint u = Direction(ends[i]);
        const PlanPoint v = Direction(ends[j]);
        pairs.emplace_back(u[0] * v[0] + u[1] * v[1], ends[i], ends[j]);
      }
    }
    std::ranges::sort(pairs);
    for (const auto& [bend, a, b] : pairs) {
      if (partners_[a] == kNone && partners_[b] == kNone) {
        partners_[a] = b;
        partners_[b] = a;
      }
    }
  }

  // From the end's place to the segment's other end.
  PlanPoint Away(Index end) const {
    const PlanPoint& here = places_.At(PlaceOf(end));
    const PlanPoint& there = places_.At(PlaceOf(end ^ 1U));
    return {there[0] - here[0], there[1] - here[1]};
  }

  // The same, of length 1.
  PlanPoint Direction(Index end) const {
    const PlanPoint away = Away(end);
    const double length = std::hypot(away[0], away[1]);
    return {away[0] / length, away[1] / length};
  }

  // Appends the polyline that begins at `end`, and returns the end at which it stops.
  Index Follow(Index end, std::vector<char>& isDone, Polylines& polylines) {
    line_.clear();
    line_.push_back(places_.At(PlaceOf(end)));
    const std::uint64_t group = links_[end / 2].group;
    while (true) {
      isDone[end / 2] = 1;
      end ^= 1U;
      line_.push_back(places_.At(PlaceOf(end)));
      const Index next = partners_[end];
      if (next == kNone || isDone[next / 2] != 0) {
        polylines.Add(line_, group, straight_);
        OpenFlatLoop(polylines);
        return end;
      }
      end = next;
    }
  }

  // A loop of two points goes there and back; one way will do.
  static void OpenFlatLoop(Polylines& polylines) {
    const std::span<const PlanPoint> last = polylines.At(polylines.Count() - 1);
    if (last.size() == 3 && last.front() == last.back()) {
      polylines.points.pop_back();
      --polylines.starts.back();
    }
  }

  const PlaceTable& places_;
  const std::vector<Link>& links_;
  double straight_;
  std::vector<std::size_t> starts_;
  std::vector<Index> ends_;
  std::vector<Index> partners_;
  std::vector<PlanPoint> line_;
};

}  // namespace

namespace {

std::uint32_t hashOfCell(double column, double row, std::uint64_t group) {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;
  // -0 and 0 are one column.
  const auto x = std::bit_cast<std::uint64_t>(column + 0.0);
  const auto y = std::bit_cast<std::uint64_t>(row + 0.0);
  std::uint64_t hash = (x ^ group) * kMultiplier;
  hash = (hash ^ (hash >> 29U) ^ y) * kMultiplier;
  return mesh::mixed(hash);
}

double distance(const PlanPoint& a, const PlanPoint& b) {
  return std::hypot(b[0] - a[0], b[1] - a[1]);
}

}  // namespace

PlaceTable::PlaceTable(double weld, std::size_t expected)
    : weld_(weld), perUnit_(weld > 0 ? 1 / (16 * weld) : 0), table_(expected) {
  places_.reserve(expected);
  points_.reserve(expected);
}

double PlaceTable::CellOf(double value) const {
  return perUnit_ > 0 ? std::floor(value * perUnit_) : value;
}

PlaceTable::Query PlaceTable::QueryOf(const PlanPoint& place, std::uint64_t group) const {
  const PlanPoint cell = {CellOf(place[0]), CellOf(place[1])};
  return {hashOfCell(cell[0], cell[1], group), place, cell, group};
}

void PlaceTable::Search(std::uint32_t hash, const Query& query, Nearest& nearest) const {
  table_.Find(hash, [&](Index i) {
    const NumberedPoint& other = points_[i];
    if (other.group != query.group) {
      return false;
    }
    if (other.point == query.place) {
      nearest = {other.number, 0.0};
      return true;
    }
    const double gap = distance(other.point, query.place);
    if (gap < nearest.distance && distance(At(other.number), query.place) <= weld_) {
      nearest = {other.number, gap};
    }
    return false;
  });
}

// Another cell than that of the place matters only within reach of its side.
void PlaceTable::SearchAround(const Query& query, Nearest& nearest) const {
  const PlanPoint& place = query.place;
  const auto [column, row] = query.cell;
  const std::array columns = {CellOf(place[0] - weld_), CellOf(place[0] + weld_)};
  const std::array rows = {CellOf(place[1] - weld_), CellOf(place[1] + weld_)};
  if (columns[0] == columns[1] && rows[0] == rows[1]) {
    return;
  }
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      const bool isHome = columns[i] == column && rows[j] == row;
      if (isHome || (i == 1 && columns[1] == columns[0]) || (j == 1 && rows[1] == rows[0])) {
        continue;
      }
      Search(hashOfCell(columns[i], rows[j], query.group), query, nearest);
    }
  }
}

Index PlaceTable::NumberOf(const Query& query) {
  // Nearer points than this, in parts of the weld distance, are one up to rounding.
  constexpr double kSameShare = 1e-4;
  // Just beyond the weld distance, which counts as near.
  Nearest nearest{kNone, std::nextafter(weld_, std::numeric_limits<double>::infinity())};
  Search(query.hash, query, nearest);
  if (nearest.distance > kSameShare * weld_) {
    SearchAround(query, nearest);
  }
  if (nearest.number != kNone && nearest.distance <= kSameShare * weld_) {
    return nearest.number;
  }
  const auto point = static_cast<Index>(points_.size());
  const Index number =
      nearest.number != kNone ? nearest.number : static_cast<Index>(places_.size());
  if (nearest.number == kNone) {
    places_.push_back(point);
  }
  points_.push_back({query.place, query.group, number});
  table_.Keep(query.hash, point);
  return number;
}

std::vector<Index> PlaceTable::NumbersOf(std::span<const GroupedSegment> segments) {
  std::vector<Index> numbers(2 * segments.size());
  const auto makeQuery = [&](std::size_t i) {
    const GroupedSegment& segment = segments[i / 2];
    return QueryOf(i % 2 == 0 ? segment.from : segment.to, segment.group);
  };
  forEachPrefetched(table_, numbers.size(), makeQuery, [&](std::size_t i, const Query& query) {
    numbers[i] = NumberOf(query);
    return true;
  });
  return numbers;
}

void Polylines::Add(std::span<const PlanPoint> polyline, std::uint64_t group, double tolerance) {
  const std::size_t start = points.size();
  for (const PlanPoint& point : polyline) {
    const std::size_t count = points.size() - start;
    if (count >= 2 && isOnTheWay(points[points.size() - 2], points.back(), point, tolerance)) {
      points.back() = point;
    } else {
      points.push_back(point);
    }
  }
  // A loop may have begun in the middle of a side.
  const std::size_t count = points.size() - start;
  if (count > 4 && points[start] == points.back() &&
      isOnTheWay(points[points.size() - 2], points.back(), points[start + 1], tolerance)) {
    points.erase(points.begin() + static_cast<std::ptrdiff_t>(start));
    points.back() = points[start];
  }
  starts.push_back(points.size());
  groups.push_back(group);
}

JoinedSegments joinSegments(std::span<const GroupedSegment> segments, double weld) {
  PlaceTable places(weld, segments.size());
  const std::vector<Link> links = makeLinks(segments, places);
  return Joiner(places, links, weld).Run();
}

}  // namespace dxf2d::projection
