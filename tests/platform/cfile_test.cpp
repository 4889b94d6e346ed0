#include "platform/cfile.h"

#include "tests/platform/cfile_fixture.h"
#include "tests/support/system_files.h"

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
  first.Close();
  EXPECT_EQ(Content("a"), "abc");
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
  ASSERT_TRUE(file.Open(kFullDisk, kCreate));
  write(file, "abc");
  const CFileException exception = thrownBy([&] { file.Flush(); });
  EXPECT_EQ(exception.m_cause, CFileException::diskFull);
  EXPECT_EQ(exception.m_lOsError, kFullDiskError);
  EXPECT_EQ(exception.m_strFileName, CString(kFullDisk));
  EXPECT_TRUE(file.IsOpen());
  EXPECT_NO_THROW(file.Close());
}

TEST(CFile, FullDiskSurfacesFromTheWriteThatFillsTheBuffer) {
  CFile file;
  ASSERT_TRUE(file.Open(kFullDisk, kCreate));
  const std::string half(200000, 'a');
  write(file, half);
  EXPECT_EQ(thrownBy([&] { write(file, half); }).m_cause, CFileException::diskFull);
  EXPECT_NO_THROW(file.Close());
}

TEST(CFile, CloseThatFailsHasClosed) {
  CFile file;
  ASSERT_TRUE(file.Open(kFullDisk, kCreate));
  write(file, "abc");
  EXPECT_EQ(thrownBy([&] { file.Close(); }).m_cause, CFileException::diskFull);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(file.Open(kNullDevice, kCreate));
}

TEST(CFile, DestructionSwallowsAFailure) {
  EXPECT_NO_THROW({
    CFile file;
    ASSERT_TRUE(file.Open(kFullDisk, kCreate));
    write(file, "abc");
  });
}
