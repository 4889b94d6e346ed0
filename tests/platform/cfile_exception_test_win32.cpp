#include <gtest/gtest.h>

#include "platform/cfile_exception.h"
#include "platform/windows_api.h"

TEST(CFileException, GenericSentenceGivesTheSystemsNumberAndText) {
  const std::string sentence =
      CFileException(CFileException::genericException, ERROR_BROKEN_PIPE, u"a").what();
  EXPECT_TRUE(sentence.starts_with(
      "The file \"a\" could not be used: the operating system reported error 109 ("))
      << sentence;
  EXPECT_TRUE(sentence.ends_with(").")) << sentence;
}

TEST(CFileException, GenericSentenceOfANumberWithoutTextIsWhole) {
  EXPECT_STREQ(CFileException(CFileException::genericException, 987654, u"a").what(),
               "The file \"a\" could not be used: the operating system reported error 987654.");
}

TEST(CFileException, OsErrorsHaveTheirCauses) {
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_SUCCESS), CFileException::none);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_FILE_NOT_FOUND), CFileException::fileNotFound);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_PATH_NOT_FOUND), CFileException::badPath);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_INVALID_NAME), CFileException::badPath);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_TOO_MANY_OPEN_FILES),
            CFileException::tooManyOpenFiles);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_ACCESS_DENIED), CFileException::accessDenied);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_INVALID_HANDLE), CFileException::invalidFile);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_CURRENT_DIRECTORY),
            CFileException::removeCurrentDir);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_NEGATIVE_SEEK), CFileException::badSeek);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_CRC), CFileException::hardIO);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_SHARING_VIOLATION),
            CFileException::sharingViolation);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_LOCK_VIOLATION), CFileException::lockViolation);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_DISK_FULL), CFileException::diskFull);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_HANDLE_EOF), CFileException::endOfFile);
  EXPECT_EQ(CFileException::OsErrorToCause(ERROR_BROKEN_PIPE), CFileException::genericException);
}

TEST(CFileException, WhatIsUtf8AlsoWhenThePathIsNot) {
  EXPECT_STREQ(CFileException(CFileException::fileNotFound, -1, u"a\xDCFF").what(),
               "The file \"a\uFFFD\" was not found.");
}
