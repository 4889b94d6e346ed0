#include "platform/large_memory.h"

namespace dxf2d {

// Windows has large pages only for accounts with a right of their own, and takes them at once.
void adviseHugePages(void* /*memory*/, std::size_t /*bytes*/) noexcept {}

}  // namespace dxf2d
