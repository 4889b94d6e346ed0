// The vertices of a polyline written together, against the same written group by group.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/dxf/written_by.h"
#include "tests/platform/numeric_locale.h"

namespace dxf2d {

namespace {

std::string writtenTogether(const std::vector<KtPoint3>& points) {
  return writtenBy([&](DxfWriter& writer) {
    writer.WriteVertices(points.size(), [&](std::size_t k) { return points[k]; });
  });
}

std::string writtenOneByOne(const std::vector<KtPoint3>& points) {
  return writtenBy([&](DxfWriter& writer) {
    for (const KtPoint3& point : points) {
      writer.WriteVertexBegin(nullptr);
      writer.WritePoint10(nullptr, point.Get0(), point.Get1(), point.Get2());
    }
  });
}

// Coordinates of every size, in any order.
std::vector<KtPoint3> spiral(int count) {
  std::vector<KtPoint3> points;
  for (int i = 0; i < count; ++i) {
    const double radius = std::pow(10.0, i % 15 - 4);
    points.emplace_back(radius * std::cos(i), radius * std::sin(i), i);
  }
  return points;
}

}  // namespace

TEST(Vertices, VertexIsItsGroups) {
  EXPECT_EQ(writtenTogether({{1.5, -2.0, 3.0}}),
            "  0\nVERTEX\n  8\n0\n 70\n0\n 10\n1.500000\n 20\n-2.000000\n 30\n0.000000\n");
}

TEST(Vertices, ZeroVerticesWriteNothing) { EXPECT_EQ(writtenTogether({}), ""); }

TEST(Vertices, AnyCountIsAsOneByOne) {
  for (const int count : {1, 2, 3, 4, 5, 31, 32, 33, 63, 64, 65, 1000}) {
    const std::vector<KtPoint3> points = spiral(count);
    EXPECT_EQ(writtenTogether(points), writtenOneByOne(points)) << count;
  }
}

TEST(Vertices, MoreThanTheFileGathersIsAsOneByOne) {
  const std::vector<KtPoint3> points = spiral(20000);
  const std::string text = writtenTogether(points);
  EXPECT_GT(text.size(), 1000000U);
  EXPECT_EQ(text, writtenOneByOne(points));
}

TEST(Vertices, OddCoordinatesAreAsOneByOne) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  const std::vector<KtPoint3> points = {{-0.0, 0.0, -0.0},
                                        {kInfinity, -kInfinity, 1.0},
                                        {kNan, -kNan, 1.0},
                                        {1e300, -1e300, 1.0},
                                        {-4e-7, 1.0 / 128, 1.0}};
  EXPECT_EQ(writtenTogether(points), writtenOneByOne(points));
}

TEST(Vertices, SeparatorIsThatOfTheLocale) {
  const std::vector<KtPoint3> points = spiral(40);
  const std::string before = writtenTogether(points);
  for (const auto& names : {kCommaLocales, kWideSeparatorLocales}) {
    const NumericLocale locale(names);
    if (!locale.Found()) {
      GTEST_SKIP() << "A locale with another separator is not installed.";
    }
    const std::string text = writtenTogether(points);
    EXPECT_NE(text, before);
    EXPECT_EQ(text, writtenOneByOne(points));
  }
}

}  // namespace dxf2d
