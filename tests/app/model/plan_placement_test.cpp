#include "app/model/plan_placement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "app/model/block_index.h"

namespace dxf2d {
namespace {

using Rows = std::array<double, 9>;

Affine rotation(double angle, const std::array<double, 3>& shift) {
  Affine turn;
  turn.linear = {
      std::cos(angle), std::sin(angle), 0, -std::sin(angle), std::cos(angle), 0, 0, 0, 1};
  turn.shift = shift;
  return turn;
}

Affine recompose(const SplitTransform& split) {
  Affine residual;
  residual.linear = split.residual;
  Affine placement;
  const KtMatrix matrix = split.placement.Matrix();
  const double* m = matrix.Data();
  placement.linear = {m[0], m[1], m[2], m[4], m[5], m[6], m[8], m[9], m[10]};
  placement.shift = {m[12], m[13], m[14]};
  return compose(residual, placement);
}

// Tilts, scales, mirrors and shears of any kind.
Affine randomAffine(std::mt19937& random) {
  std::uniform_real_distribution<double> element(-3.0, 3.0);
  Affine affine;
  for (double& value : affine.linear) {
    value = element(random);
  }
  for (double& value : affine.shift) {
    value = 100.0 * element(random);
  }
  return affine;
}

TEST(SplitTransform, ResidualThenPlacementIsTheTransform) {
  std::mt19937 random(1);
  for (int i = 0; i < 1000; ++i) {
    const Affine world = randomAffine(random);
    const Affine again = recompose(splitTransform(world));
    for (std::size_t k = 0; k < 9; ++k) {
      EXPECT_NEAR(again.linear[k], world.linear[k], 1e-5);
    }
    EXPECT_EQ(again.shift, world.shift);
  }
}

TEST(SplitTransform, TransformsThatDifferByATurnInPlanHaveOneResidual) {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> angle(0.01, 6.27);
  int compared = 0;
  for (int i = 0; i < 1000; ++i) {
    const Affine world = randomAffine(random);
    const Affine turned = compose(world, rotation(angle(random), {3.0, 4.0, 5.0}));
    // What is turned by too little for an INSERT is a residual of its own.
    if (splitTransform(world).placement.sine == 0.0) {
      continue;
    }
    if (splitTransform(turned).placement.sine == 0.0) {
      continue;
    }
    EXPECT_TRUE(residualsAgree(splitTransform(world).residual, splitTransform(turned).residual));
    ++compared;
  }
  EXPECT_GT(compared, 990);
}

TEST(SplitTransform, RightAnglesAreExact) {
  Affine world;
  world.linear = {0, 2, 0, -3, 0, 0, 0, 0, 4};
  const SplitTransform split = splitTransform(world);
  EXPECT_EQ(split.residual, (Rows{2, 0, 0, 0, 3, 0, 0, 0, 4}));
  EXPECT_EQ(split.placement.cosine, 0.0);
  EXPECT_EQ(split.placement.sine, 1.0);
  EXPECT_TRUE(split.placement.KeepsAxes());
}

TEST(SplitTransform, MirroringStaysInTheResidual) {
  Affine world;
  world.linear = {1, 0, 0, 0, -1, 0, 0, 0, 1};
  const SplitTransform split = splitTransform(world);
  EXPECT_EQ(split.residual, world.linear);
  EXPECT_EQ(split.placement.cosine, 1.0);
}

TEST(SplitTransform, AVerticalXAxisLeavesTheRotationToTheYAxis) {
  Affine world;
  world.linear = {0, 0, 1, 0, 1, 0, -1, 0, 0};
  const SplitTransform split = splitTransform(world);
  EXPECT_EQ(split.placement.sine, 1.0);
  EXPECT_EQ(split.residual, (Rows{0, 0, 1, 1, 0, 0, 0, 1, 0}));
}

TEST(SplitTransform, ATurnTooSmallForAnInsertStaysInTheResidual) {
  const Affine world = rotation(0.0009, {1.0, 2.0, 0.0});
  const SplitTransform split = splitTransform(world);
  EXPECT_EQ(split.residual, world.linear);
  EXPECT_EQ(split.placement.sine, 0.0);
  EXPECT_EQ(splitTransform(rotation(0.002, {})).placement.sine, std::sin(0.002));
}

TEST(SplitTransform, AFlatPointHasNoTurn) {
  Affine world;
  world.linear.fill(0.0);
  EXPECT_EQ(splitTransform(world).placement.cosine, 1.0);
}

TEST(PlanPlacement, MatrixIsNotTilted) {
  double aboutX = 1.0;
  double aboutY = 1.0;
  double aboutZ = 0.0;
  const SplitTransform split = splitTransform(rotation(0.7, {1.0, 2.0, 3.0}));
  split.placement.Matrix().GetRotateKoef(&aboutX, &aboutY, &aboutZ);
  EXPECT_EQ(aboutX, 0.0);
  EXPECT_EQ(std::abs(aboutY), 0.0);
  EXPECT_NEAR(aboutZ, 0.7, 1e-15);
}

TEST(DropNoise, MakesRightAnglesOfSinglePrecisionExact) {
  Affine reader;
  const double noise = static_cast<double>(-4.37113883e-08f);
  reader.linear = {1, 0, 0, 0, noise, -1, 0, 1, noise};
  Affine upright;
  upright.linear = {1, 0, 0, 0, 0, 1, 0, -1, 0};
  Affine world = compose(reader, upright);
  dropNoise(world);
  EXPECT_EQ(world.linear, (Rows{1, 0, 0, 0, 1, 0, 0, 0, 1}));
}

TEST(Compose, KeepsASmallTurnAboveWhatStandsFarAway) {
  Affine turn;
  turn.linear = {1, 1e-7, 0, -1e-7, 1, 0, 0, 0, 1};
  Affine survey;
  survey.shift = {1e6, 0, 0};
  EXPECT_DOUBLE_EQ(compose(survey, turn).shift[1], 0.1);
}

TEST(BlockIndex, ObjectsAgreeByMeshesAndResidual) {
  BlockIndex index;
  const Rows one{1, 0, 0, 0, 1, 0, 0, 0, 1};
  Rows near = one;
  near[4] += 5e-7;
  Rows far = one;
  far[4] += 5e-6;
  EXPECT_EQ(index.FindOrAdd({0}, one), 0u);
  EXPECT_EQ(index.FindOrAdd({0}, near), 0u);
  EXPECT_EQ(index.FindOrAdd({0}, far), 1u);
  EXPECT_EQ(index.FindOrAdd({0, 1}, one), 2u);
  EXPECT_EQ(index.FindOrAdd({1}, one), 3u);
  EXPECT_EQ(index.FindOrAdd({0}, one), 0u);
  EXPECT_EQ(index.Size(), 4u);
  EXPECT_EQ(index.Residual(0), one);
}

TEST(BlockIndex, TheToleranceGrowsWithTheScale) {
  BlockIndex index;
  Rows large{1000, 0, 0, 0, 1000, 0, 0, 0, 1000};
  EXPECT_EQ(index.FindOrAdd({0}, large), 0u);
  large[1] = 5e-4;
  EXPECT_EQ(index.FindOrAdd({0}, large), 0u);
  large[1] = 5e-3;
  EXPECT_EQ(index.FindOrAdd({0}, large), 1u);
}

TEST(BlockIndex, ResidualsWithOneSumStayApart) {
  BlockIndex index;
  std::mt19937 random(3);
  std::vector<Rows> residuals;
  for (int i = 0; i < 2000; ++i) {
    residuals.push_back(splitTransform(randomAffine(random)).residual);
    EXPECT_EQ(index.FindOrAdd({0}, residuals.back()), static_cast<std::size_t>(i));
  }
  for (std::size_t i = 0; i < residuals.size(); ++i) {
    EXPECT_EQ(index.FindOrAdd({0}, residuals[i]), i);
  }
}

}  // namespace
}  // namespace dxf2d
