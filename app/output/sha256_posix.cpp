#include "app/output/sha256.h"

#include <nettle/sha2.h>

namespace dxf2d {

struct Sha256::State {
  sha256_ctx context{};
};

Sha256::Sha256() : state_(std::make_unique<State>()) { sha256_init(&state_->context); }

Sha256::~Sha256() = default;

void Sha256::Add(std::string_view bytes) {
  sha256_update(&state_->context, bytes.size(),
                reinterpret_cast<const std::uint8_t*>(bytes.data()));
}

std::array<std::uint8_t, 32> Sha256::Digest() {
  std::array<std::uint8_t, 32> digest{};
  sha256_digest(&state_->context, digest.size(), digest.data());
  return digest;
}

}  // namespace dxf2d
