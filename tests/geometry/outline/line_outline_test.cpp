#include <gtest/gtest.h>

#include <vector>

#include "geometry/outline/outline.h"

namespace dxf2d {

namespace {

using Indices = std::vector<int>;
using Points = std::vector<KtPoint3>;

const Points kSquare = {{0, 0, 1}, {1, 0, 2}, {1, 1, 3}, {0, 1, 4}};

// The chains of a line set; empty when it has no outline.
Indices chainsOf(Points points, Indices indices) {
  return BuildLineOutline(points, indices) ? indices : Indices{};
}

}  // namespace

TEST(BuildLineOutline, LineStripOfThreeIsOneOpenChain) {
  EXPECT_EQ(chainsOf(kSquare, {0, 1, 2, -6}), (Indices{0, 1, 2, -6}));
}

TEST(BuildLineOutline, SegmentRunOfThreeIsTwoEdges) {
  EXPECT_EQ(chainsOf(kSquare, {0, 1, 2, -1}), (Indices{0, 1, 2, -6}));
}

TEST(BuildLineOutline, SegmentRunOfTwoIsOneEdge) {
  EXPECT_EQ(chainsOf(kSquare, {2, 3, -1}), (Indices{2, 3, -6}));
}

TEST(BuildLineOutline, SegmentRunOfOneIsIgnored) {
  EXPECT_TRUE(chainsOf(kSquare, {2, -1}).empty());
}

TEST(BuildLineOutline, EdgeThatTwoPolygonsShareIsHiddenHoweverTheyFace) {
  const Indices square = {0, 1, 2, 3, 0, -6};
  EXPECT_EQ(chainsOf(kSquare, {0, 1, 2, -7, 0, 2, 3, -7}), square);
  EXPECT_EQ(chainsOf(kSquare, {0, 1, 2, -7, 0, 3, 2, -7}), square);
  EXPECT_EQ(chainsOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0.9, -9}}, {0, 1, 2, -7, 0, 3, 2, -7}),
            square);
}

TEST(BuildLineOutline, EdgeOfThreePolygonsIsHidden) {
  EXPECT_EQ(chainsOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 2, 0}, {0, 3, 0}},
                     {0, 1, 2, -7, 0, 1, 3, -7, 0, 1, 4, -7}),
            (Indices{0, 2, 1, 3, 0, 4, 1, -6}));
}

TEST(BuildLineOutline, LineAlongTheViewHasNoOutline) {
  EXPECT_TRUE(chainsOf({{1, 1, 0}, {1, 1, 5}}, {0, 1, -6}).empty());
}

TEST(BuildLineOutline, LineAlongTheViewIsDroppedFromOthers) {
  EXPECT_EQ(chainsOf({{1, 1, 0}, {1, 1, 5}, {2, 1, 5}}, {0, 1, 2, -6}), (Indices{1, 2, -6}));
}

TEST(BuildLineOutline, PointsAreFlattened) {
  Points points = kSquare;
  Indices indices = {0, 1, -1};
  ASSERT_TRUE(BuildLineOutline(points, indices));
  EXPECT_EQ(points, (Points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}));
}

TEST(BuildLineOutline, EntriesThatNameNoPointCutAStrip) {
  EXPECT_EQ(chainsOf(kSquare, {0, 1, 4, 2, 3, -6}), (Indices{0, 1, -6, 2, 3, -6}));
}

TEST(BuildLineOutline, CodesWithoutMeaningAreIgnored) {
  EXPECT_TRUE(chainsOf(kSquare, {0, 1, 2, -2, 0, 1, 2, -8}).empty());
}

}  // namespace dxf2d
