// What a worker process reports to its parent.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dxf2d {

// Takes a worker's records apart. The worker may be in the hands of the model's author: any bytes
// may come.
class WorkerReports {
 public:
  // `onStage` is called for each stage; may be empty.
  explicit WorkerReports(std::function<void(std::string_view)> onStage = {})
      : onStage_(std::move(onStage)) {}

  // The next bytes of the pipe; records may be cut anywhere. What does not fit the protocol, or
  // exceeds 256 MiB in all, ends the reports.
  void Append(std::string_view bytes);

  bool IsBroken() const { return isBroken_; }
  bool HasStarted() const { return hasStarted_; }
  bool IsMemoryRefused() const { return isMemoryRefused_; }
  bool HasReturned() const { return hasReturned_; }
  std::vector<std::string>& Notes() { return notes_; }
  std::string& Text() { return text_; }

 private:
  bool TakeRecord();

  std::function<void(std::string_view)> onStage_;
  std::string pending_;
  std::size_t total_ = 0;
  bool isBroken_ = false;
  bool hasStarted_ = false;
  bool isMemoryRefused_ = false;
  bool hasReturned_ = false;
  std::vector<std::string> notes_;
  std::string text_;
};

}  // namespace dxf2d
