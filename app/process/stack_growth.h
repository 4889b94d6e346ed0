// Crashes for lack of stack.
#pragma once

namespace dxf2d {

// From now on, when the stack of the main thread cannot grow within its limit, since there is no
// address space left, that is noted as refused memory (see noteRefusedMemory) before the process
// ends by SIGSEGV. Endless recursion, which goes beyond the stack's limit, is not.
void noteRefusedStackGrowth();

}  // namespace dxf2d
