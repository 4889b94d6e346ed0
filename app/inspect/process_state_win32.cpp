#include "app/inspect/process_state.h"

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <system_error>

#include "platform/windows_api.h"

namespace dxf2d {

namespace {

std::vector<std::string> environmentNow() {
  std::vector<std::string> entries;
  wchar_t* const all = GetEnvironmentStringsW();
  for (const wchar_t* entry = all; *entry != L'\0'; entry += std::wstring_view(entry).size() + 1) {
    entries.push_back(std::filesystem::path(entry).string());
  }
  FreeEnvironmentStringsW(all);
  std::ranges::sort(entries);
  return entries;
}

}  // namespace

ProcessState::ThreadCounter::ThreadCounter() = default;

std::size_t ProcessState::ThreadCounter::Count() const { return 0; }

ProcessState::ProcessState(const ThreadCounter& threads)
    : threads_(threads.Count()),
      locale_(std::setlocale(LC_ALL, nullptr)),
      environment_(environmentNow()) {
  std::error_code ignored;
  directory_ = std::filesystem::current_path(ignored).string();
}

// Neither open files nor threads: the system opens and starts some of its own.
std::string ProcessState::ChangeIn(const ProcessState& later) const {
  return SettingChangedIn(later);
}

}  // namespace dxf2d
