#include "platform/cfile.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/exclusive_file.h"

inline namespace kt_platform {

namespace {

constexpr std::size_t kBufferSize = std::size_t{256} * 1024;
static_assert(CFile::kMaxReserve < kBufferSize);

// A file that is to be created cannot be missing: its folder is.
CFileException::Cause openCause(long error, unsigned flags) {
  const CFileException::Cause cause = CFileException::OsErrorToCause(error);
  const bool isCreated = (flags & CFile::modeCreate) != 0;
  return cause == CFileException::fileNotFound && isCreated ? CFileException::badPath : cause;
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

  // Returns an error number, 0 for success.
  long Open(unsigned flags) {
    return file.Open(path.GetString(), (flags & modeWrite) != 0, (flags & modeCreate) != 0);
  }
  void Write(const char* data, std::size_t count) { Check(file.Write(data, count)); }
  void Close() { Check(file.Close()); }
  void Check(long error) const {
    if (error != 0) {
      throw CFileException(CFileException::OsErrorToCause(error), error, path);
    }
  }

  CString path;
  // Null for a file that is open for reading.
  std::unique_ptr<char[]> buffer;
  dxf2d::ExclusiveFile file;
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
  if (const long error = impl->Open(flags); error != 0) {
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
  if (cursor_ == nullptr || data == nullptr) {
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

}  // namespace kt_platform
