// Polylines and their vertices, which are most of a large drawing.
#include <cassert>
#include <cstring>

#include "dxf/dxf_writer.h"
#include "platform/fixed6_lines.h"

namespace dxf2d {

namespace {

// Size of the buffer that writeVertexText needs: three reals and the text around them.
constexpr std::size_t kVertexTextSize = 3 * Fixed6Lines::kLineSize + 64;

// Copies a literal and returns its end.
template <std::size_t kSize>
char* writeLiteral(const char (&literal)[kSize], char* text) {
  std::memcpy(text, literal, kSize - 1);
  return text + (kSize - 1);
}

// Writes the groups of DxfWriter::WriteVertexBegin and of WritePoint10 without a node, in one go.
// The coordinates are values `x` and `y` of `reals`, in which -0 was replaced by 0. Returns the
// end.
char* writeVertexText(const Fixed6Lines& reals, std::size_t x, std::size_t y, char* text) {
  text = writeLiteral("  0\nVERTEX\n  8\n0\n 70\n0\n 10\n", text);
  text = reals.Write(x, text);
  text = writeLiteral(" 20\n", text);
  text = reals.Write(y, text);
  text = writeLiteral(" 30\n", text);
  return reals.WriteZero(text);
}

}  // namespace

void DxfWriter::WritePolylineBegin(const int* color, bool closed) {
  Write("  0\nPOLYLINE\n");
  WriteLayer();
  if (color != nullptr) {
    WriteColor(*color);
  }
  WriteVerticesFollow();
  WriteBasePoint(0.0, 0.0, 0.0);
  WritePolylineFlags(closed);
}

void DxfWriter::WriteVerticesFollow() { Write(" 66\n1\n"); }

void DxfWriter::WritePolylineFlags(bool closed) {
  if (closed) {
    Write(" 70\n1\n");
  } else {
    Write(" 70\n0\n");
  }
}

void DxfWriter::WriteVertexBegin(const BlockNode* /*node*/) {
  Write("  0\nVERTEX\n");
  WriteLayer();
  WriteVertexFlags();
}

void DxfWriter::WriteVertexFlags() { Write(" 70\n0\n"); }

void DxfWriter::WriteVertexBatch(Fixed6Lines& reals, std::size_t count) {
  assert(2 * count <= Fixed6Lines::kMost);
  if (!reals.IsAscii()) {
    for (std::size_t k = 0; k < count; ++k) {
      WriteVertexBegin(nullptr);
      WritePoint10(nullptr, reals.Value(2 * k), reals.Value(2 * k + 1), 0.0);
    }
    return;
  }
  reals.Make(2 * count);
  for (std::size_t k = 0; k < count; ++k) {
    static_assert(kVertexTextSize <= CFile::kMaxReserve);
    char* const room = file_.Reserve(kVertexTextSize);
    const char* const end = writeVertexText(reals, 2 * k, 2 * k + 1, room);
    file_.Commit(static_cast<std::size_t>(end - room));
  }
}

void DxfWriter::WriteSeqEnd() { Write("  0\nSEQEND\n"); }

}  // namespace dxf2d
