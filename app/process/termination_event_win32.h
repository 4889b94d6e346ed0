// What waits for a termination signal on Windows.
#pragma once

#include "platform/windows_api.h"

namespace dxf2d {

// Set for good when one has come.
HANDLE terminationEvent();

}  // namespace dxf2d
