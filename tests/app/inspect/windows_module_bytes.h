// Modules for Windows, made by hand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace dxf2d {

// The least of a module (PE32+, or PE32) that exports `names`: headers, and one section that is
// loaded at 0x1000 and has the table of exports and nothing else.
class WindowsModuleBytes {
 public:
  explicit WindowsModuleBytes(const std::vector<std::string>& names, bool is64Bit = true)
      : bytes_(kSection, '\0') {
    Put16(0, 0x5a4d);
    Put32(0x3c, kHeader);
    Put32(kHeader, 0x4550);
    Put16(kHeader + 6, 1);
    Put16(kHeader + 20, kOptionalSize);
    Put16(kFlags, 0x2000);
    const std::size_t optional = kHeader + 24;
    const std::size_t directories = optional + (is64Bit ? 112 : 96);
    Put16(optional, is64Bit ? 0x20b : 0x10b);
    Put32(directories - 4, 16);
    Put32(directories, kAddress);
    PutExports(names);
    const std::size_t section = optional + kOptionalSize;
    Put32(section + 12, kAddress);
    Put32(section + 16, static_cast<std::uint32_t>(bytes_.size() - kSection));
    Put32(section + 20, kSection);
  }

  const std::string& Bytes() const { return bytes_; }

  // Where some fields are: the flags of the file, of 16 bits; the number of names, of 32.
  static constexpr std::size_t kHeader = 0x40;
  static constexpr std::size_t kFlags = kHeader + 22;
  static constexpr std::size_t kSection = 0x200;
  static constexpr std::size_t kNameCount = kSection + 24;

  void Put16(std::size_t at, std::uint32_t number) { Put(at, number, 2); }
  void Put32(std::size_t at, std::uint32_t number) { Put(at, number, 4); }

 private:
  static constexpr std::uint32_t kAddress = 0x1000;
  static constexpr std::uint16_t kOptionalSize = 240;

  void Put(std::size_t at, std::uint32_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
      bytes_[at + i] = static_cast<char>(number >> (8 * i) & 0xff);
    }
  }

  std::uint32_t AddressOfEnd() const {
    return kAddress + static_cast<std::uint32_t>(bytes_.size() - kSection);
  }

  // The table, the places of the names, the names.
  void PutExports(const std::vector<std::string>& names) {
    bytes_.append(40, '\0');
    Put32(kNameCount, static_cast<std::uint32_t>(names.size()));
    Put32(kSection + 32, AddressOfEnd());
    std::size_t place = bytes_.size();
    bytes_.append(4 * names.size(), '\0');
    for (const std::string& name : names) {
      Put32(place, AddressOfEnd());
      place += 4;
      bytes_ += name;
      bytes_ += '\0';
    }
  }

  std::string bytes_;
};

}  // namespace dxf2d
