#include "app/cli/command_line.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "app/cli/argument_parser.h"
#include "app/cli/config_file.h"
#include "app/cli/failure.h"
#include "app/cli/suggestion.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

std::string helpHint(const Command& command) {
  return tr("see %1", {"dxf2d " + command.name + " --help"});
}

[[noreturn]] void failUsage(const Command& command, const std::string& problem) {
  throw UsageError({"", problem, helpHint(command)});
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
      failUsage(*arguments.command, tr("%1 does not apply with %2", {name, mode.LongName()}));
    }
  }
}

void checkPresence(const ParsedArguments& arguments) {
  const Command& command = *arguments.command;
  const bool isNamedByOption =
      !command.inputsOption.empty() && isGiven(arguments, command.inputsOption);
  const Option* const mode = modeOf(arguments);
  const bool needsInputs = command.needsInputs && (mode == nullptr || !mode->needsNoInputs);
  if (!command.inputName.empty() && arguments.inputs.empty() && !isNamedByOption && needsInputs) {
    failUsage(command, tr("no %1 given", {command.inputName}));
  }
  if (mode != nullptr) {
    checkMode(arguments, *mode);
  }
  for (const Option& option : command.options) {
    if (mode == nullptr && option.isRequired && !isGiven(arguments, option.LongName())) {
      failUsage(command, tr("no %1 given", {option.LongName()}));
    }
  }
  if (isGiven(arguments, "--quiet") && isGiven(arguments, "--verbose")) {
    throw UsageError({"", tr("%1 and %2 exclude one another", {"--quiet", "--verbose"}),
                      tr("give one of them")});
  }
  for (const GivenOption& given : arguments.given) {
    const Option& option = *given.option;
    if (given.values.size() > 1 && !option.isRepeatable) {
      failUsage(command, tr("%1 is given more than once", {option.LongName()}));
    }
    if (!option.needs.empty() && !isGiven(arguments, option.needs)) {
      failUsage(command, tr("%1 needs %2", {option.LongName(), option.needs}));
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
                        tr("%1 applies to models only, and a scene file is drawn exactly as it is",
                           {given.option->LongName()}),
                        tr("leave the option out")});
    }
  }
}

void storeOptions(const ParsedArguments& arguments) {
  for (const auto& [option, values] : arguments.given) {
    for (const std::string& value : values) {
      if (!option->take(value)) {
        throw UsageError({"",
                          tr("invalid %1 '%2': expected %3",
                             {option->LongName(), value, translated(option->expected)}),
                          didYouMean(value, choicesOf(*option), helpHint(*arguments.command))});
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

// Of the defaults, those that the command line leaves open.
OptionWords openDefaults(const ParsedArguments& arguments, const ConfigDefaults& defaults) {
  const Option* const mode = modeOf(arguments);
  const auto isSet = [&](const std::string& name) {
    return isGiven(arguments, name) ||
           std::ranges::find(defaults.words, name) != defaults.words.end();
  };
  OptionWords open;
  for (std::size_t i = 0; i + 1 < defaults.words.size(); i += 2) {
    const std::string& name = defaults.words[i];
    const auto option = std::ranges::find(arguments.command->options, name, &Option::LongName);
    const bool applies =
        mode == nullptr || std::ranges::find(mode->onlyWith, name) != mode->onlyWith.end();
    const bool isOverridden = std::ranges::any_of(arguments.given, [&](const GivenOption& given) {
      const std::vector<std::string>& overridden = given.option->overrides;
      return given.option == &*option || std::ranges::find(overridden, name) != overridden.end();
    });
    if (applies && !isOverridden && (option->needs.empty() || isSet(option->needs))) {
      open.insert(open.end(), {name, defaults.words[i + 1]});
    }
  }
  return open;
}

// Stores the defaults of the configuration file that apply. Returns them.
OptionWords storeDefaults(const ParsedArguments& arguments, const ConfigDefaults& defaults) {
  const Command& command = *arguments.command;
  const bool hasModels = arguments.inputs.empty() || !command.isScene ||
                         !std::ranges::all_of(arguments.inputs, command.isScene);
  if (!hasModels) {
    return {};
  }
  OptionWords open = openDefaults(arguments, defaults);
  for (std::size_t i = 0; i + 1 < open.size(); i += 2) {
    const auto option = std::ranges::find(command.options, open[i], &Option::LongName);
    if (!option->take(open[i + 1])) {
      throw UsageError({defaults.file,
                        tr("invalid %1 '%2': expected %3",
                           {open[i].substr(2), open[i + 1], translated(option->expected)}),
                        didYouMean(open[i + 1], choicesOf(*option), tr("correct the file"))});
    }
  }
  return open;
}

int runConfigured(const ParsedArguments& arguments) {
  const Command& command = *arguments.command;
  const ConfigDefaults defaults = readDefaults(command, *command.config);
  if (command.config->isShown) {
    std::fputs(textOf(command, defaults).c_str(), stdout);
    flushStandardOutput();
    return kExitDone;
  }
  // Other processes get the defaults, and not where they come from.
  std::vector<GivenOption> given = arguments.given;
  for (const Option& option : configOptions(*command.config)) {
    std::erase_if(given, [&](const GivenOption& one) { return one.option->names == option.names; });
  }
  OptionWords words = wordsOf(given);
  command.beforeDefaults(words);
  const OptionWords open = storeDefaults(arguments, defaults);
  words.insert(words.end(), open.begin(), open.end());
  const int code = command.run(words);
  if (code == kExitUsage && !open.empty()) {
    note(tr("%1: sets defaults for models; leave them out with --no-config", {defaults.file}));
  }
  return code;
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
    if (!arguments.command->inputName.empty() && !arguments.inputs.empty()) {
      arguments.command->takeInputs(arguments.inputs);
    }
    if (arguments.command->config != nullptr) {
      return runConfigured(arguments);
    }
    return arguments.command->run(wordsOf(arguments.given));
  });
}

}  // namespace dxf2d
