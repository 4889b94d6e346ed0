#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include "app/cli/catalog.h"
#include "app/cli/failure.h"
#include "app/process/memory_in_use.h"
#include "app/process/refused_memory.h"
#include "app/process/stack_growth.h"
#include "app/process/worker_fork.h"
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
  text = text.substr(0, length);
  // At once, so that the parent wakes up once.
  const iovec parts[] = {{header, sizeof header}, {const_cast<char*>(text.data()), text.size()}};
  const ssize_t count = writev(reportDescriptor, parts, 2);
  const std::size_t written = count < 0 ? 0 : static_cast<std::size_t>(count);
  if (written < sizeof header) {
    writeAll({header + written, sizeof header - written});
  }
  writeAll(text.substr(std::max(written, sizeof header) - sizeof header));
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

void enter(const WorkerSetup& setup) {
  reportDescriptor = setup.report;
  fcntl(setup.report, F_SETFD, FD_CLOEXEC);
  endWithParent(setup);
  closeOtherDescriptors(setup);
}

// What is the same for each worker, and done once for those of a template.
void prepare() {
  findStackEnd();
  findCatalogs();
  // EPIPE and EFBIG are reported as failed writes.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::set_terminate(&endTerminated);
  noteRefusedMemory = &reportRefusedMemory;
  noteSink = [](const std::string& sentence) {
    report(WorkerRecord::kNote, noteForParent(sentence));
  };
}

const WorkerTask* findTask(std::span<const WorkerTask> tasks, const std::string& name) {
  const auto task =
      std::ranges::find_if(tasks, [&](const WorkerTask& known) { return known.name == name; });
  return task == tasks.end() ? nullptr : &*task;
}

[[noreturn]] void endMisused() {
  std::fputs("dxf2d-worker is a part of dxf2d, which starts it\n", stderr);
  std::_Exit(kExitUsage);
}

}  // namespace

void beginStage(std::string_view name) { report(WorkerRecord::kStage, name); }

void tellParent(std::string_view text) { report(WorkerRecord::kText, text); }

void runWorkerProgram(std::span<const WorkerTask> tasks, int argc, char** argv) {
  constexpr std::size_t kTaskAt = 1 + kSetupWords;
  std::vector<std::string> words(argv, argv + argc);
  const auto setupOfWords = [&] {
    return words.size() > kTaskAt ? setupOf(std::span(words).subspan(1, kSetupWords))
                                  : std::nullopt;
  };
  std::optional<WorkerSetup> setup = setupOfWords();
  if (!setup) {
    endMisused();
  }
  enter(*setup);
  prepare();
  if (words[kTaskAt] == kForkTask) {
    unsetenv(kBindsAtStart);
    words = serveForks(setup->report, std::span(words).subspan(kTaskAt + 1));
    setup = setupOfWords();
    enter(*setup);
  }
  const WorkerTask* const task = findTask(tasks, words[kTaskAt]);
  if (task == nullptr) {
    endMisused();
  }
  report(WorkerRecord::kStarted);
  setLimits(*setup);
  const int code = runTask(*task, std::span(words).subspan(kTaskAt + 1));
  if (std::fflush(stdout) != 0) {
    std::_Exit(kExitWriteFailed);
  }
  report(WorkerRecord::kReturned);
  // Not exit(): what is freed there goes with the process anyway.
  std::_Exit(code);
}

}  // namespace dxf2d
