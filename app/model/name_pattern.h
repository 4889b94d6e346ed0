// Patterns that names of objects match.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dxf2d {

// `name`, which is UTF-8, with small letters: those of Latin, Greek and Cyrillic script.
std::u16string foldedCase(std::string_view name);

// True when all of `name` matches `pattern`, in which * stands for any characters, or none, and ?
// for one. Both as foldedCase returns them.
bool matchesPattern(std::u16string_view name, std::u16string_view pattern);

// Up to `count` of `names`, first those of which a part takes the fewest edits (Levenshtein
// distance) to become `pattern`, none where it is a part; of equally near ones those that take the
// fewest as a whole, then the first. Letter case and the pattern's * are ignored. Each name once.
std::vector<std::string> nearestNames(const std::vector<std::string>& names,
                                      const std::string& pattern, std::size_t count);

}  // namespace dxf2d
