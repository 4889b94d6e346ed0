#include "app/model/cut_sharing.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace dxf2d {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Heights {
  double low = kInfinity;
  double high = -kInfinity;

  void Add(double z) {
    low = std::min(low, z);
    high = std::max(high, z);
  }
};

std::vector<Heights> heightsOf(const std::vector<mesh::PolygonMesh>& blocks) {
  std::vector<Heights> heights(blocks.size());
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    for (const mesh::Index corner : blocks[i].corners) {
      heights[i].Add(blocks[i].points[corner][2]);
    }
    for (const mesh::Segment& line : blocks[i].segments) {
      heights[i].Add(blocks[i].points[line.a][2]);
      heights[i].Add(blocks[i].points[line.b][2]);
    }
  }
  return heights;
}

}  // namespace

double heightOfCut(const CutPlane& plane, const PlanLayout& layout,
                   const std::vector<mesh::PolygonMesh>& blocks) {
  if (plane.isAbsolute) {
    return plane.height;
  }
  const std::vector<Heights> heights = heightsOf(blocks);
  double lowest = kInfinity;
  for (const PlacedObject& object : layout.objects) {
    lowest = std::min(lowest, heights[object.block].low + object.placement.shift[2]);
  }
  return (lowest < kInfinity ? lowest : 0.0) + plane.height;
}

std::vector<ObjectGroup> groupByCut(const PlanLayout& layout,
                                    const std::vector<mesh::PolygonMesh>& blocks, double height) {
  if (layout.objects.size() == 1) {
    return {{0}};
  }
  const std::vector<Heights> heights = heightsOf(blocks);
  std::vector<ObjectGroup> groups;
  // By block and by where the plane is in its coordinates: infinitely high above what is whole.
  std::map<std::pair<std::size_t, double>, std::size_t> numbers;
  for (std::size_t i = 0; i < layout.objects.size(); ++i) {
    const PlacedObject& object = layout.objects[i];
    double plane = height - object.placement.shift[2];
    plane = heights[object.block].high < plane ? kInfinity : plane;
    plane = heights[object.block].low >= plane ? -kInfinity : plane;
    const auto [group, isNew] = numbers.try_emplace({object.block, plane}, groups.size());
    if (isNew) {
      groups.emplace_back();
    }
    groups[group->second].push_back(i);
  }
  return groups;
}

}  // namespace dxf2d
