// Preloaded into a program: the file system has no files without names, as on network and FAT
// disks.
#include <dlfcn.h>
#include <fcntl.h>

#include <cerrno>
#include <cstdarg>

namespace {

using Open = int (*)(int, const char*, int, ...);

int openUnless(const char* name, int directory, const char* path, int flags, mode_t mode) {
  if ((flags & O_TMPFILE) == O_TMPFILE) {
    errno = EOPNOTSUPP;
    return -1;
  }
  return reinterpret_cast<Open>(dlsym(RTLD_NEXT, name))(directory, path, flags, mode);
}

}  // namespace

// NOLINTBEGIN(cert-dcl50-cpp): the C library declares these so.
extern "C" __attribute__((visibility("default"))) int openat(int directory, const char* path,
                                                             int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  return openUnless("openat", directory, path, flags, mode);
}

extern "C" __attribute__((visibility("default"))) int openat64(int directory, const char* path,
                                                               int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  return openUnless("openat64", directory, path, flags, mode);
}
// NOLINTEND(cert-dcl50-cpp)
