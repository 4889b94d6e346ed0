// The limits of dxf2d export, and models that go to them.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"
#include "tests/support/sanitizers.h"

namespace dxf2d {

namespace {

constexpr const char* kTriangle = "v 0 0 0\nv 4 0 0\nv 0 0 -3\no house\nf 1 2 3\n";

// A glTF model of one triangle, its nodes as given.
std::string gltf(const std::string& nodes) {
  // Three points of 12 bytes: 0 0 0, 1 0 0, 0 0 1.
  return R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}], "nodes": [)" +
         nodes +
         R"(], "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "mode": 4}]}],
  "buffers": [{"byteLength": 36, "uri": "data:application/octet-stream;base64,)"
         R"(AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAAAAAAIA/"}],
  "bufferViews": [{"buffer": 0, "byteLength": 36}],
  "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                 "min": [0, 0, 0], "max": [1, 0, 1]}]})";
}

// Each node has `width` times the next as its child.
std::string levels(int depth, int width) {
  std::string nodes;
  for (int i = 0; i + 1 < depth; ++i) {
    std::string children;
    for (int k = 0; k < width; ++k) {
      if (k != 0) {
        children += ',';
      }
      children += std::to_string(i + 1);
    }
    nodes.append("{\"children\": [").append(children).append("]}, ");
  }
  return nodes + "{\"mesh\": 0}";
}

class ExportLimits : public Dxf2d {
 protected:
  // The program over the model with a stack of `kibibytes`.
  int RunWithStack(int kibibytes, const std::string& model, const std::string& options = "") {
    return Run("export " + options + " " + model + " -o " + Path("plan.dxf"),
               "ulimit -Ss " + std::to_string(kibibytes) + "; ");
  }
  // Runs with a usual and with a small stack.
  void ExpectDrawnOrRefused(const std::string& model, const std::string& options = "") {
    for (const int stack : {8192, 256}) {
      const int code = RunWithStack(stack, model, options + " --force");
      EXPECT_TRUE(code == kExitDone || code == kExitInput || code == kExitLimit) << code << error_;
      if (code == kExitDone) {
        continue;
      }
      ExpectOneSentence();
    }
  }
};

TEST_F(ExportLimits, NodesAreCounted) {
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export --max-nodes 1 " + model + " -o " + Path("plan.dxf")), kExitLimit);
  ExpectOneSentence();
  EXPECT_NE(error_.find("--max-nodes"), std::string::npos) << error_;
  EXPECT_EQ(Listing(), "house.obj");
  EXPECT_EQ(Run("export --max-nodes 2 " + model + " -o " + Path("plan.dxf")), kExitDone) << error_;
}

TEST_F(ExportLimits, VerticesAreCounted) {
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export --max-vertices 2 " + model + " -o " + Path("plan.dxf")), kExitLimit);
  ExpectOneSentence();
  EXPECT_NE(error_.find("--max-vertices"), std::string::npos) << error_;
  EXPECT_EQ(Run("export --max-vertices 3 " + model + " -o " + Path("plan.dxf")), kExitDone);
}

TEST_F(ExportLimits, VerticesOfInstancesAreCountedOnce) {
  const std::string model = Write("twins.gltf", gltf(levels(2, 2)));
  EXPECT_EQ(Run("export --max-vertices 3 " + model + " -o " + Path("plan.dxf")), kExitDone)
      << error_;
  EXPECT_NE(out_.find("2 objects (1 instance shared)"), std::string::npos) << out_;
}

TEST_F(ExportLimits, ApplyToSceneFilesToo) {
  const std::string scene = Write("scene.json", R"({"nodes": [{"children": [
      {"geometry": [{"lineSet": {"coords": [0, 0, 0, 1, 0, 0], "indices": [0, 1, -6]}}]}]}]})");
  const std::string command = " " + scene + " -o " + Path("plan.dxf");
  EXPECT_EQ(Run("export --max-nodes 1" + command), kExitLimit);
  ExpectOneSentence();
  EXPECT_EQ(Run("export --max-vertices 1" + command), kExitLimit);
  EXPECT_EQ(Run("export --max-vertices 2 --max-nodes 2" + command), kExitDone) << error_;
}

TEST_F(ExportLimits, MemoryIsLimited) {
  NEEDS_MEMORY_LIMITS();
  const std::string model = Write("house.obj", kTriangle);
  EXPECT_EQ(Run("export --max-memory 1 " + model + " -o " + Path("plan.dxf")), kExitLimit);
  ExpectOneSentence();
  EXPECT_NE(error_.find("--max-memory"), std::string::npos) << error_;
  EXPECT_EQ(Listing(), "house.obj");
}

TEST_F(ExportLimits, MemoryLimitedByTheSystemIsReported) {
  NEEDS_MEMORY_LIMITS();
  std::string vertices;
  for (int i = 0; i < 400'000; ++i) {
    vertices += "v 0 0 0\nf -1 -1 -1\n";
  }
  const std::string model = Write("large.obj", vertices);
  EXPECT_EQ(Run("export " + model + " -o " + Path("plan.dxf"), "ulimit -v 80000;"), kExitLimit);
  ExpectOneSentence();
  EXPECT_NE(error_.find("ulimit -v"), std::string::npos) << error_;
  EXPECT_EQ(Listing(), "large.obj");
}

TEST_F(ExportLimits, TimeIsLimited) {
  // Nobody writes into it, so the reading never begins.
  ASSERT_EQ(mkfifo(Path("scene.json").c_str(), 0600), 0);
  EXPECT_EQ(Run("export --max-time 1 " + Path("scene.json") + " -o " + Path("plan.dxf")),
            kExitLimit);
  ExpectOneSentence();
  EXPECT_NE(error_.find("--max-time"), std::string::npos) << error_;
  EXPECT_EQ(Listing(), "scene.json");
}

TEST_F(ExportLimits, AreWholeNumbersAboveZero) {
  const std::string model = Write("house.obj", kTriangle);
  for (const char* option : {"--max-memory", "--max-time", "--max-nodes", "--max-vertices"}) {
    for (const char* value : {"0", "-1", "1.5", "many", "", "99999999999999999999"}) {
      EXPECT_EQ(Run(std::string("export ") + option + "='" + value + "' " + model + " -o " +
                    Path("plan.dxf")),
                kExitUsage)
          << option << " " << value;
    }
  }
}

TEST_F(ExportLimits, ManyNodesThatShareChildrenAreRefusedOrDrawn) {
  NEEDS_MEMORY_LIMITS();
  // 2^21 times the one triangle.
  ExpectDrawnOrRefused(Write("bomb.gltf", gltf(levels(22, 2))), "--max-memory 300");
}

TEST_F(ExportLimits, ADeepModelIsDrawnWithASmallStackToo) {
  NEEDS_STACK_LIMITS();
  const std::string model = Write("deep.gltf", gltf(levels(20'000, 1)));
  for (const int stack : {8192, 256}) {
    EXPECT_EQ(RunWithStack(stack, model, "--force"), kExitDone) << error_;
  }
}

TEST_F(ExportLimits, AModelDeeperThanAnyStackIsRefused) {
  NEEDS_STACK_LIMITS();
  ExpectDrawnOrRefused(Write("deeper.gltf", gltf(levels(1'000'000, 1))));
}

TEST_F(ExportLimits, AMillionSiblingsAreDrawnOrRefused) {
  NEEDS_MEMORY_LIMITS();
  std::string nodes = "{\"children\": [";
  for (int i = 1; i <= 1'000'000; ++i) {
    nodes.append(i == 1 ? "" : ",").append(std::to_string(i));
  }
  nodes += "]}";
  for (int i = 1; i <= 1'000'000; ++i) {
    nodes += ",{}";
  }
  ExpectDrawnOrRefused(Write("siblings.gltf", gltf(nodes)), "--max-memory 1000");
}

TEST_F(ExportLimits, NodesInACircleAreRefused) {
  NEEDS_MEMORY_LIMITS();
  const std::string model =
      Write("circle.gltf", gltf(R"({"children": [1]}, {"children": [0], "mesh": 0})"));
  ExpectDrawnOrRefused(model, "--max-memory 300 --max-time 20");
}

TEST_F(ExportLimits, ADeepSceneFileIsDrawnWithASmallStack) {
  constexpr int kDepth = 1'000'000;
  std::string scene = R"({"nodes": [)";
  for (int i = 0; i < kDepth; ++i) {
    scene += R"({"children": [)";
  }
  for (int i = 0; i < kDepth; ++i) {
    scene += "]}";
  }
  const std::string path = Write("deep.json", scene + "]}");
  for (const int stack : {8192, 256}) {
    EXPECT_EQ(RunWithStack(stack, path, "--force"), kExitDone) << error_;
  }
}

TEST_F(ExportLimits, LeavesNoCoreDump) {
  const std::string model = Write("deeper.gltf", gltf(levels(1'000'000, 1)));
  const int code = Run("export " + model + " -o " + Path("plan.dxf"),
                       "cd " + directory_.string() + "; ulimit -c unlimited; ");
  EXPECT_NE(code, kExitInternal) << error_;
  EXPECT_EQ(Listing(), code == kExitDone ? "deeper.gltf plan.dxf" : "deeper.gltf");
}

}  // namespace

}  // namespace dxf2d
