#include "app/process/worker_start_win32.h"
#include "app/cli/file_path.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/cli/own_program.h"
#include "app/process/worker_location.h"
#include "app/process/worker_protocol.h"
#include "platform/windows_path.h"

namespace dxf2d {

namespace {

constexpr const char* kWorkerName = "dxf2d-worker.exe";

// What a process has taken when its task begins, in bytes.
constexpr std::uint64_t kTakenAtStart = std::uint64_t{64} << 20U;

// Appends a word as CommandLineToArgvW takes it apart: in quotes, with a backslash before each
// quote and each backslash of those before one.
void appendWord(std::wstring& line, const std::wstring& word) {
  line += line.empty() ? L"\"" : L" \"";
  std::size_t backslashes = 0;
  for (const wchar_t character : word) {
    if (character == L'"') {
      line.append(backslashes + 1, L'\\');
    }
    backslashes = character == L'\\' ? backslashes + 1 : 0;
    line += character;
  }
  line.append(backslashes, L'\\') += L'"';
}

std::wstring commandLineOf(const WorkerCall& call, const WorkerLimits& limits, HANDLE report) {
  // Handles have 32 bits that count.
  const auto number = static_cast<int>(reinterpret_cast<std::intptr_t>(report));
  const auto processorTime = static_cast<std::uint64_t>(limits.processorTime.count());
  std::vector<std::string> words =
      wordsOf(WorkerSetup{number, static_cast<long>(GetCurrentProcessId()), limits.addressSpace,
                          processorTime, call.descriptors});
  words.insert(words.begin(), kWorkerName);
  words.push_back(call.task);
  words.insert(words.end(), call.words.begin(), call.words.end());
  std::wstring line;
  for (const std::string& word : words) {
    appendWord(line, filePath(word).wstring());
  }
  return line;
}

int errnoOf(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return ENOENT;
    case ERROR_ACCESS_DENIED:
      return EACCES;
    case ERROR_BAD_EXE_FORMAT:
    case ERROR_EXE_MACHINE_TYPE_MISMATCH:
      return ENOEXEC;
    case ERROR_FILENAME_EXCED_RANGE:
      return E2BIG;
    default:
      return ENOMEM;
  }
}

WindowsHandle openNothing() {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  return WindowsHandle(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, kShareAll, &inherited,
                                   OPEN_EXISTING, 0, nullptr));
}

// The standard stream if the worker has it, else what is connected to nothing.
HANDLE streamFor(bool isWorkers, DWORD stream, HANDLE nothing) {
  const HANDLE own = isWorkers ? GetStdHandle(stream) : nullptr;
  if (own == nullptr || own == INVALID_HANDLE_VALUE ||
      SetHandleInformation(own, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) == 0) {
    return nothing;
  }
  return own;
}

WindowsHandle makeJob(const WorkerLimits& limits) {
  WindowsHandle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION rules{};
  JOBOBJECT_BASIC_LIMIT_INFORMATION& basic = rules.BasicLimitInformation;
  basic.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_ACTIVE_PROCESS |
                     JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION;
  // A worker starts no other programs.
  basic.ActiveProcessLimit = 1;
  if (limits.addressSpace != 0) {
    basic.LimitFlags |= JOB_OBJECT_LIMIT_PROCESS_MEMORY;
    rules.ProcessMemoryLimit = static_cast<SIZE_T>(limits.addressSpace + kTakenAtStart);
  }
  if (limits.processorTime.count() != 0) {
    // The parent looks first; it can say which limit it was.
    constexpr LONGLONG kTicks = 10'000'000;
    basic.LimitFlags |= JOB_OBJECT_LIMIT_PROCESS_TIME;
    basic.PerProcessUserTimeLimit.QuadPart = (limits.processorTime.count() + 1) * kTicks;
  }
  SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &rules, sizeof rules);
  return job;
}

// The handles that the worker inherits, and no others of this process.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    std::ranges::sort(handles_);
    handles_.erase(std::ranges::unique(handles_).begin(), handles_.end());
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_ = std::make_unique<std::byte[]>(size);
    InitializeProcThreadAttributeList(Get(), 1, 0, &size);
    UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                              handles_.size() * sizeof(HANDLE), nullptr, nullptr);
  }
  ~InheritedHandles() { DeleteProcThreadAttributeList(Get()); }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;

  LPPROC_THREAD_ATTRIBUTE_LIST Get() const {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.get());
  }

 private:
  std::vector<HANDLE> handles_;
  std::unique_ptr<std::byte[]> memory_;
};

}  // namespace

std::string workerProgram() { return (ownProgram().parent_path() / kWorkerName).generic_string(); }

int startWorker(const WorkerCall& call, const WorkerLimits& limits, HANDLE report,
                StartedWorker& worker) {
  const WindowsHandle nothing = openNothing();
  const bool readsInput = std::ranges::find(call.descriptors, 0) != call.descriptors.end();
  STARTUPINFOEXW start{};
  start.StartupInfo.cb = sizeof start;
  start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  start.StartupInfo.hStdInput = streamFor(readsInput, STD_INPUT_HANDLE, nothing.Get());
  start.StartupInfo.hStdOutput = streamFor(call.hasOutput, STD_OUTPUT_HANDLE, nothing.Get());
  start.StartupInfo.hStdError = nothing.Get();
  const InheritedHandles inherited(
      {report, nothing.Get(), start.StartupInfo.hStdInput, start.StartupInfo.hStdOutput});
  start.lpAttributeList = inherited.Get();
  worker.job = makeJob(limits);
  const std::string program = call.program.empty() ? workerProgram() : call.program;
  std::wstring line = commandLineOf(call, limits, report);
  PROCESS_INFORMATION started{};
  // Suspended until it is in its job.
  if (CreateProcessW(windowsPath(program).c_str(), line.data(), nullptr, nullptr, TRUE,
                     CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr,
                     &start.StartupInfo, &started) == 0) {
    return errnoOf(GetLastError());
  }
  worker.process = WindowsHandle(started.hProcess);
  const WindowsHandle thread(started.hThread);
  if (AssignProcessToJobObject(worker.job.Get(), started.hProcess) == 0) {
    TerminateProcess(started.hProcess, 0);
    return EACCES;
  }
  ResumeThread(started.hThread);
  return 0;
}

}  // namespace dxf2d
