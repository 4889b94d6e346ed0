// The negative codes that end the runs of an index list.
#pragma once

// Face sets and line sets (KtFaceSet, KtLineSet, callback slots 9 to 11) name their points in a
// flat list of 32-bit integers. The list is divided into runs: point numbers, counted from 0, and
// after them one negative code, the run's terminator, that says what the run is. For example
//
//   {0, 1, 2, 3, KtRunCode::kPolygon, 1, 3, KtRunCode::kSegment}
//
// is a quadrilateral and a line between two of its corners.
//
// Codes below kPolygon have no meaning: their runs are not drawn. Point numbers after the last code
// belong to no run.
struct KtRunCode {
  // Two points joined by a line. In a face set, a run of any other length is not drawn; in a line
  // set, such a run is a line strip like kLineStrip.
  static constexpr int kSegment = -1;
  // Not drawn, whatever the run holds.
  static constexpr int kIgnored = -2;
  // A triangle strip: each point from the third on forms a triangle with the two before it. Every
  // other triangle is reversed, so that all wind the same way.
  static constexpr int kTriangleStrip = -3;
  // A triangle fan: all triangles share the first point.
  static constexpr int kTriangleFan = -4;
  // A list of triangles, three points each.
  static constexpr int kTriangles = -5;
  // Points joined one after the other by lines; closed only where the last repeats the first.
  static constexpr int kLineStrip = -6;
  // A polygon of at least three points; its last point is joined to its first.
  static constexpr int kPolygon = -7;
};
