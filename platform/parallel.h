// Work that several threads share.
#pragma once

#include <cstddef>
#include <functional>

namespace dxf2d {

// How many threads a piece of work may take.
struct Threading {
  // At least 1.
  std::size_t most = 1;
  // Smaller work is done before a second thread has started.
  std::size_t leastWork = 0;

  std::size_t For(std::size_t work) const { return work < leastWork ? 1 : most; }
};

// More threads than this would wait for memory.
inline constexpr std::size_t kMostThreads = 64;

// What the user wants: as many threads as KT_THREADS says, else one, and from KT_THREADS_FROM
// entries of a set on, else 100,000. Both variables are read once.
//
// One is the default because two threads on two processors are not faster so far: together they
// touch twice as many new pages.
const Threading& processThreading();

// Calls work(0) .. work(count - 1), each once and in any order, on the calling thread and up to
// `threads` - 1 others, and returns when all of them have ended. Where threads cannot be started,
// fewer do the work. Throws what the call with the lowest number threw; calls that have not begun
// by then may be left out.
void runInParallel(std::size_t count, std::size_t threads,
                   const std::function<void(std::size_t)>& work);

// A part of a list: [begin, end).
struct Block {
  std::size_t begin;
  std::size_t end;
};

// Cuts lists of `size` elements into blocks for `threads` threads: one for one thread, else several
// for each, so that one with more work to do does not keep the others waiting.
class Blocks {
 public:
  Blocks(std::size_t size, std::size_t threads)
      : size_(size), threads_(threads), count_(threads == 1 ? 1 : kBlocksForEach * threads) {}

  std::size_t Count() const { return count_; }
  Block operator[](std::size_t number) const { return {BeginOf(number), BeginOf(number + 1)}; }
  // Calls work(number, block) for each block, as runInParallel does.
  template <class Work>
  void Run(Work work) const {
    runInParallel(count_, threads_, [&](std::size_t number) { work(number, (*this)[number]); });
  }

 private:
  static constexpr std::size_t kBlocksForEach = 8;

  // Without a product that could overflow.
  std::size_t BeginOf(std::size_t number) const {
    return size_ / count_ * number + size_ % count_ * number / count_;
  }

  std::size_t size_;
  std::size_t threads_;
  std::size_t count_;
};

}  // namespace dxf2d
