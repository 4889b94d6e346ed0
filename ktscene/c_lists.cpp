#include "ktscene/c_lists.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "ktscene/c_call.h"

namespace {

[[noreturn]] void refuse(const char* function, const char* reason) {
  throw std::invalid_argument(std::string(function) + ": " + reason);
}

void checkLists(const KtCLists& lists, const char* function) {
  if (lists.floats != nullptr && lists.doubles != nullptr) {
    refuse(function, "there are floats and doubles; pass one of them");
  }
  if (lists.coord_count > 0 && lists.floats == nullptr && lists.doubles == nullptr) {
    refuse(function, "the coordinates are null; pass floats or doubles");
  }
  if (lists.coord_count % 3 != 0) {
    refuse(function, "the number of coordinates is not a multiple of 3; pass x, y, z triples");
  }
  if (lists.index_count > 0 && lists.indices == nullptr) {
    refuse(function, "the indices are null; pass point numbers");
  }
  if (lists.count_count > 0 && lists.counts == nullptr) {
    refuse(function, "the counts are null; pass a number for each polygon");
  }
  if (lists.run_code != 0 && lists.counts != nullptr) {
    refuse(function, "there are counts and a run code; pass one of them");
  }
  if (lists.run_code > 0 || lists.run_code < KTC_POLYGON) {
    refuse(function, "the run code is none; pass one from KTC_POLYGON to KTC_SEGMENT, or 0");
  }
}

// The point numbers with `code` behind each polygon.
std::vector<int> withCodes(const KtCLists& lists, int code, const char* function) {
  std::vector<int> indices;
  indices.reserve(lists.index_count + lists.count_count);
  std::size_t done = 0;
  for (std::size_t i = 0; i < lists.count_count; ++i) {
    const int count = lists.counts[i];
    if (count < 0 || static_cast<std::size_t>(count) > lists.index_count - done) {
      refuse(function, "the counts do not add up to the number of indices; make them");
    }
    const int* first = lists.indices + done;
    indices.insert(indices.end(), first, first + count);
    indices.push_back(code);
    done += static_cast<std::size_t>(count);
  }
  if (done != lists.index_count) {
    refuse(function, "the counts do not add up to the number of indices; make them");
  }
  return indices;
}

}  // namespace

namespace dxf2d {

KtBorrowedLists borrowLists(const KtCLists* given, int polygonCode, const char* function) {
  const KtCLists lists = copyStruct(given, function, "lists");
  checkLists(lists, function);
  KtBorrowedLists borrowed;
  borrowed.floats = lists.floats;
  borrowed.doubles = lists.doubles;
  borrowed.coordCount = lists.coord_count;
  borrowed.indices = lists.indices;
  borrowed.indexCount = lists.index_count;
  borrowed.runCode = lists.run_code;
  if (lists.counts != nullptr) {
    const auto coded =
        std::make_shared<const std::vector<int>>(withCodes(lists, polygonCode, function));
    borrowed.indices = coded->data();
    borrowed.indexCount = coded->size();
    borrowed.owner = coded;
  }
  return borrowed;
}

}  // namespace dxf2d
