// Tells which hashes came more than once.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace dxf2d::mesh {

// Holds two bits by hash, few enough to stay near the processor, which a hash table does not.
class RepeatFilter {
 public:
  // `expected`: how many hashes will be added, roughly.
  explicit RepeatFilter(std::size_t expected)
      : words_(std::bit_ceil(expected / kHashesPerWord + 1)), mask_(words_.size() - 1) {}

  void Add(std::uint32_t hash) {
    Word& word = words_[hash & mask_];
    const std::uint64_t bit = Bit(hash);
    word.twice |= word.once & bit;
    word.once |= bit;
  }
  // Adds what was added to another filter for as many hashes.
  void Add(const RepeatFilter& other) {
    for (std::size_t i = 0; i < words_.size(); ++i) {
      words_[i].twice |= other.words_[i].twice | (words_[i].once & other.words_[i].once);
      words_[i].once |= other.words_[i].once;
    }
  }
  // Whether the hash was added twice or more, or others were that have its bit: of eight hashes or
  // so, one.
  bool IsRepeated(std::uint32_t hash) const {
    return (words_[hash & mask_].twice & Bit(hash)) != 0;
  }

 private:
  struct Word {
    std::uint64_t once = 0;
    std::uint64_t twice = 0;
  };
  static constexpr std::size_t kHashesPerWord = 8;

  // By the bits of the hash that do not pick the word, unless there are a great many.
  static std::uint64_t Bit(std::uint32_t hash) { return std::uint64_t{1} << (hash >> 26U); }

  std::vector<Word> words_;
  std::size_t mask_;
};

}  // namespace dxf2d::mesh
