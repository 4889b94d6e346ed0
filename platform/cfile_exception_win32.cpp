#include "platform/cfile_exception.h"
#include "platform/windows_api.h"

inline namespace kt_platform {

namespace {

// The headers of mingw lack this one.
constexpr long kDiskQuotaExceeded = 1295;

}  // namespace

CFileException::Cause CFileException::OsErrorToCause(long osError) {
  switch (osError) {
    case ERROR_SUCCESS:
      return none;
    case ERROR_FILE_NOT_FOUND:
      return fileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_DIRECTORY:
      return badPath;
    case ERROR_TOO_MANY_OPEN_FILES:
      return tooManyOpenFiles;
    case ERROR_ACCESS_DENIED:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_CANNOT_MAKE:
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
    case ERROR_DELETE_PENDING:
      return accessDenied;
    case ERROR_INVALID_HANDLE:
      return invalidFile;
    case ERROR_CURRENT_DIRECTORY:
      return removeCurrentDir;
    case ERROR_SEEK:
    case ERROR_NEGATIVE_SEEK:
      return badSeek;
    case ERROR_CRC:
    case ERROR_NOT_READY:
    case ERROR_WRITE_FAULT:
    case ERROR_READ_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
      return hardIO;
    case ERROR_SHARING_VIOLATION:
    case ERROR_BUSY:
      return sharingViolation;
    case ERROR_LOCK_VIOLATION:
      return lockViolation;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
      return diskFull;
    case ERROR_HANDLE_EOF:
      return endOfFile;
    default:
      return genericException;
  }
}

}  // namespace kt_platform
