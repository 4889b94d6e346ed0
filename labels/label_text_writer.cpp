#include "labels/label_text_writer.h"

#include <algorithm>
#include <cmath>

#include "dxf/dxf_writer.h"
#include "dxf/flushed.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "ktscene/kt_v.h"
#include "session/block_node.h"

namespace {

// Group 41 of every text, and the estimated advance of a character in heights.
constexpr double kWidthFactor = 0.8;
constexpr double kNarrowFactor = 0.4;
// Distance between baselines, in heights.
constexpr double kLinePitch = 1.5;
// Half the pitch: what each line more moves the stack's first line up.
constexpr double kHalfPitch = 0.75;
// Degrees up to which no rotation is written.
constexpr double kNegligibleAngle = 0.001;
// Degrees below which the layout is not turned.
constexpr double kUnturnedAngle = 1e-05;
// Of the node's rotation: the angle in radians, and the axis's x and y.
constexpr double kOutOfPlane = 0.01;
constexpr double kPi = 3.141592653589793;

// White space as the platform's wide character class has it, in Unicode.
bool isWhiteSpace(char16_t c) {
  return (c >= u'\t' && c <= u'\r') || c == u' ' || c == 0x85 || c == 0xa0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200a) || c == 0x2028 || c == 0x2029 || c == 0x202f || c == 0x205f ||
         c == 0x3000;
}

// What follows the two characters of the tag, without leading white space.
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

}  // namespace

double characterAdvance(char16_t character, double advance) {
  const bool narrow = character == u'!' || character == u'i' || character == u'l';
  return narrow ? advance * kNarrowFactor : advance;
}

void rotateOffset(double& x, double& y, double& z, double angle, double axisX, double axisY,
                  double axisZ) {
  if (std::fabs(angle) < kUnturnedAngle) {
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

LabelTextWriter::LabelTextWriter() : writer_(DxfWriter::Instance()) {}

bool LabelTextWriter::WriteLabel(BlockNode* node, const std::u16string& label, int colorIndex) {
  if (node == nullptr || writer_ == nullptr) {
    return false;
  }
  node_ = node;
  ParsedLabel parsed;
  if (!parseLabel(withoutTag(label), parsed)) {
    return false;
  }
  if (IsTiltedOutOfPlane() || parsed.lines.empty()) {
    return true;
  }
  return flushed(*writer_, [&](DxfWriter& writer) {
    writer.WriteBlockHeader(*node_);
    WriteLines(parsed, colorIndex);
    writer.WriteBlockEnd();
    return true;
  });
}

bool LabelTextWriter::IsTiltedOutOfPlane() const {
  if (node_ == nullptr) {
    return false;
  }
  KtMatrix matrix;
  matrix.Init(node_->matrix);
  double axisX = 0.0;
  double axisY = 0.0;
  double axisZ = 0.0;
  double angle = 0.0;
  matrix.GetRotation(&axisX, &axisY, &axisZ, &angle, -1);
  return std::fabs(angle) > kOutOfPlane &&
         (std::fabs(axisX) > kOutOfPlane || std::fabs(axisY) > kOutOfPlane);
}

void LabelTextWriter::WriteLines(const ParsedLabel& label, int colorIndex) {
  const bool needsWidth = label.alignment == u'L' || label.alignment == u'R';
  const double width = needsWidth ? widestLine(label.lines) : 0.0;
  node_->MarkGeometry();
  // From here on without the node: its block is placed as a whole, so its texts are written as laid
  // out.
  node_ = nullptr;
  DxfWriter& writer = *writer_;
  for (std::size_t line = 0; line < label.lines.size(); ++line) {
    writer.Write("  0\nTEXT\n");
    writer.WriteReal40(label.height);
    WriteColorOf(label, colorIndex);
    WritePlace(label, line, width);
    if (std::fabs(label.angle) > kNegligibleAngle) {
      writer.WriteTextRotation(label.angle);
    }
    writer.WriteTextWidthFactor(kWidthFactor);
    writer.Write("  1\n");
    // In a write of its own: a code page that needs more bytes than letters cuts the text and never
    // the line feed after it.
    writer.Write(CString(label.lines[line]));
    writer.Write("\n");
    writer.Write("  7\nSTANDARD\n");
    writer.WriteLayer();
  }
}

void LabelTextWriter::WriteColorOf(const ParsedLabel& label, int colorIndex) {
  if (colorIndex >= 1 && colorIndex < 256) {
    writer_->WriteColorIndex(colorIndex);
  } else {
    writer_->WriteColorRgb(label.red, label.green, label.blue);
  }
}

void LabelTextWriter::WritePlace(const ParsedLabel& label, std::size_t line, double width) {
  const double h = label.height;
  const int count = static_cast<int>(label.lines.size());
  const double centring = kHalfPitch * h * (1 - count);
  const double drop = -kLinePitch * h * static_cast<double>(line);
  double x = 0.0;
  double y = drop - centring;
  double z = 0.0;
  const char16_t* justification = nullptr;
  if (label.alignment == u'C') {
    justification = u" 72\n1\n";
  } else if (label.alignment == u'L') {
    x = -(width / 2) * h;
    justification = u" 72\n0\n";
  } else if (label.alignment == u'R') {
    // The sign of the centring differs from "C" and "L": right-aligned labels hang below their
    // anchor. Drawings depend on it.
    x = (width / 2) * h;
    y = drop + centring;
    justification = u" 72\n2\n";
  } else {
    return;
  }
  rotateOffset(x, y, z, label.angle, 0.0, 0.0, 1.0);
  x += label.x;
  y += label.y;
  z += label.z;
  writer_->WriteTextPoint10(node_, x, y, z);
  writer_->WriteTextPoint11(node_, x, y, z);
  writer_->Write(CString(justification));
  writer_->Write(" 73\n2\n");
}
