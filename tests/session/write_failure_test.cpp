// Disks that are full from the start.
#include <gtest/gtest.h>

#include "session/callbacks.h"
#include "tests/session/next_export.h"
#include "tests/support/system_files.h"

namespace dxf2d {

TEST(WriteFailure, FullDeviceIsReportedByOpen) {
  EXPECT_EQ(causeOf([] { DXF2dOpenFileForModel(kFullDisk); }), CFileException::diskFull);
  EXPECT_EQ(causeOf([] { DXF2dCloseFileForModel(); }), CFileException::diskFull);
  EXPECT_FALSE(DXF2dCloseFileForModel());
  expectNextExportIsRight();
}

TEST(WriteFailure, OpenThatFailedNeedsNoClose) {
  EXPECT_EQ(causeOf([] { DXF2dOpenFileForModel(kFullDisk); }), CFileException::diskFull);
  expectNextExportIsRight();
}

}  // namespace dxf2d
