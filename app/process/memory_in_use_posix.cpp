#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>

#include "app/process/memory_in_use.h"

namespace dxf2d {

namespace {

// In pages (proc(5)).
struct MemoryStatistics {
  unsigned long long size = 0;
  unsigned long long resident = 0;
  // Of the resident ones, those of files and of shared memory.
  unsigned long long shared = 0;
};

// `process` is a number or "self". Zeros when the system does not say.
MemoryStatistics statisticsOf(const std::string& process) {
  const std::string path = "/proc/" + process + "/statm";
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"),
                                                             &std::fclose);
  MemoryStatistics pages;
  if (file == nullptr ||
      std::fscanf(file.get(), "%llu %llu %llu", &pages.size, &pages.resident, &pages.shared) != 3) {
    return {};
  }
  return pages;
}

std::uint64_t bytesOf(unsigned long long pages) {
  return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace

std::uint64_t addressSpaceInUse() { return bytesOf(statisticsOf("self").size); }

std::uint64_t residentMemoryOf(pid_t process) {
  const MemoryStatistics pages = statisticsOf(std::to_string(process));
  return pages.resident > pages.shared ? bytesOf(pages.resident - pages.shared) : 0;
}

}  // namespace dxf2d
