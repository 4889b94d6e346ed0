// A host that takes back what it lends: what a callback was shown is gone when it has returned.
#pragma once

#include "ktscene/kt_traverser.h"

namespace dxf2d {

// A traverser with the callbacks of `traverser`, which get copies of their arguments. When a call
// has returned, the numbers in its copies are overwritten, and the copies themselves cannot be read
// any more: a plug-in that keeps a pointer crashes, or draws nonsense. Callbacks carry no context,
// so there is one such traverser at a time.
KtTraverser lendingTraverser(const KtTraverser& traverser);

}  // namespace dxf2d
