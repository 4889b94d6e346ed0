// Outlines that run out of memory, at every allocation that they make.
#include <gtest/gtest.h>

#include "geometry/outline/outline.h"
#include "tests/faults/allocation_sweep.h"
#include "tests/faults/grid.h"

namespace dxf2d {

namespace {

class OutlineAllocationFaults : public testing::TestWithParam<FailingNews::Kind> {};

// The outline of a grid, by faces or by lines.
struct SweptOutline {
  explicit SweptOutline(int side, bool ofLines)
      : coords(gridCoords(side)), given(gridIndices(side)), lines(ofLines) {
    EXPECT_TRUE(Build());
    expectedPoints = points;
    expectedChains = chains;
  }

  bool Build() {
    points.clear();
    points.shrink_to_fit();
    chains = given;
    const PlacedCoords placed{coords, transform};
    return lines ? BuildLineOutline(placed, given, points, chains)
                 : BuildOutline(placed, given, points, chains, false, true);
  }

  void ExpectRight() const {
    EXPECT_TRUE(points == expectedPoints);
    EXPECT_EQ(chains, expectedChains);
  }

  SweptWork Work() {
    return {.faulted = [this] { return Build(); },
            .verify =
                [this](bool done) {
                  if (done) {
                    ExpectRight();
                  }
                  EXPECT_TRUE(Build());
                  ExpectRight();
                },
            .forget = freeOutlineMemory};
  }

  std::vector<double> coords;
  std::vector<int> given;
  bool lines;
  KtMatrix transform;
  std::vector<KtPoint3> points;
  std::vector<int> chains;
  std::vector<KtPoint3> expectedPoints;
  std::vector<int> expectedChains;
};

}  // namespace

TEST_P(OutlineAllocationFaults, OfFacesLeaveTheNextOneRight) {
  for (const int side : {1, 4, 40}) {
    SweptOutline swept(side, false);
    EXPECT_GT(sweepAllocations(swept.Work(), GetParam()), 5U);
  }
}

TEST_P(OutlineAllocationFaults, OfLinesLeaveTheNextOneRight) {
  for (const int side : {1, 4, 40}) {
    SweptOutline swept(side, true);
    sweepAllocations(swept.Work(), GetParam());
  }
}

TEST_P(OutlineAllocationFaults, OfALargeSetLeaveTheNextOneRight) {
  SweptOutline swept(450, false);
  sampleAllocations(swept.Work(), GetParam(), 12, 3);
}

INSTANTIATE_TEST_SUITE_P(Kinds, OutlineAllocationFaults, testing::ValuesIn(kBothKinds),
                         [](const auto& kind) {
                           return kind.param == FailingNews::Kind::kOnce ? "Once" : "FromThereOn";
                         });

}  // namespace dxf2d
