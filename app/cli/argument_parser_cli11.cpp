// With config_file_cli11.cpp the only source that includes CLI11, which takes long to compile. The
// library splits the command line; its messages never reach the user.
#include <CLI/CLI.hpp>
#include <algorithm>

#include "app/cli/argument_parser.h"
#include "app/cli/failure.h"
#include "app/cli/help_text.h"
#include "app/cli/suggestion.h"
#include "app/cli/terminal.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

std::string helpHint(const Command* command) {
  return tr("see %1", {"dxf2d " + (command == nullptr ? "" : command->name + " ") + "--help"});
}

// "export, preview or inspect".
std::string namesOf(const std::vector<Command>& commands) {
  std::string names = commands.front().name;
  for (std::size_t i = 1; i + 1 < commands.size(); ++i) {
    names.append(", ").append(commands[i].name);
  }
  if (commands.size() > 1) {
    names = tr("%1 or %2", {names, commands.back().name});
  }
  return names;
}

std::string hintOfCommands(const Program& program) {
  return tr("use %1, or %2", {namesOf(program.commands), helpHint(nullptr)});
}

// The arguments as CLI11 takes them, the last one first. It reads [a,b] as a list and ++ as the end
// of a command's arguments; here they are names of files, for which ./ says the same.
std::vector<std::string> argumentsOf(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) {
    const std::string argument = argv[i];
    const bool isList = argument.starts_with('[') && argument.ends_with(']');
    arguments.push_back((isList || argument == "++" ? "./" : "") + argument);
  }
  return arguments;
}

void addOption(CLI::App& parser, const Option& option) {
  if (option.value.empty()) {
    parser.add_flag(option.names)->disable_flag_override();
    return;
  }
  // How often an option may stand is checked by us.
  parser.add_option(option.names)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void addCommand(CLI::App& app, const Command& command) {
  CLI::App* const parser = app.add_subcommand(command.name);
  if (!command.inputName.empty()) {
    constexpr int kMany = 1 << 20;
    parser->add_option(command.inputName)
        ->expected(1, command.takesSeveralInputs ? kMany : 1)
        ->allow_extra_args(command.takesSeveralInputs)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  }
  for (const Option& option : command.options) {
    addOption(*parser, option);
  }
}

const Command* commandOf(const Program& program, const CLI::App& app) {
  for (const Command& command : program.commands) {
    if (app.got_subcommand(command.name)) {
      return &command;
    }
  }
  return nullptr;
}

// How the options of a command may be written; those of the program where it is null.
std::vector<std::string> optionNames(const Command* command) {
  std::vector<Option> options = commonOptions();
  if (command != nullptr) {
    append(options, command->options);
  }
  std::vector<std::string> names;
  names.reserve(options.size());
  for (const Option& option : options) {
    names.push_back(option.LongName());
  }
  return names;
}

// Words that were not understood, if any.
void checkNothingRemains(const Program& program, const CLI::App& app, const Command* command) {
  const std::vector<std::string> rest = app.remaining(true);
  const auto word = std::ranges::find_if(rest, [](const auto& text) { return text != "--"; });
  if (word != rest.end()) {
    const bool isOption = word->starts_with('-') && word->size() > 1;
    if (isOption) {
      const std::string name = word->substr(0, word->find('='));
      throw UsageError({"", tr("unknown option '%1'", {*word}),
                        didYouMean(name, optionNames(command), helpHint(command))});
    }
    if (command != nullptr) {
      throw UsageError({"", tr("unexpected argument '%1'", {*word}), helpHint(command)});
    }
    const std::string others = hintOfCommands(program);
    throw UsageError({"", tr("unknown command '%1'", {*word}),
                      didYouMean(*word, commandNames(program), others)});
  }
  if (command == nullptr) {
    throw UsageError({"", tr("no command given"), hintOfCommands(program)});
  }
}

// CLI11 stops at an option without its value or a flag with one. Its message begins with the name
// of the option.
[[noreturn]] void failAtOption(const Command* command, const std::string& message) {
  std::string name = message.substr(0, message.find_first_of(": "));
  // A flag stands there without its dashes.
  name.insert(0, name.starts_with('-') ? "" : "--");
  const auto isNamed = [&](const Option& option) { return option.LongName() == name; };
  if (command != nullptr) {
    const auto option = std::ranges::find_if(command->options, isNamed);
    if (option != command->options.end()) {
      const std::string problem = option->value.empty() ? tr("%1 takes no value", {name})
                                                        : tr("%1 needs a value: expected %2",
                                                             {name, translated(option->expected)});
      throw UsageError({"", problem, helpHint(command)});
    }
  }
  throw UsageError({"", tr("the command line cannot be understood"), helpHint(command)});
}

std::vector<GivenOption> givenOptions(const CLI::App& parser, const Command& command) {
  std::vector<GivenOption> given;
  for (const Option& option : command.options) {
    const CLI::Option* const found = parser.get_option(option.LongName());
    if (found->count() == 0) {
      continue;
    }
    if (option.value.empty()) {
      given.push_back({&option, {""}});
    } else {
      given.push_back({&option, found->results()});
    }
  }
  return given;
}

}  // namespace

ParsedArguments parseArguments(const Program& program, int argc, const char* const* argv) {
  CLI::App app("", "dxf2d");
  app.set_version_flag("-V,--version", program.version);
  app.require_subcommand(0, 1);
  app.allow_extras();
  // A slash begins a path, on Windows too.
  app.allow_windows_style_options(false);
  for (const Command& command : program.commands) {
    addCommand(app, command);
    app.get_subcommand(command.name)->allow_extras();
  }
  try {
    app.parse(argumentsOf(argc, argv));
  } catch (const CLI::CallForHelp&) {
    const Headings headings = isStyled(stdout) ? Headings::kBold : Headings::kPlain;
    return {nullptr, helpText(program, commandOf(program, app), headings)};
  } catch (const CLI::CallForVersion&) {
    return {nullptr, program.version + "\n"};
  } catch (const CLI::ParseError& error) {
    failAtOption(commandOf(program, app), error.what());
  }
  const Command* const command = commandOf(program, app);
  checkNothingRemains(program, app, command);
  const CLI::App& parser = *app.get_subcommand(command->name);
  std::vector<std::string> inputs;
  if (!command->inputName.empty()) {
    inputs = parser.get_option(command->inputName)->results();
  }
  return {command, "", std::move(inputs), givenOptions(parser, *command)};
}

}  // namespace dxf2d
