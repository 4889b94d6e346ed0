#include "labels/label_callback.h"

#include <gtest/gtest.h>

#include "dxf/dxf_writer.h"
#include "platform/cfile_exception.h"
#include "session/export_session.h"
#include "tests/labels/label_node.h"
#include "tests/support/drawing_session.h"
#include "tests/support/node_without_writer.h"

namespace dxf2d {

namespace {

const std::u16string kLabel = u"T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"Ab\"";

// What the callback writes for `text` into a node of its own, with its result expected.
std::string writtenFor(const std::u16string& text, bool expected, bool flag = false) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  LabelNode label(text);
  EXPECT_EQ(labelCallback(&label, flag, 1), expected);
  return session.Body();
}

}  // namespace

TEST(LabelCallback, ReturnsFalseForANullNode) {
  DrawingSession session;
  EXPECT_FALSE(labelCallback(nullptr, false, 1));
  EXPECT_EQ(session.Body(), "");
}

TEST(LabelCallback, ReturnsFalseForANodeWithoutALabel) {
  DrawingSession session;
  LabelNode other(kLabel, false);
  EXPECT_FALSE(labelCallback(&other, false, 1));
  EXPECT_EQ(session.Body(), "");
}

TEST(LabelCallback, ReturnsFalseForALabelWithoutAText) {
  DrawingSession session;
  LabelNode silent(std::nullopt);
  EXPECT_FALSE(labelCallback(&silent, false, 1));
  EXPECT_EQ(session.Body(), "");
}

TEST(LabelCallback, ReturnsFalseWithoutAnExport) {
  { DrawingSession session; }
  LabelNode label(kLabel);
  EXPECT_FALSE(labelCallback(&label, false, 1));
  EXPECT_FALSE(writeLabelText(kLabel, 1));
}

TEST(LabelCallback, CallWithoutAnExportDoesNotAffectTheNextExport) {
  LabelNode label(kLabel);
  EXPECT_FALSE(labelCallback(&label, false, 1));
  EXPECT_NE(writtenFor(kLabel, true), "");
}

TEST(LabelCallback, ReturnsFalseWithoutACurrentNode) {
  DrawingSession session;
  DXF2dCloseNode();
  LabelNode label(kLabel);
  EXPECT_FALSE(labelCallback(&label, false, 1));
  EXPECT_EQ(session.Body(), "");
}

TEST(LabelCallback, FlagDoesNotMatter) {
  EXPECT_EQ(writtenFor(kLabel, true, false), writtenFor(kLabel, true, true));
}

TEST(LabelCallback, TextShorterThanItsTagIsReadAsEmpty) {
  for (const char16_t* text : {u"", u"T", u"T:", u"T: ", u"  "}) {
    EXPECT_EQ(writtenFor(text, false), "");
  }
}

TEST(LabelCallback, ReturnsFalseForALabelThatCannotBeParsed) {
  for (const char16_t* text :
       {u"T:1 2.5 0 10 20 5 30 C 0 1 0 0", u"T:1 x 0 10 20 5 30 C 0 1 0 0 0 \"a\"",
        u"T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"a", u"T:1 2,5 0 10 20 5 30 C 0 1 0 0 0 \"a\"",
        u"1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"a\""}) {
    DrawingSession session;
    DXF2dOpenNode(nullptr);
    LabelNode label(text);
    EXPECT_FALSE(labelCallback(&label, false, 1));
    EXPECT_EQ(session.Body(), "");
    EXPECT_FALSE(exportSession().root->hasGeometry);
  }
}

TEST(LabelCallback, AnyTwoCharactersAreTheTag) {
  const std::string expected = writtenFor(kLabel, true);
  EXPECT_EQ(writtenFor(u"\u00e9\n" + kLabel.substr(2), true), expected);
  EXPECT_EQ(writtenFor(u"\"\"" + kLabel.substr(2), true), expected);
}

TEST(LabelCallback, WhiteSpaceAfterTheTagIsSkipped) {
  const std::string expected = writtenFor(kLabel, true);
  EXPECT_EQ(writtenFor(u"T:  \t\r\n\v\f" + kLabel.substr(2), true), expected);
  EXPECT_EQ(writtenFor(u"T:\u00a0\u2003\u3000\u0085" + kLabel.substr(2), true), expected);
}

TEST(LabelCallback, DirectEntryWritesTheSame) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  EXPECT_TRUE(writeLabelText(kLabel, 1));
  EXPECT_EQ(session.Body(), writtenFor(kLabel, true));
}

TEST(LabelCallback, FailedWriteIsReported) {
  DrawingSession session;
  DXF2dOpenNode(nullptr);
  // The export's file is gone from under it.
  exportSession().writer->Close();
  LabelNode label(kLabel);
  EXPECT_THROW(labelCallback(&label, false, 1), CFileException);
  EXPECT_THROW(DXF2dCloseFileForModel(), CFileException);
}

TEST(LabelCallback, ReturnsFalseWithoutAWriter) {
  const NodeWithoutWriter session;
  EXPECT_FALSE(writeLabelText(u"T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"a\"", 1));
  EXPECT_TRUE(session.IsUntouched());
}

}  // namespace dxf2d
