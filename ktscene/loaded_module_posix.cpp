#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <system_error>

#include "ktscene/loaded_module.h"

namespace dxf2d {

namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& problem) {
  throw KtTraverserError(path + ": cannot be loaded as a plug-in: " + problem +
                         "; name another plug-in");
}

[[noreturn]] void refuseFor(const std::string& path, int error) {
  refuse(path, std::generic_category().message(error));
}

// The loader's message, without the path that our message begins with.
std::string loaderReason(const std::string& path) {
  const char* message = dlerror();
  std::string reason = message == nullptr ? "unknown error" : message;
  if (const std::string prefix = path + ": "; reason.starts_with(prefix)) {
    reason.erase(0, prefix.size());
  }
  return reason;
}

// Held while a module is loaded or unloaded. The loader has such a lock of its own; this one also
// tells the thread sanitizer that a copy which lies where one that is gone has lain is another. A
// module's constructors may load others.
std::recursive_mutex& loading() {
  static std::recursive_mutex mutex;
  return mutex;
}

void* open(const std::string& path, const std::string& name) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    refuse(name, loaderReason(path));
  }
  return handle;
}

// Of the file that is open as `descriptor`.
std::string nameOf(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

bool writeAll(int file, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = write(file, bytes, count);
    if (written < 0 && errno != EINTR) {
      return false;
    }
    if (written > 0) {
      bytes += written;
      count -= static_cast<std::size_t>(written);
    }
  }
  return true;
}

// Returns false with errno set.
bool copyFile(int from, int to) {
  char block[65536];
  while (true) {
    const ssize_t count = read(from, block, sizeof block);
    if (count == 0) {
      return true;
    }
    if (count < 0 && errno != EINTR) {
      return false;
    }
    if (count > 0 && !writeAll(to, block, static_cast<std::size_t>(count))) {
      return false;
    }
  }
}

// A file in memory with the bytes of the module at `path`.
int copyInMemory(const std::string& path) {
  const int from = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (from < 0) {
    refuseFor(path, errno);
  }
  const int copy = memfd_create("plugin", MFD_CLOEXEC);
  const bool isCopied = copy >= 0 && copyFile(from, copy);
  const int error = errno;
  close(from);
  if (!isCopied) {
    if (copy >= 0) {
      close(copy);
    }
    refuseFor(path, error);
  }
  return copy;
}

}  // namespace

LoadedModule::LoadedModule(const std::string& path, bool isPrivate) {
  const std::lock_guard lock(loading());
  // Also before a private copy: the libraries that it needs are then there, though its own place in
  // the file system, from which it may name them, is not.
  handle_ = open(path, path);
  if (isPrivate) {
    file_ = copyInMemory(path);
    try {
      handle_ = open(nameOf(static_cast<int>(file_)), path);
    } catch (...) {
      close(static_cast<int>(file_));
      throw;
    }
  }
}

LoadedModule::~LoadedModule() {
  if (file_ < 0) {
    return;
  }
  const std::lock_guard lock(loading());
  dlclose(handle_);
  // Some modules cannot be unloaded. Their name stays taken then, and so does the descriptor: else
  // the loader would give the module to whoever asks for the next copy of that name.
  if (void* const stays =
          dlopen(nameOf(static_cast<int>(file_)).c_str(), RTLD_LAZY | RTLD_NOLOAD)) {
    dlclose(stays);
  } else {
    close(static_cast<int>(file_));
  }
}

void* LoadedModule::Find(const char* name) const { return dlsym(handle_, name); }

}  // namespace dxf2d
