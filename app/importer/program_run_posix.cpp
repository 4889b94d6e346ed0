#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/importer/program_run.h"
#include "app/process/confinement.h"

namespace dxf2d {
namespace {

// The words of the call before the importer's command.
enum Word : std::size_t { kResult, kMessages, kReadable, kModel, kOwnFiles, kScratch, kCommand };

// Both streams go to the messages: what the importer prints is for programmers but for its last
// line.
bool redirectStreams(int messages) {
  return dup2(messages, STDOUT_FILENO) >= 0 && dup2(messages, STDERR_FILENO) >= 0;
}

Confinement rulesFor(std::span<const std::string> words, int result, int messages) {
  Confinement rules;
  rules.readable = {words[kReadable], words[kModel]};
  rules.writable = {messages};
  if (result >= 0) {
    rules.writable.push_back(result);
  }
  if (!words[kScratch].empty()) {
    rules.scratch = {words[kScratch]};
  }
  rules.programs = systemFiles();
  rules.programs.push_back(words[kOwnFiles]);
  return rules;
}

// Binary glTF can be no larger; the user's disk can.
void limitFiles() {
  constexpr rlim_t kMost = rlim_t{4} << 30;
  struct rlimit limits {};
  if (getrlimit(RLIMIT_FSIZE, &limits) == 0) {
    limits.rlim_cur = std::min(limits.rlim_cur, kMost);
    setrlimit(RLIMIT_FSIZE, &limits);
  }
}

int becomeImporter(std::span<const std::string> words) {
  const int result = std::stoi(words[kResult]);
  const int messages = std::stoi(words[kMessages]);
  limitFiles();
  confine(rulesFor(words, result, messages));
  std::vector<std::string> command(words.begin() + kCommand, words.end());
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (std::string& word : command) {
    arguments.push_back(word.data());
  }
  arguments.push_back(nullptr);
  if (redirectStreams(messages)) {
    execvp(arguments.front(), arguments.data());
  }
  return fail(kExitInternal,
              {command.front(), tr("the importer cannot be started: %1", {strerror(errno)}),
               tr("install it again with what it needs")});
}

}  // namespace

WorkerTask importTask() { return {kImportTask, becomeImporter}; }

}  // namespace dxf2d
