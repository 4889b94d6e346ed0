// Room for members that later versions of this SDK bring.
#pragma once

#include <cstddef>
#include <cstdint>

// The last member of each struct that hosts fill. Later 1.x versions turn some of its words into
// members, for which 0 means what the struct meant without them; so the struct keeps its size, and
// hosts and libraries of different versions work together. Hosts leave it alone.
template <std::size_t kWords>
struct KtReserved {
  std::uint64_t words[kWords] = {};
};
