// The reader of scene files: any text gives a scene that keeps the rules, or one sentence.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/require.h"
#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "platform/path_text.h"

namespace {

// Nodes that the walk has open.
int depth = 0;

void checkNumbers(const std::vector<double>& numbers) {
  constexpr double kLargest = 1e15;
  require(std::ranges::all_of(numbers, [](double n) { return std::fabs(n) <= kLargest; }),
          "a scene's numbers are at most 1e15");
}

KtTraverser checkingTraverser() {
  KtTraverser traverser;
  traverser.Init([](KtGraphicAttribute*) { ++depth; },
                 [] {
                   --depth;
                   require(depth >= 0, "no more nodes are closed than opened");
                 },
                 nullptr, [](const std::vector<double>& ranges, double) { checkNumbers(ranges); },
                 nullptr,
                 [](const double* min, const double* max, double size) {
                   checkNumbers({min[0], min[1], min[2], max[0], max[1], max[2]});
                   require(size >= 0, "a box has a size");
                 },
                 nullptr,
                 [](const double* matrix) {
                   checkNumbers({matrix, matrix + 16});
                 },
                 nullptr,
                 [](const std::vector<double>& coords, const std::vector<int>&, bool, bool) {
                   checkNumbers(coords);
                   return true;
                 },
                 [](const std::vector<double>& coords, const std::vector<int>&) {
                   checkNumbers(coords);
                   return true;
                 },
                 nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 [](const std::u16string&) { return true; }, [] { return true; });
  return traverser;
}

// A byte that is not part of a character would become a lone surrogate.
bool isUtf8(std::string_view bytes) {
  const std::u16string text = pathFromBytes(bytes);
  char16_t before = 0;
  return std::ranges::none_of(text, [&before](char16_t unit) {
    const bool inPair = before >= 0xD800 && before < 0xDC00;
    before = unit;
    return unit >= 0xDC80 && unit <= 0xDCFF && !inPair;
  });
}

void checkSentence(std::string_view sentence) {
  require(sentence.starts_with("scene.json: "), "a refusal begins with the file");
  require(sentence.find('\n') == std::string_view::npos, "a refusal is one line");
  require(isUtf8(sentence), "a refusal is UTF-8");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const KtTraverser traverser = checkingTraverser();
  try {
    KtScene scene = ParseScene({reinterpret_cast<const char*>(bytes), size}, "scene.json");
    require(traverser.Walk(scene, u""), "what was read can be walked");
    require(depth == 0, "as many nodes are closed as opened");
  } catch (const KtSceneError& error) {
    checkSentence(error.what());
  }
  return 0;
}
