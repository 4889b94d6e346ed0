#include "geometry/outline/numbered_points.h"

#include <algorithm>
#include <utility>

#include "platform/parallel.h"
#include "platform/prefetch.h"

namespace dxf2d {

namespace {

// Returns use(pointAt), where pointAt(i) is the i-th point.
template <class Use>
auto withPoints(const std::vector<double>& coords, const KtMatrix& transform, Use use) {
  const double* const from = coords.data();
  if (transform.IsIdentity()) {
    // The usual case: a set in the coordinate system of its object. The sums turn -0 into 0, as the
    // product would.
    return use([from](std::size_t i) {
      return KtPoint3(from[3 * i] + 0.0, from[3 * i + 1] + 0.0, from[3 * i + 2] + 0.0);
    });
  }
  return use([from, &transform](std::size_t i) {
    KtPoint3 point(from[3 * i], from[3 * i + 1], from[3 * i + 2]);
    point.Mult(transform);
    return point;
  });
}

// Joins the points that the blocks keep.
class BlockJoiner {
 public:
  BlockJoiner(std::vector<BlockPoints>& blocks, std::size_t threads)
      : blocks_(blocks), threads_(threads) {
    for (std::size_t block = 0; block < blocks.size(); ++block) {
      // Each block's points by several threads: the last blocks take the longest.
      const Blocks parts(blocks[block].kept.size(), threads);
      for (std::size_t part = 0; part < parts.Count(); ++part) {
        parts_.push_back({static_cast<std::uint32_t>(block), parts[part], 0});
      }
      blocks[block].origins.resize(blocks[block].kept.size());
    }
  }

  // Makes the origins of all kept points their numbers, and collects the points in this order.
  void Join(std::vector<KtPoint3>& points) {
    ForEachPart([this](Part& part) { FindOrigins(part); });
    std::size_t total = 0;
    for (Part& part : parts_) {
      total += std::exchange(part.own, total);
    }
    points.clear();
    reserveLarge(points, total);
    points.resize(total);
    ForEachPart([&](const Part& part) { NumberOwn(part, points); });
    ForEachPart([this](const Part& part) { NumberOthers(part); });
  }

 private:
  struct Part {
    std::uint32_t block;
    Block kept;
    // How many of them no earlier block keeps; then how many such there are in the parts before.
    std::size_t own;
  };

  template <class Work>
  void ForEachPart(Work work) {
    runInParallel(parts_.size(), threads_, [&](std::size_t i) { work(parts_[i]); });
  }

  void FindOrigins(Part& part) {
    BlockPoints& mine = blocks_[part.block];
    for (std::size_t i = part.kept.begin; i < part.kept.end; ++i) {
      mine.origins[i] = {part.block, static_cast<std::uint32_t>(i)};
    }
    for (std::uint32_t earlier = 0; earlier < part.block; ++earlier) {
      FindIn(earlier, part, mine);
    }
    part.own = static_cast<std::size_t>(
        std::count_if(mine.origins.begin() + static_cast<std::ptrdiff_t>(part.kept.begin),
                      mine.origins.begin() + static_cast<std::ptrdiff_t>(part.kept.end),
                      [&](const auto& origin) { return origin.block == part.block; }));
  }

  void FindIn(std::uint32_t earlier, const Part& part, BlockPoints& mine) const {
    struct Hashed {
      std::uint64_t hash;
    };
    const BlockPoints& theirs = blocks_[earlier];
    forEachPrefetched(
        theirs.table, part.kept.end - part.kept.begin,
        [&](std::size_t i) { return Hashed{hashOf(mine.kept[part.kept.begin + i])}; },
        [&](std::size_t i, const Hashed& hashed) {
          const std::size_t number = part.kept.begin + i;
          if (mine.origins[number].block == part.block) {
            const std::uint32_t found = theirs.table.Find(hashed.hash, [&](std::uint32_t other) {
              return theirs.kept[other] == mine.kept[number];
            });
            if (found != PointIndex::kNone) {
              mine.origins[number] = {earlier, found};
            }
          }
          return true;
        });
  }

  void NumberOwn(const Part& part, std::vector<KtPoint3>& points) {
    BlockPoints& mine = blocks_[part.block];
    std::size_t next = part.own;
    for (std::size_t i = part.kept.begin; i < part.kept.end; ++i) {
      if (mine.origins[i].block == part.block) {
        points[next] = mine.kept[i];
        mine.origins[i].number = static_cast<std::uint32_t>(next++);
      }
    }
  }

  // Reads the numbers of blocks' own points and changes those of others.
  void NumberOthers(const Part& part) {
    std::vector<BlockPoints::Origin>& origins = blocks_[part.block].origins;
    for (std::size_t i = part.kept.begin; i < part.kept.end; ++i) {
      if (origins[i].block != part.block) {
        origins[i].number = blocks_[origins[i].block].origins[origins[i].number].number;
      }
    }
  }

  std::vector<BlockPoints>& blocks_;
  std::size_t threads_;
  std::vector<Part> parts_;
};

}  // namespace

void joinBlocks(std::vector<BlockPoints>& blocks, std::size_t count, std::vector<KtPoint3>& points,
                PointNumbers& numbers) {
  const std::size_t threads = blocks.size();
  BlockJoiner(blocks, threads).Join(points);
  Blocks(count, threads).Run([&](std::size_t, Block part) {
    // The first block's points have their numbers.
    for (std::size_t number = 1; number < threads; ++number) {
      const Block block = blockOf(number, threads, count);
      const std::size_t end = std::min(block.end, part.end);
      for (std::size_t i = std::max(block.begin, part.begin); i < end; ++i) {
        if (numbers[i] != kNoPoint) {
          const auto kept = static_cast<std::size_t>(numbers[i]);
          numbers[i] = static_cast<int>(blocks[number].origins[kept].number);
        }
      }
    }
  });
}

void numberPoints(const std::vector<double>& coords, const KtMatrix& transform,
                  std::size_t expected, std::size_t threads, std::vector<KtPoint3>& points,
                  PointNumbers& numbers, std::vector<BlockPoints>& blocks) {
  withPoints(coords, transform, [&](auto pointAt) {
    numberPoints(coords.size() / 3, expected, pointAt, threads, points, numbers, blocks);
  });
}

void numberPoints(std::vector<KtPoint3>& points, PointNumbers& numbers, PointIndex& table) {
  numbers.resize(points.size());
  std::size_t kept = 0;
  numberEach(
      points.size(), points.size() / 4, [&](std::size_t i) { return points[i]; },
      [&](const KtPoint3& point) { points[kept++] = point; },
      [&](std::uint32_t number) -> const KtPoint3& { return points[number]; }, table,
      numbers.data());
  points.resize(kept);
}

}  // namespace dxf2d
