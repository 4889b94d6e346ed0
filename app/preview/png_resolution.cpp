#include "app/preview/png_resolution.h"

#include <cassert>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace dxf2d {

namespace {

void append32(std::string& bytes, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(value >> static_cast<unsigned>(shift) & 0xFFU);
  }
}

// The checksum of ISO 3309, as PNG has it.
std::uint32_t crcOf(std::string_view bytes) {
  constexpr std::uint32_t kPolynomial = 0xEDB88320;
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char byte : bytes) {
    crc ^= static_cast<std::uint8_t>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc & 1U) != 0 ? crc >> 1U ^ kPolynomial : crc >> 1U;
    }
  }
  return ~crc;
}

}  // namespace

void setPngResolution(std::string& png, int pixelsPerInch) {
  // The signature and the header, which stands first.
  constexpr std::size_t kHead = 8 + 25;
  constexpr double kInch = 0.0254;
  constexpr std::uint32_t kDataSize = 9;
  assert(png.size() >= kHead && png.substr(12, 4) == "IHDR");
  const auto pixelsPerMeter = static_cast<std::uint32_t>(std::lround(pixelsPerInch / kInch));
  std::string body = "pHYs";
  append32(body, pixelsPerMeter);
  append32(body, pixelsPerMeter);
  // The unit is the meter.
  body += '\1';
  std::string chunk;
  append32(chunk, kDataSize);
  chunk += body;
  append32(chunk, crcOf(body));
  png.insert(kHead, chunk);
}

}  // namespace dxf2d
