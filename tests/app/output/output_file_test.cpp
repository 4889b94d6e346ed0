#include "app/output/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "platform/cfile.h"
#include "platform/path_text.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d {

namespace {

struct Refusal {
  int code = kExitDone;
  std::string sentence;
};

Refusal refusalOf(const std::string& path, Existing existing = Existing::kReplace) {
  try {
    const OutputFile file(path, existing);
    return {};
  } catch (const OutputError& error) {
    return {error.Code(), error.what()};
  }
}

TEST(OutputFile, CommittedBytesStandUnderTheName) {
  const ScratchDirectory directory;
  OutputFile file(directory / "plan.dxf", Existing::kReplace);
  file.Write("first ");
  file.Write("second");
  file.Commit();
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.dxf"), "first second");
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(OutputFile, NothingIsLeftWithoutCommit) {
  const ScratchDirectory directory;
  {
    OutputFile file(directory / "plan.dxf", Existing::kReplace);
    file.Write("half");
    EXPECT_FALSE(std::filesystem::exists(directory / "plan.dxf"));
  }
  EXPECT_EQ(directory.FileCount(), 0U);
}

TEST(OutputFile, ExistingFileIsUntouchedWithoutCommit) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "plan.dxf", "old");
  {
    OutputFile file(directory / "plan.dxf", Existing::kReplace);
    file.Write("half");
  }
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.dxf"), "old");
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(OutputFile, ReplacedFileKeepsItsPermissions) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "plan.dxf", "old");
  ASSERT_EQ(chmod((directory / "plan.dxf").c_str(), 0640), 0);
  OutputFile file(directory / "plan.dxf", Existing::kReplace);
  file.Commit();
  struct stat status {};
  ASSERT_EQ(stat((directory / "plan.dxf").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(OutputFile, AnotherWriterMayFillTheTemporary) {
  const ScratchDirectory directory;
  OutputFile file(directory / "plan.dxf", Existing::kReplace);
  ScratchDirectory::Fill(file.Path(), "by the plug-in");
  file.Commit();
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.dxf"), "by the plug-in");
}

TEST(OutputFile, SymbolicLinkStaysAndItsTargetIsReplaced) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "target", "old");
  std::filesystem::create_symlink("target", directory / "link.dxf");
  std::filesystem::create_symlink(directory / "link.dxf", directory / "link of link.dxf");
  OutputFile file(directory / "link of link.dxf", Existing::kReplace);
  file.Write("new");
  file.Commit();
  EXPECT_TRUE(std::filesystem::is_symlink(directory / "link.dxf"));
  EXPECT_TRUE(std::filesystem::is_symlink(directory / "link of link.dxf"));
  EXPECT_FALSE(std::filesystem::is_symlink(directory / "target"));
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "target"), "new");
}

TEST(OutputFile, TemporaryStandsBesideTheTargetOfALink) {
  const ScratchDirectory directory;
  std::filesystem::create_directory(directory / "far");
  std::filesystem::create_symlink("far/plan.dxf", directory / "link.dxf");
  const OutputFile file(directory / "link.dxf", Existing::kReplace);
  const std::filesystem::path place =
      std::filesystem::canonical("/proc/self/fd") / std::filesystem::path(file.Path()).filename();
  EXPECT_EQ(std::filesystem::read_symlink(place).parent_path(), directory / "far");
}

TEST(OutputFile, LinkToNothingGetsItsTarget) {
  const ScratchDirectory directory;
  std::filesystem::create_symlink("nowhere", directory / "link.dxf");
  OutputFile file(directory / "link.dxf", Existing::kKeep);
  file.Commit();
  EXPECT_TRUE(std::filesystem::is_symlink(directory / "link.dxf"));
  EXPECT_TRUE(std::filesystem::is_regular_file(directory / "nowhere"));
}

TEST(OutputFile, LinksInACircleAreRefused) {
  const ScratchDirectory directory;
  std::filesystem::create_symlink("b.dxf", directory / "a.dxf");
  std::filesystem::create_symlink("a.dxf", directory / "b.dxf");
  EXPECT_EQ(refusalOf(directory / "a.dxf").code, kExitOutputNotMade);
  EXPECT_NE(refusalOf(directory / "a.dxf").sentence.find("form a loop"), std::string::npos);
}

TEST(OutputFile, FileThatIsToBeKeptIsKept) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "plan.dxf", "old");
  const Refusal refusal = refusalOf(directory / "plan.dxf", Existing::kKeep);
  EXPECT_EQ(refusal.code, kExitOutputExists);
  EXPECT_NE(refusal.sentence.find("--force"), std::string::npos) << refusal.sentence;
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(OutputFile, FileCreatedInTheMeantimeIsKept) {
  const ScratchDirectory directory;
  {
    OutputFile file(directory / "plan.dxf", Existing::kKeep);
    ScratchDirectory::Fill(directory / "plan.dxf", "another's");
    try {
      file.Commit();
      FAIL();
    } catch (const OutputError& error) {
      EXPECT_EQ(error.Code(), kExitOutputExists);
    }
  }
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.dxf"), "another's");
  EXPECT_EQ(directory.FileCount(), 1U);
}

TEST(OutputFile, FileCreatedInTheMeantimeIsReplacedByForce) {
  const ScratchDirectory directory;
  OutputFile file(directory / "plan.dxf", Existing::kReplace);
  file.Write("new");
  ScratchDirectory::Fill(directory / "plan.dxf", "another's");
  file.Commit();
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "plan.dxf"), "new");
}

TEST(OutputFile, FileThatAnotherProgramWritesIsRefused) {
  const ScratchDirectory directory;
  CFile writer;
  ASSERT_TRUE(writer.Open(pathFromBytes(directory / "plan.dxf").c_str(),
                          CFile::modeCreate | CFile::modeWrite));
  const Refusal refusal = refusalOf(directory / "plan.dxf");
  EXPECT_EQ(refusal.code, kExitOutputNotMade);
  EXPECT_NE(refusal.sentence.find("another program is writing it"), std::string::npos);
  writer.Close();
  EXPECT_EQ(refusalOf(directory / "plan.dxf").code, kExitDone);
}

TEST(OutputFile, MissingDirectoryIsNamed) {
  const ScratchDirectory directory;
  const Refusal refusal = refusalOf(directory / "out/plan.dxf");
  EXPECT_EQ(refusal.code, kExitOutputNotMade);
  EXPECT_EQ(refusal.sentence, (directory / "out/plan.dxf") +
                                  ": cannot be created: the directory '" + (directory / "out") +
                                  "' does not exist; create it or choose another");
}

TEST(OutputFile, RefusesADirectory) {
  const ScratchDirectory directory;
  EXPECT_EQ(refusalOf(directory / "").code, kExitOutputNotMade);
  EXPECT_NE(refusalOf(directory / "").sentence.find("it is a directory"), std::string::npos);
  EXPECT_EQ(refusalOf(directory / "new/").code, kExitOutputNotMade);
}

TEST(OutputFile, FileInsteadOfADirectoryIsNamed) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "file", "");
  EXPECT_NE(refusalOf(directory / "file/plan.dxf").sentence.find("is not a directory"),
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
  OutputFile file(directory / std::string(255, 'a'), Existing::kReplace);
  file.Commit();
  EXPECT_TRUE(std::filesystem::exists(directory / std::string(255, 'a')));
}

TEST(OutputFile, DeviceIsWrittenInPlace) {
  OutputFile file("/dev/null", Existing::kReplace);
  EXPECT_EQ(file.Path(), "/dev/null");
  file.Write("gone");
  file.Commit();
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(OutputFile, FullDeviceIsAFailureOfWriting) {
  OutputFile file("/dev/full", Existing::kReplace);
  try {
    file.Write("bytes");
    FAIL();
  } catch (const OutputError& error) {
    EXPECT_EQ(error.Code(), kExitWriteFailed);
    EXPECT_NE(std::string(error.what()).find("/dev/full: cannot be written: "), std::string::npos);
  }
}

TEST(OutputFile, FifoIsWrittenInPlace) {
  const ScratchDirectory directory;
  const std::string path = directory / "pipe.svg";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::string received;
  std::thread reader([&] { received = ScratchDirectory::ContentOf(path); });
  OutputFile file(path, Existing::kReplace);
  file.Write("through the pipe");
  file.Commit();
  reader.join();
  EXPECT_EQ(received, "through the pipe");
  EXPECT_TRUE(std::filesystem::is_fifo(path));
}

TEST(OutputFile, NonblockingPipeGetsEveryByte) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
  const std::string bytes(1'000'000, 'x');
  std::string received;
  std::thread reader([&, from = ends[0]] {
    char buffer[4096];
    while (received.size() < bytes.size()) {
      const ssize_t count = read(from, buffer, sizeof buffer);
      if (count > 0) {
        received.append(buffer, static_cast<std::size_t>(count));
      }
      if (count == 0) {
        break;
      }
    }
  });
  OutputFile file("/dev/fd/" + std::to_string(ends[1]), Existing::kReplace);
  file.Write(bytes);
  file.Commit();
  close(ends[1]);
  reader.join();
  close(ends[0]);
  EXPECT_EQ(received, bytes);
}

TEST(OutputFile, DescriptorThatIsNotOpenIsRefused) {
  const Refusal refusal = refusalOf("/dev/fd/1000000");
  EXPECT_EQ(refusal.code, kExitOutputNotMade);
  EXPECT_NE(refusal.sentence.find("/dev/fd/1000000: "), std::string::npos) << refusal.sentence;
}

TEST(OutputFile, LinksOfTheSystemAreNotReplaced) {
  const OutputFile file("/dev/stdout", Existing::kReplace);
  EXPECT_EQ(file.Path(), "/dev/stdout");
}

TEST(OutputFile, NameWithoutDirectoryStandsInTheCurrentOne) {
  const ScratchDirectory directory;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(directory / "");
  OutputFile file("plan.dxf", Existing::kReplace);
  file.Commit();
  std::filesystem::current_path(before);
  EXPECT_TRUE(std::filesystem::exists(directory / "plan.dxf"));
}

}  // namespace

}  // namespace dxf2d
