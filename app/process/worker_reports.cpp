#include "app/process/worker_reports.h"

#include <cstdint>
#include <cstring>

#include "app/process/worker_protocol.h"

namespace dxf2d {

namespace {

// In bytes; lists of large models take some MiB.
constexpr std::size_t kMostBytes = std::size_t{256} << 20;

constexpr std::size_t kMostNotes = 1000;

}  // namespace

void WorkerReports::Append(std::string_view bytes) {
  total_ += bytes.size();
  isBroken_ = isBroken_ || total_ > kMostBytes;
  if (isBroken_) {
    return;
  }
  pending_ += bytes;
  while (!isBroken_ && TakeRecord()) {
  }
}

// Returns false when there is no whole record.
bool WorkerReports::TakeRecord() {
  if (pending_.size() < kRecordHeader) {
    return false;
  }
  std::uint32_t length = 0;
  std::memcpy(&length, pending_.data() + 1, sizeof length);
  if (pending_.size() - kRecordHeader < length) {
    return false;
  }
  std::string text = pending_.substr(kRecordHeader, length);
  switch (static_cast<WorkerRecord>(pending_[0])) {
    case WorkerRecord::kStarted:
      hasStarted_ = true;
      break;
    case WorkerRecord::kMemoryRefused:
      isMemoryRefused_ = true;
      break;
    case WorkerRecord::kNote:
      isBroken_ = notes_.size() == kMostNotes;
      notes_.push_back(std::move(text));
      break;
    case WorkerRecord::kText:
      text_ += text;
      break;
    case WorkerRecord::kStage:
      if (onStage_) {
        onStage_(text);
      }
      break;
    case WorkerRecord::kReturned:
      hasReturned_ = true;
      break;
    default:
      isBroken_ = true;
  }
  pending_.erase(0, kRecordHeader + length);
  return true;
}

}  // namespace dxf2d
