#include "app/export/drawing_counts.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

namespace dxf2d {

namespace {

// How often `needle` stands in `text`, where one may begin with the last byte of another.
std::size_t countBySearch(std::string_view text, std::string_view needle) {
  std::size_t count = 0;
  for (std::size_t at = text.find(needle); at != text.npos; at = text.find(needle, at + 1)) {
    ++count;
  }
  return count;
}

TEST(CountDrawing, CountsEntitiesAndPlacedInserts) {
  const DrawingCounts counts = countDrawing(
      "  0\nSECTION\n  2\nBLOCKS\n  0\nPOLYLINE\n 66\n1\n  0\nVERTEX\n 10\n0.0\n  0\nVERTEX\n"
      "  0\nSEQEND\n  0\nINSERT\n  2\nGO_2\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n"
      "  0\nINSERT\n  0\nSEQEND\n  0\nINSERT\n  0\nENDSEC\n  0\nEOF\n");
  EXPECT_EQ(counts.polylines, 1u);
  EXPECT_EQ(counts.vertices, 2u);
  EXPECT_EQ(counts.placed, 2u);
}

TEST(CountDrawing, TextsThatNameEntitiesAreNotCounted) {
  const DrawingCounts counts = countDrawing("  0\nTEXT\n  1\nVERTEX\n  1\nPOLYLINE\n");
  EXPECT_EQ(counts.polylines, 0u);
  EXPECT_EQ(counts.vertices, 0u);
}

TEST(CountDrawing, CountsTexts) {
  const DrawingCounts counts =
      countDrawing("  0\nBLOCK\n  0\nTEXT\n  1\n  0\n  7\nTEXT\n  0\nTEXT\n  1\nTEXT\n  0\n");
  EXPECT_EQ(counts.texts, 2u);
}

TEST(CountDrawing, CountsLongDrawingsAsASearchDoes) {
  // Long enough for entities across every border that the search may draw.
  const std::array<std::string, 9> lines = {"  0\n",  "VERTEX\n", "POLYLINE\n",
                                            "TEXT\n", "INSERT\n", "12.345678\n",
                                            "  2\n",  "XVPI\n",   "VERTEXX\n"};
  std::mt19937 random(1);
  for (int i = 0; i < 20; ++i) {
    const auto addLines = [&](std::string& text, std::size_t size) {
      while (text.size() < size) {
        text += lines[random() % lines.size()];
      }
    };
    std::string blocks = "  0\n";
    addLines(blocks, 200000);
    std::string entities = "  2\nENTITIES\n";
    addLines(entities, 100000);
    const std::string text = blocks + entities;
    const DrawingCounts counts = countDrawing(text, 1 + static_cast<std::size_t>(i) % 4);
    EXPECT_EQ(counts.polylines, countBySearch(text, "\n  0\nPOLYLINE\n"));
    EXPECT_EQ(counts.vertices, countBySearch(text, "\n  0\nVERTEX\n"));
    EXPECT_EQ(counts.texts, countBySearch(text, "\n  0\nTEXT\n"));
    EXPECT_EQ(counts.placed, countBySearch(entities, "\n  0\nINSERT\n"));
    EXPECT_GT(counts.placed, 100u);
  }
}

TEST(CountDrawing, AnEmptyFileHoldsNothing) { EXPECT_EQ(countDrawing("").vertices, 0u); }

}  // namespace

}  // namespace dxf2d
