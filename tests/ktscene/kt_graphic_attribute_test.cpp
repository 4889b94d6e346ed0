#include "ktscene/kt_graphic_attribute.h"

#include <gtest/gtest.h>

#include <memory>

#include "ktscene/kt_scene.h"

TEST(KtGraphicAttribute, ReadsTheNodesNames) {
  KtSceneNode node;
  node.graphicName = u"chair";
  node.objectId = u"o1";
  node.realObjectId = u"r1";
  const KtGraphicAttribute attribute(node);
  std::u16string text;
  EXPECT_TRUE(attribute.GetGraphicName(text));
  EXPECT_EQ(text, u"chair");
  EXPECT_TRUE(attribute.GetObjectID(text));
  EXPECT_EQ(text, u"o1");
  EXPECT_TRUE(attribute.GetRealObjectID(text));
  EXPECT_EQ(text, u"r1");
}

TEST(KtGraphicAttribute, MissingNameReturnsFalseAndLeavesTheTextEmpty) {
  KtSceneNode node;
  const KtGraphicAttribute attribute(node);
  std::u16string text = u"old";
  EXPECT_FALSE(attribute.GetGraphicName(text));
  EXPECT_EQ(text, u"");
  text = u"old";
  EXPECT_FALSE(attribute.GetObjectID(text));
  EXPECT_EQ(text, u"");
  text = u"old";
  EXPECT_FALSE(attribute.GetRealObjectID(text));
  EXPECT_EQ(text, u"");
}

TEST(KtGraphicAttribute, MatrixIsTheLocalTransform) {
  KtSceneNode node;
  node.matrix.SetTranslation(4, 5, 6);
  double data[16];
  KtGraphicAttribute(node).GetMatrix(data);
  EXPECT_EQ(data[0], 1);
  EXPECT_EQ(data[12], 4);
  EXPECT_EQ(data[14], 6);
}

TEST(KtGraphicAttribute, GraphicItemIsTheNodeUnlessItHasNone) {
  KtSceneNode node;
  const KtGraphicAttribute attribute(node);
  EXPECT_EQ(attribute.GetGraphicItem(nullptr, true, KTV_GRAPHIC_CREATE_DEFAULT), &node);
  node.hasGraphicItem = false;
  EXPECT_EQ(attribute.GetGraphicItem(nullptr, true, KTV_GRAPHIC_CREATE_DEFAULT), nullptr);
}

TEST(KtGraphicAttribute, PlainNodeHasNeitherColorNorMaterial) {
  KtSceneNode node;
  double color[3] = {7, 7, 7};
  KtMaterial* material = nullptr;
  EXPECT_FALSE(KtGraphicAttribute(node).GetColorOrMaterial(color, material));
  EXPECT_EQ(color[0], 7);
  EXPECT_EQ(material, nullptr);
}

TEST(KtGraphicAttribute, OwnColorIsReported) {
  KtSceneNode node;
  node.color = {0.25, 0.5, 1.0};
  double color[3] = {};
  KtMaterial* material = nullptr;
  EXPECT_TRUE(KtGraphicAttribute(node).GetColorOrMaterial(color, material));
  EXPECT_EQ(color[0], 0.25);
  EXPECT_EQ(color[1], 0.5);
  EXPECT_EQ(color[2], 1.0);
  EXPECT_EQ(material, nullptr);
}

TEST(KtGraphicAttribute, OwnMaterialIsReported) {
  KtSceneNode node;
  node.material = std::make_unique<KtMaterial>();
  double color[3] = {7, 7, 7};
  KtMaterial* material = nullptr;
  EXPECT_TRUE(KtGraphicAttribute(node).GetColorOrMaterial(color, material));
  EXPECT_EQ(color[0], 7);
  EXPECT_EQ(material, node.material.get());
}
