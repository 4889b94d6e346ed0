#include <algorithm>
#include <bit>

#include "app/batch/job_queue.h"
#include "platform/windows_api.h"

namespace dxf2d::batch {

unsigned defaultJobCount() {
  DWORD_PTR ours = 0;
  DWORD_PTR all = 0;
  GetProcessAffinityMask(GetCurrentProcess(), &ours, &all);
  return std::max(static_cast<unsigned>(std::popcount(ours)), 1U);
}

// What can still be promised to processes: memory and the page file.
std::uint64_t availableMemory() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof status;
  return GlobalMemoryStatusEx(&status) != 0 ? std::min(status.ullAvailPhys, status.ullAvailPageFile)
                                            : 0;
}

}  // namespace dxf2d::batch
