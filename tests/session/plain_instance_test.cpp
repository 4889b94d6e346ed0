#include "session/plain_instance.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/drawing_session.h"

namespace dxf2d {

namespace {

// The unrotated node with element 0 of its matrix replaced.
BlockNode nodeWithFirstElement(double value) {
  BlockNode node;
  double data[16];
  node.matrix.GetData(data);
  data[0] = value;
  node.matrix.Init(data);
  return node;
}

BlockNode turnedNode(double x, double y, double z, double angle) {
  KtMatrix matrix;
  matrix.Rotate(x, y, z, angle);
  BlockNode node;
  node.matrix = matrix;
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
  const BlockNode slight = turnedNode(1, 0, 0, 0.0299999999);
  EXPECT_TRUE(isPlainInstance(&slight, nullptr));
  const BlockNode steep = turnedNode(1, 0, 0, 0.0300000001);
  EXPECT_FALSE(isPlainInstance(&steep, nullptr));
  const BlockNode backwards = turnedNode(0, 1, 0, -0.0300000001);
  EXPECT_FALSE(isPlainInstance(&backwards, nullptr));
}

TEST(IsPlainInstance, TiltsAboutBothAxesAddUp) {
  KtMatrix matrix;
  matrix.Rotate(1, 0, 0, 0.02);
  matrix.Rotate(0, 1, 0, -0.02);
  BlockNode node;
  node.matrix = matrix;
  EXPECT_FALSE(isPlainInstance(&node, nullptr));
}

TEST(IsPlainInstance, MirroredNodeIsTilted) {
  const BlockNode node = nodeWithFirstElement(-1);
  EXPECT_FALSE(isPlainInstance(&node, nullptr));
}

TEST(IsPlainInstance, MatrixWithoutARotationIsPlain) {
  const BlockNode node = nodeWithFirstElement(0);
  EXPECT_TRUE(isPlainInstance(&node, nullptr));
}

TEST(IsPlainInstance, OwnColorOrMaterialIsNot) {
  const BlockNode node = turnedNode(0, 0, 1, 0);
  HostNode bare;
  EXPECT_TRUE(isPlainInstance(&node, bare.Attribute()));
  HostNode colored;
  colored.node.color = {1, 0, 0};
  EXPECT_FALSE(isPlainInstance(&node, colored.Attribute()));
  HostNode material;
  material.node.material = std::make_unique<KtMaterial>();
  EXPECT_FALSE(isPlainInstance(&node, material.Attribute()));
}

TEST(IsPlainInstance, NullNodeIsNot) {
  HostNode host;
  EXPECT_FALSE(isPlainInstance(nullptr, nullptr));
  EXPECT_FALSE(isPlainInstance(nullptr, host.Attribute()));
}

}  // namespace dxf2d
