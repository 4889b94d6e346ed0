#include "dxf/flush_guard.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <stdexcept>

#include "platform/cfile_exception.h"
#include "tests/dxf/written_by.h"
#include "tests/support/file_size_limit.h"

namespace dxf2d {

TEST(FlushGuard, WhatWasWrittenIsInTheFileAfterTheScope) {
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  {
    const FlushGuard flush(writer);
    writer.WriteSeqEnd();
    EXPECT_EQ(bodyOf(readFile(file.Path())), "");
  }
  EXPECT_EQ(bodyOf(readFile(file.Path())), "  0\nSEQEND\n");
}

TEST(FlushGuard, WhatPrecededAnExceptionIsInTheFile) {
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  const auto write = [&] {
    const FlushGuard flush(writer);
    writer.WriteSeqEnd();
    throw std::out_of_range("later");
  };
  EXPECT_THROW(write(), std::out_of_range);
  EXPECT_EQ(bodyOf(readFile(file.Path())), "  0\nSEQEND\n");
}

// A writer whose file has no room for anything after the head.
class FullDisk {
 public:
  FullDisk() {
    EXPECT_TRUE(writer_.Open(file_.WidePath()));
    limit_.emplace(std::filesystem::file_size(file_.Path()));
  }

  DxfWriter& Writer() { return writer_; }

 private:
  TempFile file_;
  DxfWriter writer_;
  std::optional<FileSizeLimit> limit_;
};

TEST(FlushGuard, FailingFlushAtTheNormalEndThrows) {
  FullDisk disk;
  const auto write = [&] {
    const FlushGuard flush(disk.Writer());
    disk.Writer().WriteSeqEnd();
  };
  EXPECT_THROW(write(), CFileException);
}

TEST(FlushGuard, FailingFlushDoesNotReplaceTheExceptionOnItsWay) {
  FullDisk disk;
  const auto write = [&] {
    const FlushGuard flush(disk.Writer());
    disk.Writer().WriteSeqEnd();
    throw std::out_of_range("first");
  };
  EXPECT_THROW(write(), std::out_of_range);
}

// Writes when it is destroyed, and notes whether that throws.
class WritesAtItsEnd {
 public:
  WritesAtItsEnd(DxfWriter& writer, bool& threw) : writer_(writer), threw_(threw) {}
  ~WritesAtItsEnd() {
    try {
      const FlushGuard flush(writer_);
      writer_.WriteSeqEnd();
    } catch (const CFileException&) {
      threw_ = true;
    }
  }
  WritesAtItsEnd(const WritesAtItsEnd&) = delete;
  WritesAtItsEnd& operator=(const WritesAtItsEnd&) = delete;

 private:
  DxfWriter& writer_;
  bool& threw_;
};

TEST(FlushGuard, ExceptionFromBeforeTheScopeDoesNotSilenceIt) {
  FullDisk disk;
  bool threw = false;
  const auto fail = [&] {
    const WritesAtItsEnd end(disk.Writer(), threw);
    throw std::out_of_range("first");
  };
  EXPECT_THROW(fail(), std::out_of_range);
  EXPECT_TRUE(threw);
}

}  // namespace dxf2d
