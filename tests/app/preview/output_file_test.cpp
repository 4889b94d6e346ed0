#include "app/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "tests/app/preview/scratch_directory.h"

namespace {

struct Refusal {
  int code = kExitDone;
  std::string sentence;
};

Refusal refusalOf(const std::string& path) {
  try {
    const OutputFile file(path);
    return {};
  } catch (const OutputError& error) {
    return {error.Code(), error.what()};
  }
}

TEST(OutputFile, CommittedBytesStandUnderTheName) {
  const ScratchDirectory directory;
  OutputFile file(directory / "plan.dxf");
  file.Write("first ");
  file.Write("second");
  file.Commit();
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.dxf"), "first second");
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(OutputFile, NothingIsLeftWithoutCommit) {
  const ScratchDirectory directory;
  {
    OutputFile file(directory / "plan.dxf");
    file.Write("half");
    EXPECT_EQ(directory.FileCount(), 1U);
    EXPECT_FALSE(std::filesystem::exists(directory / "plan.dxf"));
  }
  EXPECT_EQ(directory.FileCount(), 0U);
}

TEST(OutputFile, FileAlreadyThereIsUntouchedWithoutCommit) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "plan.dxf", "old");
  {
    OutputFile file(directory / "plan.dxf");
    file.Write("half");
  }
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.dxf"), "old");
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(OutputFile, ReplacedFileKeepsItsPermissions) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "plan.dxf", "old");
  ASSERT_EQ(chmod((directory / "plan.dxf").c_str(), 0640), 0);
  OutputFile file(directory / "plan.dxf");
  file.Commit();
  struct stat status {};
  ASSERT_EQ(stat((directory / "plan.dxf").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(OutputFile, AnotherWriterMayFillTheTemporary) {
  const ScratchDirectory directory;
  OutputFile file(directory / "plan.dxf");
  ScratchDirectory::Fill(file.Path(), "by the plug-in");
  file.Commit();
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.dxf"), "by the plug-in");
}

TEST(OutputFile, SymbolicLinkIsReplacedAndItsTargetUntouched) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "target", "old");
  std::filesystem::create_symlink("target", directory / "link.dxf");
  OutputFile file(directory / "link.dxf");
  file.Write("new");
  file.Commit();
  EXPECT_FALSE(std::filesystem::is_symlink(directory / "link.dxf"));
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "link.dxf"), "new");
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "target"), "old");
}

TEST(OutputFile, LinkToNothingIsReplaced) {
  const ScratchDirectory directory;
  std::filesystem::create_symlink("nowhere", directory / "link.dxf");
  OutputFile file(directory / "link.dxf");
  file.Commit();
  EXPECT_TRUE(std::filesystem::is_regular_file(directory / "link.dxf"));
}

TEST(OutputFile, MissingDirectoryIsNamed) {
  const ScratchDirectory directory;
  const Refusal refusal = refusalOf(directory / "out/plan.dxf");
  EXPECT_EQ(refusal.code, kExitOutputNotMade);
  EXPECT_EQ(refusal.sentence, "cannot create '" + (directory / "out/plan.dxf") +
                                  "': the directory '" + (directory / "out") +
                                  "' does not exist; create it or choose another");
}

TEST(OutputFile, DirectoryIsNoOutput) {
  const ScratchDirectory directory;
  EXPECT_EQ(refusalOf(directory / "").code, kExitOutputNotMade);
  EXPECT_NE(refusalOf(directory / "").sentence.find("that is a directory"), std::string::npos);
  EXPECT_EQ(refusalOf(directory / "new/").code, kExitOutputNotMade);
}

TEST(OutputFile, FileInsteadOfADirectoryIsNamed) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "file", "");
  EXPECT_NE(refusalOf(directory / "file/plan.dxf").sentence.find("is no directory"),
            std::string::npos);
}

TEST(OutputFile, EmptyAndOverlongNamesAreRefused) {
  const ScratchDirectory directory;
  EXPECT_EQ(refusalOf("").code, kExitOutputNotMade);
  EXPECT_NE(refusalOf(directory / std::string(300, 'a')).sentence.find("too long"),
            std::string::npos);
}

TEST(OutputFile, LongestNameHasItsTemporary) {
  const ScratchDirectory directory;
  OutputFile file(directory / std::string(255, 'a'));
  file.Commit();
  EXPECT_TRUE(std::filesystem::exists(directory / std::string(255, 'a')));
}

TEST(OutputFile, DeviceIsWrittenStraight) {
  OutputFile file("/dev/null");
  EXPECT_EQ(file.Path(), "/dev/null");
  file.Write("gone");
  file.Commit();
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(OutputFile, FullDeviceIsAFailureOfWriting) {
  OutputFile file("/dev/full");
  try {
    file.Write("bytes");
    FAIL();
  } catch (const OutputError& error) {
    EXPECT_EQ(error.Code(), kExitWriteFailed);
    EXPECT_NE(std::string(error.what()).find("cannot write '/dev/full'"), std::string::npos);
  }
}

TEST(OutputFile, FifoIsWrittenStraight) {
  const ScratchDirectory directory;
  const std::string path = directory / "pipe.svg";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::string received;
  std::thread reader([&] { received = ScratchDirectory::ContentOf(path); });
  OutputFile file(path);
  file.Write("through the pipe");
  file.Commit();
  reader.join();
  EXPECT_EQ(received, "through the pipe");
  EXPECT_TRUE(std::filesystem::is_fifo(path));
}

TEST(OutputFile, LinksOfTheSystemAreNotReplaced) {
  const OutputFile file("/dev/stdout");
  EXPECT_EQ(file.Path(), "/dev/stdout");
}

TEST(OutputFile, NameWithoutDirectoryStandsInTheCurrentOne) {
  const ScratchDirectory directory;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(directory / "");
  OutputFile file("plan.dxf");
  file.Commit();
  std::filesystem::current_path(before);
  EXPECT_TRUE(std::filesystem::exists(directory / "plan.dxf"));
}

}  // namespace
