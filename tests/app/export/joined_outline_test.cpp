// Closed outlines of solids, as a user meets them.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <variant>

#include "app/cli/exit_code.h"
#include "app/drawing/dxf_reader.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {

namespace {

struct Corner {
  double x;
  double y;
  double z;
};

Corner between(const Corner& one, const Corner& other) {
  return {(one.x + other.x) / 2, (one.y + other.y) / 2, (one.z + other.z) / 2};
}

// A lid of 11 by 5 by 1 with ten square holes, as triangles that share no vertices. Its upper edges
// are divided more often than its lower ones, as where two tools made the two sides, so that lines
// of unequal length lie on one another in plan.
class Lid {
 public:
  std::string Text() {
    for (int x = 0; x < kLength; ++x) {
      for (int y = 0; y < kWidth; ++y) {
        if (IsSolid(x, y)) {
          AddCell(x, y);
        }
      }
    }
    return text_.str();
  }

 private:
  static constexpr int kLength = 11;
  static constexpr int kWidth = 5;

  static bool IsSolid(int x, int y) {
    const bool isInside = x >= 0 && x < kLength && y >= 0 && y < kWidth;
    const bool isHole = x % 2 == 1 && y % 2 == 1;
    return isInside && !isHole;
  }

  void AddCell(int x, int y) {
    const double a = x;
    const double b = y;
    const Corner corners[] = {{a, b, 0}, {a + 1, b, 0}, {a + 1, b + 1, 0}, {a, b + 1, 0}};
    const bool isWall[] = {!IsSolid(x, y - 1), !IsSolid(x + 1, y), !IsSolid(x, y + 1),
                           !IsSolid(x - 1, y)};
    AddTriangle(corners[0], corners[2], corners[1]);
    AddTriangle(corners[0], corners[3], corners[2]);
    const Corner middle{a + 0.5, b + 0.5, 1};
    for (int side = 0; side < 4; ++side) {
      const Corner begin = corners[side];
      const Corner end = corners[(side + 1) % 4];
      const Corner upperBegin{begin.x, begin.y, 1};
      const Corner upperEnd{end.x, end.y, 1};
      const Corner upperMiddle = between(upperBegin, upperEnd);
      AddTriangle(middle, upperBegin, upperMiddle);
      AddTriangle(middle, upperMiddle, upperEnd);
      if (isWall[side]) {
        AddTriangle(begin, end, upperMiddle);
        AddTriangle(begin, upperMiddle, upperBegin);
        AddTriangle(end, upperEnd, upperMiddle);
      }
    }
  }

  void AddTriangle(const Corner& one, const Corner& two, const Corner& three) {
    for (const Corner& corner : {one, two, three}) {
      text_ << "v " << corner.x << " " << corner.y << " " << corner.z << "\n";
    }
    vertices_ += 3;
    text_ << "f " << vertices_ - 2 << " " << vertices_ - 1 << " " << vertices_ << "\n";
  }

  std::ostringstream text_;
  int vertices_ = 0;
};

struct Lines {
  int closed = 0;
  int open = 0;
};

Lines linesOf(const Drawing& drawing) {
  Lines lines;
  for (const DrawingBlock& block : drawing.blocks) {
    for (const DrawingEntity& entity : block.entities) {
      if (const auto* const polyline = std::get_if<PolylineEntity>(&entity)) {
        ++(polyline->closed ? lines.closed : lines.open);
      }
    }
  }
  return lines;
}

TEST_F(Dxf2d, ALidWithTenHolesIsElevenClosedPolylines) {
  const std::string model = Write("lid.obj", Lid().Text());
  ASSERT_EQ(Run("export " + model + " --up z --release plain -o " + Path("plain.dxf")), kExitDone)
      << error_;
  const Lines plain = linesOf(readDrawing(Path("plain.dxf")));
  EXPECT_GT(plain.open, 11);
  ASSERT_EQ(Run("export " + model + " --up z --release r2000 -o " + Path("lid.dxf")), kExitDone)
      << error_;
  const Lines joined = linesOf(readDrawing(Path("lid.dxf")));
  EXPECT_EQ(joined.closed, 11);
  EXPECT_EQ(joined.open, 0);
}

}  // namespace

}  // namespace dxf2d
