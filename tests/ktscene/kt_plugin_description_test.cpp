#include <gtest/gtest.h>

#include <cstddef>
#include <utility>

#include "ktscene/kt_traverser.h"

namespace {

void initialize(KtTraverser& traverser) {
  traverser.Init(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 nullptr, nullptr);
}

KtPluginDescription svg() {
  KtPluginDescription description;
  description.name = "Outlines";
  description.version = "2.1";
  description.extension = ".svg";
  description.format = "SVG 1.1";
  return description;
}

void expectDefault(const KtTraverser& traverser) {
  const KtPluginDescription description = traverser.Description();
  EXPECT_STREQ(description.name, "");
  EXPECT_STREQ(description.version, "");
  EXPECT_STREQ(description.extension, ".dxf");
  EXPECT_STREQ(description.format, "DXF");
}

}  // namespace

TEST(PluginDescription, IsThatOfADxfWriterUntilThePluginSaysOtherwise) {
  KtTraverser traverser;
  expectDefault(traverser);
  initialize(traverser);
  expectDefault(traverser);
}

TEST(PluginDescription, IsKeptInCopies) {
  KtTraverser traverser;
  ASSERT_TRUE(traverser.Describe(svg()));
  const KtTraverser copy = traverser;
  KtTraverser moved = std::move(traverser);
  initialize(moved);
  expectDefault(moved);
  EXPECT_STREQ(copy.Description().name, "Outlines");
  EXPECT_STREQ(copy.Description().version, "2.1");
  EXPECT_STREQ(copy.Description().extension, ".svg");
  EXPECT_STREQ(copy.Description().format, "SVG 1.1");
}

TEST(PluginDescription, OfAnOlderPluginLacksTheLaterMembers) {
  KtPluginDescription description = svg();
  description.size = offsetof(KtPluginDescription, extension);
  KtTraverser traverser;
  ASSERT_TRUE(traverser.Describe(description));
  EXPECT_STREQ(traverser.Description().name, "Outlines");
  EXPECT_STREQ(traverser.Description().extension, ".dxf");
  EXPECT_STREQ(traverser.Description().format, "DXF");
}

TEST(PluginDescription, RefusesWhatIsNoExtension) {
  KtTraverser traverser;
  for (const char* extension : {"svg", ".", "./x", ".a b", ".tar.gz", ".sixteenletters00"}) {
    KtPluginDescription description = svg();
    description.extension = extension;
    EXPECT_FALSE(traverser.Describe(description)) << extension;
  }
  KtPluginDescription description = svg();
  description.name = nullptr;
  EXPECT_FALSE(traverser.Describe(description));
  expectDefault(traverser);
}

TEST(PluginDescription, MaySayThatNoFileIsWritten) {
  KtPluginDescription description = svg();
  description.extension = "";
  KtTraverser traverser;
  ASSERT_TRUE(traverser.Describe(description));
  EXPECT_STREQ(traverser.Description().extension, "");
}
