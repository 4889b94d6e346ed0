#include <fcntl.h>
#include <spawn.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "app/process/pipe.h"
#include "app/process/signal_set_posix.h"
#include "app/process/worker_location.h"
#include "app/process/worker_protocol.h"
#include "app/process/worker_start.h"

namespace dxf2d {

namespace {

constexpr const char* kWorkerName = "dxf2d-worker";

#ifdef DXF2D_SANITIZED
// What the sanitizers have to say.
constexpr bool kHasErrors = true;
#else
constexpr bool kHasErrors = false;
#endif

// What is connected to nothing: /dev/null, or, where that is not there, a pipe that nobody reads.
Descriptor openNothing() {
  Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
  return nothing.IsOpen() ? std::move(nothing) : std::move(openPipe().writer);
}

class SpawnActions {
 public:
  SpawnActions() { posix_spawn_file_actions_init(&actions_); }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  // With equal numbers, the descriptor is no longer closed on exec.
  void Copy(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
  const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

class SpawnAttributes {
 public:
  explicit SpawnAttributes(const sigset_t& mask) {
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigmask(&attributes_, &mask);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK);
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  const posix_spawnattr_t* Get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

void addDescriptors(SpawnActions& actions, const WorkerCall& call, int report, int nothing) {
  if (std::ranges::find(call.descriptors, STDIN_FILENO) == call.descriptors.end()) {
    actions.Copy(nothing, STDIN_FILENO);
  }
  if (!call.hasOutput) {
    actions.Copy(nothing, STDOUT_FILENO);
  }
  if (!kHasErrors) {
    actions.Copy(nothing, STDERR_FILENO);
  }
  actions.Copy(report, report);
  for (const int descriptor : call.descriptors) {
    actions.Copy(descriptor, descriptor);
  }
}

sigset_t maskWithoutTerminationSignals() {
  sigset_t mask;
  pthread_sigmask(SIG_BLOCK, nullptr, &mask);
  const sigset_t requests = terminationSignals();
  for (int signal = 1; signal < NSIG; ++signal) {
    if (sigismember(&requests, signal) == 1) {
      sigdelset(&mask, signal);
    }
  }
  return mask;
}

// Pointers to what `words` holds, with null at the end.
std::vector<char*> pointersTo(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

// This process's, but for what a template needs.
std::vector<char*> environmentFor(const WorkerCall& call) {
  static std::string bindsAtStart = std::string(kBindsAtStart) + "=1";
  std::vector<char*> environment;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    environment.push_back(*entry);
  }
  if (call.task == kForkTask) {
    environment.push_back(bindsAtStart.data());
  }
  environment.push_back(nullptr);
  return environment;
}

// This program's file, with links followed; as it was called where /proc is not there.
std::filesystem::path ownProgram() {
  std::error_code error;
  std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) {
    return program;
  }
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the system passes addresses as numbers here.
  const auto* const called = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
  return std::filesystem::weakly_canonical(called == nullptr ? "dxf2d" : called, error);
}

}  // namespace

std::string workerProgram() {
  const std::filesystem::path directory = ownProgram().parent_path();
  const std::filesystem::path installed =
      directory.parent_path() / DXF2D_LIBEXEC_DIRECTORY / "dxf2d" / kWorkerName;
  std::error_code ignored;
  // In a build tree all programs stand together.
  const bool isInstalled = std::filesystem::exists(installed, ignored);
  return isInstalled ? installed.string() : (directory / kWorkerName).string();
}

std::vector<std::string> workerWords(const WorkerCall& call, const WorkerLimits& limits,
                                     int report) {
  const auto processorTime = static_cast<std::uint64_t>(limits.processorTime.count());
  std::vector<std::string> words =
      wordsOf(WorkerSetup{report, getpid(), limits.addressSpace, processorTime, call.descriptors});
  words.insert(words.begin(), kWorkerName);
  words.push_back(call.task);
  words.insert(words.end(), call.words.begin(), call.words.end());
  return words;
}

int startWorker(const WorkerCall& call, const WorkerLimits& limits, int report, pid_t& child) {
  const Descriptor nothing = openNothing();
  if (!nothing.IsOpen()) {
    return errno;
  }
  SpawnActions actions;
  addDescriptors(actions, call, report, nothing.Number());
  const SpawnAttributes attributes(maskWithoutTerminationSignals());
  std::vector<std::string> words = workerWords(call, limits, report);
  const std::string program = call.program.empty() ? workerProgram() : call.program;
  return posix_spawn(&child, program.c_str(), actions.Get(), attributes.Get(),
                     pointersTo(words).data(), environmentFor(call).data());
}

}  // namespace dxf2d
