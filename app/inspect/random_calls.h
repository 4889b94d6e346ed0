// A host that makes calls at random, as the calling order allows them.
#pragma once

#include <cstdint>
#include <string>

#include "ktscene/kt_traverser.h"

namespace dxf2d {

// One export into the file at `path`: nodes open and close at random, geometry, labels and colors
// come in any order and with any faults, and the end comes at any depth. The same `seed` makes the
// same calls on every system. Throws what the callbacks throw.
void callAtRandom(const KtCallbacks& callbacks, const std::u16string& path, std::uint32_t seed);

}  // namespace dxf2d
