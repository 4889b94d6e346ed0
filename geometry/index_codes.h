// The codes that close the runs of a host's index list.
#pragma once

// An index list is flat: point numbers, and after each run a negative code that says what it was.
// -2 and codes below -7 mark runs that are not drawn.
inline constexpr int kSegmentCode = -1;
inline constexpr int kStripCode = -3;
inline constexpr int kFanCode = -4;
inline constexpr int kTrianglesCode = -5;
inline constexpr int kLineStripCode = -6;
inline constexpr int kPolygonCode = -7;
