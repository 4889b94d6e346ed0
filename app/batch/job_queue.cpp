#include "app/batch/job_queue.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace dxf2d::batch {

namespace {

class Queue {
 public:
  Queue(const std::vector<std::uint64_t>& memoryOf, const JobLimits& limits,
        const std::function<bool(std::size_t)>& run)
      : memoryOf_(memoryOf), memory_(limits.memory), run_(run) {}

  // Until no job is left.
  void Work() {
    std::unique_lock lock(mutex_);
    while (true) {
      changed_.wait(lock, [&] { return IsOver() || FitsNext(); });
      if (IsOver()) {
        return;
      }
      const std::size_t job = next_++;
      inUse_ += memoryOf_[job];
      ++running_;
      lock.unlock();
      const bool goesOn = run_(job);
      lock.lock();
      inUse_ -= memoryOf_[job];
      --running_;
      isStopped_ = isStopped_ || !goesOn;
      changed_.notify_all();
    }
  }

 private:
  bool IsOver() const { return isStopped_ || next_ == memoryOf_.size(); }
  bool FitsNext() const {
    return memory_ == 0 || running_ == 0 ||
           (inUse_ <= memory_ && memoryOf_[next_] <= memory_ - inUse_);
  }

  const std::vector<std::uint64_t>& memoryOf_;
  std::uint64_t memory_;
  const std::function<bool(std::size_t)>& run_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t next_ = 0;
  std::size_t running_ = 0;
  std::uint64_t inUse_ = 0;
  bool isStopped_ = false;
};

}  // namespace

void runJobs(const std::vector<std::uint64_t>& memoryOf, const JobLimits& limits,
             const std::function<bool(std::size_t)>& run) {
  Queue queue(memoryOf, limits, run);
  const std::size_t count = std::min<std::size_t>(std::max(limits.jobs, 1U), memoryOf.size());
  std::vector<std::thread> others;
  for (std::size_t i = 1; i < count; ++i) {
    others.emplace_back([&] { queue.Work(); });
  }
  queue.Work();
  for (std::thread& thread : others) {
    thread.join();
  }
}

}  // namespace dxf2d::batch
