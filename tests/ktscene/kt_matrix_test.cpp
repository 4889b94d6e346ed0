#include "ktscene/kt_matrix.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "ktscene/kt_point3.h"

namespace {

using std::numbers::pi;

std::vector<double> dataOf(const KtMatrix& matrix) {
  std::vector<double> data(16);
  matrix.GetData(data.data());
  return data;
}

KtMatrix rows(std::array<double, 3> x, std::array<double, 3> y, std::array<double, 3> z) {
  const double data[16] = {x[0], x[1], x[2], 0, y[0], y[1], y[2], 0,
                           z[0], z[1], z[2], 0, 0,    0,    0,    1};
  KtMatrix matrix;
  matrix.Init(data);
  return matrix;
}

std::array<double, 3> rotateKoef(const KtMatrix& matrix) {
  std::array<double, 3> angles = {9.0, 9.0, 9.0};
  matrix.GetRotateKoef(&angles[0], &angles[1], &angles[2]);
  return angles;
}

std::array<double, 4> rotation(const KtMatrix& matrix) {
  std::array<double, 4> turn = {9.0, 9.0, 9.0, 9.0};
  matrix.GetRotation(&turn[0], &turn[1], &turn[2], &turn[3], -1);
  return turn;
}

KtMatrix rotated(double x, double y, double z, double angle) {
  KtMatrix matrix;
  matrix.Rotate(x, y, z, angle);
  return matrix;
}

void expectNear(const std::array<double, 3>& actual, const std::array<double, 3>& expected) {
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(actual[i], expected[i], 1e-15) << i;
  }
}

constexpr std::array<double, 3> kNone = {0.0, 0.0, 0.0};
constexpr std::array<double, 4> kNoTurn = {0.0, 0.0, 0.0, 0.0};

}  // namespace

TEST(KtMatrix, IsIdentityBitForBit) {
  EXPECT_TRUE(KtMatrix().IsIdentity());
  for (int i = 0; i < 16; ++i) {
    double data[16];
    KtMatrix().GetData(data);
    data[i] = data[i] == 0.0 ? -0.0 : std::nextafter(1.0, 2.0);
    KtMatrix matrix;
    matrix.Init(data);
    EXPECT_FALSE(matrix.IsIdentity()) << i;
  }
}

TEST(KtMatrix, StartsAsTheIdentity) {
  EXPECT_EQ(dataOf(KtMatrix()),
            (std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
}

TEST(KtMatrix, IdentityForgetsWhatWasThere) {
  KtMatrix matrix = rotated(1, 2, 3, 0.5);
  matrix.SetTranslation(1, 2, 3);
  matrix.Identity();
  EXPECT_EQ(dataOf(matrix), dataOf(KtMatrix()));
}

TEST(KtMatrix, InitTakesSixteenNumbersAsTheyAre) {
  std::vector<double> data;
  for (int i = 0; i < 16; ++i) {
    data.push_back(i + 0.5);
  }
  KtMatrix matrix;
  matrix.Init(data.data());
  EXPECT_EQ(dataOf(matrix), data);
  EXPECT_EQ(std::vector<double>(matrix.Data(), matrix.Data() + 16), data);
}

TEST(KtMatrix, SetTranslationChangesElements12To14) {
  KtMatrix matrix;
  matrix.SetTranslation(7, 8, 9);
  EXPECT_EQ(dataOf(matrix), (std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 7, 8, 9, 1}));
}

TEST(KtMatrix, MultAppliesTheLocalMatrixFirst) {
  KtMatrix parent = rows({2, 0, 0}, {0, 2, 0}, {0, 0, 2});
  KtMatrix local;
  local.SetTranslation(1, 2, 3);
  KtMatrix world = parent;
  world.Mult(local);
  EXPECT_EQ(dataOf(world), (std::vector<double>{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 2, 4, 6, 1}));
  local.Mult(parent);
  EXPECT_EQ(dataOf(local), (std::vector<double>{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 1, 2, 3, 1}));
}

TEST(KtMatrix, MultMatchesTheProductWorkedOutByHand) {
  const double p[16] = {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 10, 0, 11, 12, 13, 1};
  const double l[16] = {2, 0, 1, 0, 0, 3, 0, 0, 1, 0, 4, 0, 5, 6, 7, 1};
  KtMatrix matrix;
  matrix.Init(p);
  KtMatrix local;
  local.Init(l);
  matrix.Mult(local);
  EXPECT_EQ(dataOf(matrix),
            (std::vector<double>{9, 12, 16, 0, 12, 15, 18, 0, 29, 34, 43, 0, 5 + 24 + 49 + 11,
                                 10 + 30 + 56 + 12, 15 + 36 + 70 + 13, 1}));
}

TEST(KtMatrix, MultAddsFromLeftToRight) {
  // (1e16 + 1) + 1 loses both ones, 1e16 + (1 + 1) would keep them.
  KtMatrix parent = rows({1e16, 0, 0}, {1, 0, 0}, {1, 0, 0});
  parent.Mult(rows({1, 1, 1}, {0, 1, 0}, {0, 0, 1}));
  EXPECT_EQ(parent.Data()[0], 1e16);
}

TEST(KtMatrix, MultByItselfSquares) {
  KtMatrix matrix = rows({0, 2, 0}, {3, 0, 0}, {0, 0, 5});
  matrix.Mult(matrix);
  EXPECT_EQ(dataOf(matrix), (std::vector<double>{6, 0, 0, 0, 0, 6, 0, 0, 0, 0, 25, 0, 0, 0, 0, 1}));
}

TEST(KtMatrix, RotateAboutZHasExactRows) {
  for (const double angle : {0.0, 1e-9, 0.5, 1.0, pi / 2, 2.0, pi, 4.0, -0.7, -3.0, 100.0}) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    for (const double z : {1.0, 1e-3, 7.0}) {
      EXPECT_EQ(dataOf(rotated(0, 0, z, angle)),
                (std::vector<double>{c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}))
          << angle;
    }
  }
}

TEST(KtMatrix, RotateTurnsCounterClockwiseAboutEachAxis) {
  const double angle = 0.5;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  EXPECT_EQ(dataOf(rotated(1, 0, 0, angle)),
            (std::vector<double>{1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1}));
  EXPECT_EQ(dataOf(rotated(0, 1, 0, angle)),
            (std::vector<double>{c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1}));
}

TEST(KtMatrix, RotateAboutTheDiagonalTurnsTheAxesIntoEachOther) {
  KtPoint3 point(1, 0, 0);
  point.Mult(rotated(5, 5, 5, 2 * pi / 3));
  EXPECT_NEAR(point.Get0(), 0, 1e-15);
  EXPECT_NEAR(point.Get1(), 1, 1e-15);
  EXPECT_NEAR(point.Get2(), 0, 1e-15);
}

TEST(KtMatrix, RotateIsAppliedBeforeTheMatrix) {
  KtMatrix matrix;
  matrix.SetTranslation(10, 20, 30);
  matrix.Rotate(0, 0, 1, pi / 2);
  KtPoint3 point(1, 0, 0);
  point.Mult(matrix);
  EXPECT_NEAR(point.Get0(), 10, 1e-15);
  EXPECT_NEAR(point.Get1(), 21, 1e-15);
  EXPECT_EQ(point.Get2(), 30);
}

TEST(KtMatrix, RotateAboutNoAxisChangesNothing) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(dataOf(rotated(0, 0, 0, 1)), dataOf(KtMatrix()));
  EXPECT_EQ(dataOf(rotated(kInfinity, 0, 0, 1)), dataOf(KtMatrix()));
  EXPECT_EQ(dataOf(rotated(std::nan(""), 0, 1, 1)), dataOf(KtMatrix()));
}

TEST(GetRotateKoef, IdentityHasNone) { EXPECT_EQ(rotateKoef(KtMatrix()), kNone); }

TEST(GetRotateKoef, ReadsTurnsAboutEachAxis) {
  expectNear(rotateKoef(rotated(1, 0, 0, 0.3)), {0.3, 0, 0});
  expectNear(rotateKoef(rotated(0, 1, 0, 0.4)), {0, 0.4, 0});
  expectNear(rotateKoef(rotated(0, 0, 1, -2.5)), {0, 0, -2.5});
}

TEST(GetRotateKoef, TurnsAboutXFirstThenYThenZ) {
  KtMatrix matrix = rotated(0, 0, 1, 0.7);
  matrix.Rotate(0, 1, 0, 0.5);
  matrix.Rotate(1, 0, 0, 0.3);
  const auto [a, b, c] = rotateKoef(matrix);
  EXPECT_NEAR(a, 0.3, 1e-15);
  EXPECT_NEAR(b, 0.5, 1e-15);
  EXPECT_NEAR(c, 0.7, 1e-15);
}

TEST(GetRotateKoef, ScaleDoesNotCount) {
  KtMatrix matrix = rotated(0, 0, 1, 0.25);
  matrix.Mult(rows({2, 0, 0}, {0, 5, 0}, {0, 0, 0.5}));
  expectNear(rotateKoef(matrix), {0, 0, 0.25});
}

TEST(GetRotateKoef, XAlongTheZAxisLeavesTheTurnAboutXOut) {
  const auto down = rotateKoef(rows({0, 0, -1}, {0, 1, 0}, {1, 0, 0}));
  EXPECT_EQ(down, (std::array<double, 3>{0, pi / 2, 0}));
  const auto turned = rotateKoef(rows({0, 0, 1}, {1, 0, 0}, {0, 1, 0}));
  EXPECT_EQ(turned, (std::array<double, 3>{0, -pi / 2, -pi / 2}));
}

TEST(GetRotateKoef, JustBesideTheZAxisTheTurnAboutXCounts) {
  const double h = 2e-12;
  const auto angles = rotateKoef(rows({h, 0, -1}, {0, 1, 0}, {1, 0, h}));
  EXPECT_EQ(angles[0], std::atan2(0.0, h));
  EXPECT_EQ(angles[2], std::atan2(0.0, h));
  EXPECT_NEAR(angles[1], pi / 2, 1e-11);
}

TEST(GetRotateKoef, MirroredMatrixShowsAsATilt) {
  EXPECT_EQ(rotateKoef(rows({1, 0, 0}, {0, -1, 0}, {0, 0, 1})),
            (std::array<double, 3>{std::atan2(0.0, -1.0), std::atan2(-0.0, 1.0), 0}));
  EXPECT_EQ(std::abs(rotateKoef(rows({1, 0, 0}, {0, -1, 0}, {0, 0, 1}))[0]), pi);
}

TEST(GetRotateKoef, MirrorAlongZAloneIsNotATilt) {
  EXPECT_EQ(rotateKoef(rows({1, 0, 0}, {0, 1, 0}, {0, 0, -1})), kNone);
}

TEST(GetRotateKoef, RowWithoutLengthMeansNoRotation) {
  EXPECT_EQ(rotateKoef(rows({0, 1, 0}, {-1, 0, 0}, {0, 0, 0})), kNone);
  EXPECT_EQ(rotateKoef(rows({0, 1e200, 0}, {-1, 0, 0}, {0, 0, 1})), kNone);
  EXPECT_EQ(rotateKoef(rows({0, 1e-200, 0}, {-1, 0, 0}, {0, 0, 1})), kNone);
  EXPECT_EQ(rotateKoef(rows({0, std::nan(""), 0}, {-1, 0, 0}, {0, 0, 1})), kNone);
}

TEST(GetRotation, IdentityHasNone) { EXPECT_EQ(rotation(KtMatrix()), kNoTurn); }

TEST(GetRotation, ReadsTheTurnAboutZ) {
  EXPECT_EQ(rotation(rows({0, 1, 0}, {-1, 0, 0}, {0, 0, 1})),
            (std::array<double, 4>{0, 0, 1, pi / 2}));
  EXPECT_EQ(rotation(rows({0, -1, 0}, {1, 0, 0}, {0, 0, 1})),
            (std::array<double, 4>{0, 0, -1, pi / 2}));
}

TEST(GetRotation, ReadsAxisAndAngleOfAnyTurn) {
  const auto [x, y, z, angle] = rotation(rotated(1, 2, -2, 1.2));
  EXPECT_NEAR(x, 1.0 / 3, 1e-15);
  EXPECT_NEAR(y, 2.0 / 3, 1e-15);
  EXPECT_NEAR(z, -2.0 / 3, 1e-15);
  EXPECT_NEAR(angle, 1.2, 1e-15);
}

TEST(GetRotation, HalfTurnTakesItsAxisFromTheLargestDiagonalElement) {
  EXPECT_EQ(rotation(rows({1, 0, 0}, {0, -1, 0}, {0, 0, -1})),
            (std::array<double, 4>{1, 0, 0, pi}));
  EXPECT_EQ(rotation(rows({-1, 0, 0}, {0, 1, 0}, {0, 0, -1})),
            (std::array<double, 4>{0, 1, 0, pi}));
  EXPECT_EQ(rotation(rows({-1, 0, 0}, {0, -1, 0}, {0, 0, 1})),
            (std::array<double, 4>{0, 0, 1, pi}));
}

TEST(GetRotation, HalfTurnBetweenTwoAxesStartsFromTheFirst) {
  const double root = std::sqrt(0.5);
  EXPECT_EQ(rotation(rows({0, 1, 0}, {1, 0, 0}, {0, 0, -1})),
            (std::array<double, 4>{root, 2 / (4 * root), 0, pi}));
  EXPECT_EQ(rotation(rows({0, -1, 0}, {-1, 0, 0}, {0, 0, -1})),
            (std::array<double, 4>{root, -2 / (4 * root), 0, pi}));
  EXPECT_EQ(rotation(rows({-1, 0, 0}, {0, 0, 1}, {0, 1, 0})),
            (std::array<double, 4>{0, root, 2 / (4 * root), pi}));
}

TEST(GetRotation, MirroredMatrixShowsAsAHalfTurn) {
  EXPECT_EQ(rotation(rows({1, 0, 0}, {0, -1, 0}, {0, 0, 1})), (std::array<double, 4>{1, 0, 0, pi}));
}

TEST(GetRotation, RowWithoutLengthMeansNoRotation) {
  EXPECT_EQ(rotation(rows({0, 0, 0}, {0, -1, 0}, {0, 0, 1})), kNoTurn);
  EXPECT_EQ(rotation(rows({1, 0, 0}, {0, -1, 0}, {0, 1e160, 0})), kNoTurn);
}
