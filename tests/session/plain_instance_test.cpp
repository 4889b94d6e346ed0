#include "session/plain_instance.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/drawing_session.h"

namespace {

BlockNode turnedNode(double x, double y, double z, double angle) {
  KtMatrix matrix;
  matrix.Rotate(x, y, z, angle);
  BlockNode node;
  matrix.GetData(node.matrix);
  return node;
}

}  // namespace

TEST(IsPlainInstance, TurnAboutZIsPlain) {
  for (const double angle : {0.0, 0.5, 3.0, -2.0}) {
    const BlockNode node = turnedNode(0, 0, 1, angle);
    EXPECT_TRUE(isPlainInstance(&node, nullptr)) << angle;
  }
}

TEST(IsPlainInstance, TiltUpToThreeHundredthsIsPlain) {
  const BlockNode slight = turnedNode(1, 0, 0, 0.0299);
  EXPECT_TRUE(isPlainInstance(&slight, nullptr));
  const BlockNode steep = turnedNode(1, 0, 0, 0.0301);
  EXPECT_FALSE(isPlainInstance(&steep, nullptr));
  const BlockNode backwards = turnedNode(0, 1, 0, -0.0301);
  EXPECT_FALSE(isPlainInstance(&backwards, nullptr));
}

TEST(IsPlainInstance, TiltsAboutBothAxesAddUp) {
  KtMatrix matrix;
  matrix.Rotate(1, 0, 0, 0.02);
  matrix.Rotate(0, 1, 0, -0.02);
  BlockNode node;
  matrix.GetData(node.matrix);
  EXPECT_FALSE(isPlainInstance(&node, nullptr));
}

TEST(IsPlainInstance, MirroredNodeIsTilted) {
  BlockNode node = turnedNode(0, 0, 1, 0);
  node.matrix[0] = -1;
  EXPECT_FALSE(isPlainInstance(&node, nullptr));
}

TEST(IsPlainInstance, MatrixWithoutARotationIsPlain) {
  BlockNode node = turnedNode(0, 0, 1, 0);
  node.matrix[0] = 0;
  EXPECT_TRUE(isPlainInstance(&node, nullptr));
}

TEST(IsPlainInstance, OwnColourOrMaterialIsNot) {
  const BlockNode node = turnedNode(0, 0, 1, 0);
  HostNode bare;
  EXPECT_TRUE(isPlainInstance(&node, bare.Attribute()));
  HostNode coloured;
  coloured.node.color = {1, 0, 0};
  EXPECT_FALSE(isPlainInstance(&node, coloured.Attribute()));
  HostNode material;
  material.node.material = std::make_unique<KtMaterial>();
  EXPECT_FALSE(isPlainInstance(&node, material.Attribute()));
}

TEST(IsPlainInstance, NullNodeIsNot) {
  HostNode host;
  EXPECT_FALSE(isPlainInstance(nullptr, nullptr));
  EXPECT_FALSE(isPlainInstance(nullptr, host.Attribute()));
}
