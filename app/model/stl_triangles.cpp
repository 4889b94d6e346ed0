#include "app/model/stl_triangles.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <string_view>

namespace dxf2d {

std::unique_ptr<const StlTriangles> StlTriangles::Open(const std::string& path) {
  auto triangles = std::make_unique<const StlTriangles>(path);
  return triangles->IsPlain() ? std::move(triangles) : nullptr;
}

bool StlTriangles::IsPlain() const {
  const std::span<const char> bytes = file_.Bytes();
  if (std::endian::native != std::endian::little || bytes.size() < kHeaderSize + kRecordSize) {
    return false;
  }
  const std::string_view header(bytes.data(), kHeaderSize - sizeof(std::uint32_t));
  std::uint32_t count = 0;
  std::memcpy(&count, bytes.data() + header.size(), sizeof count);
  constexpr std::uint32_t kMostTriangles = std::numeric_limits<std::uint32_t>::max() / 3;
  return count != 0 && count <= kMostTriangles &&
         bytes.size() == kHeaderSize + std::size_t{count} * kRecordSize &&
         header.find("COLOR=") == std::string_view::npos;
}

std::array<char, StlTriangles::kHeaderSize + StlTriangles::kRecordSize> StlTriangles::Sample()
    const {
  std::array<char, kHeaderSize + kRecordSize> sample;
  std::copy_n(file_.Bytes().begin(), sample.size(), sample.begin());
  const std::uint32_t count = 1;
  std::memcpy(sample.data() + kHeaderSize - sizeof count, &count, sizeof count);
  return sample;
}

}  // namespace dxf2d
