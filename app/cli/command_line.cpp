#include "app/cli/command_line.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "app/cli/argument_parser.h"
#include "app/cli/failure.h"

namespace dxf2d {
namespace {

[[noreturn]] void failUsage(const Command& command, const std::string& problem) {
  throw UsageError({"", problem, "see dxf2d " + command.name + " --help"});
}

bool isGiven(const ParsedArguments& arguments, const std::string& longName) {
  return std::ranges::any_of(arguments.given, [&](const GivenOption& given) {
    return given.option->LongName() == longName;
  });
}

// The given option that makes the command do something else, if any.
const Option* modeOf(const ParsedArguments& arguments) {
  const auto given = std::ranges::find_if(
      arguments.given, [](const GivenOption& one) { return !one.option->onlyWith.empty(); });
  return given == arguments.given.end() ? nullptr : given->option;
}

void checkMode(const ParsedArguments& arguments, const Option& mode) {
  for (const GivenOption& given : arguments.given) {
    const std::string name = given.option->LongName();
    if (given.option != &mode && std::ranges::find(mode.onlyWith, name) == mode.onlyWith.end()) {
      failUsage(*arguments.command, name + " does not apply with " + mode.LongName());
    }
  }
}

void checkPresence(const ParsedArguments& arguments) {
  const Command& command = *arguments.command;
  const bool isNamedByOption =
      !command.inputsOption.empty() && isGiven(arguments, command.inputsOption);
  if (!command.inputName.empty() && arguments.inputs.empty() && !isNamedByOption) {
    failUsage(command, "no " + command.inputName + " given");
  }
  const Option* const mode = modeOf(arguments);
  if (mode != nullptr) {
    checkMode(arguments, *mode);
  }
  for (const Option& option : command.options) {
    if (mode == nullptr && option.isRequired && !isGiven(arguments, option.LongName())) {
      failUsage(command, "no " + option.LongName() + " given");
    }
  }
  for (const GivenOption& given : arguments.given) {
    const Option& option = *given.option;
    if (given.values.size() > 1 && !option.isRepeatable) {
      failUsage(command, option.LongName() + " is given more than once");
    }
    if (!option.needs.empty() && !isGiven(arguments, option.needs)) {
      failUsage(command, option.LongName() + " needs " + option.needs);
    }
  }
}

// A scene file is drawn exactly as it is, so an option that would change the drawing is an error
// and not ignored.
void checkScenes(const ParsedArguments& arguments) {
  const Command& command = *arguments.command;
  for (const GivenOption& given : arguments.given) {
    if (given.option->appliesTo != AppliesTo::kModelsOnly || !command.isScene) {
      continue;
    }
    const auto scene = std::ranges::find_if(arguments.inputs, command.isScene);
    if (scene != arguments.inputs.end()) {
      throw UsageError({*scene,
                        given.option->LongName() +
                            " applies to models only, and a scene file is drawn exactly as it is",
                        "leave the option out"});
    }
  }
}

void storeOptions(const ParsedArguments& arguments) {
  for (const auto& [option, values] : arguments.given) {
    for (const std::string& value : values) {
      if (!option->take(value)) {
        failUsage(*arguments.command, "invalid " + option->LongName() + " '" + value +
                                          "': expected " + option->expected);
      }
    }
  }
}

OptionWords wordsOf(const std::vector<GivenOption>& given) {
  OptionWords words;
  for (const auto& [option, values] : given) {
    for (const std::string& value : values) {
      words.push_back(option->LongName());
      words.push_back(value);
    }
  }
  return words;
}

}  // namespace

void takeOptions(const std::vector<Option>& options, std::span<const std::string> words) {
  for (; words.size() >= 2; words = words.subspan(2)) {
    const auto option = std::ranges::find(options, words[0], &Option::LongName);
    if (option == options.end() || !option->take(words[1])) {
      throw std::logic_error("option " + words[0] + " is not understood");
    }
  }
}

int runCommandLine(const Program& program, int argc, const char* const* argv) {
  return reporting([&]() -> int {
    const ParsedArguments arguments = parseArguments(program, argc, argv);
    if (arguments.command == nullptr) {
      std::fputs(arguments.text.c_str(), stdout);
      flushStandardOutput();
      return kExitDone;
    }
    checkPresence(arguments);
    checkScenes(arguments);
    storeOptions(arguments);
    if (!arguments.command->inputName.empty()) {
      arguments.command->takeInputs(arguments.inputs);
    }
    return arguments.command->run(wordsOf(arguments.given));
  });
}

}  // namespace dxf2d
