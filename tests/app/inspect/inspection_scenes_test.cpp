#include "app/inspect/inspection_scenes.h"

#include <gtest/gtest.h>

#include <array>

#include "ktscene/kt_graphic_node.h"
#include "ktscene/kt_traverser.h"

namespace dxf2d {

namespace {

// How often each slot was called.
std::array<int, 21>& calls() {
  static std::array<int, 21> counts;
  return counts;
}

KtTraverser countingTraverser() {
  KtTraverser traverser;
  traverser.Init(
      [](KtGraphicAttribute*) { ++calls()[1]; }, [] { ++calls()[2]; },
      [](KtGraphicAttribute*) { return ++calls()[3], false; },
      [](const std::vector<double>&, double) { ++calls()[4]; }, [] { ++calls()[5]; },
      [](const double*, const double*, double) { ++calls()[6]; },
      [](const double*, const double*, const double*, const double*, const double*, const double*) {
        ++calls()[7];
      },
      [](const double*) { ++calls()[8]; }, nullptr,
      [](const std::vector<double>&, const std::vector<int>&, bool, bool) {
        return ++calls()[10], true;
      },
      [](const std::vector<double>&, const std::vector<int>&) { return ++calls()[11], true; },
      nullptr, nullptr, [](KtGeometry*, bool) { return ++calls()[14], false; }, nullptr,
      [](KtGraphicNode* node, bool, int) {
        if (node->GetIsLabel()) {
          ++calls()[16];
        }
        return false;
      },
      nullptr, nullptr, [](const std::u16string&) { return ++calls()[19], true; },
      [] { return ++calls()[20], true; });
  return traverser;
}

TEST(InspectionScenes, LastOneReachesEverySlotOfTheWalk) {
  calls() = {};
  KtScene everything = inspectionScenes().back().make();
  ASSERT_TRUE(countingTraverser().Walk(everything, u"unused"));
  for (const std::size_t slot : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 10U, 11U, 14U, 16U, 19U, 20U}) {
    EXPECT_GT(calls()[slot], 0) << "slot " << slot;
  }
}

TEST(InspectionScenes, LastOneHoldsTheNodesOfAllOthers) {
  std::size_t nodes = 0;
  for (const InspectionScene& kind : inspectionScenes().first(inspectionScenes().size() - 1)) {
    nodes += kind.make().nodes.size();
  }
  EXPECT_EQ(inspectionScenes().back().make().nodes.size(), nodes);
}

}  // namespace

}  // namespace dxf2d
