#include "dxf/dxf_writer.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "ktscene/zu_message.h"
#include "platform/path_text.h"
#include "tests/dxf/written_by.h"
#include "tests/support/code_page_setting.h"
#include "tests/support/error_boxes.h"
#include "tests/support/german_messages.h"
#include "tests/support/system_files.h"

namespace dxf2d {

namespace {

std::string writtenText(const CString& text) {
  return writtenBy([&](DxfWriter& writer) { writer.Write(text); });
}

std::string writtenReal(double value) {
  const std::string text = writtenBy([&](DxfWriter& writer) { writer.WriteReal40(value); });
  return text.substr(4, text.size() - 5);
}

}  // namespace

TEST(DxfWriterOpen, BoxHasItsTitleInTheUsersLanguage) {
  const GermanMessages german(KT_SCENE_TEST_CATALOGS);
  if (!german.IsSet()) {
    GTEST_SKIP() << "the C library has no locale that allows translations";
  }
  const ErrorBoxes boxes;
  DxfWriter writer;
  EXPECT_FALSE(writer.Open(TempFile("").WidePath() + u"/drawing.dxf"));
  ASSERT_EQ(boxes.Shown().size(), 1U);
  EXPECT_EQ(boxes.Shown().front().title, u"DXF-Exportfehler");
}

TEST(DxfWriterOpen, MissingFolderShowsABoxAndCreatesNothing) {
  const TempFile folder("");
  const std::string path = folder.Path() + "/drawing.dxf";
  const ErrorBoxes boxes;
  DxfWriter writer;
  EXPECT_FALSE(writer.Open(pathFromBytes(path)));
  ASSERT_EQ(boxes.Shown().size(), 1U);
  const ErrorBoxes::Box& box = boxes.Shown().front();
  EXPECT_EQ(box.owner, nullptr);
  EXPECT_EQ(box.title, u"DXF export error");
  EXPECT_EQ(box.style, 0);
  std::array<char16_t, 1024> message{};
  ASSERT_TRUE(CFileException(CFileException::badPath, -1, pathFromBytes(path).c_str())
                  .GetErrorMessage(message.data(), message.size()));
  EXPECT_EQ(box.text, message.data());
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_FALSE(std::filesystem::exists(folder.Path()));
}

TEST(DxfWriterOpen, FolderInPlaceOfAFileShowsABox) {
  const ErrorBoxes boxes;
  DxfWriter writer;
  EXPECT_FALSE(writer.Open(pathFromBytes(testing::TempDir())));
  EXPECT_EQ(boxes.Shown().size(), 1U);
}

TEST(DxfWriterOpen, TruncatesWhatWasThere) {
  const TempFile file;
  std::ofstream(file.Path(), std::ios::binary) << std::string(100000, 'x');
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  writer.Close();
  const std::string drawing = readFile(file.Path());
  EXPECT_EQ(drawing, openedDrawing());
  EXPECT_TRUE(drawing.starts_with("  0\nSECTION\n  2\nHEADER\n"));
}

TEST(DxfWriterOpen, WritesHeaderTablesAndTheOpeningOfBlocks) {
  const std::string sections = writtenBy([](DxfWriter& writer) {
    writer.WriteHeaderSection();
    writer.WriteTablesSection();
  });
  EXPECT_EQ(openedDrawing(), sections + "  0\nSECTION\n  2\nBLOCKS\n");
}

TEST(DxfWriterOpen, ClosesTheFileThatIsOpen) {
  const TempFile first;
  const TempFile second;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(first.WidePath()));
  writer.WriteSeqEnd();
  ASSERT_TRUE(writer.Open(second.WidePath()));
  EXPECT_EQ(bodyOf(readFile(first.Path())), "  0\nSEQEND\n");
  writer.WriteLayer();
  writer.Close();
  EXPECT_EQ(bodyOf(readFile(second.Path())), "  8\n0\n");
  EXPECT_EQ(bodyOf(readFile(first.Path())), "  0\nSEQEND\n");
}

TEST(DxfWriterOpen, FailureLeavesAWriterThatCanBeOpenedAgain) {
  const ErrorBoxes boxes;
  const TempFile file;
  DxfWriter writer;
  EXPECT_FALSE(writer.Open(pathFromBytes(testing::TempDir())));
  EXPECT_THROW(writer.WriteLayer(), CFileException);
  ASSERT_TRUE(writer.Open(file.WidePath()));
  writer.Close();
  EXPECT_EQ(readFile(file.Path()), openedDrawing());
}

TEST(DxfWriterInstance, IsOneUntilItIsReleased) {
  DxfWriter* writer = DxfWriter::Instance();
  ASSERT_NE(writer, nullptr);
  EXPECT_EQ(DxfWriter::Instance(), writer);
  DxfWriter::Release();
  DxfWriter::Release();
  EXPECT_NE(DxfWriter::Instance(), nullptr);
  DxfWriter::Release();
}

TEST(DxfWriterInstance, ReleaseClosesItsFile) {
  const TempFile file;
  ASSERT_TRUE(DxfWriter::Instance()->Open(file.WidePath()));
  DxfWriter::Instance()->WriteSeqEnd();
  DxfWriter::Release();
  EXPECT_EQ(bodyOf(readFile(file.Path())), "  0\nSEQEND\n");
  DxfWriter again;
  EXPECT_TRUE(again.Open(file.WidePath()));
}

TEST(DxfWriterWrite, EmptyTextWritesNothing) {
  EXPECT_EQ(writtenText(CString()), "");
  EXPECT_EQ(writtenText(u""), "");
}

TEST(DxfWriterWrite, LinesEndInALineFeedAlone) {
  HostNode leaf(u"g", u"A", u"A");
  DrawingSession session;
  walkLeaf(leaf);
  session.Close();
  EXPECT_EQ(session.Written().find('\r'), std::string::npos);
  EXPECT_EQ(session.Written().back(), '\n');
}

TEST(DxfWriterWrite, RealsHaveSixDecimals) {
  EXPECT_EQ(writtenReal(-100), "-100.000000");
  EXPECT_EQ(writtenReal(0.15), "0.150000");
  EXPECT_EQ(writtenReal(1.23456789), "1.234568");
  EXPECT_EQ(writtenReal(-1.23456749), "-1.234567");
  EXPECT_EQ(writtenReal(0.0000005), "0.000000");
  EXPECT_EQ(writtenReal(0.00000051), "0.000001");
  EXPECT_EQ(writtenReal(1e15), "1000000000000000.000000");
}

TEST(DxfWriterWrite, WhatRoundsToNegativeZeroKeepsItsSign) {
  EXPECT_EQ(writtenReal(-0.0), "-0.000000");
  EXPECT_EQ(writtenReal(-1e-9), "-0.000000");
}

TEST(DxfWriterWrite, LargestRealIsWrittenInFull) {
  char expected[400];
  std::snprintf(expected, sizeof(expected), "%f", -1.7976931348623157e308);
  EXPECT_EQ(writtenReal(-1.7976931348623157e308), expected);
}

TEST(DxfWriterWrite, LettersGoThroughTheCodePage) {
  const CodePageSetting page(1252);
  EXPECT_EQ(writtenText(u"\u00dc\u20ac"), "\xDC\x80");
}

TEST(DxfWriterWrite, LongTextIsWrittenWhole) {
  const std::u16string letters(300000, u'\u00e9');
  EXPECT_EQ(writtenText(letters), std::string(300000, '\xE9'));
  const std::u16string ascii(513, u'a');
  EXPECT_EQ(writtenText(ascii), std::string(513, 'a'));
}

TEST(DxfWriterWrite, TextOfTwoBytesALetterIsCutToItsLength) {
  const CodePageSetting page(932);
  EXPECT_EQ(writtenText(u"\u65e5\u672c"), "\x93\xFA");
  EXPECT_EQ(writtenText(u"ab\u65e5"), "ab\x93");
}

TEST(DxfWriterWrite, NullInsideATextEndsItAndZerosFollow) {
  const std::u16string text(u"ab\0cd", 5);
  EXPECT_EQ(writtenText(text), std::string("ab\0\0\0", 5));
}

TEST(DxfWriterWrite, TextThatItsCodePageNeedsTooManyBytesForFails) {
  const CodePageSetting page(65001);
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  // Three bytes a unit; the conversion has room for two and the terminating null.
  EXPECT_THROW(writer.Write(CString(u"\u65e5\u672c\u8a9e\u65e5\u672c")), CFileException);
  writer.WriteSeqEnd();
  writer.Close();
  EXPECT_EQ(bodyOf(readFile(file.Path())), "  0\nSEQEND\n");
}

TEST(DxfWriterWrite, FailureOfTheCodePageNamesTheTextAndThePage) {
  const CodePageSetting page(65001);
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  try {
    writer.Write(CString(u"\u65e5\u672c\u8a9e\u65e5\u672c"));
    FAIL() << "five letters of three bytes were written";
  } catch (const CFileException& error) {
    EXPECT_EQ(error.m_cause, CFileException::invalidFile);
    EXPECT_EQ(error.what(), "The file \"" + file.Path() +
                                "\" cannot take the text \"\u65e5\u672c\u8a9e\u65e5\u672c\", which "
                                "needs more than two bytes per character in code page 65001.");
  }
}

TEST(DxfWriterWrite, FailureOfTheCodePageQuotesTheBeginningOfALongText) {
  const CodePageSetting page(65001);
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  try {
    writer.Write(CString(std::u16string(1000, u'\u65e5')));
    FAIL() << "1000 letters of three bytes were written";
  } catch (const CFileException& error) {
    EXPECT_NE(error.m_strReason.View().find(std::u16string(40, u'\u65e5') + u"...\""),
              std::u16string_view::npos);
  }
}

TEST(DxfWriterWrite, WithoutAnOpenFileFails) {
  DxfWriter writer;
  EXPECT_THROW(writer.WriteLayer(), CFileException);
  EXPECT_THROW(writer.Write(CString(u"text")), CFileException);
  writer.Flush();
  writer.Close();
}

TEST(DxfWriterWrite, FullDiskIsReported) {
  DxfWriter writer;
  try {
    writer.Open(kFullDisk);
    FAIL() << "a full disk took the head";
  } catch (const CFileException& exception) {
    EXPECT_EQ(exception.m_cause, CFileException::diskFull);
  }
  writer.FlushQuietly();
  const TempFile file;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  writer.Close();
  EXPECT_EQ(readFile(file.Path()), openedDrawing());
}

}  // namespace dxf2d
