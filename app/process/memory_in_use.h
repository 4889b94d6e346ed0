// How much memory processes use.
#pragma once

#include <sys/types.h>

#include <cstdint>

namespace dxf2d {

// The address space of this process, in bytes; 0 when the system does not say.
std::uint64_t addressSpaceInUse();

// The bytes of a process that are in memory and in no file; 0 when the system does not say.
std::uint64_t residentMemoryOf(pid_t process);

}  // namespace dxf2d
