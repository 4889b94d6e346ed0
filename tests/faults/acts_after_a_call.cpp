// Preloaded into a program: when the call that ACT_AFTER names (linkat or renameat) has succeeded
// for the first time, runs the shell command ACT, as another program might at that moment.
#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void actAfter(const char* call) {
  const char* const wanted = std::getenv("ACT_AFTER");
  const char* const command = std::getenv("ACT");
  if (wanted == nullptr || command == nullptr || std::string(wanted) != call) {
    return;
  }
  const std::string act = command;
  // Neither again nor in the command.
  unsetenv("ACT_AFTER");
  unsetenv("LD_PRELOAD");
  const int error = errno;
  if (std::system(act.c_str()) != 0) {
    std::perror("ACT");
  }
  errno = error;
}

template <class Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int linkat(int from, const char* name, int to,
                                                             const char* newName, int flags) {
  using Link = int (*)(int, const char*, int, const char*, int);
  const int result = next<Link>("linkat")(from, name, to, newName, flags);
  if (result == 0) {
    actAfter("linkat");
  }
  return result;
}

extern "C" __attribute__((visibility("default"))) int renameat(int from, const char* name, int to,
                                                               const char* newName) {
  using Rename = int (*)(int, const char*, int, const char*);
  const int result = next<Rename>("renameat")(from, name, to, newName);
  if (result == 0) {
    actAfter("renameat");
  }
  return result;
}
