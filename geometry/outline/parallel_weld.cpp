#include "geometry/outline/parallel_weld.h"

#include <array>
#include <cassert>
#include <cstdint>
#include <numeric>

#include "geometry/outline/coord_points.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d {

namespace {

// The half of a hash that is kept; the shares are cut from its high end, and slots chosen by its
// low end.
std::uint32_t keptHash(const KtPoint3& point) {
  return static_cast<std::uint32_t>(PointIndex::Hash(point.Get0(), point.Get1(), point.Get2()) >>
                                    32U);
}

std::size_t shareOf(std::uint32_t hash, std::size_t shares) {
  return static_cast<std::size_t>(std::uint64_t{hash} * shares >> 32U);
}

// Hashes of all points, and how many there are in each share.
template <class PointAt>
std::vector<std::size_t> hashPoints(std::size_t count, PointAt pointAt, std::size_t threads,
                                    PointNumbers& hashes) {
  const Blocks blocks(count, threads);
  std::vector<std::array<std::size_t, kMostThreads>> counts(blocks.Count());
  blocks.Run([&](std::size_t number, Block block) {
    std::array<std::size_t, kMostThreads> mine{};
    for (std::size_t i = block.begin; i < block.end; ++i) {
      hashes[i] = keptHash(pointAt(i));
      ++mine[shareOf(hashes[i], threads)];
    }
    counts[number] = mine;
  });
  std::vector<std::size_t> sums(threads);
  for (const auto& mine : counts) {
    for (std::size_t share = 0; share < threads; ++share) {
      sums[share] += mine[share];
    }
  }
  return sums;
}

// One thread's share of the points.
template <class PointAt>
class Share {
 public:
  Share(std::size_t number, std::size_t shares, std::size_t count, PointAt pointAt)
      : number_(number), shares_(shares), pointAt_(pointAt) {
    table_.Reset(count);
  }

  // Writes to firsts[i], for each point i of the share, the first of the points that equal it,
  // PointIndex::kNone for one that is not finite.
  void Weld(const PointNumbers& hashes, PointNumbers& firsts) {
    std::size_t waiting = 0;
    for (std::size_t i = 0; i < hashes.size(); ++i) {
      if (shareOf(hashes[i], shares_) == number_) {
        table_.Prefetch(hashes[i]);
        batch_[waiting++] = static_cast<std::uint32_t>(i);
      }
      if (waiting == batch_.size() || i + 1 == hashes.size()) {
        WeldBatch(waiting, hashes, firsts);
        waiting = 0;
      }
    }
  }

 private:
  // So many cache lines arrive while others are looked at.
  static constexpr std::size_t kBatch = 32;

  struct Kept {
    KtPoint3 point;
    std::uint32_t first;
  };

  void WeldBatch(std::size_t size, const PointNumbers& hashes, PointNumbers& firsts) {
    for (std::size_t k = 0; k < size; ++k) {
      const std::uint32_t i = batch_[k];
      const KtPoint3 point = pointAt_(i);
      const auto next = static_cast<std::uint32_t>(kept_.size());
      const std::uint32_t found = table_.FindOrInsertIf(
          hashes[i], next, [&](std::uint32_t other) { return kept_[other].point == point; },
          [&] { return isFinite(point); });
      if (found == next) {
        appendLarge(kept_, Kept{point, i});
      }
      firsts[i] = found == PointIndex::kNone ? found : kept_[found].first;
    }
  }

  std::size_t number_;
  std::size_t shares_;
  PointAt pointAt_;
  PointIndex table_;
  std::vector<Kept> kept_;
  std::array<std::uint32_t, kBatch> batch_{};
};

// Numbers the points that are the first of their equals in ascending order, and all others as their
// first. `numbers` may hold anything before.
template <class PointAt>
void numberPoints(const PointNumbers& firsts, PointAt pointAt, std::size_t threads,
                  std::vector<KtPoint3>& points, PointNumbers& numbers) {
  const Blocks blocks(firsts.size(), threads);
  std::vector<std::size_t> before(blocks.Count() + 1);
  blocks.Run([&](std::size_t number, Block block) {
    std::size_t kept = 0;
    for (std::size_t i = block.begin; i < block.end; ++i) {
      kept += firsts[i] == i ? 1 : 0;
    }
    before[number + 1] = kept;
  });
  std::partial_sum(before.begin(), before.end(), before.begin());
  points.clear();
  reserveLarge(points, before.back());
  points.resize(before.back());
  blocks.Run([&](std::size_t number, Block block) {
    std::size_t next = before[number];
    for (std::size_t i = block.begin; i < block.end; ++i) {
      if (firsts[i] == i) {
        points[next] = pointAt(i);
        numbers[i] = static_cast<std::uint32_t>(next++);
      }
    }
  });
  blocks.Run([&](std::size_t, Block block) {
    for (std::size_t i = block.begin; i < block.end; ++i) {
      if (firsts[i] != i) {
        numbers[i] = firsts[i] == PointIndex::kNone ? firsts[i] : numbers[firsts[i]];
      }
    }
  });
}

}  // namespace

void weldInParallel(const std::vector<double>& coords, const KtMatrix& transform,
                    std::size_t threads, std::vector<KtPoint3>& points, PointNumbers& newIndex) {
  assert(threads <= kMostThreads);
  withCoordPoints(coords, transform, [&](auto pointAt) {
    const std::size_t count = coords.size() / 3;
    // Of each point the hash, and later the number.
    newIndex.resize(count);
    PointNumbers firsts(count);
    const std::vector<std::size_t> counts = hashPoints(count, pointAt, threads, newIndex);
    runInParallel(threads, threads, [&](std::size_t number) {
      Share(number, threads, counts[number], pointAt).Weld(newIndex, firsts);
    });
    numberPoints(firsts, pointAt, threads, points, newIndex);
  });
}

}  // namespace dxf2d
