// Plans of models whose meshes need repair, and of edges that no plug-in draws by itself.
#include <gtest/gtest.h>

#include "app/model/object_mesh.h"
#include "app/model/plan_scene.h"
#include "geometry/outline/outline.h"
#include "tests/app/model/model_builder.h"

namespace dxf2d {
namespace {

PlanScene planOf(const aiScene& model, PlanOptions options = {}) {
  return makePlanScene(model, {"model.stl", "Stereolithography (STL) Importer", {}}, options);
}

const std::vector<Corners> kCubeFaces{{3, 2, 1, 0}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                      {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};

std::vector<aiVector3D> cubeCorners(float size = 1.0F) {
  return {{0, 0, 0},    {size, 0, 0},    {size, size, 0},    {0, size, 0},
          {0, 0, size}, {size, 0, size}, {size, size, size}, {0, size, size}};
}

// The segments that the plug-in draws of a leaf, in plan.
using PlanSegment = std::pair<std::array<double, 2>, std::array<double, 2>>;

void addSegments(const KtSceneNode& leaf, std::vector<PlanSegment>& segments) {
  ASSERT_EQ(leaf.geometry.size(), 1u) << "each item writes a whole block under the node's name";
  const auto* faces = std::get_if<std::shared_ptr<const KtFaceSet>>(&leaf.geometry[0]);
  const auto* lines = std::get_if<std::shared_ptr<const KtLineSet>>(&leaf.geometry[0]);
  const std::vector<double>& coords = faces != nullptr ? (*faces)->coords : (*lines)->coords;
  std::vector<int> indices = faces != nullptr ? (*faces)->indices : (*lines)->indices;
  std::vector<KtPoint3> points;
  for (std::size_t i = 0; i < coords.size(); i += 3) {
    points.emplace_back(coords[i], coords[i + 1], coords[i + 2]);
  }
  ASSERT_TRUE(faces != nullptr ? BuildOutline(points, indices, false, true)
                               : BuildLineOutline(points, indices));
  for (std::size_t i = 0; i + 1 < indices.size(); ++i) {
    if (indices[i] < 0 || indices[i + 1] < 0) {
      continue;
    }
    const KtPoint3& a = points[static_cast<std::size_t>(indices[i])];
    const KtPoint3& b = points[static_cast<std::size_t>(indices[i + 1])];
    std::array<double, 2> from{a.Get0(), a.Get1()};
    std::array<double, 2> to{b.Get0(), b.Get1()};
    segments.push_back(std::minmax(from, to));
  }
}

std::vector<PlanSegment> drawnSegments(const PlanScene& plan) {
  std::vector<PlanSegment> segments;
  for (const KtSceneNode& object : plan.scene.nodes) {
    for (const KtSceneNode& leaf : object.children) {
      addSegments(leaf, segments);
    }
  }
  std::ranges::sort(segments);
  return segments;
}

const std::vector<PlanSegment> kSquare{
    {{0, 0}, {0, 1}}, {{0, 0}, {1, 0}}, {{0, 1}, {1, 1}}, {{1, 0}, {1, 1}}};

TEST(RepairedPlan, ACubeWithEveryFaceTwiceIsASquare) {
  std::vector<Corners> faces = kCubeFaces;
  faces.insert(faces.end(), kCubeFaces.begin(), kCubeFaces.end());
  const auto model = makeModel({makeMesh(cubeCorners(), faces)}, makeNode("a", aiMatrix4x4(), {0}));
  const PlanScene plan = planOf(*model);
  EXPECT_EQ(drawnSegments(plan), kSquare);
  EXPECT_EQ(plan.content.meshWork.repair.duplicatePolygons, 6u);
}

TEST(RepairedPlan, FacesSplitOverMeshesAreOneBodyAndNoSegmentIsDrawnTwice) {
  std::vector<aiMesh*> meshes;
  std::vector<unsigned> numbers;
  for (const Corners& face : kCubeFaces) {
    numbers.push_back(static_cast<unsigned>(meshes.size()));
    meshes.push_back(makeMesh(cubeCorners(), {face}));
  }
  const auto model = makeModel(meshes, makeNode("a", aiMatrix4x4(), numbers));
  EXPECT_EQ(drawnSegments(planOf(*model)), kSquare);
}

TEST(RepairedPlan, SegmentsThatSixDigitsDoNotTellApartAreDrawnOnce) {
  const auto squareAt = [](float x, float z) {
    return std::vector<aiVector3D>{{x, 0, z}, {x + 0.1F, 0, z}, {x + 0.1F, 0.1F, z}, {x, 0.1F, z}};
  };
  std::vector<aiVector3D> points = squareAt(0.1F, 0);
  const std::vector<aiVector3D> above = squareAt(0.1000004F, 0.05F);
  points.insert(points.end(), above.begin(), above.end());
  const auto model = makeModel({makeMesh(points, {{0, 1, 2, 3}, {4, 5, 6, 7}})},
                               makeNode("a", aiMatrix4x4(), {0}));
  EXPECT_EQ(drawnSegments(planOf(*model)).size(), 4u);
}

TEST(RepairedPlan, WhatShowsAsZeroIsZero) {
  aiMesh* square = makeSquareMesh();
  square->mVertices[0].x = -4e-7F;
  square->mVertices[0].y = -0.0F;
  const auto model = makeModel({square}, makeNode("square", aiMatrix4x4(), {0}));
  const PlanScene plan = makePlanScene(*model, {}, {});
  const auto& geometry = plan.scene.nodes.at(0).children.at(0).geometry.at(0);
  for (const double c : std::get<std::shared_ptr<const KtLineSet>>(geometry)->coords) {
    EXPECT_FALSE(std::signbit(c)) << c;
  }
}

TEST(RepairedPlan, ObjectsBeyondTheIndexRangeAreDetected) {
  EXPECT_TRUE(isWithinIndexRange(0x7fffffff, 0x40000000, 0x80000000));
  EXPECT_FALSE(isWithinIndexRange(0x80000000, 1, 3));
  EXPECT_FALSE(isWithinIndexRange(3, 0x40000001, 3));
  EXPECT_FALSE(isWithinIndexRange(3, 1, 0x80000001));
}

TEST(RepairedPlan, CreasesShowWhereAskedFor) {
  // A hipped roof: a rectangle with a ridge.
  const std::vector<aiVector3D> corners{{0, 0, 0}, {4, 0, 0}, {4, 2, 0},
                                        {0, 2, 0}, {1, 1, 1}, {3, 1, 1}};
  const auto model = makeModel(
      {makeMesh(corners, {{0, 1, 5, 4}, {1, 2, 5}, {2, 3, 4, 5}, {3, 0, 4}, {3, 2, 1, 0}})},
      makeNode("roof", aiMatrix4x4(), {0}));
  const PlanScene plan = planOf(*model);
  EXPECT_EQ(drawnSegments(plan).size(), 4u + 5u);
  EXPECT_EQ(plan.content.meshWork.creases, 5u);
  PlanOptions options;
  options.creaseDegrees = mesh::kNoCreases;
  EXPECT_EQ(drawnSegments(planOf(*model, options)).size(), 4u);
}

TEST(RepairedPlan, InstancesShareTheRepairedGeometry) {
  aiNode* root =
      withChildren(makeNode("root", aiMatrix4x4(), {}),
                   {makeNode("a", aiMatrix4x4(), {0}), makeNode("b", shiftedBy(5, 0, 0), {0})});
  const auto model = makeModel({makeMesh(cubeCorners(), kCubeFaces)}, root);
  const PlanScene plan = planOf(*model);
  ASSERT_EQ(plan.scene.nodes.size(), 2u);
  EXPECT_EQ(plan.scene.nodes[0].graphicName, plan.scene.nodes[1].graphicName);
  EXPECT_EQ(plan.content.instances, 1u);
  EXPECT_EQ(plan.content.meshWork.repair, planOf(*model).content.meshWork.repair);
}

TEST(RepairedPlan, WithBothOffFacesAreAsTheModelHasThem) {
  PlanOptions options;
  options.repair = false;
  options.creaseDegrees = mesh::kNoCreases;
  const auto model =
      makeModel({makeMesh(cubeCorners(), kCubeFaces)}, makeNode("a", aiMatrix4x4(), {0}));
  const PlanScene plan = planOf(*model, options);
  const auto& faces = *std::get<std::shared_ptr<const KtFaceSet>>(
      plan.scene.nodes.at(0).children.at(0).geometry[0]);
  EXPECT_EQ(faces.indices.size(), 30u);
  EXPECT_EQ(faces.indices[0], 3);
}

TEST(RepairedPlan, NothingIsCountedOfASoundMesh) {
  const auto model =
      makeModel({makeMesh(cubeCorners(), kCubeFaces)}, makeNode("a", aiMatrix4x4(), {0}));
  EXPECT_EQ(planOf(*model).content.meshWork.repair, mesh::RepairCounts{});
}

}  // namespace
}  // namespace dxf2d
