// The labels of dxf2d export as a user asks for them.
#include <gtest/gtest.h>

#include <string>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

constexpr const char* kHouse = "v 0 0 0\nv 4 0 0\nv 0 0 -3\no K\u00FCche\nf 1 2 3\n";
constexpr const char* kGreekLabel =
    R"({"nodes": [{"graphicName": "n", "objectId": "n",
        "label": {"text": "T:1 1 0 0 0 0 0 C 0 0 0 0 0 \"\u03b1\u03b2\""}}]})";

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

using LabelOptions = Dxf2d;

TEST_F(LabelOptions, NoneIsWhatIsDrawnWithout) {
  const std::string model = Write("house.obj", kHouse);
  ASSERT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_FALSE(contains(out_, "label")) << out_;
  ASSERT_EQ(Run("export " + model + " --labels none -o " + Path("none.dxf")), kExitDone) << error_;
  EXPECT_EQ(Read(Path("none.dxf")), Read(Path("plan.dxf")));
}

TEST_F(LabelOptions, NameIsATextNearTheMiddleOffTheLines) {
  const std::string model = Write("house.obj", kHouse);
  ASSERT_EQ(Run("export " + model + " --labels name -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_TRUE(contains(out_,
                       "1 object (0 instances shared), 1 part, 1 polyline, 4 vertices, "
                       "1 label; x 0 to 4, y 0 to 3; "))
      << out_;
  EXPECT_TRUE(contains(out_, "skipped: nothing")) << out_;
  const std::string drawing = Read(Path("plan.dxf"));
  EXPECT_TRUE(contains(drawing, "  0\nTEXT\n 40\n0.040000\n"));
  EXPECT_TRUE(contains(drawing, " 72\n1\n 73\n2\n 41\n0.800000\n  1\nK\\U+00FCche\n"));
  EXPECT_TRUE(contains(drawing, " 10\n2.480000\n 20\n1.500000\n"));
}

TEST_F(LabelOptions, LabelsAreInTheDefaultPenUnlessToldOtherwise) {
  Write("paint.mtl", "newmtl paint\nKd 0 0 1\n");
  const std::string blue =
      Write("blue.obj", "mtllib paint.mtl\nusemtl paint\n" + std::string(kHouse));
  ASSERT_EQ(Run("export " + blue + " --labels name -o " + Path("plan.dxf")), kExitDone) << error_;
  const std::string drawing = Read(Path("plan.dxf"));
  EXPECT_TRUE(contains(drawing, "POLYLINE\n  8\n0\n 62\n5\n"));
  EXPECT_TRUE(contains(drawing, "TEXT\n 40\n0.040000\n 62\n7\n"));
  ASSERT_EQ(Run("export --force " + blue + " --labels name --label-color 3 -o " + Path("plan.dxf")),
            kExitDone)
      << error_;
  EXPECT_TRUE(contains(Read(Path("plan.dxf")), "TEXT\n 40\n0.040000\n 62\n3\n"));
}

TEST_F(LabelOptions, HeightIsTheLetters) {
  const std::string model = Write("house.obj", kHouse);
  ASSERT_EQ(Run("export " + model + " --labels name --label-height 0.25 -o " + Path("plan.dxf")),
            kExitDone)
      << error_;
  EXPECT_TRUE(contains(Read(Path("plan.dxf")), "  0\nTEXT\n 40\n0.250000\n"));
}

TEST_F(LabelOptions, WrongUsageIsExplained) {
  const std::string model = Write("house.obj", kHouse);
  const std::string command = "export " + model + " -o " + Path("plan.dxf");
  EXPECT_EQ(Run(command + " --labels"), kExitUsage);
  EXPECT_EQ(Run(command + " --labels all"), kExitUsage);
  EXPECT_EQ(Run(command + " --label-height 1"), kExitUsage);
  EXPECT_TRUE(contains(error_, "--labels")) << error_;
  for (const char* height : {"0", "-1", "nan", "inf", "1e16", "0.0000001", "tall", ""}) {
    EXPECT_EQ(Run(command + " --labels name --label-height='" + height + "'"), kExitUsage)
        << height;
  }
  for (const char* page : {"437", "0", "3", "-1", "1252.5", "latin1", "4294968548"}) {
    EXPECT_EQ(Run(command + " --codepage=" + page), kExitUsage) << page;
  }
  EXPECT_EQ(Listing(), "house.obj");
}

TEST_F(LabelOptions, AnUnknownCodePageIsToldWhichThereAre) {
  const std::string scene = Write("greek.json", kGreekLabel);
  EXPECT_EQ(Run("export " + scene + " --codepage 437 -o " + Path("plan.dxf")), kExitUsage);
  ExpectOneSentence();
  EXPECT_TRUE(contains(error_, "1250 to 1258, 874, 932, 936, 949, 950 or 65001")) << error_;
}

TEST_F(LabelOptions, CodePageIsThatOfASceneFilesTexts) {
  const std::string scene = Write("greek.json", kGreekLabel);
  ASSERT_EQ(Run("export " + scene + " -o " + Path("west.dxf")), kExitDone) << error_;
  EXPECT_TRUE(contains(Read(Path("west.dxf")), "  1\n??\n"));
  ASSERT_EQ(Run("export " + scene + " --codepage 1253 -o " + Path("greek.dxf")), kExitDone);
  EXPECT_TRUE(contains(Read(Path("greek.dxf")), "  1\n\xE1\xE2\n"));
}

TEST_F(LabelOptions, TextThatTheCodePageCannotTakeIsQuoted) {
  std::string scene = kGreekLabel;
  const std::string letters = R"(\u03b1\u03b2)";
  scene.replace(scene.find(letters), letters.size(), "\u65e5\u672c\u8a9e\u65e5\u672c");
  const std::string path = Write("japanese.json", scene);
  EXPECT_EQ(Run("export " + path + " --codepage 65001 -o " + Path("plan.dxf")), kExitWriteFailed);
  ExpectOneSentence();
  EXPECT_TRUE(contains(error_, "\"\u65e5\u672c\u8a9e\u65e5\u672c\"")) << error_;
  EXPECT_TRUE(contains(error_, "code page 65001")) << error_;
  EXPECT_TRUE(contains(error_, "code page 65001; choose another --codepage")) << error_;
  EXPECT_EQ(Listing(), "japanese.json");
}

TEST_F(LabelOptions, CodePageDoesNotReachTheLabelsOfModels) {
  const std::string model = Write("house.obj", kHouse);
  ASSERT_EQ(Run("export " + model + " --labels name -o " + Path("1252.dxf")), kExitDone);
  ASSERT_EQ(Run("export " + model + " --labels name --codepage 932 -o " + Path("932.dxf")),
            kExitDone);
  EXPECT_EQ(Read(Path("932.dxf")), Read(Path("1252.dxf")));
}

TEST_F(LabelOptions, UnseenObjectsAreCountedBesideLabels) {
  // A square and a line on end.
  const std::string model = Write("mast.obj",
                                  "v 0 0 0\nv 4 0 0\nv 4 0 -4\nv 0 0 -4\nv 1 0 -1\nv 1 9 -1\n"
                                  "o floor\nf 1 2 3 4\no mast\nl 5 6\n");
  ASSERT_EQ(Run("export " + model + " --labels name -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_TRUE(contains(out_, "1 object (")) << out_;
  EXPECT_TRUE(contains(out_, ", 1 label; ")) << out_;
  EXPECT_TRUE(contains(out_, "skipped: 1 object of which no edge shows")) << out_;
}

}  // namespace

}  // namespace dxf2d
