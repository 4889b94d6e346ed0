#include "app/process/worker_program.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

#include "app/cli/catalog.h"
#include "app/cli/failure.h"
#include "app/process/refused_memory.h"
#include "app/process/standard_streams.h"
#include "app/process/worker_protocol.h"
#include "platform/windows_api.h"

namespace dxf2d {

namespace {

// Of a worker that cannot do its task; the parent knows the reason or finds none.
constexpr UINT kExitWithoutResult = 125;

HANDLE reportPipe = nullptr;

bool isRefusalNoted = false;

[[noreturn]] void endWith(UINT code) {
  // Not ExitProcess, in which libraries run code of theirs.
  TerminateProcess(GetCurrentProcess(), code);
  std::_Exit(static_cast<int>(code));
}

// ---- Reports

void writeAll(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    DWORD count = 0;
    if (WriteFile(reportPipe, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) ==
        0) {
      // Without its parent the report has no use.
      return;
    }
    bytes.remove_prefix(count);
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
  endWith(kExitWithoutResult);
}

// All libraries of the process take their memory from one C++ library, which calls this.
[[noreturn]] void refuseMemory() {
  reportRefusedMemory();
  throw std::bad_alloc();
}

// For std::terminate: importers let std::bad_alloc escape from noexcept functions.
[[noreturn]] void endTerminated() {
  if (std::current_exception()) {
    try {
      throw;
    } catch (const std::bad_alloc&) {
      endWithoutMemory();
    } catch (...) {
    }
  }
  endWith(static_cast<UINT>(STATUS_STACK_BUFFER_OVERRUN));
}

// ---- Crashes

// Says how the process ended by its exit code. Without this the system looks for a debugger, and
// shows a box.
LONG WINAPI endCrashed(EXCEPTION_POINTERS* crash) {
  endWith(crash->ExceptionRecord->ExceptionCode);
}

// The C library would print a sentence.
void endAborted(int /*signal*/) { endWith(static_cast<UINT>(STATUS_STACK_BUFFER_OVERRUN)); }

// For what runs when the stack is used up.
constexpr ULONG kStackForCrashes = 64UL << 10U;

void catchCrashes() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(&endCrashed);
  ULONG stack = kStackForCrashes;
  SetThreadStackGuarantee(&stack);
  std::signal(SIGABRT, &endAborted);
  std::set_terminate(&endTerminated);
}

// ---- Limits

// What a job ends a process with that has used up its time.
constexpr UINT kTimeUsedUp = ERROR_NOT_ENOUGH_QUOTA;

constexpr DWORD kTimeInterval = 50;

// In the units of Windows; 0: no limit.
std::uint64_t mostProcessorTime = 0;

std::uint64_t ticksOf(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime;
}

// Ends the process when it has used up its time. Not every system keeps a job's limit, or tells the
// parent how much a process has used.
DWORD WINAPI watchTime(void* /*unused*/) {
  for (;;) {
    FILETIME begin{};
    FILETIME end{};
    FILETIME system{};
    FILETIME user{};
    if (GetProcessTimes(GetCurrentProcess(), &begin, &end, &system, &user) != 0 &&
        ticksOf(system) + ticksOf(user) >= mostProcessorTime) {
      endWith(kTimeUsedUp);
    }
    Sleep(kTimeInterval);
  }
}

void limitProcessorTime(std::uint64_t seconds) {
  constexpr std::uint64_t kTicks = 10'000'000;
  mostProcessorTime = seconds * kTicks;
  if (seconds != 0) {
    CloseHandle(CreateThread(nullptr, kStackForCrashes, &watchTime, nullptr,
                             STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
  }
}

// The parent is told, too, and ends this process when it has cleaned up.
BOOL WINAPI waitForParent(DWORD /*event*/) {
  Sleep(INFINITE);
  return TRUE;
}

// ---- Start

int runTask(const WorkerTask& task, std::span<const std::string> words) {
  try {
    return task.run(words);
  } catch (const std::bad_alloc&) {
    endWithoutMemory();
  } catch (const std::exception&) {
    return failWithCurrentException();
  }
}

// The limit on memory is that of the job that this process is in.
void begin(const WorkerSetup& setup) {
  reportPipe = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(setup.report));
  SetConsoleCtrlHandler(&waitForParent, TRUE);
  reserveStandardStreams();
  findCatalogs();
  catchCrashes();
  limitProcessorTime(setup.processorTime);
  std::set_new_handler(&refuseMemory);
  noteRefusedMemory = &reportRefusedMemory;
  noteSink = [](const std::string& sentence) {
    report(WorkerRecord::kNote, noteForParent(sentence));
  };
  report(WorkerRecord::kStarted);
}

}  // namespace

void beginStage(std::string_view name) { report(WorkerRecord::kStage, name); }

void tellParent(std::string_view text) { report(WorkerRecord::kText, text); }

void runWorkerProgram(std::span<const WorkerTask> tasks, int argc, char** argv) {
  constexpr std::size_t kTaskAt = 1 + kSetupWords;
  const std::vector<std::string> words(argv, argv + argc);
  const auto setup =
      words.size() > kTaskAt ? setupOf(std::span(words).subspan(1, kSetupWords)) : std::nullopt;
  const auto task =
      setup ? std::ranges::find(tasks, words[kTaskAt], &WorkerTask::name) : tasks.end();
  if (task == tasks.end()) {
    std::fputs("dxf2d-worker is a part of dxf2d, which starts it\n", stderr);
    endWith(kExitUsage);
  }
  begin(*setup);
  const int code = runTask(*task, std::span(words).subspan(kTaskAt + 1));
  if (std::fflush(stdout) != 0) {
    endWith(kExitWriteFailed);
  }
  report(WorkerRecord::kReturned);
  endWith(static_cast<UINT>(code));
}

}  // namespace dxf2d
