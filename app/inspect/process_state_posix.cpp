#include <fcntl.h>
#include <locale.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "app/cli/translation.h"
#include "app/inspect/process_state.h"

namespace dxf2d {

namespace {

// More than any plug-in opens; the system's own limit may be a million.
constexpr int kMostDescriptors = 4096;

std::vector<int> openDescriptors() {
  std::vector<int> open;
  for (int number = 0; number < kMostDescriptors; ++number) {
    if (fcntl(number, F_GETFD) >= 0) {
      open.push_back(number);
    }
  }
  return open;
}

std::vector<std::string> environmentNow() {
  std::vector<std::string> entries;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    entries.emplace_back(*entry);
  }
  std::ranges::sort(entries);
  return entries;
}

std::string nameOfDescriptor(int number) {
  std::error_code error;
  const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(number), error);
  return error ? tr("descriptor %1", {std::to_string(number)}) : path.string();
}

}  // namespace

ProcessState::ThreadCounter::ThreadCounter()
    : file_(open("/proc/self/stat", O_RDONLY | O_CLOEXEC)) {}

std::size_t ProcessState::ThreadCounter::Count() const {
  char text[1024];
  const ssize_t size =
      file_.IsOpen() ? pread(file_.Number(), text, sizeof text - 1, 0) : ssize_t{-1};
  if (size <= 0) {
    return 0;
  }
  text[size] = '\0';
  // The name of the program, in parentheses, is the second field; the threads are the twentieth.
  const std::string_view line(text);
  std::size_t at = line.rfind(')');
  for (int field = 2; field < 20 && at != std::string_view::npos; ++field) {
    at = line.find(' ', at + 1);
  }
  return at == std::string_view::npos ? 0 : std::strtoul(text + at + 1, nullptr, 10);
}

ProcessState::ProcessState(const ThreadCounter& threads)
    : descriptors_(openDescriptors()),
      threads_(threads.Count()),
      locale_(std::setlocale(LC_ALL, nullptr)),
      threadLocale_(uselocale(nullptr)),
      environment_(environmentNow()) {
  std::error_code ignored;
  directory_ = std::filesystem::current_path(ignored).string();
}

std::string ProcessState::ChangeIn(const ProcessState& later) const {
  for (const int number : later.descriptors_) {
    if (!std::ranges::binary_search(descriptors_, number)) {
      return tr("leaves a file open (%1)", {nameOfDescriptor(number)});
    }
  }
  for (const int number : descriptors_) {
    if (!std::ranges::binary_search(later.descriptors_, number)) {
      return tr("closes a descriptor of its host (%1)", {std::to_string(number)});
    }
  }
  if (later.threads_ != threads_) {
    return trn("leaves %1 thread where there was %2", "leaves %1 threads where there was %2",
               later.threads_, {std::to_string(later.threads_), std::to_string(threads_)});
  }
  return SettingChangedIn(later);
}

}  // namespace dxf2d
