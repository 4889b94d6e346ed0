// Lists from callers of the C API as sets of a scene.
#pragma once

#include "ktscene/kt_scene.h"
#include "ktscene/ktscene_c.h"

namespace dxf2d {

// Borrowed from the caller, except for point numbers that come with counts: those are copied, with
// codes. Throws std::invalid_argument, with the function's name, for lists that contradict each
// other. `polygonCode` is that of the runs that the counts give.
KtBorrowedLists borrowLists(const KtCLists* given, int polygonCode, const char* function);

}  // namespace dxf2d
