// A plug-in in the hands of a model's author: it tries what the rules of its process forbid, and
// writes how that went in place of a drawing. The environment names SECRET, a file that is none of
// the model's, and BESIDE, one beside the model.
#include <fcntl.h>
#include <netinet/in.h>
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

std::string outcome(const char* deed, bool isDone) {
  return std::string(deed) + (isDone ? ": done\n" : ": refused\n");
}

bool openFile(const std::u16string& path) {
  const char* const secret = std::getenv("SECRET");
  const char* const beside = std::getenv("BESIDE");
  std::string report = outcome("read beside the model", canOpen(beside, O_RDONLY)) +
                       outcome("write beside the model", canOpen(beside, O_WRONLY)) +
                       outcome("read a secret", canOpen(secret, O_RDONLY)) +
                       outcome("write a secret", canOpen(secret, O_WRONLY)) +
                       outcome("remove a secret", unlink(secret) == 0) +
                       outcome("open a socket", socket(AF_INET, SOCK_STREAM, 0) >= 0) +
                       outcome("start a program", std::system("true") == 0) +
                       outcome("signal the parent", kill(getppid(), SIGCONT) == 0);
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
