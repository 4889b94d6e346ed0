// The text of a polyline's vertex, made in one go.
#pragma once

#include <cstddef>
#include <cstring>

#include "platform/fixed6_lines.h"

// Room that writeVertexText needs: three reals, and what stands around them.
inline constexpr std::size_t kVertexTextSize = 3 * Fixed6Lines::kLineSize + 64;

// Copies a literal and returns its end.
template <std::size_t kSize>
char* writeLiteral(const char (&literal)[kSize], char* text) {
  std::memcpy(text, literal, kSize - 1);
  return text + (kSize - 1);
}

// Writes the groups of DxfWriter::WriteVertexBegin and of WritePoint10 without a node, for nearly
// all of a large drawing is such vertices. The coordinates are values `x` and `y` of `reals`, -0
// made 0. Returns the end.
inline char* writeVertexText(const Fixed6Lines& reals, std::size_t x, std::size_t y, char* text) {
  text = writeLiteral("  0\nVERTEX\n  8\n0\n 70\n0\n 10\n", text);
  text = reals.Write(x, text);
  text = writeLiteral(" 20\n", text);
  text = reals.Write(y, text);
  text = writeLiteral(" 30\n", text);
  return reals.WriteZero(text);
}
