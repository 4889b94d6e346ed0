#include "platform/os_error.h"

namespace dxf2d {

std::u16string osErrorText(long /*osError*/) { return {}; }

}  // namespace dxf2d
