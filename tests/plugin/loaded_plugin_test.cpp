// Hosts that load the plug-in through KtTraverser.
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "tests/platform/numeric_locale.h"
#include "tests/support/drawing_session.h"

namespace {

// A scene of many kinds of content, and the numbers and names that a thread's export has alone.
KtScene sceneOf(int number) {
  const std::string x = std::to_string(number);
  std::string nodes;
  for (int i = 0; i < 40; ++i) {
    const std::string name = x + "-" + std::to_string(i % 7);
    nodes += (i == 0 ? "" : ",") + std::string(R"({"graphicName": ")") + name +
             R"(", "objectId": "o", "realObjectId": "o", "matrix": [1,0,0,0,0,1,0,0,0,0,1,0,)" + x +
             ".5," + std::to_string(i) + R"(,0,1], "children": [{"geometry": [{"cylinder": [)" +
             std::to_string(i + 1) + "," + std::to_string(number + 1) +
             R"(]}], "graphicName": "c)" + name + R"("}]})";
    nodes += R"(,{"objectId": "t", "graphicName": "t)" + name + R"(",
      "label": {"text": "T:1 1 0 )" +
             x + R"( 0 0 0 L 0 0 0 0 0 \"\u00DC\""}})";
  }
  return ParseScene(R"({"nodes": [)" + nodes + "]}", "scene");
}

std::string drawingBy(const KtTraverser& traverser, const KtScene& scene) {
  const TempFile file;
  EXPECT_TRUE(traverser.Walk(scene, file.WidePath()));
  return readFile(file.Path());
}

std::string messageOf(const std::string& path) {
  KtTraverser traverser;
  try {
    traverser.Load(path);
  } catch (const KtTraverserError& error) {
    return error.what();
  }
  return "";
}

KtTraverser load(bool isPrivate) {
  KtTraverser traverser;
  KtLoadOptions options;
  options.isPrivate = isPrivate;
  traverser.Load(DXF2D_MODULE, options);
  return traverser;
}

}  // namespace

TEST(LoadedPlugin, DescribesNothingAndIsTakenForADxfWriter) {
  EXPECT_STREQ(load(false).Description().name, "");
  EXPECT_STREQ(load(false).Description().extension, ".dxf");
}

TEST(LoadedPlugin, ThatIsNoneIsNamed) {
  // The reason between them is the operating system's.
  const std::string missing = messageOf("/no/such.so");
  EXPECT_TRUE(missing.starts_with("/no/such.so: cannot be loaded as a plug-in: ")) << missing;
  EXPECT_TRUE(missing.ends_with("; name another plug-in")) << missing;
  const TempFile text;
  std::ofstream(text.Path()) << "a text file that is long enough to be looked into by the loader";
  EXPECT_NE(messageOf(text.Path()).find("cannot be loaded as a plug-in: "), std::string::npos);
  EXPECT_NE(messageOf("libm.so.6").find("libm.so.6: cannot be loaded"), std::string::npos);
}

TEST(LoadedPlugin, ThatFailsToLoadLeavesTheTraverserAsItWas) {
  KtTraverser traverser = load(false);
  EXPECT_THROW(traverser.Load("/no/such.so"), KtTraverserError);
  EXPECT_FALSE(drawingBy(traverser, sceneOf(1)).empty());
}

TEST(LoadedPlugin, SharedModuleHasOneSession) {
  EXPECT_EQ(load(false).Callbacks().openFile, load(false).Callbacks().openFile);
}

TEST(LoadedPlugin, PrivateCopiesHaveSessionsOfTheirOwn) {
  const KtTraverser first = load(true);
  const KtTraverser second = load(true);
  ASSERT_NE(first.Callbacks().openFile, second.Callbacks().openFile);
  const TempFile file;
  ASSERT_TRUE(first.Callbacks().openFile(file.WidePath()));
  EXPECT_FALSE(second.Callbacks().closeFile());
  EXPECT_TRUE(first.Callbacks().closeFile());
}

TEST(LoadedPlugin, PrivateCopyStaysAsLongAsACopyOfItsTraverser) {
  KtTraverser kept;
  {
    const KtTraverser first = load(true);
    kept = first;
  }
  // Takes the descriptor and the name of one that is gone.
  const KtTraverser another = load(true);
  EXPECT_EQ(drawingBy(kept, sceneOf(2)), drawingBy(another, sceneOf(2)));
}

// The thread sanitizer runs this, too.
TEST(LoadedPlugin, PrivateCopiesDrawInParallelWhatTheyDrawAlone) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 5;
  std::vector<std::string> alone;
  for (int i = 0; i < kThreads; ++i) {
    alone.push_back(drawingBy(load(false), sceneOf(i)));
    EXPECT_NE(alone[static_cast<std::size_t>(i)].find("POLYLINE"), std::string::npos);
  }
  std::array<bool, kThreads> isSame{};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      const auto index = static_cast<std::size_t>(i);
      isSame[index] = true;
      for (int round = 0; round < kRounds; ++round) {
        const KtTraverser own = load(true);
        isSame[index] = isSame[index] && drawingBy(own, sceneOf(i)) == alone[index];
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(isSame, (std::array<bool, kThreads>{true, true, true, true}));
}

// Of two threads that share a module, each export is whole or refused.
TEST(LoadedPlugin, SharedModuleRefusesOneOfTwoThreads) {
  const KtTraverser traverser = load(false);
  const KtScene scene = sceneOf(3);
  const std::string alone = drawingBy(traverser, scene);
  std::array<int, 2> drawn{};
  std::array<int, 2> refused{};
  std::array<int, 2> wrong{};
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < 2; ++i) {
    threads.emplace_back([&, i] {
      const TempFile file;
      for (int round = 0; round < 20; ++round) {
        try {
          traverser.Walk(scene, file.WidePath());
          ++drawn[i];
          wrong[i] += readFile(file.Path()) == alone ? 0 : 1;
        } catch (const KtTraverserError&) {
          ++refused[i];
        }
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(wrong[0] + wrong[1], 0);
  EXPECT_EQ(drawn[0] + drawn[1] + refused[0] + refused[1], 40);
  EXPECT_GT(drawn[0] + drawn[1], 0);
}

TEST(LoadedPlugin, WalkOfAHostWithCommasWritesPoints) {
  const KtTraverser traverser = load(false);
  const KtScene scene = sceneOf(1);
  const std::string drawing = drawingBy(traverser, scene);
  const NumericLocale german({"de_DE.UTF-8"});
  if (!german.Found()) {
    GTEST_SKIP() << "no German locale";
  }
  EXPECT_EQ(drawingBy(traverser, scene), drawing);
}

// The separator is that of the C library, as before: the guard belongs to the host.
TEST(LoadedPlugin, CommasStayWithoutTheGuard) {
  const KtTraverser traverser = load(false);
  const KtScene scene = sceneOf(1);
  const std::string drawing = drawingBy(traverser, scene);
  const NumericLocale german({"de_DE.UTF-8"});
  if (!german.Found()) {
    GTEST_SKIP() << "no German locale";
  }
  KtWalkOptions options;
  options.usesPoint = false;
  const TempFile unguarded;
  EXPECT_TRUE(traverser.Walk(scene, unguarded.WidePath(), options));
  const TempFile byHand;
  EXPECT_TRUE(traverser.Callbacks().openFile(byHand.WidePath()));
  for (const KtSceneNode& node : scene.nodes) {
    traverser.WalkNode(node);
  }
  EXPECT_TRUE(traverser.Callbacks().closeFile());
  EXPECT_EQ(readFile(byHand.Path()), readFile(unguarded.Path()));
  std::string commas = readFile(byHand.Path());
  EXPECT_NE(commas.find(",500000\n"), std::string::npos);
  EXPECT_NE(commas, drawing);
}

TEST(LoadedPlugin, NeverLooksAtItsHost) {
  KtTraverser traverser;
  KtLoadOptions options;
  options.host = reinterpret_cast<const KtHost*>(1);
  traverser.Load(DXF2D_MODULE, options);
  EXPECT_EQ(drawingBy(traverser, sceneOf(1)), drawingBy(load(false), sceneOf(1)));
}
