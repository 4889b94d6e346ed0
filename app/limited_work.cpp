#include "app/limited_work.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "app/failure.h"
#include "app/guarded_run.h"

namespace {

// A model takes ten to twenty times its size in its file; the rest is room for packed and
// referenced files. A file that announces more than it can hold is stopped there, instead of taking
// all the memory there is.
std::uint64_t memoryFor(const std::string& path) {
  constexpr std::uint64_t kRoom = std::uint64_t{2} << 30;
  constexpr std::uint64_t kTimesFileSize = 64;
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  return kRoom + (error ? 0 : kTimesFileSize * size);
}

// What the working process ends with when it has no memory left and cannot say so; beyond all exit
// codes.
constexpr int kOutOfMemory = 125;

// For std::terminate. Readers let std::bad_alloc through where nothing may be thrown. The words
// that the C++ library would have are left out: the waiting process says what happened.
[[noreturn]] void endTerminated() {
  if (std::current_exception()) {
    try {
      throw;
    } catch (const std::bad_alloc&) {
      std::_Exit(kOutOfMemory);
    } catch (...) {
    }
  }
  std::abort();
}

}  // namespace

LimitedWork::LimitedWork(std::string task, std::string input, const WorkLimits& limits)
    : task_(std::move(task)),
      input_(std::move(input)),
      memory_(limits.memory ? *limits.memory : memoryFor(input_)),
      isMemoryGranted_(isMemoryGranted(memory_)),
      time_(limits.time) {}

int LimitedWork::Run(const std::function<int()>& work) const {
  const auto terminable = [&] {
    std::set_terminate(&endTerminated);
    return Reporting(work);
  };
  const GuardedEnd end = runGuarded(terminable, {memory_, time_});
  switch (end.how) {
    case GuardedEnd::How::kReturned:
      return end.number;
    case GuardedEnd::How::kExited:
      if (end.number == kOutOfMemory) return FailForMemory();
      return Fail(kExitInput, "it ends its reader in the middle (exit code " +
                                  std::to_string(end.number) +
                                  "); mend it or save it in another format");
    case GuardedEnd::How::kSignal:
      if (end.number == SIGKILL) {
        return Fail(kExitLimit, "the system stopped it, likely for want of memory; free some");
      }
      if (end.number == SIGXCPU) {
        return Fail(kExitLimit,
                    "it takes more processor time than the system allows (ulimit -t); raise that");
      }
      return Fail(kExitInput, std::string("it brings its reader down (") + strsignal(end.number) +
                                  "); mend it or save it in another format");
    case GuardedEnd::How::kOutOfTime:
      return Fail(kExitLimit, "it takes longer than the " + std::to_string(time_.count()) +
                                  " s that --max-time allows; raise that or take a part of it");
    case GuardedEnd::How::kNotStarted:
      return Fail(kExitLimit, std::string("no process can be started for it (") +
                                  strerror(end.number) + "); end other programs");
    case GuardedEnd::How::kAskedToEnd:
      break;
  }
  return kExitInternal;
}

int LimitedWork::Reporting(const std::function<int()>& step) const {
  return reporting([&] {
    try {
      return step();
    } catch (const std::bad_alloc&) {
      return FailForMemory();
    }
  });
}

int LimitedWork::FailForMemory() const {
  if (!isMemoryGranted_) {
    return Fail(kExitLimit,
                "it needs more memory than the system allows (ulimit -v, ulimit -d); raise that or "
                "take a part of it");
  }
  return Fail(kExitLimit, "it needs more than the " + std::to_string(memory_ >> 20) +
                              " MiB of memory that --max-memory allows; raise that or take a part "
                              "of it");
}

int LimitedWork::Fail(int code, const std::string& reason) const {
  return fail(code, "cannot " + task_ + " '" + input_ + "': " + reason);
}
