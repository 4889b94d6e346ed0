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

  // `work` returns an ExitCode and has said why unless that is kExitDone; what it throws is told as
  // Reporting does. Returns an ExitCode likewise, and in spite of a request to end, which is then
  // pending: the caller cleans up and lets it through.
  int Run(const std::function<int()>& work) const;
  // Runs `step` in this process, and makes of what it throws a sentence and a code: see
  // `reporting`; kExitLimit for std::bad_alloc.
  int Reporting(const std::function<int()>& step) const;

 private:
  int FailForMemory() const;
  int Fail(int code, const std::string& reason) const;

  std::string task_;
  std::string input_;
  std::uint64_t memory_;
  // False when the system allows less.
  bool isMemoryGranted_;
  std::chrono::seconds time_;
};
