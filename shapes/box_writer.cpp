#include "shapes/box_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "dxf/dxf_writer.h"
#include "dxf/flush_guard.h"
#include "ktscene/kt_run_code.h"
#include "session/export_session.h"
#include "session/record/block_node.h"
#include "shapes/shape_block.h"

namespace dxf2d {

namespace {

struct BoxSize {
  double a;
  double b;
  double c;
};

// Reads three sizes. Returns false if there are more or fewer, or if one is not above 0.
bool readSize(const std::vector<double>& parameters, BoxSize& size) {
  if (parameters.size() != 3) {
    return false;
  }
  size = {parameters[0], parameters[1], parameters[2]};
  return size.a > 0.0 && size.b > 0.0 && size.c > 0.0;
}

// The corners of a horizontal face, counter-clockwise from (a/2, b/2).
std::vector<KtPoint3> levelFace(const BoxSize& size, double z) {
  return {{size.a / 2, size.b / 2, z},
          {-size.a / 2, size.b / 2, z},
          {-size.a / 2, -size.b / 2, z},
          {size.a / 2, -size.b / 2, z}};
}

const std::vector<int>& quadrilateral() {
  static const std::vector<int> indices = {0, 1, 2, 3, KtRunCode::kLineStrip};
  return indices;
}

// 10 to the power of `exponent`, by repeated squaring; for a negative exponent the reciprocal of
// the positive power, as drawings depend on its rounding.
double powerOfTen(int exponent) {
  // Negated as unsigned: the least int has no positive counterpart.
  const auto bits = static_cast<unsigned>(exponent);
  double result = 1.0;
  double square = 10.0;
  for (unsigned rest = exponent < 0 ? 0U - bits : bits; rest != 0; rest >>= 1U) {
    if ((rest & 1U) != 0) {
      result *= square;
    }
    square *= square;
  }
  return exponent < 0 ? 1.0 / result : result;
}

using Corner = std::array<double, 3>;
using Face = std::array<Corner, 4>;

void writeFace(DxfWriter& writer, const BlockNode& node, const Face& face) {
  writer.Write3DFaceBegin();
  writer.WriteLayer();
  writer.WriteColor(node.colorIndex);
  writer.WritePoint10(&node, face[0][0], face[0][1], face[0][2]);
  writer.WritePoint11(&node, face[1][0], face[1][1], face[1][2]);
  writer.WritePoint12(&node, face[2][0], face[2][1], face[2][2]);
  writer.WritePoint13(&node, face[3][0], face[3][1], face[3][2]);
}

std::array<Face, 6> boxFaces(double a, double b, double c) {
  const double x = a / 2;
  const double y = b / 2;
  return {{
      {{{-x, -y, 0}, {x, -y, 0}, {x, y, 0}, {-x, y, 0}}},    // bottom
      {{{-x, -y, c}, {x, -y, c}, {x, y, c}, {-x, y, c}}},    // top
      {{{-x, y, 0}, {x, y, 0}, {x, y, c}, {-x, y, c}}},      // back
      {{{x, y, 0}, {x, -y, 0}, {x, -y, c}, {x, y, c}}},      // right
      {{{-x, y, 0}, {-x, -y, 0}, {-x, -y, c}, {-x, y, c}}},  // left
      {{{-x, -y, 0}, {x, -y, 0}, {x, -y, c}, {-x, -y, c}}},  // front
  }};
}

}  // namespace

bool anglesEqual(double a, double b, int places) {
  const double scale = powerOfTen(places);
  const double roundedA = std::floor(a * scale + 0.5);
  const double roundedB = std::floor(b * scale + 0.5);
  constexpr double kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr double kGreatest = std::numeric_limits<std::int32_t>::max();
  return roundedA == roundedB && roundedA >= kLeast && roundedA <= kGreatest;
}

BoxWriter::BoxWriter() : writer_(exportSession().writer) {}

bool BoxWriter::IsHalfTurn(double angle) const {
  return anglesEqual(angle, 0.0) || anglesEqual(angle, pi_) || anglesEqual(angle, twoPi_);
}

bool BoxWriter::IsQuarterTurn(double angle) const {
  return IsHalfTurn(angle) || anglesEqual(angle, halfPi_) || anglesEqual(angle, threeHalfPi_);
}

bool BoxWriter::WriteBox(BlockNode* node, const std::vector<double>& parameters) {
  if (parameters.size() != 3 || node == nullptr) {
    return false;
  }
  node_ = node;
  double r1 = 0.0;
  double r2 = 0.0;
  double r3 = 0.0;
  double angle = 0.0;
  node->matrix.GetRotation(&r1, &r2, &r3, &angle, -1);
  // Exact comparisons: only the coordinate axes themselves count.
  if (r1 == 0.0 && r2 == 0.0 && r3 != 0.0) {
    return WriteTurnedAboutZ(parameters, angle);
  }
  if (r1 != 0.0 && r2 == 0.0 && IsQuarterTurn(angle)) {
    return WriteQuarterTurnAboutX(parameters, angle);
  }
  if (r1 == 0.0 && r2 != 0.0 && IsQuarterTurn(angle)) {
    return WriteQuarterTurnAboutY(parameters, angle);
  }
  return WriteWireframe(parameters);
}

template <class OutlineOf>
bool BoxWriter::WriteOutline(const std::vector<double>& parameters, OutlineOf outlineOf) {
  BoxSize size{};
  if (writer_ == nullptr || node_ == nullptr || !readSize(parameters, size)) {
    return false;
  }
  return writeShapeBlock(*writer_, *node_, outlineOf(size));
}

bool BoxWriter::WriteTurnedAboutZ(const std::vector<double>& parameters, double /*angle*/) {
  return WriteOutline(parameters, [](const BoxSize& size) {
    return IndexedOutline{levelFace(size, size.c), quadrilateral()};
  });
}

bool BoxWriter::WriteQuarterTurnAboutX(const std::vector<double>& parameters, double angle) {
  return WriteOutline(parameters, [&](const BoxSize& size) {
    if (IsHalfTurn(angle)) {
      return IndexedOutline{levelFace(size, size.c), quadrilateral()};
    }
    const double x = size.a / 2;
    const double y = size.b / 2;
    return IndexedOutline{{{x, -y, size.c}, {-x, -y, size.c}, {-x, -y, 0}, {x, -y, 0}},
                          quadrilateral()};
  });
}

bool BoxWriter::WriteQuarterTurnAboutY(const std::vector<double>& parameters, double angle) {
  return WriteOutline(parameters, [&](const BoxSize& size) {
    if (IsHalfTurn(angle)) {
      return IndexedOutline{levelFace(size, size.c), quadrilateral()};
    }
    const double x = size.a / 2;
    const double y = size.b / 2;
    const double z = size.c / 2;
    return IndexedOutline{{{x, -y, z}, {x, -y, -z}, {x, y, -z}, {x, y, z}}, quadrilateral()};
  });
}

bool BoxWriter::WriteWireframe(const std::vector<double>& parameters) {
  return WriteOutline(parameters, [](const BoxSize& size) {
    IndexedOutline frame;
    frame.points = levelFace(size, 0.0);
    const std::vector<KtPoint3> top = levelFace(size, size.c);
    frame.points.insert(frame.points.end(), top.begin(), top.end());
    constexpr int kLoop = KtRunCode::kLineStrip;
    constexpr int kEdge = KtRunCode::kSegment;
    frame.indices = {0, 1,     2, 3, kLoop, 4, 5, 6,     7, kLoop, 0,
                     4, kEdge, 1, 5, kEdge, 2, 6, kEdge, 3, 7,     kEdge};
    return frame;
  });
}

bool BoxWriter::WriteTopOnly(const std::vector<double>& parameters, double angle) {
  return WriteOutline(parameters, [&](const BoxSize& size) {
    return IndexedOutline{
        anglesEqual(angle, 0.0) ? levelFace(size, size.c) : std::vector<KtPoint3>(),
        quadrilateral()};
  });
}

void BoxWriter::WriteSolid(BlockNode* node, double a, double b, double c) {
  if (node == nullptr || writer_ == nullptr) {
    return;
  }
  node_ = node;
  const FlushGuard flush(*writer_);
  beginShapeBlock(*writer_, *node_);
  for (const Face& face : boxFaces(a, b, c)) {
    writeFace(*writer_, *node_, face);
  }
  writer_->WriteBlockEnd();
}

bool writeBox(const std::vector<double>& parameters) {
  BoxWriter writer;
  return writer.WriteBox(exportSession().currentNode, parameters);
}

}  // namespace dxf2d
