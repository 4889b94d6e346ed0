// What the summary says about the meshes of a model.
#include <gtest/gtest.h>

#include <string>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string vertex(double x, double y, double z) {
  return "v " + std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(z) + "\n";
}

TEST_F(Dxf2d, CountsWeldedVertices) {
  // Two triangles that share an edge, with corners of their own.
  const std::string model = Write("apart.obj",
                                  "v 0 0 0\nv 1 0 0\nv 0 0 -1\nv 1 0 0\nv 1 0 -1\nv 0 0 -1\n"
                                  "f 1 2 3\nf 4 5 6\n");
  ASSERT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_TRUE(has(out_, "meshes: 2 vertices welded")) << out_;
  ASSERT_EQ(Run("export " + model + " --repair off -o " + Path("off.dxf")), kExitDone) << error_;
  EXPECT_FALSE(has(out_, "welded")) << out_;
}

TEST_F(Dxf2d, ToldWeldsAreOfTheWholeDiagonal) {
  // Two squares 0.5 apart, and a third far away: the diagonal is a million.
  std::string squares;
  for (const double left : {0.0, 1.5, 1e6}) {
    squares +=
        vertex(left, 0, 0) + vertex(left + 1, 0, 0) + vertex(left + 1, 0, -1) + vertex(left, 0, -1);
  }
  const std::string model = Write("far.obj", squares + "f 1 2 3 4\nf 5 6 7 8\nf 9 10 11 12\n");
  ASSERT_EQ(Run("export " + model + " -o " + Path("plan.dxf")), kExitDone) << error_;
  EXPECT_FALSE(has(out_, "welded")) << out_;
  ASSERT_EQ(Run("export " + model + " --weld 0.0000006 -o " + Path("told.dxf")), kExitDone);
  EXPECT_TRUE(has(out_, "2 vertices welded")) << out_;
}

TEST_F(Dxf2d, TellsWhereTJunctionsWereNotSought) {
  // Triangles whose bases all lie on one line and overlap.
  std::string model;
  std::string faces;
  for (int i = 0; i < 300; ++i) {
    const double left = i * 0.01;
    model += vertex(left, 0, 0) + vertex(1000 - left, 0, 0) + vertex(500, 1.0 + i, -1 - left);
    faces += "f -" + std::to_string(3 * (300 - i)) + " -" + std::to_string(3 * (300 - i) - 1) +
             " -" + std::to_string(3 * (300 - i) - 2) + "\n";
  }
  ASSERT_EQ(Run("export " + Write("line.obj", model + faces) + " -o " + Path("plan.dxf")),
            kExitDone)
      << error_;
  EXPECT_TRUE(has(out_, "border edges not searched for T-junctions")) << out_;
}

}  // namespace

}  // namespace dxf2d
