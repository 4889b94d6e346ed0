// The entry through which a host loads the plug-in.
//
// The module exports the entry and 13 callbacks, the latter under their C++ names (the others are
// declared in session/callbacks.h and geometry/callbacks.h). A host needs InitializeTraverser only;
// the callbacks are exported for hosts that drive an export by hand.
#pragma once

#include "session/export_macro.h"

class KtGeometry;
class KtTraverser;

// Registers the callbacks with `traverser` (null: no effect). `reserved` is ignored. Always returns
// true.
extern "C" DXF2D_EXPORT bool InitializeTraverser(KtTraverser* traverser, void* reserved);

// The special-geometry callback, slot 14. Always returns false, so that the host sends every shape
// as its tessellation.
DXF2D_EXPORT bool DXF2dSpecialGeometry(KtGeometry* geometry, bool flag);
