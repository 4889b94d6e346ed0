// What KtTraverser::Walk does beside making the calls.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "tests/platform/numeric_locale.h"

namespace {

// Callbacks carry no context.
std::function<void()> atNode;
std::string calls;

bool openFile(const std::u16string& /*path*/) {
  calls += "begin ";
  return true;
}
bool closeFile() {
  calls += "end ";
  return true;
}
void openNode(KtGraphicAttribute* /*attribute*/) {
  calls += "open ";
  if (atNode) {
    atNode();
  }
}
void closeNode() { calls += "close "; }
bool label(KtGraphicNode* /*node*/, bool /*flag*/, int /*colorIndex*/) { return false; }
void otherNode(KtGraphicAttribute* /*attribute*/) { calls += "other "; }

KtTraverser traverserOf(KtCallbacks::OpenNode open, KtCallbacks::CloseNode close,
                        KtCallbacks::OpenFile begin, KtCallbacks::CloseFile end) {
  KtTraverser traverser;
  traverser.Init(open, close, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, label, nullptr, nullptr,
                 begin, end);
  return traverser;
}

KtTraverser wholeTraverser() { return traverserOf(openNode, closeNode, openFile, closeFile); }

KtScene nested() { return ParseScene(R"({"nodes": [{"children": [{}, {}]}, {}]})", "nested"); }

KtScene labeled(const std::string& text) {
  return ParseScene(
      R"({"nodes": [{"children": [{"objectId": "door", "label": {"text": ")" + text + R"("}}]}]})",
      "labeled");
}

std::string messageOf(const std::function<void()>& act) {
  try {
    act();
  } catch (const KtTraverserError& error) {
    return error.what();
  }
  return "";
}

class Walk : public testing::Test {
 protected:
  ~Walk() override {
    atNode = nullptr;
    calls.clear();
  }
};

}  // namespace

TEST_F(Walk, IsRefusedWhileAnotherOneRunsWithTheSameCallbacks) {
  const KtTraverser traverser = wholeTraverser();
  const KtScene scene = nested();
  std::string here;
  std::string elsewhere;
  std::string ofNode;
  atNode = [&] {
    const auto walk = [&] { traverser.Walk(scene, u""); };
    here = messageOf(walk);
    std::thread([&] { elsewhere = messageOf(walk); }).join();
    ofNode = messageOf([&] { traverser.WalkNode(scene.nodes[0]); });
    atNode = nullptr;
  };
  EXPECT_TRUE(traverser.Walk(scene, u""));
  EXPECT_EQ(calls, "begin open open close open close close open close end ");
  EXPECT_EQ(here.substr(0, here.find(';')), "a walk with this plug-in is running already");
  EXPECT_EQ(elsewhere, here);
  EXPECT_EQ(ofNode, here);
  // It has ended.
  EXPECT_TRUE(traverser.Walk(scene, u""));
}

TEST_F(Walk, IsRefusedWhenOneCallbackIsShared) {
  const KtTraverser sharing = traverserOf(otherNode, closeNode, nullptr, nullptr);
  std::string message;
  atNode = [&] { message = messageOf([&] { sharing.Walk(nested(), u""); }); };
  EXPECT_TRUE(wholeTraverser().Walk(nested(), u""));
  EXPECT_NE(message, "");
}

TEST_F(Walk, RunsBesideThatOfAnotherPlugin) {
  KtTraverser other;
  other.Init(otherNode, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
             nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
             nullptr, nullptr);
  atNode = [&] {
    atNode = nullptr;
    EXPECT_TRUE(other.Walk(nested(), u""));
  };
  EXPECT_TRUE(wholeTraverser().Walk(nested(), u""));
  EXPECT_NE(calls.find("other other other other "), std::string::npos);
}

TEST_F(Walk, ThatThrowsIsOver) {
  atNode = [] { throw 1; };
  EXPECT_THROW(wholeTraverser().Walk(nested(), u""), int);
  atNode = nullptr;
  EXPECT_TRUE(wholeTraverser().Walk(nested(), u""));
}

TEST_F(Walk, WritesPointsUnlessToldOtherwise) {
  const NumericLocale german({"de_DE.UTF-8"});
  if (!german.Found()) {
    GTEST_SKIP() << "no German locale";
  }
  std::string printed;
  atNode = [&] { printed += printedHalf() + " "; };
  const KtScene scene = ParseScene(R"({"nodes": [{}]})", "one");
  KtWalkOptions options;
  wholeTraverser().Walk(scene, u"");
  options.usesPoint = false;
  wholeTraverser().Walk(scene, u"", options);
  wholeTraverser().WalkNode(scene.nodes[0]);
  EXPECT_EQ(printed, "0.5 0,5 0,5 ");
}

TEST_F(Walk, RefusesALabelWithDecimalCommas) {
  const KtScene scene = labeled("T:1 2,5 0 10 20 5 30 C 0 1 0 0 0 \\\"a, b\\\"");
  const std::string message = messageOf([&] { wholeTraverser().Walk(scene, u""); });
  EXPECT_EQ(
      message,
      "the label 'T:1 2,5 0 10 20 5 30 C 0 1 0 0 0 \"a, b\"' of the node 'door' has decimal "
      "commas, and no plug-in can draw it; write its numbers with points, for example under a "
      "KtNumericLocale");
  EXPECT_EQ(calls, "");
  KtWalkOptions options;
  options.refusesCommas = false;
  EXPECT_TRUE(wholeTraverser().Walk(scene, u"", options));
}

TEST_F(Walk, TakesLabelsWhoseCommasAreNoDecimalOnes) {
  // In a line; as the alignment; in a text that is not a label with points either.
  for (const char* text :
       {"T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \\\"a, b\\\"", "T:1 1 0 1 1 1 0 , 0 1 0 0 0 \\\"a\\\"",
        "T:one, two", "Hello, world", ",", ""}) {
    EXPECT_TRUE(wholeTraverser().Walk(labeled(text), u"")) << text;
  }
}

TEST_F(Walk, ThatIsCanceledClosesWhatItHasOpened) {
  KtWalkOptions options;
  std::size_t nodes = 0;
  options.progress = [&](std::size_t count) {
    nodes = count;
    return count < 2;
  };
  EXPECT_FALSE(wholeTraverser().Walk(nested(), u"", options));
  EXPECT_EQ(nodes, 2U);
  EXPECT_EQ(calls, "begin open open close close end ");
}

TEST_F(Walk, TellsHowManyNodesItHasMade) {
  KtWalkOptions options;
  std::string counts;
  options.progress = [&](std::size_t count) {
    counts += std::to_string(count);
    return true;
  };
  EXPECT_TRUE(wholeTraverser().Walk(nested(), u"", options));
  EXPECT_EQ(counts, "0123");
}
