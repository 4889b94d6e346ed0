// Progress on a terminal.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace dxf2d::batch {

struct ProgressState {
  std::size_t total = 0;
  std::size_t done = 0;
  // Since the start.
  double seconds = 0.0;
  // What is done now, and to which input; empty for nothing to tell.
  std::string stage{};
  std::string input{};
};

// A line of at most `width` characters: bar, inputs done, rate and time left of several inputs,
// stage and name of the current one.
std::string progressLine(const ProgressState& state, std::size_t width);

// Whether progress is to be shown: standard error is a terminal that can erase a line, and the
// variable CI does not say that nobody looks.
bool isProgressShown();

// Shows one line of progress on standard error, which what is printed there replaces and which goes
// with this object. May be used by several threads; there is one at a time.
class ProgressBar {
 public:
  // Of `total` inputs. Shows nothing for the first second of a single one.
  explicit ProgressBar(std::size_t total);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void SetStage(std::string_view input, std::string_view stage);
  void AddDone();

 private:
  void Tick();
  void Draw();

  const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::mutex mutex_;
  std::condition_variable ended_;
  ProgressState state_;
  bool isEnded_ = false;
  std::thread ticker_;
};

}  // namespace dxf2d::batch
