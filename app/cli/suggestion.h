// What the user may have meant by a word that is none of those expected.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace dxf2d {

// The nearest of `names`, in any letter case: one that `word` begins, or one that few letters, left
// out, added, changed or swapped, make of it. None where two are as near.
std::optional<std::string> nearestOf(const std::string& word,
                                     const std::vector<std::string>& names);

// `otherwise`, which says where to look, after a question if there is a name near `word`.
std::string didYouMean(const std::string& word, const std::vector<std::string>& names,
                       const std::string& otherwise);

}  // namespace dxf2d
