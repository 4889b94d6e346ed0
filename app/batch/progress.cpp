#include "app/batch/progress.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "app/cli/failure.h"
#include "app/cli/printable.h"
#include "app/cli/terminal.h"
#include "app/cli/translation.h"
#include "app/process/termination_signals.h"

namespace dxf2d::batch {

namespace {

constexpr std::chrono::milliseconds kInterval{200};

// Of a single input, before which nothing is shown.
constexpr double kPatience = 1.0;

constexpr std::size_t kBarWidth = 20;

std::string formatted(const char* format, double value) {
  char text[32];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// "1:05" or "2:03:10".
std::string duration(double seconds) {
  const auto whole = static_cast<long>(std::min(seconds, 1e8));
  char text[32];
  if (whole >= 3600) {
    std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
  }
  return text;
}

std::string barOf(const ProgressState& state) {
  const std::size_t full = state.done * kBarWidth / state.total;
  std::string text(1, '[');
  text.append(full, '#').append(kBarWidth - full, '.').append("] ");
  text += std::to_string(state.done) + "/" + std::to_string(state.total);
  if (state.done != 0 && state.seconds > 0.0) {
    const double rate = static_cast<double>(state.done) / state.seconds;
    text += tr(", %1/s, %2 left", {formatted("%.1f", rate),
                                   duration(static_cast<double>(state.total - state.done) / rate)});
  }
  return text;
}

// At most `width` characters of UTF-8.
std::string cut(const std::string& text, std::size_t width) {
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size(); ++end) {
    const bool isBegin = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
    if (isBegin && count++ == width) {
      break;
    }
  }
  return text.substr(0, end);
}

// Whether a line stands there. Guarded by `printing`.
bool isShown = false;

void erase() {
  if (isShown) {
    std::fputs("\r\x1b[K", stderr);
    isShown = false;
  }
}

bool isSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

std::string progressLine(const ProgressState& state, std::size_t width) {
  std::string line = state.total > 1 ? barOf(state) : formatted("%.0f s", state.seconds);
  if (!state.stage.empty()) {
    line += ", " + tr(state.stage.c_str()) + " " + state.input;
  }
  return cut(printable(line), width);
}

bool isProgressShown() { return isErasable(stderr) && !isSet("CI"); }

ProgressBar::ProgressBar(std::size_t total) {
  state_.total = total;
  clearProgress = &erase;
  // Termination signals are the main thread's.
  const ScopedSignalBlock forTicker;
  ticker_ = std::thread([this] { Tick(); });
}

ProgressBar::~ProgressBar() {
  {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
  }
  ended_.notify_one();
  ticker_.join();
  const std::lock_guard lock(printing);
  erase();
  clearProgress = nullptr;
}

void ProgressBar::SetStage(std::string_view input, std::string_view stage) {
  const std::lock_guard lock(mutex_);
  state_.input = input;
  state_.stage = stage;
}

void ProgressBar::AddDone() {
  const std::lock_guard lock(mutex_);
  ++state_.done;
}

void ProgressBar::Tick() {
  std::unique_lock lock(mutex_);
  while (!ended_.wait_for(lock, kInterval, [&] { return isEnded_; })) {
    Draw();
  }
}

void ProgressBar::Draw() {
  state_.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  if (state_.total <= 1 && state_.seconds < kPatience) {
    return;
  }
  // A full line would make some terminals go on to the next.
  const std::string line = progressLine(state_, lineWidth(stderr) - 1);
  const std::lock_guard lock(printing);
  std::fprintf(stderr, "\r%s\x1b[K", line.c_str());
  std::fflush(stderr);
  isShown = true;
}

}  // namespace dxf2d::batch
