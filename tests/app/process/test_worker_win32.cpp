// A worker program whose tasks end in every way that a worker can end on Windows.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/cli/failure.h"
#include "app/cli/program_arguments.h"
#include "app/process/worker_program.h"
#include "platform/windows_api.h"

namespace dxf2d {

namespace {

using Words = std::span<const std::string>;

int echo(Words words) {
  beginStage("echoing");
  for (const std::string& word : words) {
    tellParent(word + "\n");
  }
  note("a note");
  return kExitDone;
}

int tellMuch(Words /*words*/) {
  const std::string part(std::size_t{1} << 20U, 'x');
  for (int i = 0; i < 8; ++i) {
    tellParent(part);
  }
  return kExitInput;
}

int readNull(Words /*words*/) {
  const volatile int* volatile nowhere = nullptr;
  return *nowhere;
}

// Uses all of the stack. The sum keeps the calls from becoming a loop.
int recurse(int depth) {
  volatile char block[4096];
  block[0] = static_cast<char>(depth);
  return recurse(depth + 1) + block[0];
}

int takeMemory(Words /*words*/) {
  constexpr std::size_t kPart = std::size_t{16} << 20U;
  std::vector<std::unique_ptr<char[]>> parts;
  while (true) {
    parts.push_back(std::make_unique_for_overwrite<char[]>(kPart));
    std::memset(parts.back().get(), 1, kPart);
  }
}

int burn(Words /*words*/) {
  for (volatile unsigned count = 0;; count = count + 1) {
  }
}

int wait(Words /*words*/) {
  Sleep(INFINITE);
  return kExitDone;
}

// What a process is that may not be started, in its exit code.
int startProcess(Words /*words*/) {
  wchar_t line[] = L"cmd.exe /c exit";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  const BOOL isStarted =
      CreateProcessW(nullptr, line, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started);
  return isStarted != 0 ? kExitDone : kExitLimit;
}

const WorkerTask kTasks[] = {
    {"echo", &echo},
    {"tell-much", &tellMuch},
    {"read-null", &readNull},
    {"overflow", [](Words) { return recurse(0); }},
    {"abort", [](Words) -> int { std::abort(); }},
    {"exit", [](Words words) -> int { std::exit(std::stoi(words[0])); }},
    {"throw-bad-alloc", [](Words) -> int { throw std::bad_alloc(); }},
    {"throw", [](Words) -> int { throw std::runtime_error("odd"); }},
    {"throw-in-noexcept", [](Words) noexcept -> int { throw std::runtime_error("odd"); }},
    {"take-memory", &takeMemory},
    {"burn", &burn},
    {"wait", &wait},
    {"start-process", &startProcess},
};

}  // namespace

}  // namespace dxf2d

int main(int argc, char** argv) {
  dxf2d::ProgramArguments arguments(argc, argv);
  dxf2d::runWorkerProgram(dxf2d::kTasks, arguments.Count(), arguments.Words());
}
