// Operations of the host on its views: labels and relative placements.
#pragma once

#include <string>
#include <vector>

#include "ktscene/export.h"
#include "ktscene/kt_matrix.h"

// Operations on labels.
struct KT_SCENE_API KtV {
  // Parses a label's text, without the two characters of its tag. Its syntax:
  //
  //   width height depth x y z angle align frame red green blue flags "line" "line" …
  //
  // separated by one or more spaces; control characters count as spaces, so that a label cannot
  // break a line of what it is written into. Lengths are in drawing units, the angle in degrees,
  // color components from 0 to 1 by convention (not checked); a number's magnitude is at most 1e15.
  // `align` is one UTF-16 unit other than a space, `frame` 0 or 1, `flags` a number of 1 to 10
  // digits that is at most 4294967295. In a line, \" stands for a quote and \\ for a backslash.
  // Returns false for anything that does not fit; the outputs are then unspecified.
  //
  // Example: 1 2.5 0 10 20 5 30 C 0 1 0 0 0 "Ab" "second line"
  static bool ParseLabelString(const std::u16string& text, double& width, double& height,
                               double& depth, double& x, double& y, double& z, double& angle,
                               unsigned short& align, bool& frame, double& red, double& green,
                               double& blue, unsigned int& flags,
                               std::vector<std::u16string>& lines);
};

// Operations on placements.
struct KT_SCENE_API KtV_intern {
  // Sets `result` to "a first, then the inverse of b": a's placement seen from b. Exactly the
  // identity when every element of a equals that of b; a itself when b has no inverse (determinant
  // 0 or not finite, no tolerance).
  static void CalculateNewRelativeMatrix(const KtMatrix& a, const KtMatrix& b, KtMatrix& result);
};
