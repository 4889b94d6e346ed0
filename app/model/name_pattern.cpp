#include "app/model/name_pattern.h"

#include <algorithm>
#include <numeric>
#include <set>

#include "platform/path_text.h"

namespace dxf2d {
namespace {

// Names are compared up to here; the distance costs the product of the lengths.
constexpr std::size_t kComparedLetters = 64;

char16_t smallLetter(char16_t c) {
  const auto shifted = [c](int by) { return static_cast<char16_t>(c + by); };
  if ((c >= u'A' && c <= u'Z') || (c >= 0x00C0 && c <= 0x00DE && c != 0x00D7) ||
      (c >= 0x0391 && c <= 0x03A9) || (c >= 0x0410 && c <= 0x042F)) {
    return shifted(32);
  }
  if (c >= 0x0400 && c <= 0x040F) {
    return shifted(80);
  }
  // Latin letters in pairs, a capital and a small one.
  if ((c >= 0x0100 && c <= 0x0137) || (c >= 0x014A && c <= 0x0177)) {
    return c % 2 == 0 ? shifted(1) : c;
  }
  return c;
}

// How many edits make b of a (Levenshtein distance), and of the part of a that takes the fewest.
struct Edits {
  std::size_t ofWhole;
  std::size_t ofPart;
};

std::size_t editDistance(std::u16string_view a, std::u16string_view b, bool isOfPart) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  std::size_t least = row.back();
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = isOfPart ? 0 : i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
    least = std::min(least, row.back());
  }
  return isOfPart ? least : row.back();
}

Edits editsOf(std::u16string_view a, std::u16string_view b) {
  a = a.substr(0, kComparedLetters);
  b = b.substr(0, kComparedLetters);
  return {editDistance(a, b, false), editDistance(a, b, true)};
}

}  // namespace

std::u16string foldedCase(std::string_view name) {
  std::u16string text = pathFromBytes(name);
  std::ranges::transform(text, text.begin(), smallLetter);
  return text;
}

bool matchesPattern(std::u16string_view name, std::u16string_view pattern) {
  std::size_t n = 0;
  std::size_t p = 0;
  // Where to go on when what follows the last * does not match: it takes one character more.
  std::size_t afterStar = pattern.npos;
  std::size_t taken = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      afterStar = ++p;
      taken = n;
    } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (afterStar != pattern.npos) {
      p = afterStar;
      n = ++taken;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(u'*', p) == pattern.npos;
}

std::vector<std::string> nearestNames(const std::vector<std::string>& names,
                                      const std::string& pattern, std::size_t count) {
  struct Candidate {
    Edits edits;
    std::string name;
  };
  std::u16string wanted = foldedCase(pattern);
  std::erase(wanted, u'*');
  std::vector<Candidate> candidates;
  std::set<std::string_view> seen;
  for (const std::string& name : names) {
    if (!name.empty() && seen.insert(name).second) {
      candidates.push_back({editsOf(foldedCase(name), wanted), name});
    }
  }
  std::ranges::stable_sort(candidates, {}, [](const Candidate& candidate) {
    return std::pair(candidate.edits.ofPart, candidate.edits.ofWhole);
  });
  candidates.resize(std::min(candidates.size(), count));
  std::vector<std::string> nearest;
  nearest.reserve(candidates.size());
  for (Candidate& candidate : candidates) {
    nearest.push_back(std::move(candidate.name));
  }
  return nearest;
}

}  // namespace dxf2d
