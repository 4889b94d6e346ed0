#include "platform/cfile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "platform/path_text.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned kCreate = CFile::modeCreate | CFile::modeWrite;

class CFileTest : public testing::Test {
 protected:
  CFileTest() {
    std::string pattern = (fs::temp_directory_path() / "cfile-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  ~CFileTest() override { fs::remove_all(folder_); }

  std::u16string Name(const std::string& name) const {
    return pathFromBytes((folder_ / name).string());
  }
  std::string Content(const std::string& name) const {
    std::ifstream in(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void Put(const std::string& name, const std::string& content) const {
    std::ofstream(folder_ / name, std::ios::binary) << content;
  }

  fs::path folder_;
};

void write(CFile& file, const std::string& text) { file.Write(text.data(), text.size()); }

template <typename Call>
CFileException thrownBy(Call call) {
  try {
    call();
  } catch (const CFileException& exception) {
    return exception;
  }
  return CFileException();
}

CFileException::Cause causeOfOpen(const std::u16string& path, unsigned flags = kCreate) {
  CFile file;
  CFileException exception;
  EXPECT_FALSE(file.Open(path.c_str(), flags, &exception));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(exception.m_strFileName, CString(path));
  return exception.m_cause;
}

}  // namespace

TEST_F(CFileTest, BytesArriveAsGiven) {
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  EXPECT_TRUE(file.IsOpen());
  const std::string bytes("a\nb\r\n\0\x1A\xFF", 8);
  write(file, bytes);
  file.Close();
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(Content("a"), bytes);
}

TEST_F(CFileTest, BytesDoNotDependOnTheSizesOfWrites) {
  std::mt19937 random(1);
  std::string expected;
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  for (const std::size_t size :
       {0U, 1U, 262143U, 1U, 262144U, 262145U, 700000U, 17U, 524287U, 3U}) {
    std::string piece(size, '\0');
    for (char& byte : piece) {
      byte = static_cast<char>(random());
    }
    write(file, piece);
    expected += piece;
  }
  for (unsigned i = 0; i < 20000; ++i) {
    const std::string piece(random() % 60, static_cast<char>('a' + i % 26));
    write(file, piece);
    expected += piece;
  }
  file.Close();
  EXPECT_TRUE(Content("a") == expected);
}

TEST_F(CFileTest, FlushHandsOverWhatIsGathered) {
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  write(file, "abc");
  EXPECT_EQ(Content("a"), "");
  file.Flush();
  EXPECT_EQ(Content("a"), "abc");
  write(file, "d");
  file.Close();
  EXPECT_EQ(Content("a"), "abcd");
}

TEST_F(CFileTest, DestructionFlushesAndCloses) {
  {
    CFile file;
    ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
    write(file, "abc");
  }
  EXPECT_EQ(Content("a"), "abc");
}

TEST_F(CFileTest, CreatingTruncates) {
  Put("a", "old content");
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  EXPECT_EQ(Content("a"), "");
}

TEST_F(CFileTest, WritingWithoutCreatingKeepsTheRest) {
  Put("a", "abcdef");
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), CFile::modeWrite));
  write(file, "XY");
  file.Close();
  EXPECT_EQ(Content("a"), "XYcdef");
}

TEST_F(CFileTest, SecondOpenIsRefusedAndLeavesTheBytes) {
  CFile first;
  ASSERT_TRUE(first.Open(Name("a").c_str(), kCreate));
  write(first, "abc");
  first.Flush();
  EXPECT_EQ(causeOfOpen(Name("a")), CFileException::sharingViolation);
  EXPECT_EQ(causeOfOpen(Name("a"), CFile::modeRead), CFileException::sharingViolation);
  EXPECT_EQ(Content("a"), "abc");
  first.Close();
  CFile second;
  EXPECT_TRUE(second.Open(Name("a").c_str(), kCreate));
}

TEST_F(CFileTest, OpeningAnOpenObjectIsRefusedAndKeepsItsFile) {
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  CFileException exception;
  EXPECT_FALSE(file.Open(Name("b").c_str(), kCreate, &exception));
  EXPECT_EQ(exception.m_cause, CFileException::invalidFile);
  EXPECT_FALSE(fs::exists(folder_ / "b"));
  write(file, "abc");
  file.Close();
  EXPECT_EQ(Content("a"), "abc");
}

TEST_F(CFileTest, ObjectCanBeOpenedAgain) {
  CFile file;
  for (const char* name : {"a", "b"}) {
    ASSERT_TRUE(file.Open(Name(name).c_str(), kCreate));
    write(file, name);
    file.Close();
    EXPECT_EQ(Content(name), name);
  }
}

TEST_F(CFileTest, MissingFolderIsABadPathAndNothingIsCreated) {
  EXPECT_EQ(causeOfOpen(Name("missing/a")), CFileException::badPath);
  EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(CFileTest, MissingFileIsNotFound) {
  EXPECT_EQ(causeOfOpen(Name("a"), CFile::modeRead), CFileException::fileNotFound);
  EXPECT_EQ(causeOfOpen(Name("a"), CFile::modeWrite), CFileException::fileNotFound);
}

TEST_F(CFileTest, DirectoryIsRefused) {
  EXPECT_EQ(causeOfOpen(Name("")), CFileException::accessDenied);
  EXPECT_EQ(causeOfOpen(Name(""), CFile::modeRead), CFileException::accessDenied);
}

TEST_F(CFileTest, FileOnTheWayIsABadPath) {
  Put("a", "");
  EXPECT_EQ(causeOfOpen(Name("a/b")), CFileException::badPath);
}

TEST_F(CFileTest, TooLongANameIsABadPath) {
  EXPECT_EQ(causeOfOpen(Name(std::string(5000, 'a'))), CFileException::badPath);
}

TEST_F(CFileTest, PathWithAZeroCharacterIsRefusedAndNotCut) {
  const std::u16string cut = Name("a");
  const CString path(cut + std::u16string(u"\0b", 2));
  CFile file;
  CFileException exception;
  EXPECT_FALSE(file.Open(path, CFile::modeCreate | CFile::modeWrite, &exception));
  EXPECT_EQ(exception.m_cause, CFileException::badPath);
  EXPECT_TRUE(
      std::string(exception.what())
          .ends_with("a\uFFFDb\" could not be opened because its name has a zero character."))
      << exception.what();
  EXPECT_FALSE(file.Open(path, CFile::modeCreate | CFile::modeWrite));
  EXPECT_FALSE(std::filesystem::exists(pathToBytes(cut)));
}

TEST_F(CFileTest, EmptyOrNoPathIsABadPath) {
  EXPECT_EQ(causeOfOpen(u""), CFileException::badPath);
  CFile file;
  CFileException exception;
  EXPECT_FALSE(file.Open(nullptr, kCreate, &exception));
  EXPECT_EQ(exception.m_cause, CFileException::badPath);
}

TEST_F(CFileTest, CreatingForReadingIsDeniedAndKeepsTheBytes) {
  Put("a", "abc");
  EXPECT_EQ(causeOfOpen(Name("a"), CFile::modeCreate), CFileException::accessDenied);
  EXPECT_EQ(Content("a"), "abc");
}

TEST_F(CFileTest, FailureNeedsNoException) {
  CFile file;
  EXPECT_FALSE(file.Open(Name("missing/a").c_str(), kCreate));
}

TEST_F(CFileTest, NameNeedNotBeUtf8) {
  const std::string name =
      "S\xFC"
      "d \xF0\x9F\x98\x80";
  CFile file;
  ASSERT_TRUE(file.Open(Name(name).c_str(), kCreate));
  EXPECT_TRUE(fs::exists(folder_ / name));
}

TEST_F(CFileTest, DevicesAreNotLocked) {
  CFile first;
  CFile second;
  EXPECT_TRUE(first.Open(u"/dev/null", kCreate));
  EXPECT_TRUE(second.Open(u"/dev/null", kCreate));
}

TEST_F(CFileTest, DescriptorIsNotInherited) {
  const int next = ::dup(0);
  ::close(next);
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  EXPECT_NE(fcntl(next, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(CFileTest, BytesMadeInPlaceFollowThoseWritten) {
  std::string expected;
  CFile file;
  ASSERT_TRUE(file.Open(Name("f").c_str(), kCreate));
  // Often enough that the room runs out at every offset from the buffer's end.
  for (int i = 0; i < 200'000; ++i) {
    const std::string text = std::to_string(i * 7919 % 1000003) + "\n";
    if (i % 3 == 0) {
      write(file, text);
    } else {
      char* room = file.Reserve(CFile::kMaxReserve);
      text.copy(room, text.size());
      file.Commit(text.size());
    }
    expected += text;
  }
  file.Close();
  EXPECT_EQ(Content("f"), expected);
}

TEST(CFile, ReserveOnAClosedFileThrowsInvalidFile) {
  CFile file;
  EXPECT_EQ(thrownBy([&] { file.Reserve(1); }).m_cause, CFileException::invalidFile);
}

TEST(CFile, WriteOnAClosedFileThrowsInvalidFile) {
  CFile file;
  EXPECT_EQ(thrownBy([&] { write(file, "a"); }).m_cause, CFileException::invalidFile);
}

TEST(CFile, ClosedFileTakesFlushCloseAndEmptyWrites) {
  CFile file;
  EXPECT_NO_THROW(file.Flush());
  EXPECT_NO_THROW(file.Close());
  EXPECT_NO_THROW(file.Write("", 0));
  EXPECT_NO_THROW(file.Write(nullptr, 0));
}

TEST_F(CFileTest, NoDataThrowsInvalidFileWithThePathUnlessCountIsZero) {
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  EXPECT_NO_THROW(file.Write(nullptr, 0));
  const CFileException exception = thrownBy([&] { file.Write(nullptr, 1); });
  EXPECT_EQ(exception.m_cause, CFileException::invalidFile);
  EXPECT_EQ(exception.m_strFileName, CString(Name("a")));
  write(file, "abc");
  file.Close();
  EXPECT_EQ(Content("a"), "abc");
}

TEST_F(CFileTest, WriteOnAFileOpenForReadingThrowsInvalidFile) {
  Put("a", "abc");
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), CFile::modeRead));
  EXPECT_EQ(thrownBy([&] { write(file, "X"); }).m_cause, CFileException::invalidFile);
  EXPECT_NO_THROW(file.Close());
  EXPECT_EQ(Content("a"), "abc");
}

TEST(CFile, FullDiskThrowsOnceAndClosingThenSucceeds) {
  CFile file;
  ASSERT_TRUE(file.Open(u"/dev/full", kCreate));
  write(file, "abc");
  const CFileException exception = thrownBy([&] { file.Flush(); });
  EXPECT_EQ(exception.m_cause, CFileException::diskFull);
  EXPECT_EQ(exception.m_lOsError, ENOSPC);
  EXPECT_EQ(exception.m_strFileName, CString(u"/dev/full"));
  EXPECT_TRUE(file.IsOpen());
  EXPECT_NO_THROW(file.Close());
}

TEST(CFile, FullDiskSurfacesFromTheWriteThatFillsTheBuffer) {
  CFile file;
  ASSERT_TRUE(file.Open(u"/dev/full", kCreate));
  const std::string half(200000, 'a');
  write(file, half);
  EXPECT_EQ(thrownBy([&] { write(file, half); }).m_cause, CFileException::diskFull);
  EXPECT_NO_THROW(file.Close());
}

TEST(CFile, CloseThatFailsHasClosed) {
  CFile file;
  ASSERT_TRUE(file.Open(u"/dev/full", kCreate));
  write(file, "abc");
  EXPECT_EQ(thrownBy([&] { file.Close(); }).m_cause, CFileException::diskFull);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(file.Open(u"/dev/null", kCreate));
}

TEST(CFile, DestructionSwallowsAFailure) {
  EXPECT_NO_THROW({
    CFile file;
    ASSERT_TRUE(file.Open(u"/dev/full", kCreate));
    write(file, "abc");
  });
}

TEST_F(CFileTest, LimitOnFileSizesIsAnErrorAndWhatFittedIsThere) {
  CFile file;
  ASSERT_TRUE(file.Open(Name("a").c_str(), kCreate));
  write(file, "0123456789");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{4, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const CFileException exception = thrownBy([&] { file.Flush(); });
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(exception.m_cause, CFileException::diskFull);
  write(file, "ab");
  file.Close();
  EXPECT_EQ(Content("a"), "0123ab");
}

TEST_F(CFileTest, ClosedPipeIsAnErrorWithoutASignal) {
  const std::string pipe = (folder_ / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  CFile file;
  ASSERT_TRUE(file.Open(Name("pipe").c_str(), kCreate));
  ::close(reader);
  write(file, "abc");
  const CFileException exception = thrownBy([&] { file.Flush(); });
  EXPECT_EQ(exception.m_lOsError, EPIPE);
  EXPECT_EQ(exception.m_cause, CFileException::genericException);
  sigset_t pending;
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}
