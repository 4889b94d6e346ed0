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
  return depth < 0 ? 0 : recurse(depth / 2 + 1) + block[0];
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
  volatile bool goesOn = true;
  while (goesOn) {
  }
  return kExitDone;
}

int throwOdd(Words /*words*/) { throw std::runtime_error("odd"); }

int wait(Words /*words*/) {
  Sleep(INFINITE);
  return kExitDone;
}

const WorkerTask kTasks[] = {
    {"echo", &echo},
    {"tell-much", &tellMuch},
    {"read-null", &readNull},
    {"overflow", [](Words) { return recurse(0); }},
    {"abort", [](Words) -> int { std::abort(); }},
    {"exit", [](Words words) -> int { std::exit(std::stoi(words[0])); }},
    {"throw-bad-alloc", [](Words) -> int { throw std::bad_alloc(); }},
    {"throw", &throwOdd},
    {"throw-in-noexcept", [](Words words) noexcept { return throwOdd(words); }},
    {"take-memory", &takeMemory},
    {"burn", &burn},
    {"wait", &wait},
};

}  // namespace

}  // namespace dxf2d

int main(int argc, char** argv) {
  dxf2d::ProgramArguments arguments(argc, argv);
  dxf2d::runWorkerProgram(dxf2d::kTasks, arguments.Count(), arguments.Words());
}
