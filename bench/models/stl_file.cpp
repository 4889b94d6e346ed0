#include "bench/models/stl_file.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>

void writeStl(const std::string& path, const TriangleSoup& soup) {
  constexpr std::size_t kHeaderSize = 80;
  constexpr std::size_t kNormalSize = 12;
  constexpr std::size_t kRecordSize = 50;
  const auto count = static_cast<std::uint32_t>(soup.size());
  std::vector<char> bytes(kHeaderSize + sizeof count + kRecordSize * soup.size());
  std::memcpy(bytes.data() + kHeaderSize, &count, sizeof count);
  char* record = bytes.data() + kHeaderSize + sizeof count;
  for (const Triangle& triangle : soup) {
    std::memcpy(record + kNormalSize, triangle.data(), sizeof triangle);
    record += kRecordSize;
  }
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write '" + path + "'");
  }
}
