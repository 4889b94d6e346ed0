// Crashes for lack of stack.
#pragma once

namespace dxf2d {

// Finds where the stack of the main thread ends, which takes a while and is the same in processes
// that are forked.
void findStackEnd();

// From now on, when the stack of the main thread cannot grow within its limit, since there is no
// address space left, that is noted as refused memory (see noteRefusedMemory) before the process
// ends by SIGSEGV. Endless recursion, which goes beyond the stack's limit, is not. For after
// findStackEnd, and after the limit has been set.
void noteRefusedStackGrowth();

}  // namespace dxf2d
