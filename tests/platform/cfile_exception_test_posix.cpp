#include <gtest/gtest.h>

#include <cerrno>

#include "platform/cfile_exception.h"

TEST(CFileException, OsErrorsHaveTheirCauses) {
  EXPECT_EQ(CFileException::OsErrorToCause(0), CFileException::none);
  EXPECT_EQ(CFileException::OsErrorToCause(ENOENT), CFileException::fileNotFound);
  EXPECT_EQ(CFileException::OsErrorToCause(ENOTDIR), CFileException::badPath);
  EXPECT_EQ(CFileException::OsErrorToCause(EMFILE), CFileException::tooManyOpenFiles);
  EXPECT_EQ(CFileException::OsErrorToCause(EROFS), CFileException::accessDenied);
  EXPECT_EQ(CFileException::OsErrorToCause(EBADF), CFileException::invalidFile);
  EXPECT_EQ(CFileException::OsErrorToCause(ESPIPE), CFileException::badSeek);
  EXPECT_EQ(CFileException::OsErrorToCause(EIO), CFileException::hardIO);
  EXPECT_EQ(CFileException::OsErrorToCause(ETXTBSY), CFileException::sharingViolation);
  EXPECT_EQ(CFileException::OsErrorToCause(ENOLCK), CFileException::lockViolation);
  EXPECT_EQ(CFileException::OsErrorToCause(EDQUOT), CFileException::diskFull);
  EXPECT_EQ(CFileException::OsErrorToCause(EPIPE), CFileException::genericException);
  EXPECT_EQ(CFileException::OsErrorToCause(-1), CFileException::genericException);
}

TEST(CFileException, GenericSentenceGivesTheSystemsNumber) {
  EXPECT_STREQ(CFileException(CFileException::genericException, 32, u"a").what(),
               "The file \"a\" could not be used: the operating system reported error 32.");
}

TEST(CFileException, WhatIsUtf8AlsoWhenThePathIsNot) {
  EXPECT_STREQ(CFileException(CFileException::fileNotFound, -1, u"a\xDCFF").what(),
               "The file \"a?\" was not found.");
}
