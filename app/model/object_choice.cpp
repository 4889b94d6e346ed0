#include "app/model/object_choice.h"

#include <algorithm>

#include "app/cli/failure.h"
#include "app/cli/translation.h"
#include "app/model/label_name.h"
#include "app/model/name_pattern.h"

namespace dxf2d {
namespace {

constexpr std::size_t kShownNames = 3;

std::string listOf(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    list += (list.empty() ? "'" : ", '") + name + "'";
  }
  return list.empty() ? tr("none has a name") : list;
}

}  // namespace

ObjectChoice::ObjectChoice(const ObjectFilter& filter) {
  for (const std::string& text : filter.only) {
    only_.push_back({"--only", text, foldedCase(text)});
  }
  for (const std::string& text : filter.exclude) {
    exclude_.push_back({"--exclude", text, foldedCase(text)});
  }
}

ObjectChoice::Verdict ObjectChoice::Judge(Verdict parent, std::string_view name,
                                          std::string_view path) {
  const std::array names{foldedCase(name), foldedCase(readableName(name)), foldedCase(path)};
  // Both are always asked: a pattern may match only what another has chosen already.
  const bool included = MatchAny(only_, names);
  const bool excluded = MatchAny(exclude_, names);
  return {parent.isIncluded || included, parent.isExcluded || excluded};
}

bool ObjectChoice::MatchAny(std::vector<Pattern>& patterns,
                            const std::array<std::u16string, 3>& names) {
  bool any = false;
  for (Pattern& pattern : patterns) {
    const auto matches = [&pattern](const std::u16string& name) {
      return matchesPattern(name, pattern.folded);
    };
    if (std::ranges::any_of(names, matches)) {
      pattern.hasMatched = true;
      any = true;
    }
  }
  return any;
}

void ObjectChoice::CheckMatched(const std::string& path,
                                const std::vector<std::string>& names) const {
  for (const std::vector<Pattern>* patterns : {&only_, &exclude_}) {
    for (const Pattern& pattern : *patterns) {
      if (!pattern.hasMatched) {
        throw UsageError({path, tr("nothing matches %1 '%2'", {pattern.option, pattern.text}),
                          tr("choose another pattern; the nearest names are %1",
                             {listOf(nearestNames(names, pattern.text, kShownNames))})});
      }
    }
  }
}

}  // namespace dxf2d
