// Work on one input, within limits.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

struct WorkLimits {
  // In bytes; none: what the input's size lets one expect.
  std::optional<std::uint64_t> memory;
  std::chrono::seconds time = std::chrono::minutes(10);
};

// Runs what is made of one input file in a process of its own (see runGuarded), and says in one
// sentence why that did not come to its end.
class LimitedWork {
 public:
  // `task` is what is done, such as "draw".
  LimitedWork(std::string task, std::string input, const WorkLimits& limits);

  // `work` returns an ExitCode and has said why unless that is kExitDone. So does this. Returns in
  // spite of a request to end, which is then pending: the caller cleans up and lets it through.
  int Run(const std::function<int()>& work) const;
  // For std::bad_alloc: says that the memory does not suffice; returns kExitLimit.
  int FailForMemory() const;

 private:
  int Fail(int code, const std::string& reason) const;

  std::string task_;
  std::string input_;
  std::uint64_t memory_;
  std::chrono::seconds time_;
};
