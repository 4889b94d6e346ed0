#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/process/memory_in_use.h"
#include "app/process/refused_memory.h"
#include "app/process/stack_growth.h"
#include "app/process/worker_program.h"
#include "app/process/worker_protocol.h"

namespace dxf2d {

namespace {

// Of a worker that cannot do its task; the parent knows the reason or finds none.
constexpr int kExitWithoutResult = 125;

int reportDescriptor = -1;

bool isRefusalNoted = false;

// ---- Reports

void writeAll(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t count = write(reportDescriptor, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) {
      // Without its parent the report has no use.
      return;
    }
    bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
  }
}

// Needs no memory.
void report(WorkerRecord kind, std::string_view text = {}) noexcept {
  const auto length = static_cast<std::uint32_t>(text.size());
  char header[kRecordHeader] = {static_cast<char>(kind)};
  std::memcpy(header + 1, &length, sizeof length);
  writeAll({header, sizeof header});
  writeAll(text.substr(0, length));
}

void reportRefusedMemory() noexcept {
  if (!isRefusalNoted) {
    isRefusalNoted = true;
    report(WorkerRecord::kMemoryRefused);
  }
}

[[noreturn]] void endWithoutMemory() {
  reportRefusedMemory();
  std::_Exit(kExitWithoutResult);
}

// For std::terminate: importers let std::bad_alloc escape from noexcept functions. Prints nothing,
// unlike the C++ library's handler, since the parent process prints the message.
[[noreturn]] void endTerminated() {
  if (std::current_exception()) {
    try {
      throw;
    } catch (const std::bad_alloc&) {
      endWithoutMemory();
    } catch (...) {
    }
  }
  std::abort();
}

// ---- Limits

// Lowers a soft limit; never raises it.
void limit(int resource, rlim_t amount) {
  struct rlimit limits {};
  if (getrlimit(resource, &limits) != 0) {
    return;
  }
  limits.rlim_cur = std::min<rlim_t>(limits.rlim_cur, amount);
  setrlimit(resource, &limits);
}

// At the hard limit the system sends SIGKILL. A soft limit one second below makes it send SIGXCPU
// first, which names the reason.
void requestCpuTimeSignal() {
  struct rlimit limits {};
  if (getrlimit(RLIMIT_CPU, &limits) != 0 || limits.rlim_max == RLIM_INFINITY) {
    return;
  }
  if (limits.rlim_max > 1) {
    limit(RLIMIT_CPU, limits.rlim_max - 1);
  }
}

// Importers recurse with the depth of a model. The system reserves at least this much address space
// for a stack, whatever its limit was when the program started.
constexpr rlim_t kStackRoom = rlim_t{120} << 20;

void raiseStack() {
  struct rlimit limits {};
  if (getrlimit(RLIMIT_STACK, &limits) != 0) {
    return;
  }
  limits.rlim_cur = std::min(limits.rlim_max, kStackRoom);
  setrlimit(RLIMIT_STACK, &limits);
}

void setLimits(const WorkerSetup& setup) {
  // A crash is reported in a message; a core file would litter the user's directory.
  limit(RLIMIT_CORE, 0);
  raiseStack();
  requestCpuTimeSignal();
  if (setup.processorTime != 0) {
    limit(RLIMIT_CPU, setup.processorTime);
  }
  if (setup.addressSpace != 0) {
    noteRefusedStackGrowth();
    limit(RLIMIT_AS, addressSpaceInUse() + setup.addressSpace);
  }
}

// ---- Start

// Without its parent the result has no use.
void endWithParent(const WorkerSetup& setup) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != setup.parentProcess) {
    std::_Exit(kExitWithoutResult);
  }
}

void closeFrom(unsigned first, unsigned last) {
  if (first > last || close_range(first, last, 0) == 0) {
    return;
  }
  // Systems without the call have limits that can be gone through.
  const long most = std::min<long>(sysconf(_SC_OPEN_MAX), 65'536);
  for (long number = first; number < most && number <= static_cast<long>(last); ++number) {
    close(static_cast<int>(number));
  }
}

void closeOtherDescriptors(const WorkerSetup& setup) {
  std::vector<int> kept = setup.descriptors;
  kept.insert(kept.end(), {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO, setup.report});
  std::ranges::sort(kept);
  unsigned next = 0;
  for (const int number : kept) {
    const auto current = static_cast<unsigned>(number);
    if (current > next) {
      closeFrom(next, current - 1);
    }
    next = current + 1;
  }
  closeFrom(next, ~0U);
}

int runTask(const WorkerTask& task, std::span<const std::string> words) {
  try {
    return task.run(words);
  } catch (const std::bad_alloc&) {
    endWithoutMemory();
  } catch (const std::exception&) {
    return failWithCurrentException();
  }
}

void begin(const WorkerSetup& setup) {
  reportDescriptor = setup.report;
  fcntl(setup.report, F_SETFD, FD_CLOEXEC);
  endWithParent(setup);
  closeOtherDescriptors(setup);
  // Messages in the user's language, and nothing else: numbers in drawings always have a point.
  std::setlocale(LC_MESSAGES, "");
  findCatalogs();
  // EPIPE and EFBIG are reported as failed writes.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::set_terminate(&endTerminated);
  noteRefusedMemory = &reportRefusedMemory;
  noteSink = [](const std::string& sentence) {
    report(WorkerRecord::kNote, noteForParent(sentence));
  };
  report(WorkerRecord::kStarted);
  setLimits(setup);
}

}  // namespace

void beginStage(std::string_view name) { report(WorkerRecord::kStage, name); }

void tellParent(std::string_view text) { report(WorkerRecord::kText, text); }

void runWorkerProgram(std::span<const WorkerTask> tasks, int argc, char** argv) {
  const std::span<const char* const> words(argv, static_cast<std::size_t>(argc));
  const std::size_t taskAt = 1 + kSetupWords;
  const auto setup = words.size() > taskAt ? setupOf(words.subspan(1, kSetupWords)) : std::nullopt;
  const auto isAsked = [&](const WorkerTask& task) {
    return std::strcmp(task.name, words[taskAt]) == 0;
  };
  const auto task = setup ? std::ranges::find_if(tasks, isAsked) : tasks.end();
  if (task == tasks.end()) {
    std::fputs("dxf2d-worker is a part of dxf2d, which starts it\n", stderr);
    std::_Exit(kExitUsage);
  }
  begin(*setup);
  const int code =
      runTask(*task, std::vector<std::string>(words.begin() + taskAt + 1, words.end()));
  if (std::fflush(stdout) != 0) {
    std::_Exit(kExitWriteFailed);
  }
  report(WorkerRecord::kReturned);
  // Not exit(): what is freed there goes with the process anyway.
  std::_Exit(code);
}

}  // namespace dxf2d
