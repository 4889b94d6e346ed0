// Error messages and notes: everything that dxf2d prints on stderr passes through here.
#pragma once

#include <cstdio>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>

#include "app/cli/exit_code.h"

namespace dxf2d {

// A message for the user. It reads "SUBJECT: PROBLEM; REMEDY", on one line.
struct Message {
  // The file concerned, as the user wrote it. Empty where no file is concerned.
  std::string subject;
  // What is wrong.
  std::string problem;
  // What the user can do about it, in the imperative.
  std::string remedy;
};

// What can be done about a file that is not as its format wants it.
std::string repairFile();

std::string sentenceOf(const Message& message);

// Ends a command for a reason that the user can do something about. what() is the sentence.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, Message message)
      : std::runtime_error(sentenceOf(message)), code_(code), message_(std::move(message)) {}
  // The code to exit with.
  ExitCode Code() const { return code_; }
  const Message& Text() const { return message_; }

 private:
  ExitCode code_;
  Message message_;
};

// The command line asks for something that cannot be done.
class UsageError : public Failure {
 public:
  explicit UsageError(Message message) : Failure(kExitUsage, std::move(message)) {}
};

// Prints "dxf2d: " and the message on stderr; control characters become question marks. Returns
// `code`.
int fail(int code, const Message& message);

// Prints a note on stderr, in the same form as a message.
void note(const std::string& sentence);

// What a worker process sends of a sentence: the sentence, and after a null character its English
// if it is in another language.
std::string noteForParent(const std::string& sentence);
// The sentence, whose English inEnglish then knows.
std::string sentenceFromWorker(const std::string& received);
// Prints the sentence.
void noteFromWorker(const std::string& received);

// The last sentence that this thread printed, in English.
const std::string& lastSentence();

// Takes the sentences of messages and notes in place of stderr, if any.
inline void (*noteSink)(const std::string& sentence) = nullptr;

// Held while a line is printed, since several threads may print.
inline std::mutex printing;
// Removes a line of progress, on which other lines are not to be printed, if there is one.
inline void (*clearProgress)() = nullptr;

// Prints a line as it is, but for control characters.
void printLine(std::FILE* stream, const std::string& line);

// Flushes standard output. Throws a Failure (kExitWriteFailed) when what was printed could not be
// written, but not when its reader, such as head, has closed the pipe: it has seen what it wants.
void flushStandardOutput();

// Prints the message of the exception that is being handled and returns its exit code:
// kExitInternal for anything but a Failure. To be called in a handler.
int failWithCurrentException();

// Runs `step`, which returns an exit code. What it throws is printed and becomes the exit code.
template <typename Step>
int reporting(Step step) {
  try {
    return step();
  } catch (const std::exception&) {
    return failWithCurrentException();
  }
}

}  // namespace dxf2d
