// Names for the objects of a scene.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace dxf2d {

// Makes names unique by a number after them, in time that does not grow with the number of equal
// names.
class ObjectNames {
 public:
  // Names from now on end with `ending`, after a blank, unless it is empty.
  void SetEnding(const std::string& ending) { ending_ = ending; }
  // `name` itself when it is new and not empty; otherwise "name 2", "name 3" and so on.
  std::u16string Unique(const std::string& name);

 private:
  std::string ending_;
  std::unordered_set<std::u16string> taken_;
  std::unordered_map<std::u16string, std::size_t> counts_;
};

}  // namespace dxf2d
