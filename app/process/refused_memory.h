// Whether an allocation of this process was refused. Readers of models may catch std::bad_alloc, or
// get a null pointer, and call it something else, or go on without what they were to read.
#pragma once

namespace dxf2d {

// Called by the program's allocation functions when they have no memory; it must not allocate. Null
// where nothing records it.
inline void (*noteRefusedMemory)() noexcept = nullptr;

// Whether the caller of the current allocation can do without it.
inline thread_local bool isRefusalExpected = false;

}  // namespace dxf2d
