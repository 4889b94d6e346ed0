#include "dxf/flushed.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/dxf/written_by.h"

TEST(Flushed, WhatWasWrittenIsInTheFileAfterwards) {
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  EXPECT_TRUE(flushed(writer, [](DxfWriter& open) {
    open.WriteSeqEnd();
    return true;
  }));
  EXPECT_EQ(bodyOf(readFile(file.Path())), "  0\nSEQEND\n");
}

TEST(Flushed, ReturnsWhatTheWritingReturns) {
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  EXPECT_FALSE(flushed(writer, [](DxfWriter&) { return false; }));
}

TEST(Flushed, WhatPrecededAnErrorIsInTheFile) {
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  const auto write = [](DxfWriter& open) -> bool {
    open.WriteSeqEnd();
    throw std::out_of_range("later");
  };
  EXPECT_THROW(flushed(writer, write), std::out_of_range);
  EXPECT_EQ(bodyOf(readFile(file.Path())), "  0\nSEQEND\n");
}

TEST(Flushed, ReportsTheWritingsErrorAndNotThatOfTheFlush) {
  DxfWriter closed;
  const auto write = [](DxfWriter&) -> bool { throw std::out_of_range("first"); };
  EXPECT_THROW(flushed(closed, write), std::out_of_range);
}
