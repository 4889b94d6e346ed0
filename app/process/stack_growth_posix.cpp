#include "app/process/stack_growth.h"

#include <sys/resource.h>

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

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

// Its limit in bytes; 0 when the system does not say.
std::size_t stackLimit() {
  struct rlimit limits {};
  const bool isKnown = getrlimit(RLIMIT_STACK, &limits) == 0 && limits.rlim_cur != RLIM_INFINITY;
  return isKnown ? limits.rlim_cur : 0;
}

}  // namespace

void findStackEnd() {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/proc/self/maps", "re"),
                                                             &std::fclose);
  // Longer lines, those of files, come in parts.
  char line[256];
  while (file != nullptr && std::fgets(line, sizeof line, file.get()) != nullptr) {
    const char* const end = std::strchr(line, '-');
    if (end != nullptr && std::strstr(line, "[stack]") != nullptr) {
      stackEnd = std::strtoull(end + 1, nullptr, 16);
    }
  }
}

void noteRefusedStackGrowth() {
  const std::size_t limit = stackLimit();
  if (kHasHandler || stackEnd < limit || limit == 0) {
    return;
  }
  stackBegin = stackEnd - limit;
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
