// The drawing file: its stream of groups and the primitives that entities are made of.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "ktscene/kt_point3.h"
#include "platform/cfile.h"
#include "platform/cstring.h"
#include "platform/fixed6_lines.h"

class KtMatrix;

namespace dxf2d {

struct BlockNode;

// The one object through which every byte of a drawing reaches the disk.
//
// The file is a sequence of groups of two lines, each ended by one line feed: the code,
// right-aligned in three characters (three-digit codes keep one leading blank), and the value.
// Reals are "%f" under the process's numeric locale. The drawing is flat: every primitive but
// WriteBasePoint writes 0 for the third coordinate, whatever it is given.
//
// A failed write, or a write without an open file, throws CFileException, which nothing here
// catches. On the host's thread only.
class DxfWriter {
 public:
  // The module's writer, created on first use; null when there is no memory for one.
  static DxfWriter* Instance();
  // Destroys the writer, closing its file if it is still open.
  static void Release();

  // Creates (or truncates) the file at `path` and writes the head of the drawing: HEADER, TABLES
  // and the opening of BLOCKS. A file left open is closed first. On failure shows the reason in an
  // error box and returns false.
  bool Open(CString path);
  void Close();
  // Passes everything written so far to the operating system.
  void Flush();
  // The same while another error is being reported: an error of its own is dropped.
  void FlushQuietly() noexcept;

  // Appends `text` in the thread's ANSI code page. As many bytes are written as the text has UTF-16
  // units: a longer conversion (a code page with two bytes per letter) is deliberately cut to that
  // count, and a shorter one is padded with zero bytes.
  void Write(const CString& text);
  // Appends a literal of ASCII characters, whose bytes are the same in every code page.
  template <std::size_t kSize>
  void Write(const char (&literal)[kSize]) {
    file_.Write(literal, kSize - 1);
  }

  // The fixed sections of a drawing's head.
  void WriteHeaderSection();
  void WriteTablesSection();

  // Layer "0"; WriteLineLayer is the same for lines.
  void WriteLayer();
  void WriteLineLayer();
  // Group 2 or 3 with `name` as given; a block's name includes its line feed.
  void WriteBlockName(CString name);
  void WriteName3(CString name);
  void WriteBlockBegin();
  void WriteBlockFlags();
  void WriteBlockEnd();
  // The five pieces that open the block of `node`, base point at the origin.
  void WriteBlockHeader(const BlockNode& node);
  // An INSERT of the node's block at the origin. The attributes-follow flag is 1 and padded to five
  // characters, and a SEQEND follows at once without any attribute: deliberately so.
  void WriteInsert(const BlockNode* node);
  // Groups 10, 20, 30 and, for a rotation about z of more than 0.001 radians, 50 in degrees, from a
  // world matrix. A matrix tilted out of the plane is placed at the origin without a rotation; a
  // coordinate that is not finite is written as 0.
  void WriteInsertPlacement(const KtMatrix& matrix);
  // Groups 10, 20, 30 as given: the only coordinate primitive that writes a third component.
  void WriteBasePoint(double x, double y, double z);

  // Coordinates through the matrix of `node` (null: as given).
  void WritePoint10(const BlockNode* node, double x, double y, double z);
  void WritePoint11(const BlockNode* node, double x, double y, double z);
  void WritePoint12(const BlockNode* node, double x, double y, double z);
  void WritePoint13(const BlockNode* node, double x, double y, double z);
  // One point as third and fourth corner: a three-cornered face.
  void WritePoint12And13(const BlockNode* node, double x, double y, double z);
  // Takes a node like the others, but deliberately does not apply its matrix.
  void WritePoint10Untransformed(const BlockNode* node, double x, double y, double z);
  void WriteTextPoint10(const BlockNode* node, double x, double y, double z);
  void WriteTextPoint11(const BlockNode* node, double x, double y, double z);
  // A direction: the node's matrix without its translation.
  void WriteExtrusion(const BlockNode* node, double x, double y, double z);

  void WriteReal39(double thickness);
  void WriteReal40(double value);
  // Angles are in degrees.
  void WriteReal50(double angle);
  void WriteTextRotation(double angle);
  void WriteTextWidthFactor(double factor);

  void WriteLineBegin();
  void Write3DFaceBegin();
  void WriteSolidBegin();
  void WriteCircleBegin();
  // `color` null: no group 62.
  void WritePolylineBegin(const int* color, bool closed);
  void WriteVerticesFollow();
  void WritePolylineFlags(bool closed);
  // The node has no effect: a vertex has its polyline's color.
  void WriteVertexBegin(const BlockNode* node);
  void WriteVertexFlags();
  // The vertices pointAt(0) to pointAt(count - 1) of one polyline, each as WriteVertexBegin and
  // WritePoint10 without a node write it.
  template <class PointAt>
  void WriteVertices(std::size_t count, PointAt pointAt) {
    constexpr std::size_t kBatch = Fixed6Lines::kMost / 2;
    Fixed6Lines reals;
    for (std::size_t begin = 0; begin < count; begin += kBatch) {
      const std::size_t size = std::min(kBatch, count - begin);
      for (std::size_t k = 0; k < size; ++k) {
        const KtPoint3 point = pointAt(begin + k);
        // The sums turn -0 into 0, as an identity matrix does.
        reals.Value(2 * k) = point.Get0() + 0.0;
        reals.Value(2 * k + 1) = point.Get1() + 0.0;
      }
      WriteVertexBatch(reals, size);
    }
  }
  void WriteSeqEnd();

  // Group 62 of a record's color: -1, no material received, is written as 254; no other check.
  void WriteColor(int color);
  // Group 62 of an index that the host chose: below 1 or above 255 is written as 7. The difference
  // is deliberate.
  void WriteColorIndex(int index);
  // Group 62 of the palette color nearest to red, green, blue from 0 to 1.
  void WriteColorRgb(double r, double g, double b);
  int NearestColorIndex(double r, double g, double b);

 private:
  // Both take null-terminated texts.
  void WriteWide(std::u16string_view text);
  void WriteConverted(std::u16string_view text);
  void WriteReal(double value);
  // Writes `count` vertices, at most Fixed6Lines::kMost / 2, whose coordinates are the values of
  // `reals`: x, y, x, y and so on.
  void WriteVertexBatch(Fixed6Lines& reals, std::size_t count);
  // The code and value lines of a transformed point: x and y, and 0 for the third.
  void WriteFlat(const char (&codeX)[5], const char (&codeY)[5], const char (&codeZ)[5],
                 const KtPoint3& point);
  // The value line of an integer.
  void WriteInteger(int value);

  CFile file_;
  CString path_;
};

}  // namespace dxf2d
