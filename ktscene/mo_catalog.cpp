#include "ktscene/mo_catalog.h"

#include <cstddef>
#include <cstdint>

namespace dxf2d {

namespace {

constexpr std::uint32_t kMagic = 0x950412DE;
constexpr std::uint32_t kMagicSwapped = 0xDE120495;

// The numbers of a catalog; those beyond its end are 0.
class Numbers {
 public:
  explicit Numbers(std::string_view bytes)
      : bytes_(bytes), isSwapped_(LittleEndianAt(0) == kMagicSwapped) {}

  bool IsCatalog() const { return (*this)[0] == kMagic; }

  std::uint32_t operator[](std::size_t offset) const {
    const std::uint32_t number = LittleEndianAt(offset);
    return isSwapped_
               ? (number >> 24) | (number >> 8 & 0xFF00) | (number << 8 & 0xFF0000) | number << 24
               : number;
  }

  // The text whose length and offset stand at `offset`; empty where it would leave the catalog.
  std::string_view Text(std::size_t offset) const {
    const std::size_t length = (*this)[offset];
    const std::size_t begin = (*this)[offset + 4];
    const bool fits = begin <= bytes_.size() && length <= bytes_.size() - begin;
    return fits ? bytes_.substr(begin, length) : std::string_view();
  }

 private:
  std::uint32_t LittleEndianAt(std::size_t offset) const {
    if (bytes_.size() < 4 || offset > bytes_.size() - 4) {
      return 0;
    }
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) {
      number = number << 8 | static_cast<unsigned char>(bytes_[offset + i]);
    }
    return number;
  }

  std::string_view bytes_;
  bool isSwapped_;
};

}  // namespace

// A header of seven numbers: magic, revision, count, where the originals are listed, where the
// translations are, and the two of a hash table, which catalogs of a few hundred texts do without.
std::optional<std::string_view> findTranslation(std::string_view catalog,
                                                std::string_view original) {
  const Numbers numbers(catalog);
  if (!numbers.IsCatalog()) {
    return std::nullopt;
  }
  constexpr std::size_t kEntrySize = 8;
  const std::size_t originals = numbers[12];
  const std::size_t translations = numbers[16];
  // The originals are sorted by their bytes.
  std::size_t begin = 0;
  std::size_t end = numbers[8];
  while (begin < end) {
    const std::size_t middle = begin + (end - begin) / 2;
    const int order = numbers.Text(originals + middle * kEntrySize).compare(original);
    if (order == 0) {
      const std::string_view translation = numbers.Text(translations + middle * kEntrySize);
      return translation.empty() ? std::nullopt : std::optional(translation);
    }
    (order < 0 ? begin : end) = order < 0 ? middle + 1 : middle;
  }
  return std::nullopt;
}

}  // namespace dxf2d
