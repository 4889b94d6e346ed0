#include "platform/cfile_exception.h"

#include <cerrno>

inline namespace kt_platform {

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
