#include "projection/boundary_loops.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace dxf2d::projection {
namespace {

constexpr Index kNone = std::numeric_limits<Index>::max();

struct Link {
  Index from;
  Index to;

  // clang-tidy takes the zero that the compiler compares with for a null pointer.
  friend auto operator<=>(const Link&, const Link&) = default;  // NOLINT(modernize-use-nullptr)
};

// Links by their start, each once, without those that cancel out.
std::vector<Link> makeLinks(std::span<const GroupedSegment> pieces, PlaceTable& places) {
  std::vector<Link> all;
  const std::vector<Index> numbers = places.NumbersOf(pieces);
  for (std::size_t i = 0; i < numbers.size(); i += 2) {
    if (numbers[i] != numbers[i + 1]) {
      all.push_back({numbers[i], numbers[i + 1]});
    }
  }
  std::ranges::sort(all);
  all.erase(std::unique(all.begin(), all.end()), all.end());
  std::vector<Link> links;
  std::ranges::copy_if(all, std::back_inserter(links), [&](const Link& link) {
    return !std::ranges::binary_search(all, Link{link.to, link.from});
  });
  return links;
}

class LoopFinder {
 public:
  LoopFinder(const PlaceTable& places, const std::vector<Link>& links)
      : places_(places), links_(links), isUsed_(links.size()), starts_(places.Count() + 1) {
    for (const Link& link : links) {
      ++starts_[link.from + 1];
    }
    for (std::size_t i = 1; i < starts_.size(); ++i) {
      starts_[i] += starts_[i - 1];
    }
    positions_.assign(places.Count(), kNone);
  }

  std::size_t Run(std::uint64_t group, double straight, Polylines& loops) {
    std::size_t leftOver = 0;
    for (Index first = 0; first < links_.size(); ++first) {
      if (isUsed_[first] == 0) {
        leftOver += Follow(first, group, straight, loops);
      }
    }
    return leftOver;
  }

 private:
  // Follows the boundary from `first`. Whenever it comes back to a place where it has been, the way
  // since then is a loop. Returns how many links of the way lead nowhere.
  std::size_t Follow(Index first, std::uint64_t group, double straight, Polylines& loops) {
    way_.clear();
    for (Index link = first; link != kNone; link = NextAfter(link)) {
      isUsed_[link] = 1;
      positions_[links_[link].from] = static_cast<Index>(way_.size());
      way_.push_back(link);
      const Index position = positions_[links_[link].to];
      if (position != kNone) {
        TakeLoop(position, group, straight, loops);
      }
    }
    for (const Index link : way_) {
      positions_[links_[link].from] = kNone;
    }
    return way_.size();
  }

  void TakeLoop(std::size_t position, std::uint64_t group, double straight, Polylines& loops) {
    line_.clear();
    for (std::size_t i = position; i < way_.size(); ++i) {
      line_.push_back(places_.At(links_[way_[i]].from));
      positions_[links_[way_[i]].from] = kNone;
    }
    line_.push_back(line_.front());
    way_.resize(position);
    if (line_.size() > 3) {
      loops.Add(line_, group, straight);
      DropFlatLoop(loops);
    }
  }

  // A loop whose points lie on one straight line encloses nothing.
  static void DropFlatLoop(Polylines& loops) {
    if (loops.At(loops.Count() - 1).size() < 4) {
      loops.starts.pop_back();
      loops.groups.pop_back();
      loops.points.resize(loops.starts.back());
    }
  }

  // The unused link that turns most to the left, so that the inside stays between the two.
  Index NextAfter(Index link) const {
    const Index place = links_[link].to;
    const PlanPoint& here = places_.At(place);
    const PlanPoint& before = places_.At(links_[link].from);
    const double inX = here[0] - before[0];
    const double inY = here[1] - before[1];
    Index best = kNone;
    double bestTurn = 0;
    for (Index next = starts_[place]; next < starts_[place + 1]; ++next) {
      if (isUsed_[next] != 0) {
        continue;
      }
      const PlanPoint& there = places_.At(links_[next].to);
      const double outX = there[0] - here[0];
      const double outY = there[1] - here[1];
      const double turn = std::atan2(inX * outY - inY * outX, inX * outX + inY * outY);
      if (best == kNone || turn > bestTurn) {
        best = next;
        bestTurn = turn;
      }
    }
    return best;
  }

  const PlaceTable& places_;
  const std::vector<Link>& links_;
  std::vector<char> isUsed_;
  std::vector<Index> starts_;
  // Where on the current way a place is left.
  std::vector<Index> positions_;
  std::vector<Index> way_;
  std::vector<PlanPoint> line_;
};

}  // namespace

std::size_t appendBoundaryLoops(std::span<const GroupedSegment> pieces, std::uint64_t group,
                                double weld, Polylines& loops) {
  constexpr double kStraightShare = 0.01;
  PlaceTable places(weld, pieces.size());
  const std::vector<Link> links = makeLinks(pieces, places);
  return LoopFinder(places, links).Run(group, kStraightShare * weld, loops);
}

}  // namespace dxf2d::projection
