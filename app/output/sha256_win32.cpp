#include "app/output/sha256.h"

#include "platform/windows_api.h"
// It needs the one above.
#include <bcrypt.h>

namespace dxf2d {

struct Sha256::State {
  BCRYPT_ALG_HANDLE algorithm = nullptr;
  BCRYPT_HASH_HANDLE hash = nullptr;
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
  BCryptOpenAlgorithmProvider(&state_->algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0);
  BCryptCreateHash(state_->algorithm, &state_->hash, nullptr, 0, nullptr, 0, 0);
}

Sha256::~Sha256() {
  BCryptDestroyHash(state_->hash);
  BCryptCloseAlgorithmProvider(state_->algorithm, 0);
}

void Sha256::Add(std::string_view bytes) {
  constexpr std::size_t kMost = std::size_t{1} << 30U;
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, kMost);
    BCryptHashData(state_->hash, reinterpret_cast<UCHAR*>(const_cast<char*>(part.data())),
                   static_cast<ULONG>(part.size()), 0);
    bytes.remove_prefix(part.size());
  }
}

std::array<std::uint8_t, 32> Sha256::Digest() {
  std::array<std::uint8_t, 32> digest{};
  BCryptFinishHash(state_->hash, digest.data(), static_cast<ULONG>(digest.size()), 0);
  return digest;
}

}  // namespace dxf2d
