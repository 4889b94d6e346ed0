// Binary files of the application framework.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstring>
#include <memory>

#include "platform/cfile_exception.h"
#include "platform/cstring.h"
#include "platform/export.h"

inline namespace kt_platform {

// A file that one object owns. Bytes are written as given, with no text translation.
//
// What is written is gathered in memory and reaches the operating system when the buffer is full
// and at Flush, Close and destruction; the bytes in the file do not depend on where the calls cut
// them. A failure surfaces as CFileException from the call that met it; what was gathered is then
// dropped, so that nothing is written twice, and what preceded the failure is in the file as far
// as the disk took it.
//
// Not safe for use from several threads at a time.
class KT_PLATFORM_API CFile {
 public:
  // Open flags. No sharing flag means exclusive access: while this object has the file open, a
  // second Open of it fails with a sharing violation and leaves its bytes alone. Devices and pipes
  // are not locked.
  static constexpr unsigned modeRead = 0x0000;
  static constexpr unsigned modeWrite = 0x0001;
  // Creates the file; an existing one is truncated. Goes with modeWrite; alone, access is denied.
  static constexpr unsigned modeCreate = 0x1000;

  CFile();
  // Flushes and closes; errors are ignored, as a destructor must not throw. Call Close to get them.
  ~CFile();
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  // Opens `path` (UTF-16; see platform/path_text.h for names that are not UTF-8). On failure
  // returns false and, when `exception` is not null, fills it with the cause and the path.
  // Opening an object that is open already is a failure (invalidFile); the open file stays.
  bool Open(const char16_t* path, unsigned flags, CFileException* exception = nullptr);
  // The same for a path that may hold U+0000, which no file's name can: such a path is not cut but
  // refused (badPath).
  bool Open(const CString& path, unsigned flags, CFileException* exception = nullptr);
  bool IsOpen() const;

  // Appends `count` bytes, which may be 0. Throws CFileException: invalidFile when no file is open
  // for writing or `data` is null, otherwise what the operating system reports.
  void Write(const void* data, std::size_t count) {
    // Also true of no room at all, so that the copy below never has a null target.
    if (data == nullptr || count >= static_cast<std::size_t>(limit_ - cursor_)) {
      WriteSlow(data, count);
      return;
    }
    std::memcpy(cursor_, data, count);
    cursor_ += count;
  }
  // For bytes that are made in place: Reserve returns room for `count` of them, at most
  // kMaxReserve, after those written; Commit counts the first `count` of them as written. The room
  // is lost at any other call. Throws as Write does.
  static constexpr std::size_t kMaxReserve = 4096;
  char* Reserve(std::size_t count) {
    assert(count <= kMaxReserve);
    if (count >= static_cast<std::size_t>(limit_ - cursor_)) {
      MakeRoom();
    }
    return cursor_;
  }
  void Commit(std::size_t count) {
    assert(count <= static_cast<std::size_t>(limit_ - cursor_));
    cursor_ += count;
  }
  // Writes all buffered bytes to the operating system. Does nothing when no file is open. Throws
  // CFileException.
  void Flush();
  // Flushes and closes. Does nothing when no file is open. The file is closed even when this
  // throws.
  void Close();

 private:
  void WriteSlow(const void* data, std::size_t count);
  // Throws invalidFile when no file is open for writing.
  void MakeRoom();

  struct Impl;
  std::unique_ptr<Impl> impl_;
  // The free room of the buffer; both null while no file is open.
  char* cursor_ = nullptr;
  char* limit_ = nullptr;
};

}  // namespace kt_platform
