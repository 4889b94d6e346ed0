// A plug-in in the hands of a model's author: it tries what the rules of its process forbid, and
// writes how that went in place of a drawing. The environment names SECRET, a file that is none of
// the model's, and BESIDE, one beside the model.
#include <fcntl.h>
#include <linux/fs.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "platform/cfile.h"
#include "tests/app/inspect/modules/plugin_entry.h"

namespace {

bool canOpen(const char* path, int flags) {
  const int file = path == nullptr ? -1 : open(path, flags | O_CLOEXEC);
  close(file);
  return file >= 0;
}

// A descriptor may have its process signaled, with a signal of the owner's choice.
bool canHaveParentSignaled() {
  const int file = open("/dev/null", O_RDONLY | O_CLOEXEC);
  const bool can = fcntl(file, F_SETOWN, getppid()) == 0 || fcntl(file, F_SETSIG, SIGCONT) == 0;
  close(file);
  return can;
}

// The time in which a process is stopped does not count. Of the signals that stop one, this is one
// that can be ignored, so that the test goes on.
bool canStopItself() {
  std::signal(SIGTSTP, SIG_IGN);
  return kill(getpid(), SIGTSTP) == 0 || raise(SIGTSTP) == 0;
}

// Sets the limit that is there.
bool canLimit(pid_t process) {
  struct rlimit limit {};
  getrlimit(RLIMIT_CPU, &limit);
  return prlimit(process, RLIMIT_CPU, &limit, nullptr) == 0;
}

// Sets the flags that are there. Flags are not among what may be written.
bool canChangeFlags(const char* path) {
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  int flags = 0;
  const bool can =
      ioctl(file, FS_IOC_GETFLAGS, &flags) == 0 && ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
  close(file);
  return can;
}

std::string outcome(const char* deed, bool isDone) {
  return std::string(deed) + (isDone ? ": done\n" : ": refused\n");
}

bool openFile(const std::u16string& path) {
  const char* const secret = std::getenv("SECRET");
  const char* const beside = std::getenv("BESIDE");
  std::string report =
      outcome("read beside the model", canOpen(beside, O_RDONLY)) +
      outcome("write beside the model", canOpen(beside, O_WRONLY)) +
      outcome("read a secret", canOpen(secret, O_RDONLY)) +
      outcome("write a secret", canOpen(secret, O_WRONLY)) +
      outcome("remove a secret", unlink(secret) == 0) +
      outcome("open a socket", socket(AF_INET, SOCK_STREAM, 0) >= 0) +
      outcome("start a program", std::system("true") == 0) +
      outcome("signal the parent", kill(getppid(), SIGCONT) == 0) +
      outcome("have the system signal the parent", canHaveParentSignaled()) +
      outcome("stop itself", canStopItself()) +
      outcome("take memory in a file without a name", memfd_create("file", MFD_CLOEXEC) >= 0) +
      outcome("limit the parent", canLimit(getppid())) +
      outcome("change its own limits", canLimit(0)) +
      outcome("change flags of a file", canChangeFlags(beside));
  CFile file;
  if (!file.Open(path.c_str(), CFile::modeCreate | CFile::modeWrite)) {
    return false;
  }
  file.Write(report.data(), static_cast<unsigned>(report.size()));
  file.Close();
  return true;
}

}  // namespace

PLUGIN_ENTRY {
  registerCallbacks(*traverser, {.openFile = openFile});
  return true;
}
