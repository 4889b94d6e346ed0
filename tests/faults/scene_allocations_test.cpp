// Scene files that do not fit into memory, at every allocation of their reading.
#include <gtest/gtest.h>

#include <optional>

#include "ktscene/kt_scene_reader.h"
#include "tests/faults/allocation_sweep.h"
#include "tests/support/drawing_groups.h"

namespace {

class SceneAllocationFaults : public testing::TestWithParam<FailingNews::Kind> {};

// What tells two readings of one file apart.
std::string summaryOf(const std::vector<KtSceneNode>& nodes) {
  std::string text = std::to_string(nodes.size()) + "(";
  for (const KtSceneNode& node : nodes) {
    text += std::string(node.graphicName.begin(), node.graphicName.end()) + " " +
            std::to_string(node.geometry.size()) + (node.label ? "T" : "") +
            (node.bounds ? "B" : "") + (node.lod ? summaryOf(node.lod->levels) : "") +
            summaryOf(node.children);
  }
  return text + ")";
}

std::string deepScene(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) {
    text += R"({"children": [)";
  }
  text += R"({"geometry": [{"box": [1, 1, 1]}]})";
  for (int i = 0; i < depth; ++i) {
    text += "]}";
  }
  return R"({"nodes": [)" + text + "]}";
}

void sweepParsing(const std::string& json, FailingNews::Kind kind) {
  const std::string expected = summaryOf(ParseScene(json, "scene").nodes);
  std::optional<KtScene> scene;
  const auto parse = [&] {
    scene = ParseScene(json, "scene");
    return true;
  };
  const auto verify = [&](bool done) {
    if (done) {
      EXPECT_EQ(summaryOf(scene->nodes), expected);
    }
    EXPECT_TRUE(parse());
    EXPECT_EQ(summaryOf(scene->nodes), expected);
    scene.reset();
  };
  sweepAllocations({parse, verify}, kind);
}

// The sentence with which `json` is refused; empty when it is not.
std::string refusal(const std::string& json) {
  try {
    ParseScene(json, "a name of a file that is longer than short strings hold");
  } catch (const KtSceneError& error) {
    return error.what();
  }
  return {};
}

}  // namespace

TEST_P(SceneAllocationFaults, OfARichSceneLeaveTheNextReadingRight) {
  sweepParsing(readFile(DXF2D_RICH_SCENE), GetParam());
}

TEST_P(SceneAllocationFaults, OfADeepSceneLeaveTheNextReadingRight) {
  sweepParsing(deepScene(60), GetParam());
}

// A scene that is taken apart when there is no memory at all.
TEST_P(SceneAllocationFaults, DoNotKeepADeepSceneFromEnding) {
  const std::string json = deepScene(200);
  std::optional<KtScene> scene = ParseScene(json, "scene");
  {
    const FailingNews news(1, GetParam());
    scene.reset();
    EXPECT_FALSE(news.Failed());
  }
}

TEST_P(SceneAllocationFaults, OfABrokenSceneLeaveTheNextRefusalWhole) {
  for (const char* json : {R"({"nodes": [{"lineSet": 1}]})", R"({"nodes": [)", "",
                           R"({"nodes": [{"label": {"text": "\ud800"}}]})"}) {
    const std::string expected = refusal(json);
    ASSERT_NE(expected, "");
    std::string given;
    const auto refuse = [&] {
      given.clear();
      given = refusal(json);
      return true;
    };
    const auto verify = [&](bool done) {
      if (done) {
        EXPECT_EQ(given, expected);
      }
      EXPECT_EQ(refusal(json), expected);
      given = std::string();
    };
    sweepAllocations({refuse, verify}, GetParam());
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, SceneAllocationFaults, testing::ValuesIn(kBothKinds),
                         [](const auto& kind) {
                           return kind.param == FailingNews::Kind::kOnce ? "Once" : "FromThereOn";
                         });
