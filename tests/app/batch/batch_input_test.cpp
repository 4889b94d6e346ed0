#include "app/batch/batch_input.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/scratch_directory.h"

namespace dxf2d::batch {

namespace {

namespace fs = std::filesystem;

class CollectInputs : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* folder : {"in", "in/b", "in/b/deep", "in/.git"}) {
      fs::create_directory(directory_ / folder);
    }
    for (const char* file : {"in/a.obj", "in/a.txt", "in/b/c.obj", "in/b/deep/d.obj",
                             "in/.git/e.obj", "in/.hidden.obj"}) {
      ScratchDirectory::Fill(directory_ / file, "");
    }
  }
  // Paths and folders, "|" between them; paths without the scratch directory.
  std::vector<std::string> Collected(const InputRequest& request) {
    const Inputs found =
        collectInputs(request, [](const std::string& path) { return path.ends_with(".obj"); });
    problems_ = found.problems;
    std::vector<std::string> list;
    for (const Input& input : found.inputs) {
      list.push_back(fs::path(input.path).lexically_relative(fs::path(directory_ / "")).string() +
                     "|" + input.folder);
    }
    return list;
  }

  ScratchDirectory directory_;
  std::vector<Message> problems_;
};

using List = std::vector<std::string>;

TEST_F(CollectInputs, FilesAreTakenWhateverTheirNames) {
  EXPECT_EQ(Collected({.paths = {directory_ / "in/a.txt", directory_ / "none"}}),
            (List{"in/a.txt|", "none|"}));
}

TEST_F(CollectInputs, OfAFolderTheFilesThatAreInputs) {
  EXPECT_EQ(Collected({.paths = {directory_ / "in"}}), List{"in/a.obj|"});
}

TEST_F(CollectInputs, FoldersInFoldersAreMirrored) {
  EXPECT_EQ(Collected({.paths = {directory_ / "in"}, .isRecursive = true}),
            (List{"in/a.obj|", "in/b/c.obj|b", "in/b/deep/d.obj|b/deep"}));
}

TEST_F(CollectInputs, WhatIsNamedTwiceIsTakenOnce) {
  EXPECT_EQ(Collected({.paths = {directory_ / "in/../in/a.obj", directory_ / "in"}}),
            List{"in/../in/a.obj|"});
}

TEST_F(CollectInputs, NothingIsTakenFromTheFolderForOutputs) {
  EXPECT_EQ(
      Collected(
          {.paths = {directory_ / "in"}, .isRecursive = true, .outputs = directory_ / "in/b"}),
      List{"in/a.obj|"});
}

TEST_F(CollectInputs, LinksToFoldersAreNotFollowed) {
  fs::create_directory_symlink(directory_ / "in", directory_ / "in/b/loop");
  EXPECT_EQ(Collected({.paths = {directory_ / "in"}, .isRecursive = true}).size(), 3U);
}

TEST_F(CollectInputs, ListsNameFilesAndFolders) {
  ScratchDirectory::Fill(directory_ / "list",
                         (directory_ / "in/a.txt") + "\n\n" + (directory_ / "in/b") + "\r\n");
  EXPECT_EQ(Collected({.lists = {directory_ / "list"}}), (List{"in/a.txt|", "in/b/c.obj|"}));
}

TEST_F(CollectInputs, AListThatIsNotThereIsAnError) {
  EXPECT_THROW(Collected({.lists = {directory_ / "none"}}), UsageError);
  EXPECT_THROW(Collected({.lists = {directory_ / "in"}}), UsageError);
}

TEST(PathsInList, AreSeparatedByNullCharactersWhereThereAreAny) {
  EXPECT_EQ(pathsInList(std::string("a b\nc\0d\0", 8)), (List{"a b\nc", "d"}));
  EXPECT_EQ(pathsInList("a\nb"), (List{"a", "b"}));
  EXPECT_EQ(pathsInList(""), List{});
}

}  // namespace

}  // namespace dxf2d::batch
