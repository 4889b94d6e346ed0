// Preloaded into a program: its writes take fewer bytes than they are given, as a disk or a pipe
// may do, and are interrupted in between.
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

extern "C" __attribute__((visibility("default"))) ssize_t write(int descriptor, const void* bytes,
                                                                size_t count) {
  using Write = ssize_t (*)(int, const void*, size_t);
  static const auto next = reinterpret_cast<Write>(dlsym(RTLD_NEXT, "write"));
  static unsigned calls = 0;
  ++calls;
  if (calls % 5 == 0) {
    errno = EINTR;
    return -1;
  }
  // From one byte to a few pages.
  const std::size_t most = std::size_t{1} << (calls % 14);
  return next(descriptor, bytes, std::min(count, most));
}
