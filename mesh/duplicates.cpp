#include "mesh/duplicates.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "mesh/polygon_filter.h"
#include "mesh/repeat_filter.h"
#include "mesh/slot_table.h"
#include "platform/parallel.h"

namespace dxf2d::mesh {

namespace {

using Hashes = std::vector<std::uint32_t, LargeAllocator<std::uint32_t>>;

std::uint64_t spread(Index corner) {
  const std::uint64_t product = (std::uint64_t{corner} + 1U) * 0x9e3779b97f4a7c15U;
  return product ^ product >> 29U;
}

// The same for the same corners in any order, since sums are.
std::uint32_t hashOf(std::span<const Index> corners) {
  std::uint64_t sum = 0;
  for (const Index corner : corners) {
    sum += spread(corner);
  }
  return mixed(sum);
}

bool isSameTriangle(std::span<const Index> a, std::span<const Index> b) {
  const auto isOfB = [&](Index corner) {
    return corner == b[0] || corner == b[1] || corner == b[2];
  };
  // The corners of a triangle differ.
  return isOfB(a[0]) && isOfB(a[1]) && isOfB(a[2]);
}

// Whether two polygons have the same corners, each as often; the lists are memory to sort in.
class SameCorners {
 public:
  bool operator()(std::span<const Index> a, std::span<const Index> b) {
    if (a.size() != b.size()) {
      return false;
    }
    if (a.size() == 3) {
      return isSameTriangle(a, b);
    }
    return Sorted(a, sortedA_) == Sorted(b, sortedB_);
  }

 private:
  static const std::vector<Index>& Sorted(std::span<const Index> corners, std::vector<Index>& to) {
    to.assign(corners.begin(), corners.end());
    std::sort(to.begin(), to.end());
    return to;
  }

  std::vector<Index> sortedA_;
  std::vector<Index> sortedB_;
};

// Finds the polygons that may have the corners of another. Triangles that do share all edges, so
// either three polygons or more use one of these, or the same two use both edges from the least
// corner, which are in one row of the table. Other polygons need not share any.
class SuspectFinder {
 public:
  SuspectFinder(std::size_t polygonCount, std::size_t threads)
      : isSuspect_(polygonCount, 0), threads_(threads) {}

  void AddLargePolygons(const PolygonMesh& mesh) {
    Blocks(mesh.PolygonCount(), threads_).Run([&](std::size_t /*number*/, const Block& polygons) {
      for (std::size_t p = polygons.begin; p < polygons.end; ++p) {
        isSuspect_[p] = mesh.starts[p + 1] - mesh.starts[p] != 3 ? 1 : 0;
      }
    });
  }
  void AddRows(const EdgeTable& edges) {
    Blocks(edges.RowCount(), threads_).Run([&](std::size_t /*number*/, const Block& rows) {
      RowPairs pairs;
      edges.ForEachEdge(rows, [&](Index a, Index /*b*/, std::span<const EdgeUse> uses) {
        AddEdge(a, uses, pairs);
      });
    });
  }

  // The polygons, ascending.
  std::vector<Index> Take() const {
    std::vector<Index> suspects;
    for (std::size_t p = 0; p < isSuspect_.size(); ++p) {
      if (isSuspect_[p] != 0) {
        appendLarge(suspects, static_cast<Index>(p));
      }
    }
    return suspects;
  }

 private:
  // Looked at one by one; the pairs of longer rows are all taken for suspects.
  static constexpr std::size_t kMostPairs = 32;

  // The pairs of polygons at the edges of one row.
  struct RowPairs {
    Index row = kNone;
    std::array<std::uint64_t, kMostPairs> pairs = {};
    std::size_t count = 0;
  };

  void AddEdge(Index a, std::span<const EdgeUse> uses, RowPairs& pairs) {
    if (uses.size() == 2) {
      AddPair(a, std::uint64_t{uses[0].Polygon()} << 32U | uses[1].Polygon(), pairs);
    } else if (uses.size() > 2) {
      for (const EdgeUse& use : uses) {
        Suspect(use.Polygon());
      }
    }
  }

  void AddPair(Index row, std::uint64_t pair, RowPairs& pairs) {
    if (row != pairs.row) {
      pairs.row = row;
      pairs.count = 0;
    }
    bool isRepeated = pairs.count == kMostPairs;
    for (std::size_t i = 0; i < pairs.count; ++i) {
      isRepeated |= pairs.pairs[i] == pair;
    }
    if (isRepeated) {
      Suspect(static_cast<Index>(pair >> 32U));
      Suspect(static_cast<Index>(pair));
    } else {
      pairs.pairs[pairs.count++] = pair;
    }
  }

  // Threads may come across one polygon at a time.
  void Suspect(Index polygon) {
    std::atomic_ref(isSuspect_[polygon]).store(1, std::memory_order_relaxed);
  }

  std::vector<char> isSuspect_;
  std::size_t threads_;
};

std::vector<Index> findSuspects(const PolygonMesh& mesh, const EdgeTable& edges,
                                std::size_t threads) {
  SuspectFinder finder(mesh.PolygonCount(), threads);
  finder.AddLargePolygons(mesh);
  finder.AddRows(edges);
  return finder.Take();
}

struct Duplicate {
  Index polygon;
  // The earlier one with the same corners.
  Index first;
};

// Those of the suspects that have the corners of an earlier one, ascending as they are.
std::vector<Duplicate> findDuplicates(const PolygonMesh& mesh, const std::vector<Index>& suspects) {
  Hashes hashes(suspects.size());
  RepeatFilter filter(suspects.size());
  for (std::size_t i = 0; i < suspects.size(); ++i) {
    hashes[i] = hashOf(mesh.Polygon(suspects[i]));
    filter.Add(hashes[i]);
  }
  std::vector<Duplicate> duplicates;
  SlotTable table(suspects.size() / 8);
  SameCorners isSame;
  for (std::size_t i = 0; i < suspects.size(); ++i) {
    if (!filter.IsRepeated(hashes[i])) {
      continue;
    }
    const Index p = suspects[i];
    const Index found = table.Find(
        hashes[i], [&](Index earlier) { return isSame(mesh.Polygon(earlier), mesh.Polygon(p)); });
    if (found == kNone) {
      table.Keep(hashes[i], p);
    } else {
      duplicates.push_back({p, found});
    }
  }
  return duplicates;
}

// See Duplicates::doubled; the numbers are those of the polygons once the duplicates are gone.
std::vector<DoubledPolygon> findDoubled(const PolygonMesh& mesh,
                                        const std::vector<Duplicate>& duplicates) {
  std::vector<Duplicate> byFirst = duplicates;
  std::ranges::stable_sort(byFirst, {}, &Duplicate::first);
  std::vector<DoubledPolygon> doubled;
  auto before = duplicates.begin();
  for (auto begin = byFirst.begin(); begin != byFirst.end();) {
    const auto end = std::find_if(
        begin, byFirst.end(), [&](const Duplicate& other) { return other.first != begin->first; });
    while (before != duplicates.end() && before->polygon < begin->first) {
      ++before;
    }
    if (end - begin == 1 && mesh.parts[begin->polygon] != mesh.parts[begin->first]) {
      doubled.push_back({begin->first - static_cast<Index>(before - duplicates.begin()),
                         mesh.parts[begin->polygon]});
    }
    begin = end;
  }
  return doubled;
}

}  // namespace

Duplicates dropDuplicatePolygons(PolygonMesh& mesh, const EdgeTable& edges, std::size_t threads) {
  Duplicates result;
  const std::vector<Duplicate> duplicates =
      findDuplicates(mesh, findSuspects(mesh, edges, threads));
  if (duplicates.empty()) {
    return result;
  }
  result.doubled = findDoubled(mesh, duplicates);
  auto next = duplicates.begin();
  result.dropped = keepPolygons(mesh, [&](std::size_t p, std::span<const Index> /*corners*/) {
    const bool isDuplicate = next != duplicates.end() && next->polygon == p;
    next += isDuplicate ? 1 : 0;
    return !isDuplicate;
  });
  return result;
}

std::size_t dropDuplicateSegments(PolygonMesh& mesh) {
  SlotTable table(mesh.segments.size());
  const auto isSame = [](const Segment& s, const Segment& t) {
    return (s.a == t.a && s.b == t.b) || (s.a == t.b && s.b == t.a);
  };
  Index kept = 0;
  for (const Segment segment : mesh.segments) {
    const std::uint32_t hash = mixed(spread(segment.a) + spread(segment.b));
    const Index found =
        table.Find(hash, [&](Index earlier) { return isSame(mesh.segments[earlier], segment); });
    if (found == kNone) {
      table.Keep(hash, kept);
      mesh.segments[kept++] = segment;
    }
  }
  const std::size_t dropped = mesh.segments.size() - kept;
  mesh.segments.resize(kept);
  return dropped;
}

}  // namespace dxf2d::mesh
