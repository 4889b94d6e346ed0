// The commands of a program as plain data: what a command line may say and where it goes.
#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace dxf2d {

// Whether an option also applies to scene files, which are drawn exactly as they are.
enum class AppliesTo { kEveryInput, kModelsOnly };

// One option of a command.
struct Option {
  // As on the command line: "--view", or "-o,--output" with a short form.
  std::string names;
  // What --help shows after the names: the value and, in brackets, its default. Empty for a flag.
  std::string value;
  std::string help;
  // Completes "expected ..." in the message about an invalid value.
  std::string expected;
  // Stores a value; returns false when it is invalid. A flag gets an empty text.
  std::function<bool(const std::string&)> take;
  AppliesTo appliesTo = AppliesTo::kEveryInput;
  bool isRequired = false;
  // The long name of another option without which this one means nothing, if any.
  std::string needs{};
  // Whether the option may be given several times; `take` is called for each.
  bool isRepeatable = false;
  // Long names. If any, the option makes the command do something else: these are the only options
  // that may be given beside it, and none is required.
  std::vector<std::string> onlyWith{};
  // Whether a mode (see onlyWith) works without inputs.
  bool needsNoInputs = false;
  // The heading that the option stands under in help and manual.
  std::string group{};
  // Values that completion offers, where `value` does not list them.
  std::vector<std::string> choices{};
  // Whether a configuration file may set it.
  bool isConfigurable = false;
  // Long names of options whose defaults from there do not apply beside this one.
  std::vector<std::string> overrides{};

  // The name that messages use, such as "--output".
  std::string LongName() const { return names.substr(names.find("--")); }
};

// The options of a command line and their values in turn: the long name of an option, then the text
// that its `take` gets.
using OptionWords = std::vector<std::string>;

// What one may type, and what that does.
struct Example {
  std::string words;
  std::string help;
};

// Where the defaults of a command come from. Filled by its options.
struct ConfigRequest {
  // Empty for the user's own file.
  std::string file{};
  bool isIgnored = false;
  bool isShown = false;
};

// One command: its inputs, its options and what it does.
struct Command {
  std::string name;
  // In one line.
  std::string summary;
  // More about it, in sentences.
  std::string help;
  // Placeholder of the inputs, such as "MODEL", and their help; empty for a command without inputs.
  std::string inputName;
  std::string inputHelp;
  bool takesSeveralInputs = false;
  bool needsInputs = true;
  // Values that completion offers for an input; those of files if there are none.
  std::vector<std::string> inputChoices{};
  // The long name of an option that names inputs, without which there must be one; may be empty.
  std::string inputsOption{};
  // Stores the inputs.
  std::function<void(const std::vector<std::string>&)> takeInputs;
  // Whether an input is a scene file, to which options for models do not apply. May be empty.
  std::function<bool(const std::string&)> isScene;
  std::vector<Option> options;
  // Runs the command once inputs and options are stored; returns the exit code. The words are for
  // other processes, which store the same options with takeOptions.
  std::function<int(const OptionWords&)> run;
  std::vector<Example> examples{};
  // Set for a command with a configuration file, which applies to models only. `beforeDefaults`
  // then gets the words of the command line before defaults of the file are stored: what scene
  // files get.
  std::shared_ptr<ConfigRequest> config{};
  std::function<void(const OptionWords&)> beforeDefaults{};
};

// Stores the options of `words`, which were made of a command line for the same command.
void takeOptions(const std::vector<Option>& options, std::span<const std::string> words);

// How much a command tells.
struct Verbosity {
  bool isQuiet = false;
  bool isVerbose = false;
};

// -q and -v.
std::vector<Option> verbosityOptions(Verbosity& verbosity);

// Adds `more` to the end of `options`.
inline void append(std::vector<Option>& options, std::vector<Option> more) {
  std::move(more.begin(), more.end(), std::back_inserter(options));
}

// Puts `options` under a heading.
inline std::vector<Option> inGroup(const std::string& group, std::vector<Option> options) {
  for (Option& option : options) {
    option.group = group;
  }
  return options;
}

// A name, such as an exit code or an environment variable, and what it means.
struct Meaning {
  std::string name;
  std::string help;
};

struct Program {
  std::string about;
  // What --version prints: the program's name and its version.
  std::string version;
  // Of the version, as 2026-11-22.
  std::string date{};
  std::vector<Meaning> exitCodes{};
  // What is to be said after the exit codes.
  std::string ending{};
  std::vector<Meaning> environment{};
  std::vector<Command> commands{};
};

// The values that are written out for an option, such as "auto", "y" and "z"; none for a number, a
// name or a file.
std::vector<std::string> choicesOf(const Option& option);

// Whether its value is a file or directory.
bool takesFile(const Option& option);

std::vector<std::string> commandNames(const Program& program);

// The headings of a command's options, in the order of their first ones.
std::vector<std::string> groupsOf(const Command& command);

// An Option::take that stores what `parse` (a function from text to std::optional) makes of the
// text in `target`, which must outlive it.
//
// Example:
//   {"--scale", "S [1]", "Drawing units per model unit", "a number above 0",
//    into(options.scale, parsePositive), AppliesTo::kModelsOnly}
template <typename Target, typename Parse>
std::function<bool(const std::string&)> into(Target& target, Parse parse) {
  return [&target, parse = std::move(parse)](const std::string& text) {
    auto value = parse(text);
    if (!value) {
      return false;
    }
    target = *std::move(value);
    return true;
  };
}

}  // namespace dxf2d
