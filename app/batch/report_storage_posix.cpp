#include "app/batch/report_storage.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "app/cli/translation.h"
#include "app/output/output_failures.h"

namespace dxf2d::batch {

Descriptor openReport(const std::string& path) {
  Descriptor file(retryInterrupted([&] {
    return open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
                0666);
  }));
  if (!file.IsOpen()) {
    failCreatingBeside(path, path, errno);
  }
  struct stat status {};
  if (fstat(file.Number(), &status) != 0 || !S_ISREG(status.st_mode)) {
    failCreating(path, tr("it is not a regular file"), tr("choose another name"));
  }
  if (flock(file.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    failCreating(path, tr("another run is writing it"),
                 tr("wait for that run or choose another name"));
  }
  return file;
}

Descriptor openReportToRead(const std::string& path) {
  return Descriptor(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

std::string reportText(int file, const std::string& path) {
  std::string text;
  char bytes[1 << 16];
  while (true) {
    const ssize_t count = retryInterrupted(
        [&] { return pread(file, bytes, sizeof bytes, static_cast<off_t>(text.size())); });
    if (count < 0) {
      throw OutputError(kExitInput,
                        {path, tr("cannot be read: %1", {reasonOf(errno)}), checkDisk()});
    }
    if (count == 0) {
      return text;
    }
    text.append(bytes, static_cast<std::size_t>(count));
  }
}

void cutReport(int file, std::size_t size, const std::string& path) {
  if (ftruncate(file, static_cast<off_t>(size)) != 0) {
    failWriting(path, errno);
  }
}

}  // namespace dxf2d::batch
