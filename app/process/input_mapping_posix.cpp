#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <atomic>
#include <cassert>
#include <csignal>
#include <cstdint>

#include "app/process/input_mapping.h"

namespace dxf2d {

namespace {

// What the handler of SIGBUS may look at. Addresses, 0 while no file is mapped.
std::atomic<std::uintptr_t> mappedBegin{0};
std::atomic<std::uintptr_t> mappedEnd{0};
std::atomic<std::uintptr_t> pageSize{0};
std::atomic<bool> isTorn{false};
static_assert(std::atomic<std::uintptr_t>::is_always_lock_free);

// Puts a page of zeros where the file has none, so that what reads there goes on. Any other bus
// error happens again once this returns, and then ends the process.
void replacePage(int signal, siginfo_t* info, void*) {
  const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
  const std::uintptr_t size = pageSize;
  char* const page = static_cast<char*>(info->si_addr) - address % size;
  // mmap is a bare call of the kernel on the systems that this file is for.
  if (address >= mappedBegin && address < mappedEnd &&
      mmap(page, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED) {
    isTorn = true;
    return;
  }
  std::signal(signal, SIG_DFL);
}

void catchBusErrors(std::span<const char> bytes) {
  assert(mappedBegin == 0);
  pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  isTorn = false;
  mappedEnd = reinterpret_cast<std::uintptr_t>(bytes.data() + bytes.size());
  mappedBegin = reinterpret_cast<std::uintptr_t>(bytes.data());
  struct sigaction action {};
  action.sa_sigaction = replacePage;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGBUS, &action, nullptr);
}

}  // namespace

InputMapping::InputMapping(const std::string& path)
    : file_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
  struct stat status {};
  if (!file_.IsOpen() || fstat(file_.Number(), &status) != 0 || !S_ISREG(status.st_mode) ||
      status.st_size == 0) {
    return;
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  void* const bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file_.Number(), 0);
  if (bytes == MAP_FAILED) {
    return;
  }
  bytes_ = {static_cast<const char*>(bytes), size};
  modified_ = status.st_mtim;
  catchBusErrors(bytes_);
}

InputMapping::~InputMapping() {
  if (!bytes_.empty()) {
    std::signal(SIGBUS, SIG_DFL);
    mappedBegin = 0;
    mappedEnd = 0;
    munmap(const_cast<char*>(bytes_.data()), bytes_.size());
  }
}

bool InputMapping::IsWhole() const {
  struct stat now {};
  return !isTorn && fstat(file_.Number(), &now) == 0 &&
         static_cast<std::size_t>(now.st_size) == bytes_.size() &&
         now.st_mtim.tv_sec == modified_.tv_sec && now.st_mtim.tv_nsec == modified_.tv_nsec;
}

}  // namespace dxf2d
