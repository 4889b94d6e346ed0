#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string>
#include <utility>

#include "platform/cfile.h"
#include "platform/path_text.h"

inline namespace kt_platform {

namespace {

constexpr std::size_t kBufferSize = std::size_t{256} * 1024;
static_assert(CFile::kMaxReserve < kBufferSize);

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

int openFlags(unsigned flags) {
  const int access = (flags & CFile::modeWrite) != 0 ? O_WRONLY : O_RDONLY;
  const int create = (flags & CFile::modeCreate) != 0 ? O_CREAT : 0;
  return access | create | O_CLOEXEC | O_NOCTTY;
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

// A file that is to be created cannot be missing: its folder is.
CFileException::Cause openCause(int error, unsigned flags) {
  if (error == ENOENT && (flags & CFile::modeCreate) != 0) {
    return CFileException::badPath;
  }
  return CFileException::OsErrorToCause(error);
}

void report(CFileException* exception, CFileException::Cause cause, long osError,
            const char16_t* path) {
  if (exception != nullptr) {
    *exception = CFileException(cause, osError, path);
  }
}

}  // namespace

struct CFile::Impl {
  Impl(const char16_t* name, unsigned flags)
      : path(name),
        buffer((flags & modeWrite) != 0 ? std::make_unique_for_overwrite<char[]>(kBufferSize)
                                        : nullptr) {}
  ~Impl() {
    if (descriptor >= 0) {
      ::close(descriptor);
    }
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  // Returns an error number, 0 for success.
  int Open(unsigned flags) {
    const std::string name = pathToBytes(path.View());
    descriptor = retryInterrupted([&] { return ::open(name.c_str(), openFlags(flags), 0666); });
    return descriptor < 0 ? errno : claim(descriptor, (flags & modeCreate) != 0);
  }
  void Write(const char* data, std::size_t count) const {
    Check(writeAll(descriptor, data, count));
  }
  void Close() {
    const int result = ::close(std::exchange(descriptor, -1));
    // An interrupted close has closed the descriptor all the same.
    Check(result != 0 && errno != EINTR ? errno : 0);
  }
  void Check(int error) const {
    if (error != 0) {
      throw CFileException(CFileException::OsErrorToCause(error), error, path);
    }
  }

  CString path;
  // Null for a file that is open for reading.
  std::unique_ptr<char[]> buffer;
  int descriptor = -1;
};

CFile::CFile() = default;

CFile::~CFile() {
  try {
    Close();
  } catch (const std::exception&) {
    // As the header says: callers that want the error call Close.
  }
}

bool CFile::Open(const char16_t* path, unsigned flags, CFileException* exception) {
  if (impl_ != nullptr) {
    report(exception, CFileException::invalidFile, -1, path);
    return false;
  }
  if (path == nullptr) {
    report(exception, CFileException::badPath, -1, path);
    return false;
  }
  if ((flags & modeCreate) != 0 && (flags & modeWrite) == 0) {
    report(exception, CFileException::accessDenied, -1, path);
    return false;
  }
  // The memory comes first, so that a lack of it leaves no file behind.
  auto impl = std::make_unique<Impl>(path, flags);
  if (const int error = impl->Open(flags); error != 0) {
    report(exception, openCause(error, flags), error, path);
    return false;
  }
  impl_ = std::move(impl);
  cursor_ = impl_->buffer.get();
  limit_ = cursor_ != nullptr ? cursor_ + kBufferSize : nullptr;
  return true;
}

bool CFile::Open(const CString& path, unsigned flags, CFileException* exception) {
  const std::u16string_view text = path.View();
  if (text.find(u'\0') == std::u16string_view::npos) {
    return Open(path.GetString(), flags, exception);
  }
  if (exception != nullptr) {
    std::u16string shown(text);
    std::ranges::replace(shown, u'\0', u'\uFFFD');
    *exception = CFileException(CFileException::badPath, -1, shown.c_str());
    exception->m_strReason = u" could not be opened because its name has a zero character.";
  }
  return false;
}

bool CFile::IsOpen() const { return impl_ != nullptr; }

void CFile::WriteSlow(const void* data, std::size_t count) {
  if (count == 0) {
    return;
  }
  if (impl_ == nullptr || data == nullptr) {
    throw CFileException(CFileException::invalidFile, -1,
                         impl_ != nullptr ? impl_->path.GetString() : nullptr);
  }
  const char* bytes = static_cast<const char*>(data);
  const std::size_t fitting = std::min(count, static_cast<std::size_t>(limit_ - cursor_));
  cursor_ = std::copy_n(bytes, fitting, cursor_);
  Flush();
  bytes += fitting;
  count -= fitting;
  if (count >= static_cast<std::size_t>(limit_ - cursor_)) {
    impl_->Write(bytes, count);
  } else {
    cursor_ = std::copy_n(bytes, count, cursor_);
  }
}

void CFile::MakeRoom() {
  if (cursor_ == nullptr) {
    throw CFileException(CFileException::invalidFile, -1,
                         impl_ != nullptr ? impl_->path.GetString() : nullptr);
  }
  Flush();
}

void CFile::Flush() {
  char* const start = impl_ != nullptr ? impl_->buffer.get() : nullptr;
  if (start == cursor_) {
    return;
  }
  const auto gathered = static_cast<std::size_t>(cursor_ - start);
  // Before the write: after a failure nothing of it may go out again.
  cursor_ = start;
  impl_->Write(start, gathered);
}

void CFile::Close() {
  if (impl_ == nullptr) {
    return;
  }
  const std::unique_ptr<Impl> closing = std::exchange(impl_, nullptr);
  const auto gathered = static_cast<std::size_t>(cursor_ - closing->buffer.get());
  cursor_ = nullptr;
  limit_ = nullptr;
  closing->Write(closing->buffer.get(), gathered);
  closing->Close();
}

CFileException::Cause CFileException::OsErrorToCause(long osError) {
  switch (osError) {
    case 0:
      return none;
    case ENOENT:
      return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return badPath;
    case EMFILE:
    case ENFILE:
      return tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EEXIST:
      return accessDenied;
    case EBADF:
      return invalidFile;
    case ESPIPE:
      return badSeek;
    case EIO:
      return hardIO;
    case EWOULDBLOCK:
    case EBUSY:
    case ETXTBSY:
      return sharingViolation;
    case EDEADLK:
    case ENOLCK:
      return lockViolation;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return diskFull;
    default:
      return genericException;
  }
}

}  // namespace kt_platform
