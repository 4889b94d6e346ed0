#include "app/model/object_names.h"

#include "platform/path_text.h"

namespace dxf2d {

std::u16string ObjectNames::Unique(const std::string& name) {
  std::u16string stem = name.empty() ? std::u16string(u"object") : pathFromBytes(name);
  if (!ending_.empty()) {
    stem += u' ' + pathFromBytes(ending_);
  }
  std::size_t& count = counts_[stem];
  std::u16string unique;
  do {
    ++count;
    unique = stem;
    if (count > 1) {
      const std::string number = std::to_string(count);
      unique += u' ' + std::u16string(number.begin(), number.end());
    }
    // Another object may have had such a name from the start.
  } while (!taken_.insert(unique).second);
  return unique;
}

}  // namespace dxf2d
