// Small scenes, exported whole and compared byte for byte with drawings that were read through by
// eye. tests/golden holds both.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "tests/support/drawing_session.h"

namespace {

std::vector<std::string> sceneNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(DXF2D_GOLDEN_FOLDER)) {
    if (entry.path().extension() == ".json") {
      names.push_back(entry.path().stem().string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string goldenFile(const std::string& name, const char* ending) {
  return (std::filesystem::path(DXF2D_GOLDEN_FOLDER) / (name + ending)).string();
}

// The drawing of the scene, through the callbacks that the plug-in registers.
std::string exported(const std::string& name) {
  KtScene scene = ReadSceneFile(goldenFile(name, ".json"));
  KtTraverser traverser;
  InitializeTraverser(&traverser, nullptr);
  const TempFile file;
  EXPECT_TRUE(traverser.Walk(scene, file.WidePath()));
  return readFile(file.Path());
}

class GoldenDrawing : public testing::TestWithParam<std::string> {};

}  // namespace

TEST(GoldenDrawings, ThereAreSome) { EXPECT_GE(sceneNames().size(), 8U); }

TEST_P(GoldenDrawing, IsWhatTheExportWrites) {
  EXPECT_EQ(exported(GetParam()), readFile(goldenFile(GetParam(), ".dxf")));
}

INSTANTIATE_TEST_SUITE_P(Scenes, GoldenDrawing, testing::ValuesIn(sceneNames()),
                         [](const auto& scene) { return scene.param; });
