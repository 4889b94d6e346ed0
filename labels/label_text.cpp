#include "labels/label_text.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "dxf/dxf_writer.h"
#include "dxf/flush_guard.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "ktscene/kt_v.h"
#include "session/record/block_node.h"

namespace dxf2d {

namespace {

// A label as the host's parser reads it. Lengths are in drawing units, the angle in degrees, colors
// from 0 to 1.
struct ParsedLabel {
  double height = 0.0;
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  double angle = 0.0;
  // 'C' centered, 'L' left, 'R' right; with any other the texts are written without a position.
  char16_t alignment = 0;
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
  std::vector<std::u16string> lines;
};

// Group 41 of every text, and the estimated advance of a character in heights.
constexpr double kWidthFactor = 0.8;
constexpr double kNarrowFactor = 0.4;
// Distance between baselines, in heights.
constexpr double kLinePitch = 1.5;
// Half the pitch, in heights: each further line moves the first line of the stack up by this.
constexpr double kHalfPitch = 0.75;
// Angle, in degrees, up to which no group 50 is written.
constexpr double kNegligibleAngle = 0.001;
// Angle, in degrees, below which the layout is not rotated.
constexpr double kUnrotatedAngle = 1e-05;
// A node is tilted when its rotation exceeds this in its angle, in radians, and in the x or y of
// its unit axis.
constexpr double kOutOfPlane = 0.01;
constexpr double kPi = 3.141592653589793;

// The Unicode characters that the platform's wide character functions classify as white space.
bool isWhiteSpace(char16_t c) {
  return (c >= u'\t' && c <= u'\r') || c == u' ' || c == 0x85 || c == 0xa0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200a) || c == 0x2028 || c == 0x2029 || c == 0x202f || c == 0x205f ||
         c == 0x3000;
}

// The label without the two characters of the tag and white space after them.
std::u16string withoutTag(const std::u16string& label) {
  const auto begin = label.begin() + std::min<std::ptrdiff_t>(2, std::ssize(label));
  return {std::find_if_not(begin, label.end(), isWhiteSpace), label.end()};
}

bool parseLabel(const std::u16string& text, ParsedLabel& label) {
  double width = 0.0;
  double depth = 0.0;
  unsigned short alignment = 0;
  bool frame = false;
  unsigned int flags = 0;
  const bool parsed = KtV::ParseLabelString(text, width, label.height, depth, label.x, label.y,
                                            label.z, label.angle, alignment, frame, label.red,
                                            label.green, label.blue, flags, label.lines);
  label.alignment = static_cast<char16_t>(alignment);
  return parsed;
}

// The widest line's estimated width in heights.
double widestLine(const std::vector<std::u16string>& lines) {
  double widest = 0.0;
  for (const std::u16string& line : lines) {
    double width = 0.0;
    for (const char16_t character : line) {
      width += characterAdvance(character, kWidthFactor);
    }
    widest = std::max(widest, width);
  }
  return widest;
}

bool isTiltedOutOfPlane(const BlockNode& node) {
  double axisX = 0.0;
  double axisY = 0.0;
  double axisZ = 0.0;
  double angle = 0.0;
  node.matrix.GetRotation(&axisX, &axisY, &axisZ, &angle, -1);
  return std::fabs(angle) > kOutOfPlane &&
         (std::fabs(axisX) > kOutOfPlane || std::fabs(axisY) > kOutOfPlane);
}

void writeColor(DxfWriter& writer, const ParsedLabel& label, int colorIndex) {
  if (colorIndex >= 1 && colorIndex < 256) {
    writer.WriteColorIndex(colorIndex);
  } else {
    writer.WriteColorRgb(label.red, label.green, label.blue);
  }
}

// Writes the alignment points of one line; `width` is that of the widest line, in heights.
void writePosition(DxfWriter& writer, const ParsedLabel& label, std::size_t line, double width) {
  const double h = label.height;
  const int count = static_cast<int>(label.lines.size());
  const double centering = kHalfPitch * h * (1 - count);
  const double drop = -kLinePitch * h * static_cast<double>(line);
  double x = 0.0;
  double y = drop - centering;
  double z = 0.0;
  const char16_t* justification = nullptr;
  if (label.alignment == u'C') {
    justification = u" 72\n1\n";
  } else if (label.alignment == u'L') {
    x = -(width / 2) * h;
    justification = u" 72\n0\n";
  } else if (label.alignment == u'R') {
    // The sign of the centering differs from "C" and "L": right-aligned labels hang below their
    // anchor. Drawings depend on it.
    x = (width / 2) * h;
    y = drop + centering;
    justification = u" 72\n2\n";
  } else {
    return;
  }
  rotateOffset(x, y, z, label.angle, 0.0, 0.0, 1.0);
  x += label.x;
  y += label.y;
  z += label.z;
  writer.WriteTextPoint10(nullptr, x, y, z);
  writer.WriteTextPoint11(nullptr, x, y, z);
  writer.Write(CString(justification));
  writer.Write(" 73\n2\n");
}

void writeLine(DxfWriter& writer, const ParsedLabel& label, std::size_t line, double width,
               int colorIndex) {
  writer.Write("  0\nTEXT\n");
  writer.WriteReal40(label.height);
  writeColor(writer, label, colorIndex);
  writePosition(writer, label, line, width);
  if (std::fabs(label.angle) > kNegligibleAngle) {
    writer.WriteTextRotation(label.angle);
  }
  writer.WriteTextWidthFactor(kWidthFactor);
  writer.Write("  1\n");
  // Apart from its line feed, which therefore remains when a code page with more bytes than letters
  // cuts the text.
  writer.Write(CString(label.lines[line]));
  writer.Write("\n");
  writer.Write("  7\nSTANDARD\n");
  writer.WriteLayer();
}

}  // namespace

double characterAdvance(char16_t character, double advance) {
  const bool narrow = character == u'!' || character == u'i' || character == u'l';
  return narrow ? advance * kNarrowFactor : advance;
}

void rotateOffset(double& x, double& y, double& z, double angle, double axisX, double axisY,
                  double axisZ) {
  if (std::fabs(angle) < kUnrotatedAngle) {
    return;
  }
  KtMatrix turn;
  turn.Identity();
  turn.Rotate(axisX, axisY, axisZ, angle * kPi / 180.0);
  KtPoint3 offset(x, y, z);
  offset.Mult(turn);
  x = offset.Get0();
  y = offset.Get1();
  z = offset.Get2();
}

bool writeLabel(DxfWriter& writer, BlockNode& node, const std::u16string& label, int colorIndex) {
  ParsedLabel parsed;
  if (!parseLabel(withoutTag(label), parsed)) {
    return false;
  }
  if (isTiltedOutOfPlane(node) || parsed.lines.empty()) {
    return true;
  }
  const FlushGuard flush(writer);
  writer.WriteBlockHeader(node);
  const bool needsWidth = parsed.alignment == u'L' || parsed.alignment == u'R';
  const double width = needsWidth ? widestLine(parsed.lines) : 0.0;
  node.MarkGeometry();
  for (std::size_t line = 0; line < parsed.lines.size(); ++line) {
    writeLine(writer, parsed, line, width, colorIndex);
  }
  writer.WriteBlockEnd();
  return true;
}

}  // namespace dxf2d
