// Work that several threads share.
#pragma once

#include <cstddef>
#include <functional>
#include <iterator>
#include <utility>
#include <vector>

#include "platform/large_memory.h"

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

// What the user wants: as many threads as KT_THREADS says, else as the process may use processors,
// and from KT_THREADS_FROM entries of a set on, else 100,000. Both variables are read once.
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

  // One for each thread, for work that keeps a table for each block.
  static Blocks OneForEach(std::size_t size, std::size_t threads) {
    return Blocks(size, threads, threads);
  }

  std::size_t Count() const { return count_; }
  Block operator[](std::size_t number) const { return {BeginOf(number), BeginOf(number + 1)}; }
  // Calls work(number, block) for each block, as runInParallel does.
  template <class Work>
  void Run(Work work) const {
    runInParallel(count_, threads_, [&](std::size_t number) { work(number, (*this)[number]); });
  }

 private:
  static constexpr std::size_t kBlocksForEach = 8;

  Blocks(std::size_t size, std::size_t threads, std::size_t count)
      : size_(size), threads_(threads), count_(count) {}

  // Without a product that could overflow.
  std::size_t BeginOf(std::size_t number) const {
    return size_ / count_ * number + size_ % count_ * number / count_;
  }

  std::size_t size_;
  std::size_t threads_;
  std::size_t count_;
};

// The lists one after the other; each is given up once it is copied.
template <class Element>
std::vector<Element> joined(std::vector<std::vector<Element>> lists) {
  std::size_t size = 0;
  for (const std::vector<Element>& list : lists) {
    size += list.size();
  }
  std::vector<Element> all = std::move(lists.front());
  reserveLarge(all, size);
  for (std::size_t i = 1; i < lists.size(); ++i) {
    all.insert(all.end(), std::make_move_iterator(lists[i].begin()),
               std::make_move_iterator(lists[i].end()));
    std::vector<Element>().swap(lists[i]);
  }
  return all;
}

// Calls visit(i, list) for each i below `size`, each thread in lists of its own; returns what they
// appended to these as one list, in order of i.
template <class Element, class Visit>
std::vector<Element> collectInParallel(std::size_t size, std::size_t threads, Visit visit) {
  const Blocks blocks(size, threads);
  std::vector<std::vector<Element>> lists(blocks.Count());
  blocks.Run([&](std::size_t number, const Block& block) {
    std::vector<Element> own;
    for (std::size_t i = block.begin; i < block.end; ++i) {
      visit(i, own);
    }
    lists[number] = std::move(own);
  });
  return joined(std::move(lists));
}

}  // namespace dxf2d
