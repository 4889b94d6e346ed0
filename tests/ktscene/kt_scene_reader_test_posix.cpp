#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "ktscene/kt_scene_reader.h"
#include "tests/ktscene/scene_file.h"
#include "tests/support/descriptor_limit.h"
#include "tests/support/sanitizers.h"

TEST(ReadSceneFile, NameThatIsTooLongIsRefused) {
  const std::string name(300, 'a');
  EXPECT_EQ(refusal(name), name + ": the name is too long; choose a shorter one");
}

TEST(ReadSceneFile, LinkToItselfIsRefusedWithTheSystemsNumber) {
  const std::string link = testing::TempDir() + "scene_reader_test_link";
  std::filesystem::create_symlink(link, link);
  EXPECT_EQ(refusal(link), link + ": cannot be read (error " + std::to_string(ELOOP) +
                               " of the operating system); check the disk or copy the file "
                               "elsewhere");
  std::filesystem::remove(link);
}

TEST(ReadSceneFile, TooManyOpenFilesAreDistinguishedFromAMissingOne) {
  NEEDS_DESCRIPTOR_LIMITS();
  const TemporaryFile file("scene_reader_test_one_too_many.json", R"({"nodes":[]})");
  const NoMoreDescriptors none;
  EXPECT_EQ(refusal(file.Path()),
            file.Path() + ": too many files are open; close some and try again");
}

TEST(ReadSceneFile, FileThatMayNotBeReadIsRefused) {
  const TemporaryFile file("scene_reader_test_unreadable.json", R"({"nodes":[]})");
  std::filesystem::permissions(file.Path(), std::filesystem::perms::none);
  if (access(file.Path().c_str(), R_OK) == 0) {
    GTEST_SKIP() << "This user may read every file.";
  }
  EXPECT_EQ(
      refusal(file.Path()),
      file.Path() + ": may not be read; ask for the permission to read it or copy it elsewhere");
}
