// Preloaded into a program: every read of a file gives half of the bytes that it is asked for, as a
// network disk may do. The streams of the C library, which calls its own read, get one of ours.
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

namespace {

ssize_t readHalf(int file, void* bytes, size_t count) {
  using Read = ssize_t (*)(int, void*, size_t);
  static const auto next = reinterpret_cast<Read>(dlsym(RTLD_NEXT, "read"));
  struct stat status {};
  const bool isFile = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
  return next(file, bytes, isFile ? (count + 1) / 2 : count);
}

int fileOf(void* cookie) { return static_cast<int>(reinterpret_cast<std::intptr_t>(cookie)); }

ssize_t readStream(void* cookie, char* bytes, size_t count) {
  return readHalf(fileOf(cookie), bytes, count);
}

int seekStream(void* cookie, off64_t* position, int whence) {
  *position = lseek64(fileOf(cookie), *position, whence);
  return *position < 0 ? -1 : 0;
}

int closeStream(void* cookie) { return close(fileOf(cookie)); }

}  // namespace

#define DXF2D_VISIBLE __attribute__((visibility("default")))

extern "C" DXF2D_VISIBLE ssize_t read(int file, void* bytes, size_t count) {
  return readHalf(file, bytes, count);
}

// Of files that are opened for reading; the program opens no others this way.
extern "C" DXF2D_VISIBLE FILE* fdopen(int file, const char* mode) {
  void* const cookie = reinterpret_cast<void*>(static_cast<std::intptr_t>(file));
  return fopencookie(cookie, mode, {&readStream, nullptr, &seekStream, &closeStream});
}
