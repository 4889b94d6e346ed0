#include "projection/group_joining.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <span>
#include <utility>

#include "platform/large_memory.h"
#include "platform/parallel.h"

namespace dxf2d::projection {
namespace {

// Cuts the groups into stretches with about as many segments each: a stretch is those up to, and
// without, the group at its place, the last one all others.
std::vector<std::uint64_t> cutIntoStretches(const std::vector<GroupedSegment>& segments,
                                            std::size_t threads) {
  std::uint64_t last = 0;
  for (const GroupedSegment& segment : segments) {
    last = std::max(last, segment.group);
  }
  std::vector<std::uint64_t> ends;
  // Groups without segments cost little as long as there are not many more of them.
  constexpr std::uint64_t kMostForEach = 8;
  if (threads > 1 && last / kMostForEach < segments.size()) {
    std::vector<std::size_t> counts(last + 1, 0);
    for (const GroupedSegment& segment : segments) {
      ++counts[segment.group];
    }
    std::size_t sum = 0;
    for (std::uint64_t group = 0; group <= last; ++group) {
      // Where a stretch is as long as its share, or would be farther beyond it with this group.
      const std::size_t share = segments.size() * (ends.size() + 1) / threads;
      if (ends.size() + 1 < threads && sum != 0 && sum + counts[group] / 2 >= share) {
        ends.push_back(group);
      }
      sum += counts[group];
    }
  }
  ends.push_back(last + 1);
  return ends;
}

}  // namespace

Polylines sortedByGroup(const Polylines& lines) {
  std::vector<std::size_t> order(lines.Count());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return lines.groups[i]; });
  Polylines sorted;
  sorted.points.reserve(lines.points.size());
  for (const std::size_t i : order) {
    const std::span<const PlanPoint> line = lines.At(i);
    sorted.points.insert(sorted.points.end(), line.begin(), line.end());
    sorted.starts.push_back(sorted.points.size());
    sorted.groups.push_back(lines.groups[i]);
  }
  return sorted;
}

Polylines joinByGroup(std::vector<GroupedSegment> segments, double weld, std::size_t threads) {
  const std::vector<std::uint64_t> ends = cutIntoStretches(segments, threads);
  if (ends.size() == 1) {
    return sortedByGroup(joinSegments(segments, weld).polylines);
  }
  std::vector<std::vector<GroupedSegment>> stretches(ends.size());
  runInParallel(ends.size(), threads, [&](std::size_t number) {
    const std::uint64_t begin = number == 0 ? 0 : ends[number - 1];
    for (const GroupedSegment& segment : segments) {
      if (segment.group >= begin && segment.group < ends[number]) {
        appendLarge(stretches[number], segment);
      }
    }
  });
  segments = std::vector<GroupedSegment>();
  std::vector<Polylines> lines(ends.size());
  runInParallel(ends.size(), threads, [&](std::size_t number) {
    lines[number] = sortedByGroup(joinSegments(stretches[number], weld).polylines);
    stretches[number] = std::vector<GroupedSegment>();
  });
  Polylines all = std::move(lines[0]);
  for (const Polylines& some : std::span(lines).subspan(1)) {
    const std::size_t before = all.points.size();
    all.points.insert(all.points.end(), some.points.begin(), some.points.end());
    std::ranges::transform(some.starts.begin() + 1, some.starts.end(),
                           std::back_inserter(all.starts),
                           [before](std::size_t start) { return before + start; });
    all.groups.insert(all.groups.end(), some.groups.begin(), some.groups.end());
  }
  return all;
}

}  // namespace dxf2d::projection
