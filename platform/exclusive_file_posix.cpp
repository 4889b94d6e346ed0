#include "platform/exclusive_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>
#include <utility>

#include "platform/path_text.h"

namespace dxf2d {

namespace {

constexpr int kNone = -1;

// Holds back the signals that accompany the error of a failing write, so that a closed pipe or a
// limit on file sizes is an error to the caller and not the end of the host process.
class WriteSignalHold {
 public:
  WriteSignalHold() {
    sigset_t pending;
    sigpending(&pending);
    sigemptyset(&held_);
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
      // One that was pending before is not the write's and stays for its receiver.
      if (sigismember(&pending, signal) == 0) {
        sigaddset(&held_, signal);
      }
    }
    pthread_sigmask(SIG_BLOCK, &held_, &before_);
  }
  ~WriteSignalHold() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  WriteSignalHold(const WriteSignalHold&) = delete;
  WriteSignalHold& operator=(const WriteSignalHold&) = delete;

  // Takes away the signal that the failed write raised.
  void Discard() {
    const timespec atOnce{};
    while (sigtimedwait(&held_, nullptr, &atOnce) == -1 && errno == EINTR) {
    }
  }

 private:
  sigset_t held_;
  sigset_t before_;
};

// Writes all of it, or returns the error number of the write that failed; 0 is success.
int writeAll(int descriptor, const char* data, std::size_t count) {
  WriteSignalHold hold;
  while (count > 0) {
    const ssize_t written = ::write(descriptor, data, count);
    if (written > 0) {
      data += written;
      count -= static_cast<std::size_t>(written);
    } else if (written == 0) {
      return EIO;
    } else if (errno != EINTR) {
      const int error = errno;
      hold.Discard();
      return error;
    }
  }
  return 0;
}

template <typename Call>
int retryInterrupted(Call call) {
  int result = call();
  while (result == -1 && errno == EINTR) {
    result = call();
  }
  return result;
}

int openFlags(bool write, bool create) {
  return (write ? O_WRONLY : O_RDONLY) | (create ? O_CREAT : 0) | O_CLOEXEC | O_NOCTTY;
}

// Makes an open descriptor this process's own file: locked and, when `truncate`, empty. The bytes
// go only once the lock is held, so that a file in use keeps them. Devices and pipes are shared by
// nature and are left as they are. Returns an error number, 0 for success.
int claim(int descriptor, bool truncate) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) {
    return errno;
  }
  if (S_ISDIR(status.st_mode)) {
    return EISDIR;
  }
  if (!S_ISREG(status.st_mode)) {
    return 0;
  }
  const int locked = retryInterrupted([&] { return flock(descriptor, LOCK_EX | LOCK_NB); });
  // A file system without locks gives any other error; the file is usable all the same.
  if (locked != 0 && errno == EWOULDBLOCK) {
    return errno;
  }
  if (truncate && retryInterrupted([&] { return ftruncate(descriptor, 0); }) != 0) {
    return errno;
  }
  return 0;
}

}  // namespace

ExclusiveFile::ExclusiveFile() : handle_(kNone) {}

ExclusiveFile::~ExclusiveFile() { Close(); }

long ExclusiveFile::Open(const char16_t* path, bool write, bool create) {
  const std::string name = pathToBytes(path);
  const int descriptor =
      retryInterrupted([&] { return ::open(name.c_str(), openFlags(write, create), 0666); });
  handle_ = descriptor;
  return descriptor < 0 ? errno : claim(descriptor, create);
}

long ExclusiveFile::Write(const char* data, std::size_t count) {
  return writeAll(static_cast<int>(handle_), data, count);
}

long ExclusiveFile::Close() {
  if (handle_ == kNone) {
    return 0;
  }
  const int result = ::close(static_cast<int>(std::exchange(handle_, kNone)));
  // An interrupted close has closed the descriptor all the same.
  return result != 0 && errno != EINTR ? errno : 0;
}

}  // namespace dxf2d
