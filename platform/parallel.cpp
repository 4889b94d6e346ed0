#include "platform/parallel.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <charconv>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace dxf2d {

namespace {

// The whole number that an environment variable holds; anything else is as if it were not set.
std::optional<std::size_t> numberFrom(const char* variable) {
  const char* const text = std::getenv(variable);
  if (text == nullptr) {
    return std::nullopt;
  }
  const std::string_view digits(text);
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number);
  return error == std::errc() && end == digits.end() ? std::optional(number) : std::nullopt;
}

Threading readThreading() {
  // Below, starting threads takes as long as they save.
  constexpr std::size_t kLeastWork = 100'000;
  // 0 where the system does not tell.
  const std::size_t processors = std::thread::hardware_concurrency();
  return {std::clamp<std::size_t>(numberFrom("KT_THREADS").value_or(processors), 1, kMostThreads),
          numberFrom("KT_THREADS_FROM").value_or(kLeastWork)};
}

// What the threads of one call of runInParallel have in common.
class SharedWork {
 public:
  SharedWork(std::size_t count, const std::function<void(std::size_t)>& work)
      : count_(count), work_(work) {}

  // Takes one call after the other until none is left.
  void Take() noexcept {
    for (std::size_t number = next_++; number < count_; number = next_++) {
      try {
        work_(number);
      } catch (...) {
        Fail(number);
      }
    }
  }
  void RethrowFailure() const {
    if (failure_) {
      std::rethrow_exception(failure_);
    }
  }

 private:
  void Fail(std::size_t number) noexcept {
    const std::lock_guard lock(mutex_);
    if (!failure_ || number < failed_) {
      failure_ = std::current_exception();
      failed_ = number;
    }
    next_ = count_;
  }

  std::size_t count_;
  const std::function<void(std::size_t)>& work_;
  std::atomic<std::size_t> next_{0};
  std::mutex mutex_;
  std::exception_ptr failure_;
  std::size_t failed_ = 0;
};

// Threads that are joined in any case.
class Helpers {
 public:
  Helpers(std::size_t count, SharedWork& work) {
    try {
      threads_.reserve(count);
      while (threads_.size() < count) {
        threads_.emplace_back([&work] { work.Take(); });
      }
    } catch (const std::system_error&) {
      // No more of them.
    } catch (const std::bad_alloc&) {
      // Nor is there memory for them.
    }
  }
  ~Helpers() {
    for (std::thread& thread : threads_) {
      thread.join();
    }
  }
  Helpers(const Helpers&) = delete;
  Helpers& operator=(const Helpers&) = delete;

 private:
  std::vector<std::thread> threads_;
};

}  // namespace

const Threading& processThreading() {
  static const Threading threading = readThreading();
  return threading;
}

void runInParallel(std::size_t count, std::size_t threads,
                   const std::function<void(std::size_t)>& work) {
  assert(threads >= 1);
  SharedWork shared(count, work);
  {
    const Helpers helpers(std::min(threads, std::max<std::size_t>(count, 1)) - 1, shared);
    shared.Take();
  }
  shared.RethrowFailure();
}

}  // namespace dxf2d
