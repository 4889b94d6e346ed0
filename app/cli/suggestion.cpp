#include "app/cli/suggestion.h"

#include <algorithm>
#include <cstddef>

#include "app/cli/option_values.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

// The number of letters to leave out, add, change, or swap with the next one (optimal string
// alignment).
std::size_t editDistance(const std::string& from, const std::string& to) {
  std::vector<std::vector<std::size_t>> distance(from.size() + 1,
                                                 std::vector<std::size_t>(to.size() + 1));
  for (std::size_t i = 0; i <= from.size(); ++i) {
    for (std::size_t j = 0; j <= to.size(); ++j) {
      if (i == 0 || j == 0) {
        distance[i][j] = i + j;
        continue;
      }
      const std::size_t changed = distance[i - 1][j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      distance[i][j] = std::min({changed, distance[i - 1][j] + 1, distance[i][j - 1] + 1});
      if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
        distance[i][j] = std::min(distance[i][j], distance[i - 2][j - 2] + 1);
      }
    }
  }
  return distance[from.size()][to.size()];
}

}  // namespace

std::optional<std::string> nearestOf(const std::string& word,
                                     const std::vector<std::string>& names) {
  const std::string written = normalized(word);
  // Words longer than any name are none that was mistyped.
  constexpr std::size_t kLongest = 64;
  if (written.empty() || written.size() > kLongest) {
    return std::nullopt;
  }
  std::optional<std::string> nearest;
  // Half of the letters wrong is another word.
  std::size_t least = (written.size() + 2) / 3 + 1;
  for (const std::string& name : names) {
    const bool isBegun = written.size() > 1 && normalized(name).starts_with(written);
    const std::size_t distance = isBegun ? 1 : editDistance(written, normalized(name));
    if (distance < least) {
      least = distance;
      nearest = name;
    } else if (distance == least) {
      nearest.reset();
    }
  }
  return nearest;
}

std::string didYouMean(const std::string& word, const std::vector<std::string>& names,
                       const std::string& otherwise) {
  const std::optional<std::string> nearest = nearestOf(word, names);
  return nearest ? tr("did you mean %1? If not, %2", {*nearest, otherwise}) : otherwise;
}

}  // namespace dxf2d
