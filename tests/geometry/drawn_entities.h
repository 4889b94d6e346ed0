// What a callback has drawn, in terms of points.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/drawing_groups.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

using PlanPlace = std::pair<double, double>;
using PlanPlaces = std::vector<PlanPlace>;
using PlanLine = std::pair<PlanPlace, PlanPlace>;

// The vertices of each POLYLINE.
inline std::vector<PlanPlaces> polylinesOf(const std::vector<Entity>& entities) {
  std::vector<PlanPlaces> polylines;
  for (const Entity& entity : entities) {
    if (entity.type == "POLYLINE") {
      polylines.emplace_back();
    } else if (entity.type == "VERTEX") {
      polylines.back().emplace_back(entity.Number(10), entity.Number(20));
    }
  }
  return polylines;
}

inline std::vector<PlanLine> linesOf(const std::vector<Entity>& entities) {
  std::vector<PlanLine> lines;
  for (const Entity& entity : entitiesOfType(entities, "LINE")) {
    lines.push_back(
        {{entity.Number(10), entity.Number(20)}, {entity.Number(11), entity.Number(21)}});
  }
  return lines;
}

// The blocks of that name in a drawing without its head.
inline std::vector<Block> blocksIn(const std::string& body, const std::string& name) {
  return blocksNamed(entitiesOf(groupsOf(body)), name);
}

// The polylines of the one block of that name.
inline std::vector<PlanPlaces> polylinesIn(const std::string& body, const std::string& name) {
  const std::vector<Block> blocks = blocksIn(body, name);
  EXPECT_EQ(blocks.size(), 1U) << name;
  return blocks.empty() ? std::vector<PlanPlaces>{} : polylinesOf(blocks.front().entities);
}

// Draws with `draw` into the root's block and returns its polylines.
template <class Draw>
std::vector<PlanPlaces> drawnAtTheRoot(Draw draw) {
  const DrawingSession session;
  EXPECT_TRUE(draw());
  return polylinesIn(session.Body(), "GO_0");
}

}  // namespace dxf2d
