#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <system_error>

#include "ktscene/kt_output_file.h"
#include "tests/support/scratch_directory.h"

namespace {

mode_t rightsOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 0777U;
}

}  // namespace

TEST(KtOutputFile, FollowsLinksAndKeepsRights) {
  const ScratchDirectory directory;
  const std::string file = directory / "file";
  const std::string link = directory / "link";
  ScratchDirectory::Fill(file, "old");
  chmod(file.c_str(), 0640);
  std::filesystem::create_symlink("file", link);
  KtOutputFile output(link);
  output.Write("new");
  output.Commit();
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(ScratchDirectory::ContentOf(file), "new");
  EXPECT_EQ(rightsOf(file), 0640U);
}

TEST(KtOutputFile, MakesTheFileOfALinkToNothing) {
  const ScratchDirectory directory;
  std::filesystem::create_symlink("file", directory / "link");
  KtOutputFile output(directory / "link");
  output.Commit();
  EXPECT_TRUE(std::filesystem::is_regular_file(directory / "file"));
}

TEST(KtOutputFile, WritesDevicesInPlace) {
  KtOutputFile output("/dev/null");
  EXPECT_EQ(output.Path(), "/dev/null");
  output.Write("gone");
  output.Commit();
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
  KtOutputFile full("/dev/full");
  EXPECT_THROW(full.Write("too much"), std::system_error);
}

TEST(KtOutputFile, NamesWhatCannotBeMade) {
  const ScratchDirectory directory;
  EXPECT_THROW(KtOutputFile(directory / ""), std::system_error);
  try {
    KtOutputFile(directory / "none/plan.dxf");
    FAIL();
  } catch (const std::system_error& error) {
    EXPECT_NE(std::string(error.what()).find("none/plan.dxf: cannot be created: No such file"),
              std::string::npos);
  }
}
