#include "geometry/outline/edge_table.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>
#include <vector>

namespace dxf2d {

namespace {

using Users = std::vector<std::uint32_t>;
using EdgeUsers = std::vector<std::pair<Edge, Users>>;

EdgeUsers visited(EdgeTable& table) {
  EdgeUsers result;
  std::vector<Edge> edges;
  const auto isWanted = [&](const Edge& edge, std::span<const std::uint64_t> entries) {
    Users users;
    for (const std::uint64_t entry : entries) {
      users.push_back(static_cast<std::uint32_t>(entry));
    }
    result.emplace_back(edge, users);
    return true;
  };
  table.ChooseEdges(1, isWanted, edges);
  EXPECT_EQ(edges.size(), result.size());
  return result;
}

EdgeUsers edgesOf(const std::vector<int>& polygons, std::size_t pointCount) {
  EdgeTable table;
  table.Build(polygons, pointCount, 1);
  return visited(table);
}

}  // namespace

TEST(EdgeTable, EdgesComeInOrderEachOnceWithItsPolygons) {
  EXPECT_EQ(
      edgesOf({2, 1, 0, -7, 1, 2, 3, -7}, 4),
      (EdgeUsers{{{0, 1}, {0}}, {{0, 2}, {0}}, {{1, 2}, {0, 1}}, {{1, 3}, {1}}, {{2, 3}, {1}}}));
}

TEST(EdgeTable, LastEntryJoinsTheFirst) {
  EXPECT_EQ(edgesOf({0, 1, 2, 3, -7}, 4),
            (EdgeUsers{{{0, 1}, {0}}, {{0, 3}, {0}}, {{1, 2}, {0}}, {{2, 3}, {0}}}));
}

TEST(EdgeTable, PolygonOfTwoUsesItsEdgeOnce) {
  EXPECT_EQ(edgesOf({0, 1, -7}, 2), (EdgeUsers{{{0, 1}, {0}}}));
}

TEST(EdgeTable, PolygonThatRunsAlongAnEdgeTwiceUsesItOnce) {
  EXPECT_EQ(edgesOf({0, 1, 0, 2, -7, 0, 1, 3, -7}, 4),
            (EdgeUsers{{{0, 1}, {0, 1}}, {{0, 2}, {0}}, {{0, 3}, {1}}, {{1, 3}, {1}}}));
}

TEST(EdgeTable, TrianglesHaveTheEdgesOfPolygons) {
  const std::vector<int> corners = {2, 1, 0, 1, 2, 3, 0, 0, 1, 0, 3, 4, 2, 3, 0x7fffffff};
  std::vector<int> polygons;
  for (std::size_t i = 0; i < corners.size(); i += 3) {
    polygons.insert(polygons.end(), {corners[i], corners[i + 1], corners[i + 2], -7});
  }
  for (const std::size_t threads : {1U, 2U, 8U}) {
    EdgeTable table;
    table.BuildTriangles(corners, 4, threads);
    EXPECT_EQ(visited(table), edgesOf(polygons, 4));
  }
}

TEST(EdgeTable, EdgesFromAPointToItselfAreLeftOut) {
  EXPECT_EQ(edgesOf({0, 0, 1, -7, 2, -7}, 3), (EdgeUsers{{{0, 1}, {0}}}));
}

TEST(EdgeTable, EdgesWithAnEntryThatNamesNoPointAreLeftOut) {
  EXPECT_EQ(edgesOf({0, 1, 7, -7, 0, -5, 2, -7, 3, 0, 1, -7}, 3),
            (EdgeUsers{{{0, 1}, {0, 2}}, {{0, 2}, {1}}}));
}

TEST(EdgeTable, EmptyPolygonsCountAsPolygons) {
  EdgeTable table;
  table.Build({-7, 0, 1, -7, -7, 1, 2, -7}, 3, 1);
  EXPECT_EQ(table.PolygonStarts(), (std::vector<std::uint32_t>{0, 1, 4, 5}));
  EXPECT_EQ(visited(table), (EdgeUsers{{{0, 1}, {1}}, {{1, 2}, {3}}}));
}

TEST(EdgeTable, EntriesAfterTheLastCodeAreIgnored) {
  EXPECT_EQ(edgesOf({0, 1, -7, 1, 2}, 3), (EdgeUsers{{{0, 1}, {0}}}));
}

TEST(EdgeTable, EmptyListHasNoEdges) {
  EXPECT_TRUE(edgesOf({}, 0).empty());
  EXPECT_TRUE(edgesOf({0, 1, 2, -7}, 0).empty());
}

TEST(EdgeTable, PointOfManyEdgesHasThemInOrder) {
  constexpr int kSpokes = 500;
  std::vector<int> polygons;
  for (int k = kSpokes; k > 1; --k) {
    polygons.insert(polygons.end(), {0, k, k - 1, -7});
  }
  std::map<std::pair<int, int>, Users> expected;
  for (int k = kSpokes; k > 1; --k) {
    const auto polygon = static_cast<std::uint32_t>(kSpokes - k);
    expected[{0, k}].push_back(polygon);
    expected[{0, k - 1}].push_back(polygon);
    expected[{k - 1, k}].push_back(polygon);
  }
  EdgeUsers inOrder;
  for (const auto& [edge, users] : expected) {
    inOrder.push_back({{edge.first, edge.second}, users});
  }
  EXPECT_EQ(edgesOf(polygons, kSpokes + 1), inOrder);
}

TEST(EdgeTable, BuildingAgainForgetsTheFirst) {
  EdgeTable table;
  table.Build({0, 1, 2, -7, 2, 3, 4, -7}, 5, 1);
  table.Build({0, 1, -7}, 2, 1);
  EXPECT_EQ(table.PolygonStarts().size(), 1U);
  EXPECT_EQ(visited(table), (EdgeUsers{{{0, 1}, {0}}}));
}

}  // namespace dxf2d
