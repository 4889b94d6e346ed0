#include "app/cli/help_command.h"

#include <algorithm>
#include <cstdio>

#include "app/cli/completion.h"
#include "app/cli/exit_code.h"
#include "app/cli/failure.h"
#include "app/cli/help_text.h"
#include "app/cli/manual_page.h"
#include "app/cli/suggestion.h"
#include "app/cli/terminal.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

// Null for an empty name.
const Command* commandNamed(const Program& program, const std::string& name) {
  if (name.empty()) {
    return nullptr;
  }
  const auto command = std::ranges::find(program.commands, name, &Command::name);
  if (command == program.commands.end()) {
    throw UsageError({"", tr("unknown command '%1'", {name}),
                      didYouMean(name, commandNames(program), tr("see %1", {"dxf2d --help"}))});
  }
  return &*command;
}

int print(const std::string& text) {
  std::fputs(text.c_str(), stdout);
  flushStandardOutput();
  return kExitDone;
}

Command helpCommand(const Program& program) {
  struct Asked {
    std::string name;
    bool isManual = false;
    bool isForTranslators = false;
  };
  const auto asked = std::make_shared<Asked>();
  Command command;
  command.name = "help";
  command.summary = "Explains a command.";
  command.inputName = "COMMAND";
  command.inputHelp = "The command; all of them in short without one";
  command.inputChoices = commandNames(program);
  command.needsInputs = false;
  command.takeInputs = [asked](const auto& inputs) { asked->name = inputs.front(); };
  command.options = {{"--man", "", "Print the manual page, for man -l -", "",
                      [asked](const std::string&) { return asked->isManual = true; }},
                     {"--messages", "", "List the texts of all help, for translators", "",
                      [asked](const std::string&) { return asked->isForTranslators = true; }}};
  command.run = [asked, &program](const OptionWords&) {
    if (asked->isForTranslators) {
      return print(translatableTexts(program));
    }
    const Command* const explained = commandNamed(program, asked->name);
    const Headings headings = isStyled(stdout) ? Headings::kBold : Headings::kPlain;
    return print(asked->isManual ? manualPage(program, explained)
                                 : helpText(program, explained, headings));
  };
  command.examples = {{"dxf2d help export", "Every option of export."},
                      {"dxf2d help --man export | man -l -", "The same as a manual page."}};
  return command;
}

Command completionCommand(const Program& program) {
  const auto shell = std::make_shared<std::string>();
  Command command;
  command.name = "completion";
  command.summary = "Prints a script by which a shell completes the command line.";
  command.help =
      "That is commands, options, values and names of files. Packages install these scripts; "
      "elsewhere the shell reads one at its start.";
  command.inputName = "SHELL";
  command.inputHelp = "bash, zsh or fish";
  command.inputChoices = {"bash", "zsh", "fish"};
  command.takeInputs = [shell](const auto& inputs) { *shell = inputs.front(); };
  command.run = [shell, &program, shells = command.inputChoices](const OptionWords&) {
    if (*shell == "bash") {
      return print(bashCompletion(program));
    }
    if (*shell == "zsh") {
      return print(zshCompletion(program));
    }
    if (*shell == "fish") {
      return print(fishCompletion(program));
    }
    throw UsageError({"", tr("unknown shell '%1'", {*shell}),
                      didYouMean(*shell, shells, tr("use bash, zsh or fish"))});
  };
  command.examples = {{"source <(dxf2d completion bash)", "Completion in this session of bash."}};
  return command;
}

}  // namespace

void addHelpCommands(Program& program) {
  program.commands.push_back(helpCommand(program));
  program.commands.push_back(completionCommand(program));
  // All that one can ask for.
  for (Command& command : program.commands) {
    if (command.name == "help") {
      command.inputChoices = commandNames(program);
    }
  }
}

}  // namespace dxf2d
