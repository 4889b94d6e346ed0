#include "app/cli/failure.h"

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <exception>

#include "app/cli/printable.h"
#include "app/cli/translation.h"

namespace dxf2d {

namespace {

constexpr char kLanguageEnd = '\0';

thread_local std::string printedLast;

}  // namespace

std::string sentenceOf(const Message& message) {
  assert(!message.problem.empty() && !message.remedy.empty());
  const auto sentence = [](const std::string& subject, const std::string& problem,
                           const std::string& remedy) {
    return (subject.empty() ? "" : subject + ": ") + problem + "; " + remedy;
  };
  std::string text = sentence(message.subject, message.problem, message.remedy);
  rememberEnglish(text, sentence(inEnglish(message.subject), inEnglish(message.problem),
                                 inEnglish(message.remedy)));
  return text;
}

std::string repairFile() { return tr("repair the file or save it in another format"); }

void printLine(std::FILE* stream, const std::string& line) {
  const std::lock_guard lock(printing);
  if (clearProgress != nullptr) {
    clearProgress();
  }
  std::fprintf(stream, "%s\n", printable(line).c_str());
}

const std::string& lastSentence() { return printedLast; }

void note(const std::string& sentence) {
  if (noteSink != nullptr) {
    noteSink(sentence);
    return;
  }
  printedLast = inEnglish(sentence);
  printLine(stderr, "dxf2d: " + sentence);
}

std::string noteForParent(const std::string& sentence) {
  const std::string english = inEnglish(sentence);
  return english == sentence ? sentence : sentence + kLanguageEnd + english;
}

std::string sentenceFromWorker(const std::string& received) {
  const std::size_t end = received.find(kLanguageEnd);
  std::string sentence = received.substr(0, end);
  if (end != std::string::npos) {
    rememberEnglish(sentence, received.substr(end + 1));
  }
  return sentence;
}

void noteFromWorker(const std::string& received) { note(sentenceFromWorker(received)); }

int fail(int code, const Message& message) {
  note(sentenceOf(message));
  return code;
}

void flushStandardOutput() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    // Of the flush or, where that had nothing left to write, of what was printed before it.
    if (errno == EPIPE) {
      // Clear for the next flush, which finds the reader gone as well.
      std::clearerr(stdout);
      return;
    }
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
