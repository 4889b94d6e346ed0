#include "platform/cfile_exception.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <set>
#include <string>

namespace {

std::u16string message(const CFileException& exception) {
  std::array<char16_t, 1024> buffer;
  buffer.fill(u'x');
  const bool has = exception.GetErrorMessage(buffer.data(), buffer.size());
  EXPECT_EQ(has, buffer[0] != u'\0');
  return buffer.data();
}

}  // namespace

TEST(CFileException, HasNoErrorUntilItIsFilled) {
  const CFileException exception;
  EXPECT_EQ(exception.m_cause, CFileException::none);
  EXPECT_EQ(exception.m_lOsError, -1);
  EXPECT_TRUE(exception.m_strFileName.IsEmpty());
  EXPECT_TRUE(message(exception).empty());
  EXPECT_STREQ(exception.what(), "");
}

TEST(CFileException, SentenceNamesThePathAndTheReason) {
  const CFileException exception(CFileException::accessDenied, EACCES, u"/plans/a.dxf");
  EXPECT_EQ(message(exception),
            u"The file \"/plans/a.dxf\" could not be used because access to it was denied.");
}

TEST(CFileException, SentenceGivesAReasonOfItsOwn) {
  CFileException exception(CFileException::badPath, -1, u"a.dxf");
  exception.m_strReason = u" could not be opened on a Sunday.";
  EXPECT_EQ(message(exception), u"The file \"a.dxf\" could not be opened on a Sunday.");
}

TEST(CFileException, SentenceDoesWithoutAPath) {
  EXPECT_EQ(message(CFileException(CFileException::fileNotFound)), u"The file was not found.");
}

TEST(CFileException, EveryCauseHasItsOwnSentence) {
  std::set<std::u16string> sentences;
  for (int cause = CFileException::genericException; cause <= CFileException::endOfFile; ++cause) {
    const CFileException exception(static_cast<CFileException::Cause>(cause), -1, u"a");
    sentences.insert(message(exception));
    EXPECT_TRUE(message(exception).starts_with(u"The file \"a\" "));
    EXPECT_TRUE(message(exception).ends_with(u"."));
  }
  EXPECT_EQ(sentences.size(), 14U);
}

TEST(CFileException, LongSentenceIsCutToTheBuffer) {
  const CFileException exception(CFileException::fileNotFound, -1, u"a");
  std::array<char16_t, 10> buffer;
  buffer.fill(u'x');
  EXPECT_TRUE(exception.GetErrorMessage(buffer.data(), 9));
  EXPECT_EQ(std::u16string(buffer.data()), u"The file");
  EXPECT_EQ(buffer[9], u'x');
}

TEST(CFileException, NoRoomGivesNoMessage) {
  const CFileException exception(CFileException::fileNotFound);
  char16_t unit = u'x';
  EXPECT_FALSE(exception.GetErrorMessage(nullptr, 100));
  EXPECT_FALSE(exception.GetErrorMessage(&unit, 0));
  EXPECT_EQ(unit, u'x');
  EXPECT_FALSE(exception.GetErrorMessage(&unit, 1));
  EXPECT_EQ(unit, u'\0');
}

TEST(CFileException, HelpContextIsZero) {
  std::array<char16_t, 100> buffer;
  unsigned help = 7;
  EXPECT_TRUE(CFileException(CFileException::diskFull).GetErrorMessage(buffer.data(), 100, &help));
  EXPECT_EQ(help, 0U);
}

TEST(CFileException, WhatIsTheSentenceInUtf8) {
  EXPECT_STREQ(CFileException(CFileException::fileNotFound, -1, u"Süd 😀").what(),
               "The file \"S\xC3\xBC"
               "d \xF0\x9F\x98\x80\" was not found.");
}

TEST(CFileException, CopyCarriesEverything) {
  const CFileException original(CFileException::diskFull, ENOSPC, u"a");
  CFileException copy;
  copy = original;
  EXPECT_EQ(copy.m_cause, CFileException::diskFull);
  EXPECT_EQ(copy.m_lOsError, ENOSPC);
  EXPECT_EQ(copy.m_strFileName, CString(u"a"));
}
