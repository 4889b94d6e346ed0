#include "app/process/confinement.h"

// A process of Windows has no rules on files that it can take on itself. What is in force is in the
// job of a worker: it starts no other process (see worker_start_win32.cpp).

namespace dxf2d {

std::vector<std::string> systemFiles() { return {}; }

ConfinementStatus confine(const Confinement& /*rules*/) { return {}; }

ConfinementStatus availableConfinement() { return {}; }

}  // namespace dxf2d
