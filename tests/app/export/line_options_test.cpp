// --hidden, --cut, --outline and what goes with them, as a user meets them.
#include <gtest/gtest.h>

#include <algorithm>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

// A square of 4 by 4 at height 2 and a triangle below it. OBJ has y up.
constexpr const char* kLayers =
    "v 0 2 0\nv 4 2 0\nv 4 2 -4\nv 0 2 -4\no roof\nf 1 2 3 4\n"
    "v 1 0 -1\nv 2 0 -1\nv 2 0 -2\no below\nf 5 6 7\n";

// A prism over a triangle, from 0 to 2 in height.
constexpr const char* kPrism =
    "v 0 0 0\nv 3 0 0\nv 0 0 -3\nv 0 2 0\nv 3 2 0\nv 0 2 -3\no prism\n"
    "f 3 2 1\nf 4 5 6\nf 1 2 5 4\nf 2 3 6 5\nf 3 1 4 6\n";

// The same without a side.
constexpr const char* kOpenPrism =
    "v 0 0 0\nv 3 0 0\nv 0 0 -3\nv 0 2 0\nv 3 2 0\nv 0 2 -3\no prism\n"
    "f 3 2 1\nf 4 5 6\nf 1 2 5 4\nf 2 3 6 5\n";

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(Dxf2d, HiddenLinesShowUnlessToldOtherwise) {
  const std::string model = Write("layers.obj", kLayers);
  ASSERT_EQ(Run("export " + model + " -o " + Path("plain.dxf")), kExitDone) << error_;
  EXPECT_TRUE(has(out_, "2 objects (0 instances shared), 2 parts")) << out_;
  ASSERT_EQ(Run("export " + model + " --hidden show -o " + Path("show.dxf")), kExitDone);
  EXPECT_EQ(Read(Path("show.dxf")), Read(Path("plain.dxf")));
  ASSERT_EQ(Run("export " + model + " --hidden remove -o " + Path("remove.dxf")), kExitDone);
  EXPECT_TRUE(has(out_, "1 object (0 instances shared), 1 part, 1 polyline, 5 vertices")) << out_;
  EXPECT_TRUE(has(out_, "skipped: 1 object of which no edge shows in this view")) << out_;
}

TEST_F(Dxf2d, HiddenLinesArePiecesWhereThereIsNoDashedLineType) {
  const std::string model = Write("layers.obj", kLayers);
  ASSERT_EQ(
      Run("export " + model + " --hidden dash --dash 0.2 --release plain -o " + Path("plan.dxf")),
      kExitDone)
      << error_;
  // A perimeter of 3.41421 has 11 dashes of 0.2.
  EXPECT_TRUE(has(out_, "2 objects (0 instances shared), 2 parts, 12 polylines")) << out_;
}

// A field of pyramids, overlapping in plan.
std::string pyramids(int side) {
  std::string obj;
  for (int i = 0; i < side * side; ++i) {
    const int x = 2 * (i % side);
    const int z = 2 * (i / side);
    const auto corner = [&](int dx, int y, int dz) {
      obj += "v " + std::to_string(x + dx) + " " + std::to_string(y) + " " +
             std::to_string(z + dz) + "\n";
    };
    corner(0, i % 3, 0);
    corner(3, i % 3, 0);
    corner(3, i % 3, 3);
    corner(0, i % 3, 3);
    corner(1, 4 + i % 5, 1);
    const auto face = [&](int a, int b) {
      obj += "f " + std::to_string(5 * i + a) + " " + std::to_string(5 * i + b) + " " +
             std::to_string(5 * i + 5) + "\n";
    };
    face(1, 2);
    face(2, 3);
    face(3, 4);
    face(4, 1);
  }
  return obj;
}

TEST_F(Dxf2d, ThreadsDrawWhatOneDraws) {
  const std::string model = Write("pyramids.obj", pyramids(20));
  for (const std::string lines :
       {"", "--repair off --creases 20", "--hidden remove", "--hidden dash", "--outline each",
        "--cut 3", "--cut 3 --hidden remove"}) {
    const std::string command = "export " + model + " -f " + lines;
    ASSERT_EQ(Run(command + " --threads 1 -o " + Path("one.dxf")), kExitDone) << error_;
    for (const std::string threads : {"2", "17"}) {
      ASSERT_EQ(
          Run(command + " --threads " + threads + " -o " + Path("many.dxf"), "KT_THREADS_FROM=0"),
          kExitDone)
          << error_;
      EXPECT_EQ(Read(Path("many.dxf")), Read(Path("one.dxf"))) << lines << ", " << threads;
    }
  }
}

// The system gives no room for 64 stacks of 8 MiB: fewer threads draw.
TEST_F(Dxf2d, ManyThreadsNeedNoMoreOfTheMemoryLimit) {
  const std::string model = Write("pyramids.obj", pyramids(20));
  const std::string command = "export " + model + " -f --hidden remove";
  ASSERT_EQ(Run(command + " --threads 1 -o " + Path("one.dxf")), kExitDone) << error_;
  ASSERT_EQ(
      Run(command + " --threads 64 --max-memory 200 -o " + Path("many.dxf"), "KT_THREADS_FROM=0"),
      kExitDone)
      << error_;
  EXPECT_EQ(Read(Path("many.dxf")), Read(Path("one.dxf")));
}

TEST_F(Dxf2d, ThreadsAreOneAtLeast) {
  const std::string model = Write("layers.obj", kLayers);
  for (const std::string threads : {"0", "65", "many"}) {
    EXPECT_EQ(Run("export " + model + " --threads " + threads + " -o " + Path("plan.dxf")),
              kExitUsage);
    ExpectOneSentence();
    EXPECT_TRUE(has(error_, "a number from 1 to 64")) << error_;
  }
}

TEST_F(Dxf2d, ACutDrawsItsLoop) {
  const std::string model = Write("prism.obj", kPrism);
  ASSERT_EQ(Run("export " + model + " --cut 1 --hidden remove --strict -o " + Path("plan.dxf")),
            kExitDone)
      << error_;
  EXPECT_TRUE(has(out_, "1 part, 1 polyline, 4 vertices")) << out_;
  ASSERT_EQ(Run("export " + model + " --cut-at=-1 -o " + Path("none.dxf")), kExitNothingToDraw);
  ExpectOneSentence();
  EXPECT_TRUE(has(error_, "nothing of it shows below the cut")) << error_;
}

TEST_F(Dxf2d, SeveralHeightsAreSeveralDrawings) {
  const std::string model = Write("prism.obj", kPrism);
  ASSERT_EQ(Run("export " + model + " --cut 0.5 --cut 1.50 -o '" + Path("plan-%h.dxf") + "'"),
            kExitDone)
      << error_;
  EXPECT_EQ(std::count(out_.begin(), out_.end(), '\n'), 2) << out_;
  EXPECT_EQ(Listing(), "plan-0.5.dxf plan-1.50.dxf prism.obj");
  EXPECT_EQ(Run("export " + model + " --cut 0.5 --cut 1.5 -o " + Path("plan.dxf")), kExitUsage);
  EXPECT_TRUE(has(error_, "would be the drawing of several cuts; write %h")) << error_;
}

TEST_F(Dxf2d, ASingleHeightLeavesPercentSignsAlone) {
  const std::string model = Write("prism.obj", kPrism);
  ASSERT_EQ(Run("export " + model + " --cut 1 -o '" + Path("plan-%h.dxf") + "'"), kExitDone);
  EXPECT_EQ(Listing(), "plan-%h.dxf prism.obj");
}

TEST_F(Dxf2d, OpenEndsFailOnlyWithStrict) {
  const std::string model = Write("open.obj", kOpenPrism);
  EXPECT_EQ(Run("export " + model + " --cut 1 -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_TRUE(has(out_, "; gaps: 2 open ends of cut lines;")) << out_;
  EXPECT_EQ(Run("export " + model + " --cut 1 --hidden remove --force -o " + Path("plan.dxf")),
            kExitDone)
      << error_;
  EXPECT_TRUE(has(out_, "; gaps: 2 open ends of cut lines, 1 cut object")) << out_;
  EXPECT_EQ(Run("export " + model + " --cut 1 --strict -o " + Path("other.dxf")), kExitInput);
  ExpectOneSentence();
  EXPECT_TRUE(has(error_, "its cut lines have 2 open ends")) << error_;
  EXPECT_EQ(Listing(), "open.obj plan.dxf");
}

TEST_F(Dxf2d, TheOutlineOfTheViewIsOneObject) {
  const std::string model = Write("layers.obj", kLayers);
  ASSERT_EQ(Run("export " + model + " --outline view -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_TRUE(has(out_, "1 object (0 instances shared), 1 part, 1 polyline, 5 vertices")) << out_;
  ASSERT_EQ(Run("export " + model + " --outline each -o " + Path("each.dxf")), kExitDone) << error_;
  EXPECT_TRUE(has(out_, "2 objects (0 instances shared), 2 parts, 2 polylines, 9 vertices"))
      << out_;
}

TEST_F(Dxf2d, OptionsForLinesThatMeanNothingTogetherAreRefused) {
  const std::string model = Write("layers.obj", kLayers);
  for (const char* options :
       {"--outline view --hidden remove", "--dash 1", "--dash 1 --hidden remove",
        "--outline view --labels name", "--storey EG --cut 1", "--storey EG --view front",
        "--storey EG", "--storey ''", "--cut 0", "--cut high", "--cut 1 --cut 1", "--hidden yes",
        "--dash 0 --hidden dash", "--outline all"}) {
    EXPECT_EQ(Run("export " + model + " " + options + " -o '" + Path("plan-%h.dxf") + "'"),
              kExitUsage)
        << options;
    ExpectOneSentence();
  }
}

}  // namespace

}  // namespace dxf2d
