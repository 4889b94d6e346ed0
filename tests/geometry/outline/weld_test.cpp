#include "geometry/outline/weld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

#include "tests/geometry/outline/random_sets.h"

namespace dxf2d {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

void weld(std::vector<KtPoint3>& points, std::vector<int>& indices) {
  WeldScratch scratch;
  weldPoints(points, indices, scratch);
}

}  // namespace

TEST(WeldPoints, EqualPointsBecomeTheFirstOfThem) {
  std::vector<KtPoint3> points = {{1, 2, 3}, {4, 5, 6}, {1, 2, 3}, {7, 8, 9}, {4, 5, 6}};
  std::vector<int> indices = {0, 1, 2, 3, 4, -6};
  weld(points, indices);
  EXPECT_EQ(points, (std::vector<KtPoint3>{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}));
  EXPECT_EQ(indices, (std::vector<int>{0, 1, 0, 2, 1, -6}));
}

TEST(WeldPoints, NegativeZeroEqualsZeroAndTheFirstOfThemIsKept) {
  std::vector<KtPoint3> points = {{-0.0, 0, 1}, {0.0, -0.0, 1}, {0.0, 0.0, 1}};
  std::vector<int> indices = {2, 1, 0, -6};
  weld(points, indices);
  ASSERT_EQ(points.size(), 1U);
  EXPECT_TRUE(std::signbit(points[0].Get0()));
  EXPECT_FALSE(std::signbit(points[0].Get1()));
  EXPECT_EQ(indices, (std::vector<int>{0, 0, 0, -6}));
}

TEST(WeldPoints, NeighboringNumbersAreDifferentPoints) {
  std::vector<KtPoint3> points = {{1, 0, 0}, {std::nextafter(1.0, 2.0), 0, 0}};
  std::vector<int> indices = {0, 1, -1};
  weld(points, indices);
  EXPECT_EQ(points.size(), 2U);
  EXPECT_EQ(indices, (std::vector<int>{0, 1, -1}));
}

TEST(WeldPoints, PointsThatAreNotFiniteAreDropped) {
  std::vector<KtPoint3> points = {
      {kNan, 0, 0}, {1, 0, 0}, {0, kInfinity, 0}, {2, 0, 0}, {0, 0, -kInfinity}};
  std::vector<int> indices = {0, 1, 2, 3, 4, -6};
  weld(points, indices);
  EXPECT_EQ(points, (std::vector<KtPoint3>{{1, 0, 0}, {2, 0, 0}}));
  EXPECT_EQ(indices, (std::vector<int>{kNoPoint, 0, kNoPoint, 1, kNoPoint, -6}));
}

TEST(WeldPoints, HugePointsAreFinite) {
  constexpr double kMax = std::numeric_limits<double>::max();
  std::vector<KtPoint3> points = {{kMax, kMax, kMax}, {-kMax, kMax, -kMax}};
  std::vector<int> indices = {0, 1, -1};
  weld(points, indices);
  EXPECT_EQ(points.size(), 2U);
}

TEST(WeldPoints, EntriesThatNameNoPointBecomeInvalid) {
  std::vector<KtPoint3> points = {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}};
  std::vector<int> indices = {3, 2, std::numeric_limits<int>::max(), -6};
  weld(points, indices);
  EXPECT_EQ(indices, (std::vector<int>{kNoPoint, 1, kNoPoint, -6}));
}

TEST(WeldPoints, NegativeEntriesStayAsTheyAre) {
  std::vector<KtPoint3> points = {{0, 0, 0}};
  std::vector<int> indices = {-1, -7, -9, std::numeric_limits<int>::min()};
  const std::vector<int> before = indices;
  weld(points, indices);
  EXPECT_EQ(indices, before);
}

TEST(WeldPoints, EveryEntryIsInvalidWithoutPoints) {
  std::vector<KtPoint3> points;
  std::vector<int> indices = {0, 1, -1};
  weld(points, indices);
  EXPECT_TRUE(points.empty());
  EXPECT_EQ(indices, (std::vector<int>{kNoPoint, kNoPoint, -1}));
}

TEST(WeldPoints, ScratchOfALargerSetDoesNotShow) {
  WeldScratch scratch;
  std::vector<KtPoint3> many;
  std::vector<int> none;
  for (int i = 0; i < 1000; ++i) {
    many.emplace_back(i, 0, 0);
  }
  weldPoints(many, none, scratch);
  std::vector<KtPoint3> points = {{5, 0, 0}, {6, 0, 0}, {5, 0, 0}};
  std::vector<int> indices = {0, 1, 2, 3, -6};
  weldPoints(points, indices, scratch);
  EXPECT_EQ(points.size(), 2U);
  EXPECT_EQ(indices, (std::vector<int>{0, 1, 0, kNoPoint, -6}));
}

namespace {

// Points of a grid of `side` a side, more and more of them repeated the smaller it is.
std::vector<double> gridCoords(Random& random, std::uint64_t side, std::size_t count) {
  std::vector<double> coords;
  for (std::size_t i = 0; i < 3 * count; ++i) {
    coords.push_back(below(random, 1000) == 0 ? kNan : static_cast<double>(below(random, side)));
  }
  return coords;
}

// The points of `coords` one by one.
std::vector<KtPoint3> transformed(const std::vector<double>& coords, const KtMatrix& transform) {
  std::vector<KtPoint3> points;
  for (std::size_t i = 0; i + 2 < coords.size(); i += 3) {
    points.emplace_back(coords[i], coords[i + 1], coords[i + 2]);
    points.back().Mult(transform);
  }
  return points;
}

}  // namespace

TEST(WeldCoords, WeldsTheTransformedPoints) {
  Random random(1);
  KtMatrix turned;
  turned.Rotate(0, 0, 1, 0.5);
  turned.SetTranslation(3, -4, 5);
  for (const std::uint64_t side : {1U, 2U, 3U, 8U, 9U, 30U, 100000U, 100001U}) {
    const KtMatrix transform = side % 2 == 0 ? KtMatrix() : turned;
    const std::vector<double> coords = gridCoords(random, side, 5000);
    std::vector<int> indices;
    for (int i = 0; i < 5100; ++i) {
      indices.push_back(static_cast<int>(below(random, 5010)) - 5);
    }
    std::vector<KtPoint3> expectedPoints = transformed(coords, transform);
    std::vector<int> expected = indices;
    weld(expectedPoints, expected);
    WeldScratch scratch;
    std::vector<KtPoint3> points = {{1, 2, 3}};
    std::vector<int> welded = {7};
    for (const std::size_t threads : {1U, 2U, 3U, 8U, 17U}) {
      weldCoords(coords, transform, indices, threads, points, welded, scratch);
      EXPECT_EQ(points, expectedPoints) << "grid of " << side << ", threads: " << threads;
      EXPECT_EQ(welded, expected) << "grid of " << side << ", threads: " << threads;
      std::vector<int> inPlace = indices;
      weldCoords(coords, transform, inPlace, threads, points, inPlace, scratch);
      EXPECT_EQ(inPlace, expected) << "in place, grid of " << side << ", threads: " << threads;
    }
  }
}

TEST(WeldCoords, RemainderOfCoordinatesIsIgnored) {
  WeldScratch scratch;
  std::vector<KtPoint3> points;
  std::vector<int> welded;
  weldCoords({1, 2, 3, 4, 5, 6, 7}, KtMatrix(), {0, 1, 2, -6}, 1, points, welded, scratch);
  EXPECT_EQ(points, (std::vector<KtPoint3>{{1, 2, 3}, {4, 5, 6}}));
  EXPECT_EQ(welded, (std::vector<int>{0, 1, kNoPoint, -6}));
}

namespace {

// The corners that weldCoords gives the triangles, without their codes.
PointNumbers cornersByCoords(const std::vector<double>& coords, const std::vector<int>& indices) {
  WeldScratch scratch;
  std::vector<KtPoint3> points;
  std::vector<int> welded;
  weldCoords(coords, KtMatrix(), indices, 1, points, welded, scratch);
  PointNumbers corners;
  std::copy_if(welded.begin(), welded.end(), std::back_inserter(corners),
               [](int index) { return index >= 0; });
  return corners;
}

}  // namespace

TEST(WeldTriangles, GivesTheirCornersTheNumbersOfWeldCoords) {
  Random random(2);
  for (const std::size_t points : {0U, 1U, 30U, 3000U, 3001U}) {
    const std::vector<double> coords = gridCoords(random, 9, points);
    // More triangles than there are points for, too.
    for (const int triangles : {1, 10, 1000, 1001}) {
      for (const bool areSeparate : {false, true}) {
        std::vector<int> indices;
        for (int i = 0; i < 3 * triangles; ++i) {
          indices.push_back(areSeparate ? i : static_cast<int>(below(random, 3100)));
          if (i % 3 == 2) {
            indices.push_back(-7);
          }
        }
        const PointNumbers expected = cornersByCoords(coords, indices);
        for (const std::size_t threads : {1U, 2U, 17U}) {
          WeldScratch scratch;
          std::vector<KtPoint3> kept;
          PointNumbers corners = {1};
          weldTriangles(coords, KtMatrix(), indices, triangleRunsOf(indices, threads), threads,
                        kept, corners, scratch);
          EXPECT_EQ(corners, expected) << points << " points, " << triangles << " triangles";
        }
      }
    }
  }
}

TEST(WeldCoords, SignsOfZerosAreThoseOfTheProduct) {
  // All signs of zeros of a matrix that equals the identity, and of a point.
  for (unsigned matrixSigns = 0; matrixSigns < 1U << 15U; matrixSigns += 7) {
    KtMatrix transform;
    std::array<double, 16> elements{};
    std::copy_n(transform.Data(), 16, elements.begin());
    unsigned sign = matrixSigns;
    for (double& element : elements) {
      if (element == 0.0) {
        element = (sign & 1U) != 0 ? -0.0 : 0.0;
        sign >>= 1U;
      }
    }
    transform.Init(elements.data());
    for (unsigned signs = 0; signs < 8; ++signs) {
      const auto zero = [&](unsigned axis) { return (signs >> axis & 1U) != 0 ? -0.0 : 0.0; };
      const std::vector<double> coords = {zero(0), zero(1), zero(2)};
      const KtPoint3 expected = transformed(coords, transform).front();
      WeldScratch scratch;
      std::vector<KtPoint3> points;
      std::vector<int> welded;
      weldCoords(coords, transform, {0, -1}, signs == 0 && matrixSigns % 49 == 0 ? 2 : 1, points,
                 welded, scratch);
      ASSERT_EQ(points.size(), 1U);
      EXPECT_EQ(std::signbit(points[0].Get0()), std::signbit(expected.Get0()));
      EXPECT_EQ(std::signbit(points[0].Get1()), std::signbit(expected.Get1()));
      EXPECT_EQ(std::signbit(points[0].Get2()), std::signbit(expected.Get2()));
    }
  }
}

}  // namespace dxf2d
