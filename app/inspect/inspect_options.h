// What dxf2d inspect is asked to examine.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace dxf2d {

struct InspectOptions {
  std::string plugin;
  // For loading it, which runs its constructors, and for each walk: both take milliseconds.
  std::chrono::seconds time{60};
  // How many hosts call at random.
  std::uint32_t seeds = 4;
  bool isJson = false;
};

}  // namespace dxf2d
