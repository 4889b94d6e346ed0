// What one call to the writer puts into the file.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "dxf/dxf_writer.h"
#include "tests/support/drawing_session.h"

namespace dxf2d {

// Runs `write(writer)` on a writer with an open file and returns what follows the head.
template <class Write>
std::string writtenBy(Write write) {
  const TempFile file;
  DxfWriter writer;
  EXPECT_TRUE(writer.Open(file.WidePath()));
  write(writer);
  writer.Close();
  return bodyOf(readFile(file.Path()));
}

// The drawing right after it was opened.
inline std::string openedDrawing() {
  const TempFile file;
  DxfWriter writer;
  EXPECT_TRUE(writer.Open(file.WidePath()));
  writer.Close();
  return readFile(file.Path());
}

}  // namespace dxf2d
