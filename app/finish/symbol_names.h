// Names of layers and blocks.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace dxf2d::finish {

// The most characters of a name, as it stands in the drawing.
inline constexpr std::size_t kMaxSymbolName = 255;

// A legal name near `name`, which is UTF-8: characters that no name may hold are underscores,
// spaces around it are dropped, Latin letters beyond ASCII are near ones in ASCII ("ae"), all
// others are U+XXXX, and what is too long is cut.
// "unnamed" where nothing is left.
std::string symbolName(std::string_view name);

// Names that differ in more than case.
class SymbolNames {
 public:
  // A legal name near `name` that no other has; another call gives another. Where one is taken, a
  // number follows it: "Wall", "Wall_2", "Wall_3".
  std::string Add(std::string_view name);

 private:
  // In lower case.
  std::unordered_set<std::string> taken_;
  // How many numbers were tried for a name.
  std::unordered_map<std::string, std::size_t> counts_;
};

}  // namespace dxf2d::finish
