// --sheet and --projection, as a user meets them.
#include <gtest/gtest.h>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {
namespace {

// A wedge of 4 by 2 by 3. OBJ has y up.
constexpr const char* kWedge =
    "v 0 0 0\nv 4 0 0\nv 4 0 -2\nv 0 0 -2\nv 0 3 -2\nv 4 3 -2\no wedge\n"
    "f 4 3 2 1\nf 1 2 6 5\nf 3 4 5 6\nf 2 3 6\nf 4 1 5\n";

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(Dxf2d, ASheetHoldsAllItsViews) {
  const std::string model = Write("wedge.obj", kWedge);
  ASSERT_EQ(
      Run("export " + model + " --sheet front,top,right --hidden remove -o " + Path("sheet.dxf")),
      kExitDone)
      << error_;
  EXPECT_TRUE(has(out_, "3 views, 3 objects (0 instances shared), ")) << out_;
  EXPECT_TRUE(has(out_, ", 3 labels; x -2.6 to 4, y -2.6 to 3;")) << out_;
  EXPECT_TRUE(has(out_, "skipped: nothing")) << out_;
  ASSERT_EQ(Run("export " + model + " --sheet front,top,right --projection third -o " +
                Path("third.dxf")),
            kExitDone)
      << error_;
  EXPECT_TRUE(has(out_, "x 0 to 6.6, y 0 to 5.6;")) << out_;
}

TEST_F(Dxf2d, ASheetCombinesWithOptionsForLinesAndLabels) {
  const std::string model = Write("wedge.obj", kWedge);
  for (const char* options :
       {"--hidden dash --dash 0.1", "--creases off", "--only wedge", "--labels name",
        "--labels name --label-height 0.3", "--source-units m --units mm", "--outline view",
        "--outline each", "--repair off --creases off", "--scale 1:10"}) {
    ASSERT_EQ(Run("export " + model + " --sheet front,top,iso " + options + " --force -o " +
                  Path("sheet.dxf")),
              kExitDone)
        << options << error_;
    EXPECT_TRUE(has(out_, "3 views, 3 objects")) << options << ": " << out_;
    EXPECT_TRUE(has(out_, "skipped: nothing")) << options << ": " << out_;
    EXPECT_EQ(Run("preview " + Path("sheet.dxf") + " --force -o " + Path("sheet.png")), kExitDone)
        << options << error_;
  }
}

TEST_F(Dxf2d, ASheetExcludesOptionsOfSingleViews) {
  const std::string model = Write("wedge.obj", kWedge);
  for (const char* options :
       {"--sheet front --view top", "--sheet front --cut 1", "--sheet front --cut-at 1",
        "--sheet front --storey EG", "--sheet front,front", "--sheet side", "--sheet ''",
        "--projection third", "--sheet front --projection second"}) {
    EXPECT_EQ(Run("export " + model + " " + options + " -o " + Path("sheet.dxf")), kExitUsage)
        << options;
    ExpectOneSentence();
  }
  EXPECT_EQ(Listing(), "wedge.obj");
}

}  // namespace
}  // namespace dxf2d
