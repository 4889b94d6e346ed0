#include <sched.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <limits>
#include <string>
#include <thread>

#include "app/batch/job_queue.h"

namespace dxf2d::batch {

namespace {

constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

// MemAvailable of proc(5), in bytes.
std::uint64_t memoryOfSystem() {
  std::ifstream file("/proc/meminfo");
  for (std::string line; std::getline(file, line);) {
    unsigned long long kibibytes = 0;
    if (std::sscanf(line.c_str(), "MemAvailable: %llu kB", &kibibytes) == 1) {
      return std::uint64_t{kibibytes} << 10;
    }
  }
  return kNoLimit;
}

std::uint64_t numberIn(const std::string& path) {
  std::ifstream file(path);
  std::uint64_t number = 0;
  return file >> number ? number : kNoLimit;
}

// What the control group (version 2) may take beyond what it has taken.
std::uint64_t memoryOfGroup() {
  std::ifstream file("/proc/self/cgroup");
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("0::")) {
      continue;
    }
    const std::string group = "/sys/fs/cgroup" + line.substr(3);
    const std::uint64_t most = numberIn(group + "/memory.max");
    const std::uint64_t taken = numberIn(group + "/memory.current");
    return most == kNoLimit || taken == kNoLimit ? kNoLimit : most - std::min(most, taken);
  }
  return kNoLimit;
}

}  // namespace

unsigned defaultJobCount() {
  cpu_set_t processors;
  if (sched_getaffinity(0, sizeof processors, &processors) == 0) {
    return static_cast<unsigned>(std::max(CPU_COUNT(&processors), 1));
  }
  return std::max(std::thread::hardware_concurrency(), 1U);
}

std::uint64_t availableMemory() {
  const std::uint64_t memory = std::min(memoryOfSystem(), memoryOfGroup());
  return memory == kNoLimit ? 0 : memory;
}

}  // namespace dxf2d::batch
