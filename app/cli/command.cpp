#include "app/cli/command.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace dxf2d {
namespace {

// Placeholders are in capitals: N, LENGTH, AZIMUTH,ELEVATION.
bool isWord(std::string_view text) {
  return !text.empty() && std::ranges::none_of(text, [](unsigned char letter) {
    return std::isupper(letter) != 0 || letter == ',' || letter == '[';
  });
}

std::string_view placeholderOf(const Option& option) {
  return std::string_view(option.value).substr(0, option.value.find(' '));
}

}  // namespace

std::vector<std::string> choicesOf(const Option& option) {
  if (!option.choices.empty()) {
    return option.choices;
  }
  std::vector<std::string> choices;
  std::string_view rest = placeholderOf(option);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('|'), rest.size());
    if (isWord(rest.substr(0, end))) {
      choices.emplace_back(rest.substr(0, end));
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return choices;
}

bool takesFile(const Option& option) {
  const std::string_view placeholder = placeholderOf(option);
  return placeholder == "FILE" || placeholder == "PATH" || placeholder == "LIST";
}

std::vector<std::string> commandNames(const Program& program) {
  std::vector<std::string> names;
  names.reserve(program.commands.size());
  for (const Command& command : program.commands) {
    names.push_back(command.name);
  }
  return names;
}

std::vector<std::string> groupsOf(const Command& command) {
  std::vector<std::string> groups;
  for (const Option& option : command.options) {
    if (std::ranges::find(groups, option.group) == groups.end()) {
      groups.push_back(option.group);
    }
  }
  return groups;
}

std::vector<Option> verbosityOptions(Verbosity& verbosity) {
  const auto set = [](bool& flag) { return [&flag](const std::string&) { return flag = true; }; };
  return {{"-q,--quiet", "", "Print nothing but errors, and what is left out of a drawing", "",
           set(verbosity.isQuiet)},
          {"-v,--verbose", "", "Print what is done and how long it takes", "",
           set(verbosity.isVerbose)}};
}

}  // namespace dxf2d
