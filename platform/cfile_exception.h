// The exception for file errors, and its message for the user.
#pragma once

#include <exception>
#include <string>

#include "platform/cstring.h"
#include "platform/export.h"

inline namespace kt_platform {

// The file exception: thrown by CFile's operations, filled by CFile::Open. It crosses library
// boundaries: a host that does not include this header, perhaps because it has a CFileException of
// its own, catches it as std::exception, whose what() is the whole sentence. A host that includes
// it in addition to its own class writes kt_platform::CFileException.
class KT_PLATFORM_API CFileException : public std::exception {
 public:
  // What went wrong, by the framework's names.
  enum Cause {
    none,
    genericException,
    fileNotFound,
    badPath,
    tooManyOpenFiles,
    accessDenied,
    invalidFile,
    removeCurrentDir,
    directoryFull,
    badSeek,
    hardIO,
    sharingViolation,
    lockViolation,
    diskFull,
    endOfFile,
  };

  // `osError` is the operating system's error number (errno, or GetLastError on Windows), -1 when
  // there is none.
  // `fileName` may be null.
  explicit CFileException(Cause cause = none, long osError = -1,
                          const char16_t* fileName = nullptr);
  CFileException(const CFileException&);
  CFileException& operator=(const CFileException&);
  ~CFileException() override;

  // The cause that an operating system's error number stands for.
  static Cause OsErrorToCause(long osError);

  // Writes the sentence for the cause, with the path in it, into `buffer` of `size` characters,
  // terminating null included; a longer sentence is cut. `helpContext` may be null and is set to
  // 0. Returns false, with an empty buffer, when there is no message (cause none) or no room.
  bool GetErrorMessage(char16_t* buffer, unsigned size, unsigned* helpContext = nullptr) const;

  // The same sentence in UTF-8; empty for cause none.
  const char* what() const noexcept override;

  Cause m_cause = none;   // what OsErrorToCause gives for m_lOsError
  long m_lOsError = -1;   // the operating system's error number, -1 for none
  CString m_strFileName;  // the path as it was given
  // Replaces the part of the sentence after the file's name, such as " could not ... .", where the
  // cause's own text would say too little; empty otherwise.
  CString m_strReason;

 private:
  mutable std::string what_;
};

}  // namespace kt_platform
