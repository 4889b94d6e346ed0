// The host's lists in the form that callbacks take.
#pragma once

#include <vector>

#include "ktscene/kt_scene.h"

namespace dxf2d {

// Replaces both vectors with what `lists` lends, with the code of its run; they keep their memory.
void copyLists(const KtBorrowedLists& lists, std::vector<double>& coords,
               std::vector<int>& indices);

}  // namespace dxf2d
