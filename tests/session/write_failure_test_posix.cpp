// Disks that fill up while a drawing is written.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "geometry/callbacks.h"
#include "labels/label_callback.h"
#include "platform/cfile.h"
#include "session/export_session.h"
#include "tests/session/next_export.h"
#include "tests/support/code_page_setting.h"
#include "tests/support/file_size_limit.h"

namespace dxf2d {

namespace {

// A callback that writes meets the limit 10 bytes after the head, and the file has those 10.
void expectFailureInside(const std::function<void()>& callback,
                         CFileException::Cause cause = CFileException::diskFull) {
  const TempFile file;
  ASSERT_TRUE(DXF2dOpenFileForModel(file.WidePath()));
  const std::uintmax_t head = std::filesystem::file_size(file.Path());
  {
    const FileSizeLimit limit(head + 10);
    EXPECT_EQ(causeOf(callback), cause);
    EXPECT_EQ(std::filesystem::file_size(file.Path()), head + 10);
    EXPECT_EQ(causeOf([] { DXF2dCloseFileForModel(); }), CFileException::diskFull);
  }
  EXPECT_EQ(exportSession().writer, nullptr);
  EXPECT_FALSE(DXF2dCloseFileForModel());
  expectNextExportIsRight();
}

}  // namespace

TEST(WriteFailure, LineSetReportsIt) {
  expectFailureInside([] { drawUnitLine(); });
}

TEST(WriteFailure, FaceSetReportsIt) {
  expectFailureInside([] {
    faceSetCallback({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2, -7}, false, true);
  });
}

TEST(WriteFailure, FaceGeometryReportsIt) {
  expectFailureInside([] {
    DXF2dFaceGeometry({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2, -5}, {}, {}, {}, {}, false, true,
                      false, false, nullptr);
  });
}

TEST(WriteFailure, LabelReportsIt) {
  expectFailureInside([] { writeLabelText(u"T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"a\"", 1); });
}

TEST(WriteFailure, WhatFailedFirstIsReportedAndNotTheFlushAfterIt) {
  const CodePageSetting setting(65001);
  // Three bytes a unit do not fit; on the way out the disk has no room for what came before.
  expectFailureInside(
      [] { writeLabelText(u"T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"\u65e5\u672c\u8a9e\"", 1); },
      CFileException::invalidFile);
}

TEST(WriteFailure, CloseReportsItAndEndsTheExport) {
  const TempFile file;
  ASSERT_TRUE(DXF2dOpenFileForModel(file.WidePath()));
  {
    const FileSizeLimit limit(std::filesystem::file_size(file.Path()) + 3);
    EXPECT_EQ(causeOf([] { DXF2dCloseFileForModel(); }), CFileException::diskFull);
  }
  EXPECT_EQ(bodyOf(readFile(file.Path())), "  0");
  EXPECT_EQ(exportSession().currentNode, nullptr);
  EXPECT_FALSE(DXF2dCloseFileForModel());
  expectNextExportIsRight();
}

TEST(WriteFailure, NothingIsWrittenTwiceOnceThereIsRoomAgain) {
  const TempFile file;
  ASSERT_TRUE(DXF2dOpenFileForModel(file.WidePath()));
  {
    const FileSizeLimit limit(std::filesystem::file_size(file.Path()) + 10);
    EXPECT_EQ(causeOf([] { drawUnitLine(); }), CFileException::diskFull);
  }
  EXPECT_TRUE(drawUnitLine());
  EXPECT_TRUE(DXF2dCloseFileForModel());
  EXPECT_EQ(bodyOf(readFile(file.Path())),
            "  0\nBLOCK\n" + blockText(0, unitLineText()) + drawingEndText(""));
}

TEST(WriteFailure, CloseUnlocksTheFile) {
  const TempFile file;
  ASSERT_TRUE(DXF2dOpenFileForModel(file.WidePath()));
  CFile other;
  ASSERT_FALSE(other.Open(file.WidePath().c_str(), CFile::modeWrite, nullptr));
  {
    const FileSizeLimit limit(std::filesystem::file_size(file.Path()) + 3);
    EXPECT_EQ(causeOf([] {
                // More than the file's buffer holds, so that writing fails and not closing.
                for (int i = 0; i < 100000; ++i) {
                  exportSession().insertList.push_back(exportSession().root);
                }
                DXF2dCloseFileForModel();
              }),
              CFileException::diskFull);
  }
  EXPECT_TRUE(other.Open(file.WidePath().c_str(), CFile::modeWrite, nullptr));
}

}  // namespace dxf2d
