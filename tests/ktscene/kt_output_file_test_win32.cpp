#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

#include "ktscene/kt_output_file.h"
#include "platform/cfile.h"
#include "platform/path_text.h"
#include "platform/windows_api.h"
#include "platform/windows_path.h"
#include "tests/support/scratch_directory.h"

TEST(KtOutputFile, IsWrittenByAWriterThatHasItAlone) {
  const ScratchDirectory directory;
  const std::string path = directory / "Süd 日本.dxf";
  {
    KtOutputFile output(path);
    CFile file;
    ASSERT_TRUE(
        file.Open(pathFromBytes(output.Path()).c_str(), CFile::modeCreate | CFile::modeWrite));
    file.Write("whole", 5);
    file.Close();
    output.Commit();
  }
  EXPECT_EQ(std::filesystem::file_size(dxf2d::windowsPath(path)), 5U);
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(KtOutputFile, ReplacesAFileAndKeepsItsAttributes) {
  const ScratchDirectory directory;
  const std::string path = directory / "plan.dxf";
  ScratchDirectory::Fill(path, "old");
  const std::wstring name = dxf2d::windowsPath(path);
  KtOutputFile output(path);
  output.Write("new");
  output.Commit();
  EXPECT_EQ(ScratchDirectory::ContentOf(path), "new");
  EXPECT_EQ(directory.FileCount(), 1U);
  SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_THROW(KtOutputFile{path}, std::system_error);
  SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(KtOutputFile, FileThatAnotherHasOpenStaysAsItIs) {
  const ScratchDirectory directory;
  const std::string path = directory / "plan.dxf";
  ScratchDirectory::Fill(path, "old");
  {
    CFile other;
    ASSERT_TRUE(other.Open(pathFromBytes(path).c_str(), CFile::modeRead));
    KtOutputFile output(path);
    output.Write("new");
    EXPECT_THROW(output.Commit(), std::system_error);
  }
  EXPECT_EQ(ScratchDirectory::ContentOf(path), "old");
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(KtOutputFile, WritesDevicesInPlace) {
  KtOutputFile output("NUL");
  EXPECT_EQ(output.Path(), "NUL");
  output.Write("gone");
  output.Commit();
}

TEST(KtOutputFile, NamesWhatCannotBeMade) {
  const ScratchDirectory directory;
  EXPECT_THROW(KtOutputFile(directory / ""), std::system_error);
  try {
    KtOutputFile(directory / "none/plan.dxf");
    FAIL();
  } catch (const std::system_error& error) {
    EXPECT_NE(std::string(error.what()).find("plan.dxf: cannot be created: "), std::string::npos);
  }
}
