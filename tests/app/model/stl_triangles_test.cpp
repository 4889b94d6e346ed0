#include "app/model/stl_triangles.h"

#include <assimp/scene.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <assimp/Importer.hpp>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <vector>

#include "app/cli/failure.h"
#include "app/model/model_reader.h"
#include "app/model/object_mesh.h"
#include "app/model/plan_scene.h"
#include "app/model/view.h"
#include "geometry/outline/outline.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d {
namespace {

using Triangle = std::array<float, 9>;

std::string stlOf(const std::vector<Triangle>& triangles, std::string header = "made by hand",
                  std::uint16_t attribute = 0) {
  header.resize(80);
  const auto count = static_cast<std::uint32_t>(triangles.size());
  header.append(reinterpret_cast<const char*>(&count), sizeof count);
  for (const Triangle& triangle : triangles) {
    header.append(12, '\0');
    header.append(reinterpret_cast<const char*>(triangle.data()), sizeof triangle);
    header.append(reinterpret_cast<const char*>(&attribute), sizeof attribute);
  }
  return header;
}

std::vector<Triangle> randomTriangles(std::size_t count) {
  std::mt19937 random(7);
  // Few places, so that triangles meet.
  std::uniform_int_distribution<int> place(-3, 3);
  std::vector<Triangle> triangles(count);
  for (Triangle& triangle : triangles) {
    std::ranges::generate(triangle, [&] { return static_cast<float>(place(random)) * 0.1F; });
  }
  return triangles;
}

class StlFile : public testing::Test {
 protected:
  std::string Write(const std::string& text, const char* name = "model.stl") {
    std::ofstream(folder_ / name, std::ios::binary) << text;
    return folder_ / name;
  }

 private:
  ScratchDirectory folder_;
};

std::vector<std::vector<double>> coordsOf(const PlanScene& plan) {
  std::vector<std::vector<double>> all;
  for (const KtSceneNode& node : plan.scene.nodes) {
    for (const KtSceneNode& leaf : node.children) {
      for (const KtSceneGeometry& geometry : leaf.geometry) {
        if (const auto* faces = std::get_if<std::shared_ptr<const KtFaceSet>>(&geometry)) {
          all.push_back((*faces)->coords);
          all.emplace_back((*faces)->indices.begin(), (*faces)->indices.end());
        } else if (const auto* lines = std::get_if<std::shared_ptr<const KtLineSet>>(&geometry)) {
          all.push_back((*lines)->coords);
          all.emplace_back((*lines)->indices.begin(), (*lines)->indices.end());
        }
      }
    }
  }
  return all;
}

// What the plug-in draws of the plan's faces.
std::vector<std::vector<double>> outlinesOf(const PlanScene& plan) {
  std::vector<std::vector<double>> all;
  for (const KtSceneNode& node : plan.scene.nodes) {
    for (const KtSceneNode& leaf : node.children) {
      for (const KtSceneGeometry& geometry : leaf.geometry) {
        const KtMatrix transform;
        const KtFaceSet& faces = *std::get<std::shared_ptr<const KtFaceSet>>(geometry);
        std::vector<KtPoint3> points;
        std::vector<int> chains;
        EXPECT_TRUE(BuildOutline({faces.coords, transform}, faces.indices, points, chains,
                                 faces.reverseOrientation, faces.closedSurface));
        std::vector<double>& coords = all.emplace_back();
        for (const KtPoint3& point : points) {
          coords.insert(coords.end(), {point.Get0(), point.Get1(), point.Get2()});
        }
        all.emplace_back(chains.begin(), chains.end());
      }
    }
  }
  return all;
}

// The plan of the file as assimp reads it.
PlanScene planThroughAssimp(const std::string& path, const PlanOptions& options) {
  Assimp::Importer importer;
  const aiScene* const scene = importer.ReadFile(path, 0);
  return makePlanScene(*scene, {path, "Stereolithography (STL) Importer", {}}, options);
}

void expectTheSamePlan(const std::string& path, const PlanOptions& options) {
  const Model model = readModel(path);
  const PlanScene plan = makePlanScene(*model.scene, model.source, options);
  const PlanScene expected = planThroughAssimp(path, options);
  EXPECT_EQ(coordsOf(plan), coordsOf(expected));
  EXPECT_EQ(plan.content.meshWork.repair, expected.content.meshWork.repair);
  ASSERT_EQ(plan.scene.nodes.size(), expected.scene.nodes.size());
  EXPECT_EQ(plan.scene.nodes[0].objectId, expected.scene.nodes[0].objectId);
  EXPECT_EQ(plan.scene.nodes[0].children[0].color, expected.scene.nodes[0].children[0].color);
}

TEST_F(StlFile, GivesThePlanThatAssimpWouldGive) {
  const std::string path = Write(stlOf(randomTriangles(300)));
  ASSERT_NE(readModel(path).source.triangles, nullptr);
  PlanOptions options;
  expectTheSamePlan(path, options);
  options.repair = false;
  expectTheSamePlan(path, options);
}

TEST_F(StlFile, AsGivenIsDrawnAsThroughAssimp) {
  const std::string path = Write(stlOf(randomTriangles(300)));
  PlanOptions options;
  options.repair = false;
  options.creaseDegrees = mesh::kNoCreases;
  for (const char* const view : {"top", "front", "10,20"}) {
    options.view = parseView(view).value();
    const Model model = readModel(path);
    const PlanScene plan = makePlanScene(*model.scene, model.source, options);
    const PlanScene expected = planThroughAssimp(path, options);
    EXPECT_EQ(outlinesOf(plan), outlinesOf(expected)) << view;
    EXPECT_EQ(plan.content.extent.minX, expected.content.extent.minX);
    EXPECT_EQ(plan.content.extent.maxY, expected.content.extent.maxY);
    // Of 7 x 7 x 7 places.
    EXPECT_LE(coordsOf(plan)[0].size(), 3U * 343U);
  }
}

TEST_F(StlFile, GivesTheMeshThatItsCornersMakeWeldedAtAnyScale) {
  const std::string path = Write(stlOf(randomTriangles(300)));
  const auto triangles = StlTriangles::Open(path);
  ASSERT_NE(triangles, nullptr);
  mesh::PolygonMesh gathered;
  EXPECT_TRUE(appendTriangles(*triangles, {0.5, 0.25, 0, -1, 2, 0, 0, 0, 1}, 0, 1, gathered));
  EXPECT_EQ(gathered.PolygonCount(), 300U);
  EXPECT_LE(gathered.points.size(), 343U);
  for (const std::size_t threads : {2U, 3U, 8U, 17U}) {
    mesh::PolygonMesh together;
    EXPECT_TRUE(
        appendTriangles(*triangles, {0.5, 0.25, 0, -1, 2, 0, 0, 0, 1}, 0, threads, together));
    EXPECT_EQ(together, gathered) << threads;
  }
  // Squares of such areas are not finite: repair leaves out the polygons, one by one.
  mesh::PolygonMesh huge;
  EXPECT_FALSE(appendTriangles(*triangles, {1e80, 0, 0, 0, 1, 0, 0, 0, 1}, 0, 1, huge));
  EXPECT_EQ(huge, mesh::PolygonMesh());
}

TEST_F(StlFile, WithColorsOfItsFacesGivesThePlanThatAssimpWouldGive) {
  expectTheSamePlan(Write(stlOf(randomTriangles(30), "solid made by hand", 0xffff)), {});
}

TEST_F(StlFile, IsFoundUnderAnExtensionInCapitals) {
  const std::string path = Write(stlOf(randomTriangles(3)), "MODEL.STL");
  EXPECT_NE(readModel(path).source.triangles, nullptr);
}

TEST_F(StlFile, LeavesWhatIsUnusualToAssimp) {
  const std::vector<Triangle> triangles = randomTriangles(4);
  const std::string plain = stlOf(triangles);
  ASSERT_NE(StlTriangles::Open(Write(plain)), nullptr);
  EXPECT_EQ(StlTriangles::Open(Write(plain + "\n")), nullptr);
  EXPECT_EQ(StlTriangles::Open(Write(plain.substr(0, plain.size() - 1))), nullptr);
  EXPECT_EQ(StlTriangles::Open(Write(stlOf({}))), nullptr);
  EXPECT_EQ(StlTriangles::Open(Write("solid x\nendsolid x\n")), nullptr);
  EXPECT_EQ(StlTriangles::Open(Write("")), nullptr);
  EXPECT_EQ(StlTriangles::Open(Write(stlOf(triangles, "COLOR=abcd"))), nullptr);
  EXPECT_EQ(StlTriangles::Open(Write(plain) + ".missing"), nullptr);
}

TEST_F(StlFile, WithACoordinateThatIsNotFiniteIsRefusedWithTheNumberOfTheVertex) {
  std::vector<Triangle> triangles = randomTriangles(4);
  triangles[2][4] = std::numeric_limits<float>::quiet_NaN();
  const Model model = readModel(Write(stlOf(triangles)));
  try {
    makePlanScene(*model.scene, model.source, {});
    FAIL();
  } catch (const Failure& failure) {
    EXPECT_NE(failure.Text().problem.find("vertex 7 is not finite"), std::string::npos);
  }
}

// Of more than a page of the system, so that what is cut off is not the page that stays.
constexpr std::size_t kManyTriangles = 2000;

TEST_F(StlFile, ThatShrinksWhileItIsReadIsRefused) {
  const std::string path = Write(stlOf(randomTriangles(kManyTriangles)));
  const Model model = readModel(path);
  ASSERT_EQ(truncate(path.c_str(), 200), 0);
  EXPECT_THROW(makePlanScene(*model.scene, model.source, {}), Failure);
  EXPECT_FALSE(model.source.triangles->IsWhole());
}

TEST_F(StlFile, ThatIsWrittenWhileItIsReadIsRefused) {
  const std::string path = Write(stlOf(randomTriangles(kManyTriangles)));
  const Model model = readModel(path);
  const timespec longAgo[2] = {{1, 0}, {1, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), longAgo, 0), 0);
  EXPECT_THROW(makePlanScene(*model.scene, model.source, {}), Failure);
}

TEST_F(StlFile, HoldsZerosWhereItHasShrunkAndStaysTornWhenItGrowsAgain) {
  const std::string path = Write(stlOf(std::vector<Triangle>(kManyTriangles, Triangle{1, 1, 1})));
  const auto triangles = StlTriangles::Open(path);
  ASSERT_NE(triangles, nullptr);
  struct stat before {};
  ASSERT_EQ(stat(path.c_str(), &before), 0);
  ASSERT_EQ(truncate(path.c_str(), 200), 0);
  EXPECT_EQ(triangles->VertexAt(3 * (kManyTriangles - 1)).x, 0.0F);
  ASSERT_EQ(truncate(path.c_str(), before.st_size), 0);
  const timespec asBefore[2] = {before.st_atim, before.st_mtim};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), asBefore, 0), 0);
  EXPECT_FALSE(triangles->IsWhole());
}

}  // namespace
}  // namespace dxf2d
