#include "app/cli/failure.h"

#include <cassert>
#include <cstdio>
#include <exception>

#include "app/cli/printable.h"
#include "app/cli/translation.h"

namespace dxf2d {

std::string sentenceOf(const Message& message) {
  assert(!message.problem.empty() && !message.remedy.empty());
  const std::string subject = message.subject.empty() ? "" : message.subject + ": ";
  return subject + message.problem + "; " + message.remedy;
}

void printLine(std::FILE* stream, const std::string& line) {
  const std::lock_guard lock(printing);
  if (clearProgress != nullptr) {
    clearProgress();
  }
  std::fprintf(stream, "%s\n", printable(line).c_str());
}

void note(const std::string& sentence) {
  if (noteSink != nullptr) {
    noteSink(sentence);
    return;
  }
  lastSentence = sentence;
  printLine(stderr, "dxf2d: " + sentence);
}

int fail(int code, const Message& message) {
  note(sentenceOf(message));
  return code;
}

void flushStandardOutput() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    throw Failure(kExitWriteFailed, {"", tr("standard output cannot be written"),
                                     tr("check the disk or choose another destination")});
  }
}

int failWithCurrentException() {
  try {
    throw;
  } catch (const Failure& failure) {
    note(failure.what());
    return failure.Code();
  } catch (const std::exception& error) {
    return fail(kExitInternal,
                {"", tr("internal error: %1", {error.what()}), tr("please report this")});
  }
}

}  // namespace dxf2d
