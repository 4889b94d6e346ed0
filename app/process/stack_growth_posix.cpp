#include "app/process/stack_growth.h"

#include <pthread.h>

#include <csignal>
#include <cstddef>
#include <cstdint>

#include "app/process/refused_memory.h"

namespace dxf2d {

namespace {

#ifdef DXF2D_SANITIZED
// Sanitizers have a handler of their own.
constexpr bool kHasHandler = true;
#else
constexpr bool kHasHandler = false;
#endif

// The lowest address that the stack's limit allows, and the end of the stack.
std::uintptr_t stackBegin = 0;
std::uintptr_t stackEnd = 0;

// Where the handler runs, since there is no room on the stack.
alignas(std::max_align_t) char handlerStack[std::size_t{32} << 10];

void onBadAccess(int /*signal*/, siginfo_t* information, void* /*context*/) {
  const auto address = reinterpret_cast<std::uintptr_t>(information->si_addr);
  if (address >= stackBegin && address < stackEnd && noteRefusedMemory != nullptr) {
    noteRefusedMemory();
  }
  // The access is repeated, and ends the process.
}

bool findStack() {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
    return false;
  }
  void* begin = nullptr;
  std::size_t size = 0;
  const bool isFound = pthread_attr_getstack(&attributes, &begin, &size) == 0;
  pthread_attr_destroy(&attributes);
  stackBegin = reinterpret_cast<std::uintptr_t>(begin);
  stackEnd = stackBegin + size;
  return isFound;
}

}  // namespace

void noteRefusedStackGrowth() {
  if (kHasHandler || !findStack()) {
    return;
  }
  stack_t stack{};
  stack.ss_sp = handlerStack;
  stack.ss_size = sizeof handlerStack;
  struct sigaction action {};
  action.sa_sigaction = &onBadAccess;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK | static_cast<int>(SA_RESETHAND);
  if (sigaltstack(&stack, nullptr) == 0) {
    sigaction(SIGSEGV, &action, nullptr);
  }
}

}  // namespace dxf2d
