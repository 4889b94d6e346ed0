// The primitives that entities are made of: each writes a fixed sequence of groups.
#include <array>
#include <cmath>
#include <string_view>

#include "dxf/dxf_writer.h"
#include "dxf/palette/color_palette.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_point3.h"
#include "platform/number_format.h"
#include "session/record/block_node.h"

namespace dxf2d {

namespace {

// Tilt, in radians, above which a placement is not a plan view.
constexpr double kPlacementTilt = 0.01;
// Rotation about z, in radians, up to which no group 50 is written.
constexpr double kNegligibleTurn = 0.001;
constexpr double kDegreesPerRadian = 57.29577951308232;
// Color index written for a node that received no material.
constexpr int kColorWithoutMaterial = 254;
// White, written for an index outside the palette.
constexpr int kColorOutsidePalette = 7;

KtPoint3 transformed(const BlockNode* node, double x, double y, double z) {
  if (node == nullptr) {
    // What multiplying by the identity does: -0 becomes 0 and nothing else changes.
    return {x + 0.0, y + 0.0, z + 0.0};
  }
  KtPoint3 point(x, y, z);
  point.Mult(node->matrix);
  return point;
}

// Without a node a text's point stays exactly as it is: not even -0 changes.
KtPoint3 transformedIfNode(const BlockNode* node, double x, double y, double z) {
  return node != nullptr ? transformed(node, x, y, z) : KtPoint3(x, y, z);
}

// Everything but the decimal separator of a rare locale is ASCII; the separator precedes the six
// decimals.
bool isAsciiReal(std::string_view text) {
  constexpr std::size_t kFromSeparator = 7;
  return text.size() < kFromSeparator ||
         static_cast<unsigned char>(text[text.size() - kFromSeparator]) < 0x80;
}

double finiteOrZero(double value) { return std::isfinite(value) ? value : 0.0; }

}  // namespace

void DxfWriter::WriteReal(double value) {
  // Formatted in the file's own buffer: a drawing is mostly reals.
  char* room = file_.Reserve(kFixed6Size + 1);
  const std::size_t length = formatFixed6(value, room);
  if (isAsciiReal({room, length})) {
    room[length] = '\n';
    file_.Commit(length + 1);
    return;
  }
  std::array<char16_t, kFixed6Size + 2> line;
  const std::size_t units = formatFixed6(value, line.data());
  line[units] = u'\n';
  line[units + 1] = u'\0';
  WriteWide({line.data(), units + 1});
}

void DxfWriter::WriteInteger(int value) {
  CString line;
  line.Format(u"%d\n", value);
  Write(line);
}

void DxfWriter::WriteLayer() { Write("  8\n0\n"); }

void DxfWriter::WriteLineLayer() { Write("  8\n0\n"); }

// NOLINTBEGIN(performance-unnecessary-value-param): names are passed by value, as the framework's
// strings are everywhere.
void DxfWriter::WriteBlockName(CString name) {
  Write("  2\n");
  Write(name);
}

void DxfWriter::WriteName3(CString name) {
  Write("  3\n");
  Write(name);
}

// NOLINTEND(performance-unnecessary-value-param)

void DxfWriter::WriteBlockBegin() {
  Write("  0\nBLOCK\n");
  WriteLayer();
}

void DxfWriter::WriteBlockFlags() { Write(" 70\n64\n"); }

void DxfWriter::WriteBlockEnd() {
  Write("  0\nENDBLK\n");
  WriteLayer();
}

void DxfWriter::WriteBlockHeader(const BlockNode& node) {
  const CString name = node.Name();
  WriteBlockBegin();
  WriteBlockName(name);
  WriteBlockFlags();
  WriteBasePoint(0.0, 0.0, 0.0);
  WriteName3(name);
}

void DxfWriter::WriteInsert(const BlockNode* node) {
  Write("  0\nINSERT\n");
  WriteLayer();
  Write(" 66\n    1\n");
  WriteBlockName(node->Name());
  WriteBasePoint(0.0, 0.0, 0.0);
  Write("  0\nSEQEND\n");
}

void DxfWriter::WriteInsertPlacement(const KtMatrix& matrix) {
  double x = finiteOrZero(matrix.Data()[12]);
  double y = finiteOrZero(matrix.Data()[13]);
  double tiltX = 0.0;
  double tiltY = 0.0;
  double turn = 0.0;
  matrix.GetRotateKoef(&tiltX, &tiltY, &turn);
  if (std::fabs(tiltX) + std::fabs(tiltY) > kPlacementTilt) {
    x = 0.0;
    y = 0.0;
    turn = 0.0;
  }
  WriteBasePoint(x, y, 0.0);
  if (std::fabs(turn) > kNegligibleTurn) {
    WriteReal50(turn * kDegreesPerRadian);
  }
}

void DxfWriter::WriteBasePoint(double x, double y, double z) {
  Write(" 10\n");
  WriteReal(x);
  Write(" 20\n");
  WriteReal(y);
  Write(" 30\n");
  WriteReal(z);
}

void DxfWriter::WriteFlat(const char (&codeX)[5], const char (&codeY)[5], const char (&codeZ)[5],
                          const KtPoint3& point) {
  Write(codeX);
  WriteReal(point.Get0());
  Write(codeY);
  WriteReal(point.Get1());
  Write(codeZ);
  WriteReal(0.0);
}

void DxfWriter::WritePoint10(const BlockNode* node, double x, double y, double z) {
  WriteFlat(" 10\n", " 20\n", " 30\n", transformed(node, x, y, z));
}

void DxfWriter::WritePoint11(const BlockNode* node, double x, double y, double z) {
  WriteFlat(" 11\n", " 21\n", " 31\n", transformed(node, x, y, z));
}

void DxfWriter::WritePoint12(const BlockNode* node, double x, double y, double z) {
  WriteFlat(" 12\n", " 22\n", " 32\n", transformed(node, x, y, z));
}

void DxfWriter::WritePoint13(const BlockNode* node, double x, double y, double z) {
  WriteFlat(" 13\n", " 23\n", " 33\n", transformed(node, x, y, z));
}

void DxfWriter::WritePoint12And13(const BlockNode* node, double x, double y, double z) {
  WritePoint12(node, x, y, z);
  WritePoint13(node, x, y, z);
}

void DxfWriter::WritePoint10Untransformed(const BlockNode* /*node*/, double x, double y, double z) {
  WriteFlat(" 10\n", " 20\n", " 30\n", KtPoint3(x, y, z));
}

void DxfWriter::WriteTextPoint10(const BlockNode* node, double x, double y, double z) {
  WriteFlat(" 10\n", " 20\n", " 30\n", transformedIfNode(node, x, y, z));
}

void DxfWriter::WriteTextPoint11(const BlockNode* node, double x, double y, double z) {
  WriteFlat(" 11\n", " 21\n", " 31\n", transformedIfNode(node, x, y, z));
}

void DxfWriter::WriteExtrusion(const BlockNode* node, double x, double y, double z) {
  KtMatrix matrix = node != nullptr ? node->matrix : KtMatrix();
  matrix.SetTranslation(0.0, 0.0, 0.0);
  KtPoint3 direction(x, y, z);
  direction.Mult(matrix);
  Write(" 210\n");
  WriteReal(direction.Get0());
  Write(" 220\n");
  WriteReal(direction.Get1());
  Write(" 230\n");
  WriteReal(0.0);
}

void DxfWriter::WriteReal39(double thickness) {
  Write(" 39\n");
  WriteReal(thickness);
}

void DxfWriter::WriteReal40(double value) {
  Write(" 40\n");
  WriteReal(value);
}

void DxfWriter::WriteReal50(double angle) {
  Write(" 50\n");
  WriteReal(angle);
}

void DxfWriter::WriteTextRotation(double angle) { WriteReal50(angle); }

void DxfWriter::WriteTextWidthFactor(double factor) {
  Write(" 41\n");
  WriteReal(factor);
}

void DxfWriter::WriteLineBegin() { Write("  0\nLINE\n"); }

void DxfWriter::Write3DFaceBegin() { Write("  0\n3DFACE\n"); }

void DxfWriter::WriteSolidBegin() { Write("  0\nSOLID\n"); }

void DxfWriter::WriteCircleBegin() { Write("  0\nCIRCLE\n"); }

void DxfWriter::WriteColor(int color) {
  Write(" 62\n");
  WriteInteger(color == -1 ? kColorWithoutMaterial : color);
}

void DxfWriter::WriteColorIndex(int index) {
  Write(" 62\n");
  WriteInteger(index < 1 || index > 255 ? kColorOutsidePalette : index);
}

void DxfWriter::WriteColorRgb(double r, double g, double b) {
  WriteColorIndex(NearestColorIndex(r, g, b));
}

int DxfWriter::NearestColorIndex(double r, double g, double b) {
  return nearestPaletteIndex(r, g, b);
}

}  // namespace dxf2d
