#include "app/model/object_names.h"

#include "platform/path_text.h"

std::u16string ObjectNames::Unique(const std::string& name) {
  const std::u16string stem = name.empty() ? std::u16string(u"object") : PathFromBytes(name);
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
