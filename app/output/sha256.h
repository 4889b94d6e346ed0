// SHA-256 (FIPS 180-4).
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

namespace dxf2d {

class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;

  void Add(std::string_view bytes);
  // Of all that was added. To be called once.
  std::array<std::uint8_t, 32> Digest();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace dxf2d
