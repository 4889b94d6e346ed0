#include "ktscene/kt_output_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/scratch_directory.h"

TEST(KtOutputFile, IsThereOnceItIsCommitted) {
  const ScratchDirectory directory;
  const std::string path = directory / "plan.dxf";
  {
    KtOutputFile output(path);
    output.Write("whole");
    EXPECT_FALSE(std::filesystem::exists(path));
    output.Commit();
  }
  EXPECT_EQ(ScratchDirectory::ContentOf(path), "whole");
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(KtOutputFile, LeavesTheOldFileWithoutCommit) {
  const ScratchDirectory directory;
  const std::string path = directory / "plan.dxf";
  ScratchDirectory::Fill(path, "old");
  { KtOutputFile(path).Write("half"); }
  EXPECT_EQ(ScratchDirectory::ContentOf(path), "old");
  EXPECT_EQ(directory.FileCount(), 1U);
}
