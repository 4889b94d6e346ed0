#include "app/export/drawing_counts.h"

#include <gtest/gtest.h>

namespace {

TEST(CountDrawing, CountsEntitiesAndPlacedInserts) {
  const DrawingCounts counts = countDrawing(
      "  0\nSECTION\n  2\nBLOCKS\n  0\nPOLYLINE\n 66\n1\n  0\nVERTEX\n 10\n0.0\n  0\nVERTEX\n"
      "  0\nSEQEND\n  0\nINSERT\n  2\nGO_2\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n"
      "  0\nINSERT\n  0\nSEQEND\n  0\nINSERT\n  0\nENDSEC\n  0\nEOF\n");
  EXPECT_EQ(counts.polylines, 1u);
  EXPECT_EQ(counts.vertices, 2u);
  EXPECT_EQ(counts.placed, 2u);
}

TEST(CountDrawing, TextsThatNameEntitiesAreNone) {
  const DrawingCounts counts = countDrawing("  0\nTEXT\n  1\nVERTEX\n  1\nPOLYLINE\n");
  EXPECT_EQ(counts.polylines, 0u);
  EXPECT_EQ(counts.vertices, 0u);
}

TEST(CountDrawing, CountsTexts) {
  const DrawingCounts counts =
      countDrawing("  0\nBLOCK\n  0\nTEXT\n  1\n  0\n  7\nTEXT\n  0\nTEXT\n  1\nTEXT\n  0\n");
  EXPECT_EQ(counts.texts, 2u);
}

TEST(CountDrawing, AnEmptyFileHoldsNothing) { EXPECT_EQ(countDrawing("").vertices, 0u); }

}  // namespace
