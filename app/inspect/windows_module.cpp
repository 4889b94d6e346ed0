#include "app/inspect/windows_module.h"

#include <algorithm>
#include <cstdint>

// The format is PE/COFF ("Microsoft Portable Executable and Common Object File Format
// Specification"). Offsets below are those of its tables.

namespace dxf2d {

namespace {

constexpr std::uint16_t kDll = 0x2000;
constexpr std::uint16_t kOptionalHeader32 = 0x10b;
constexpr std::uint16_t kOptionalHeader64 = 0x20b;
constexpr std::size_t kFileHeaderSize = 24;  // with the signature
constexpr std::size_t kSectionSize = 40;
// The loader of Windows takes no more.
constexpr std::uint16_t kMostSections = 96;
// Ordinals, one for each export, have 16 bits.
constexpr std::uint32_t kMostNames = 1 << 16;
// Longer than mangled names are; so that a table of copies of one name does not fill the memory.
constexpr std::size_t kLongestName = 4096;

// Numbers in a file, the lowest byte first. What lies outside of it reads as 0 and is remembered.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  template <typename Number>
  Number At(std::size_t offset) {
    if (offset > bytes_.size() || sizeof(Number) > bytes_.size() - offset) {
      isCut_ = true;
      return 0;
    }
    std::uint32_t number = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;) {
      number = number << 8 | static_cast<unsigned char>(bytes_[offset + i]);
    }
    return static_cast<Number>(number);
  }

  // The text that ends in a zero byte.
  std::string_view TextAt(std::size_t offset) {
    const std::string_view text = bytes_.substr(std::min(offset, bytes_.size()), kLongestName);
    const std::size_t end = text.find('\0');
    isCut_ = isCut_ || end == std::string_view::npos;
    return text.substr(0, end);
  }

  bool IsCut() const { return isCut_; }

 private:
  std::string_view bytes_;
  bool isCut_ = false;
};

class WindowsModule {
 public:
  explicit WindowsModule(std::string_view bytes)
      : bytes_(bytes), header_(bytes_.At<std::uint32_t>(0x3c)) {}

  bool IsModule() {
    constexpr std::uint16_t kMz = 0x5a4d;
    constexpr std::uint32_t kPe = 0x4550;
    return bytes_.At<std::uint16_t>(0) == kMz && bytes_.At<std::uint32_t>(header_) == kPe &&
           (bytes_.At<std::uint16_t>(header_ + 22) & kDll) != 0 && Directories() != 0 &&
           !bytes_.IsCut();
  }

  std::optional<std::vector<std::string>> Exports() {
    std::vector<std::string> names;
    const auto directoryCount = bytes_.At<std::uint32_t>(Directories() - 4);
    const auto address = bytes_.At<std::uint32_t>(Directories());
    const bool hasTable = directoryCount > 0 && address != 0;
    const std::size_t table = hasTable ? OffsetOf(address) : 0;
    const auto count = hasTable ? bytes_.At<std::uint32_t>(table + 24) : 0;
    const std::size_t places = hasTable ? OffsetOf(bytes_.At<std::uint32_t>(table + 32)) : 0;
    if (count > kMostNames) {
      return std::nullopt;
    }
    for (std::size_t i = 0; i < count && !bytes_.IsCut(); ++i) {
      names.emplace_back(bytes_.TextAt(OffsetOf(bytes_.At<std::uint32_t>(places + 4 * i))));
    }
    if (bytes_.IsCut()) {
      return std::nullopt;
    }
    std::ranges::sort(names);
    return names;
  }

 private:
  // Where the data directories begin, the first of which is that of the exports; 0 for a header of
  // another kind. Their number stands before them.
  std::size_t Directories() {
    const std::size_t optional = header_ + kFileHeaderSize;
    switch (bytes_.At<std::uint16_t>(optional)) {
      case kOptionalHeader32:
        return optional + 96;
      case kOptionalHeader64:
        return optional + 112;
      default:
        return 0;
    }
  }

  // Where in the file stands what is at an address, counted from where the module is loaded; beyond
  // its end for an address in no section.
  std::size_t OffsetOf(std::uint32_t address) {
    const auto count = std::min(bytes_.At<std::uint16_t>(header_ + 6), kMostSections);
    std::size_t section = header_ + kFileHeaderSize + bytes_.At<std::uint16_t>(header_ + 20);
    for (int i = 0; i < count; ++i, section += kSectionSize) {
      const auto begin = bytes_.At<std::uint32_t>(section + 12);
      if (address >= begin && address - begin < bytes_.At<std::uint32_t>(section + 16)) {
        return std::size_t{bytes_.At<std::uint32_t>(section + 20)} + (address - begin);
      }
    }
    return SIZE_MAX / 2;
  }

  Bytes bytes_;
  std::size_t header_;
};

}  // namespace

std::optional<std::vector<std::string>> windowsExports(std::string_view bytes) {
  WindowsModule module(bytes);
  return module.IsModule() ? module.Exports() : std::nullopt;
}

}  // namespace dxf2d
