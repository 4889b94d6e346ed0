// dxf2d export of several models.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

constexpr const char* kTriangle = "v 0 0 0\nv 4 0 0\nv 0 0 -3\no house\nf 1 2 3\n";

class SeveralModels : public Dxf2d {
 protected:
  void SetUp() override {
    Dxf2d::SetUp();
    std::filesystem::create_directory(Path("out"));
    Write("a.obj", kTriangle);
    Write("b.obj", kTriangle);
    Write("broken.obj", "f 1 2 3\nf 9 9 9\n");
  }
  std::string Models(const std::string& names) const {
    std::string paths;
    std::istringstream words(names);
    for (std::string name; words >> name;) {
      paths.append(" ").append(Path(name));
    }
    return paths;
  }
  bool Drawn(const std::string& name) const {
    return Read(Path("out/" + name)).find("  0\nEOF\n") != std::string::npos;
  }
};

TEST_F(SeveralModels, AreDrawnIntoADirectory) {
  EXPECT_EQ(Run("export" + Models("a.obj b.obj") + " -o " + Path("out")), kExitDone) << error_;
  EXPECT_TRUE(Drawn("a.dxf"));
  EXPECT_TRUE(Drawn("b.dxf"));
  EXPECT_EQ(std::count(out_.begin(), out_.end(), '\n'), 2) << out_;
  EXPECT_EQ(error_, "");
}

TEST_F(SeveralModels, OneThatFailsDoesNotKeepTheOthers) {
  EXPECT_EQ(Run("export" + Models("a.obj broken.obj none.stl b.obj") + " -o " + Path("out")),
            kExitSomeFailed);
  EXPECT_TRUE(Drawn("a.dxf"));
  EXPECT_TRUE(Drawn("b.dxf"));
  EXPECT_FALSE(std::filesystem::exists(Path("out/broken.dxf")));
  EXPECT_NE(error_.find("broken.obj"), std::string::npos) << error_;
  EXPECT_NE(error_.find("none.stl"), std::string::npos) << error_;
  EXPECT_NE(error_.find("2 of 4 models were not drawn"), std::string::npos) << error_;
}

TEST_F(SeveralModels, DrawingsThatAreThereAreKeptOneByOne) {
  Write("out/a.dxf", "mine");
  EXPECT_EQ(Run("export" + Models("a.obj b.obj") + " -o " + Path("out")), kExitSomeFailed);
  EXPECT_EQ(Read(Path("out/a.dxf")), "mine");
  EXPECT_TRUE(Drawn("b.dxf"));
  EXPECT_EQ(Run("export --force" + Models("a.obj b.obj") + " -o " + Path("out")), kExitDone);
  EXPECT_TRUE(Drawn("a.dxf"));
}

TEST_F(SeveralModels, NeedADirectoryThatCanBeMade) {
  EXPECT_EQ(Run("export" + Models("a.obj b.obj") + " -o " + Path("new/deep")), kExitDone) << error_;
  EXPECT_TRUE(std::filesystem::exists(Path("new/deep/a.dxf")));
  EXPECT_EQ(Run("export" + Models("a.obj b.obj") + " -o " + Path("a.obj")), kExitOutputNotMade);
  ExpectOneSentence();
}

TEST_F(SeveralModels, AreNotReplacedByADrawingOfAnother) {
  namespace fs = std::filesystem;
  fs::rename(Path("b.obj"), Path("out/a.dxf"));
  fs::create_symlink("out/a.dxf", Path("link.obj"));
  EXPECT_EQ(Run("export --force" + Models("a.obj link.obj") + " -o " + Path("out")), kExitUsage);
  ExpectOneSentence();
  EXPECT_NE(error_.find("link.obj"), std::string::npos) << error_;
  EXPECT_EQ(Read(Path("out/a.dxf")), kTriangle);
}

TEST_F(SeveralModels, AreNotDrawnIntoOneFileByLinks) {
  namespace fs = std::filesystem;
  Write("out/both", "mine");
  fs::create_symlink("both", Path("out/a.dxf"));
  fs::create_symlink("both", Path("out/b.dxf"));
  EXPECT_EQ(Run("export --force" + Models("a.obj b.obj") + " -o " + Path("out")), kExitUsage);
  ExpectOneSentence();
  EXPECT_EQ(Read(Path("out/both")), "mine");
  fs::remove(Path("out/both"));
  EXPECT_EQ(Run("export --force" + Models("a.obj b.obj") + " -o " + Path("out")), kExitUsage);
  EXPECT_FALSE(fs::exists(Path("out/both")));
}

TEST_F(SeveralModels, OfOneNameAreNumbered) {
  std::filesystem::create_directory(Path("more"));
  Write("more/a.obj", kTriangle);
  EXPECT_EQ(Run("export" + Models("b.obj a.obj more/a.obj") + " -o " + Path("out")), kExitDone);
  EXPECT_TRUE(Drawn("b.dxf"));
  EXPECT_TRUE(Drawn("a.obj.dxf"));
  EXPECT_TRUE(Drawn("a.obj-2.dxf"));
}

TEST_F(SeveralModels, WithoutAPluginNoneIsTried) {
  EXPECT_EQ(Run("export" + Models("a.obj b.obj") + " --jobs 1 --plugin " + Path("a.obj") + " -o " +
                Path("out")),
            kExitPlugin);
  ExpectOneSentence();
}

TEST_F(SeveralModels, ASingleOneGoesIntoADirectoryNamedWithASlash) {
  EXPECT_EQ(Run("export" + Models("a.obj") + " -o " + Path("out/")), kExitDone) << error_;
  EXPECT_TRUE(Drawn("a.dxf"));
}

TEST_F(SeveralModels, HaveTheBytesThatEachHasAlone) {
  ASSERT_EQ(Run("export" + Models("a.obj b.obj") + " --labels name -o " + Path("out")), kExitDone);
  ASSERT_EQ(Run("export" + Models("b.obj") + " --labels name -o " + Path("alone.dxf")), kExitDone);
  EXPECT_EQ(Read(Path("out/b.dxf")), Read(Path("alone.dxf")));
}

}  // namespace

}  // namespace dxf2d
