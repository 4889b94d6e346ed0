// What a worker process is to do, and what it may use.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace dxf2d {

class WorkerTemplate;

// Resource limits of a worker; 0 for none.
struct WorkerLimits {
  // Bytes of address space beyond what is in use at its start. Allocations beyond it are refused.
  std::uint64_t addressSpace = 0;
  // Bytes of memory that are the worker's alone and not in files. This process looks every few
  // milliseconds and ends a worker that has more.
  std::uint64_t residentMemory = 0;
  std::chrono::milliseconds time{0};
  // Processor time, in which a worker that is stopped takes no part. The worker is then killed by
  // SIGXCPU.
  std::chrono::seconds processorTime{0};
};

// What a worker is to do. A worker is a program of its own, so that this process need not load what
// reads models, and that nothing of this process's state is there.
struct WorkerCall {
  // The name of a WorkerTask of the worker program.
  std::string task;
  std::vector<std::string> words;
  // Descriptors of this process that the task needs, under their numbers. The others, standard
  // input among them, are not the worker's.
  std::vector<int> descriptors{};
  // Whether the worker prints where this process prints. Standard error is never the worker's.
  bool hasOutput = false;
  // Empty: the one that belongs to this program.
  std::string program{};
  // How many threads the task may run, at least 1. The address space of those beside the first is
  // granted in addition to the limit: memory in use is limited all the same.
  unsigned threads = 1;
  // What the worker is forked from; null: the program is started.
  WorkerTemplate* from = nullptr;
  // Called for each stage that the task begins, with its name; may be empty.
  std::function<void(std::string_view)> onStage{};

  // Adds words to the end.
  void Add(const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
  }
};

}  // namespace dxf2d
