// Lists that several threads made of stretches of one list, each without items that are equal.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "mesh/polygon_mesh.h"
#include "mesh/slot_table.h"
#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

template <class Stretch>
using Stretches = std::vector<std::unique_ptr<Stretch>>;

// Where each stretch begins when the items of all are counted through, and the number of these.
template <class Stretch>
std::vector<std::size_t> startsOf(const Stretches<Stretch>& stretches) {
  std::vector<std::size_t> starts(stretches.size() + 1, 0);
  for (std::size_t i = 0; i < stretches.size(); ++i) {
    starts[i + 1] = starts[i] + stretches[i]->Count();
  }
  return starts;
}

// By item of all stretches, counted through: the first item that equals it, itself if it is that.
//
// A stretch has Count() items, no two of them equal, and a hash table of them: HashOf(i) is that of
// an item, Prefetch(hash) loads its place in the table, and Find(hash, other, i) is the number of
// the item of this stretch that equals item i of another, which has the hash, or kNone.
template <class Stretch>
LargeArray<Index> findFirsts(const Stretches<Stretch>& stretches, std::size_t threads) {
  const std::vector<std::size_t> starts = startsOf(stretches);
  LargeArray<Index> firsts(starts.back());
  // Looks up a batch of items of stretch `own`, from `begin` on.
  constexpr std::size_t kBatch = 32;
  const auto findBatch = [&](std::size_t own, std::size_t begin, std::size_t size) {
    std::array<std::uint32_t, kBatch> hashes;
    Index* const found = &firsts[starts[own] + begin];
    for (std::size_t i = 0; i < size; ++i) {
      hashes[i] = stretches[own]->HashOf(begin + i);
      found[i] = kNone;
    }
    for (std::size_t before = 0; before < own; ++before) {
      for (std::size_t i = 0; i < size; ++i) {
        stretches[before]->Prefetch(hashes[i]);
      }
      for (std::size_t i = 0; i < size; ++i) {
        const Index there = found[i] == kNone
                                ? stretches[before]->Find(hashes[i], *stretches[own], begin + i)
                                : kNone;
        found[i] = there == kNone ? found[i] : static_cast<Index>(starts[before]) + there;
      }
    }
    for (std::size_t i = 0; i < size; ++i) {
      found[i] = found[i] == kNone ? static_cast<Index>(starts[own] + begin + i) : found[i];
    }
  };
  for (std::size_t own = 0; own < stretches.size(); ++own) {
    // The first has none before it.
    Blocks(stretches[own]->Count(), own == 0 ? 1 : threads)
        .Run([&](std::size_t /*number*/, const Block& block) {
          for (std::size_t begin = block.begin; begin < block.end; begin += kBatch) {
            findBatch(own, begin, std::min(kBatch, block.end - begin));
          }
        });
  }
  return firsts;
}

}  // namespace dxf2d::mesh
