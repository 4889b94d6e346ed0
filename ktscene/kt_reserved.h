// Room for members that later versions of this SDK bring.
#pragma once

#include <cstddef>
#include <cstdint>

// The last member of each struct that hosts fill. A later 1.x makes members of some of its words,
// of which 0 means what the struct meant without them, so that the struct keeps its size: a host
// and a library of different versions understand each other. Hosts leave it alone.
template <std::size_t kWords>
struct KtReserved {
  std::uint64_t words[kWords] = {};
};
