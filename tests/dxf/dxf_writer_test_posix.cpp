#include <gtest/gtest.h>

#include <cstdio>

#include "dxf/dxf_writer.h"
#include "platform/path_text.h"
#include "tests/dxf/written_by.h"

namespace dxf2d {

TEST(DxfWriterOpen, HeadIsInTheFileAtOnce) {
  const TempFile file;
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(file.WidePath()));
  EXPECT_EQ(readFile(file.Path()), openedDrawing());
}

TEST(DxfWriterOpen, FileNameNeedNotBeUtf8) {
  const std::string path = testing::TempDir() + "dxf2d_\xFF\xFE_name.dxf";
  DxfWriter writer;
  ASSERT_TRUE(writer.Open(pathFromBytes(path)));
  writer.Close();
  EXPECT_EQ(readFile(path), openedDrawing());
  std::filesystem::remove(path);
}

}  // namespace dxf2d
