#include "app/cli/completion.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "app/cli/help_text.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

// "-o" and "--output" of "-o,--output".
std::vector<std::string> namesOf(const Option& option) {
  const std::size_t comma = option.names.find(',');
  if (comma == std::string::npos) {
    return {option.names};
  }
  return {option.names.substr(0, comma), option.names.substr(comma + 1)};
}

std::vector<Option> optionsOf(const Command& command) {
  std::vector<Option> options = command.options;
  options.push_back(commonOptions().front());
  return options;
}

std::string joined(const std::vector<std::string>& words, const char* separator = " ") {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : separator) + word;
  }
  return text;
}

// The beginning of an explanation, up to its first aside.
std::string briefly(const std::string& text) {
  const std::string help = translated(text);
  std::size_t end = help.size();
  for (const char* const aside : {"; ", ": ", ". ", " ("}) {
    end = std::min(end, help.find(aside));
  }
  std::string brief = help.substr(0, end);
  if (brief.ends_with('.')) {
    brief.pop_back();
  }
  return brief;
}

// In single quotes of any shell but fish, with a backslash before each of `special`.
std::string quoted(const std::string& text, std::string_view special = {}) {
  std::string result(1, '\'');
  for (const char letter : text) {
    if (letter == '\'') {
      result += R"('\'')";
      continue;
    }
    if (special.find(letter) != std::string_view::npos) {
      result += '\\';
    }
    result += letter;
  }
  return result + "'";
}

// ---- bash

constexpr const char* kBashFiles =
    "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")";

std::string bashWords(const std::vector<std::string>& words) {
  return "mapfile -t COMPREPLY < <(compgen -W " + quoted(joined(words)) + " -- \"$cur\")";
}

std::string bashValue(const Option& option) {
  const std::vector<std::string> choices = choicesOf(option);
  return takesFile(option) ? kBashFiles : choices.empty() ? ":" : bashWords(choices);
}

// What may follow in a command: the value of the option before, an option, or an input.
std::string bashCommand(const Command& command) {
  std::string text = "    " + command.name + ")\n      case $prev in\n";
  std::vector<std::string> names;
  for (const Option& option : optionsOf(command)) {
    const std::vector<std::string> own = namesOf(option);
    names.insert(names.end(), own.begin(), own.end());
    if (!option.value.empty()) {
      text += "        " + joined(own, " | ") + ") " + bashValue(option) + "; return ;;\n";
    }
  }
  text += "      esac\n      if [[ $cur == -* ]]; then\n        " + bashWords(names) +
          "\n        return\n      fi\n";
  if (!command.inputName.empty()) {
    text += std::string("      ") +
            (command.inputChoices.empty() ? kBashFiles : bashWords(command.inputChoices)) + "\n";
  }
  return text + "      ;;\n";
}

// ---- zsh

// An explanation where brackets and colons mean something.
std::string zshText(const std::string& help) { return quoted(briefly(help), "[]:\\"); }

std::string zshOption(const Option& option) {
  const std::vector<std::string> names = namesOf(option);
  const std::string all = joined(names);
  std::string spec = option.isRepeatable ? "'*'" : quoted("(" + all + ")");
  if (names.size() == 2) {
    const char* const glue = option.value.empty() ? "" : "=";
    spec += "{" + names[0] + "," + names[1] + glue + "}";
  } else {
    spec += names[0] + (option.value.empty() ? "" : "=");
  }
  spec += "'['" + zshText(option.help) + "']";
  if (!option.value.empty()) {
    const std::vector<std::string> choices = choicesOf(option);
    spec += takesFile(option) ? ":file:_files"
            : choices.empty() ? ":value: "
                              : ":value:(" + joined(choices) + ")";
  }
  return spec + "'";
}

std::string zshCommand(const Command& command) {
  std::string text = "        " + command.name + ")\n          _arguments -S";
  for (const Option& option : optionsOf(command)) {
    text += " \\\n            " + zshOption(option);
  }
  if (!command.inputName.empty()) {
    text += std::string(" \\\n            '") + (command.takesSeveralInputs ? "*" : "1") + ":" +
            command.inputName + ":" +
            (command.inputChoices.empty() ? "_files" : "(" + joined(command.inputChoices) + ")") +
            "'";
  }
  return text + "\n          ;;\n";
}

// ---- fish

std::string fishQuoted(const std::string& text) {
  std::string result(1, '\'');
  for (const char letter : text) {
    result += letter == '\'' || letter == '\\' ? "\\" : "";
    result += letter;
  }
  return result + "'";
}

std::string fishOption(const std::string& condition, const Option& option) {
  std::string line = "complete -c dxf2d -n " + fishQuoted(condition);
  for (const std::string& name : namesOf(option)) {
    line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  const std::vector<std::string> choices = choicesOf(option);
  if (takesFile(option)) {
    line += " -r -F";
  } else if (!option.value.empty()) {
    line += " -x" + (choices.empty() ? "" : " -a " + fishQuoted(joined(choices)));
  }
  return line + " -d " + fishQuoted(briefly(option.help)) + "\n";
}

}  // namespace

std::string bashCompletion(const Program& program) {
  const std::vector<std::string> names = commandNames(program);
  std::vector<std::string> first = names;
  for (const Option& option : commonOptions()) {
    const std::vector<std::string> own = namesOf(option);
    first.insert(first.end(), own.begin(), own.end());
  }
  std::string script =
      "# bash completion of dxf2d, as `dxf2d completion bash` prints it\n"
      "_dxf2d() {\n"
      "  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} word command=\n"
      "  # bash takes an equals sign as a word of its own.\n"
      "  if [[ $cur == = ]]; then\n"
      "    cur=\n"
      "  elif [[ $prev == = ]]; then\n"
      "    prev=${COMP_WORDS[COMP_CWORD - 2]}\n"
      "  fi\n"
      "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
      "    case $word in\n"
      "      " +
      joined(names, " | ") +
      ") command=$word; break ;;\n"
      "    esac\n"
      "  done\n"
      "  COMPREPLY=()\n"
      "  case $command in\n";
  for (const Command& command : program.commands) {
    script += bashCommand(command);
  }
  return script + "    *) " + bashWords(first) +
         " ;;\n"
         "  esac\n"
         "}\n"
         "complete -F _dxf2d dxf2d\n";
}

std::string zshCompletion(const Program& program) {
  std::string script =
      "#compdef dxf2d\n"
      "# zsh completion of dxf2d, as `dxf2d completion zsh` prints it\n"
      "_dxf2d() {\n"
      "  local curcontext=$curcontext state line\n"
      "  typeset -A opt_args\n"
      "  local -a commands=(\n";
  for (const Command& command : program.commands) {
    script += "    " + quoted(command.name + ":" + briefly(command.summary)) + "\n";
  }
  script += "  )\n  _arguments -C";
  for (const Option& option : commonOptions()) {
    script += " \\\n    " + zshOption(option);
  }
  script +=
      " \\\n    '1: :->command' '*:: :->argument'\n"
      "  case $state in\n"
      "    command) _describe -t commands command commands ;;\n"
      "    argument)\n"
      "      case $words[1] in\n";
  for (const Command& command : program.commands) {
    script += zshCommand(command);
  }
  return script +
         "      esac\n"
         "      ;;\n"
         "  esac\n"
         "}\n"
         "if [ \"$funcstack[1]\" = _dxf2d ]; then\n"
         "  _dxf2d \"$@\"\n"
         "else\n"
         "  compdef _dxf2d dxf2d\n"
         "fi\n";
}

std::string fishCompletion(const Program& program) {
  std::string script =
      "# fish completion of dxf2d, as `dxf2d completion fish` prints it\n"
      "complete -c dxf2d -f\n";
  for (const Command& command : program.commands) {
    script += "complete -c dxf2d -n __fish_use_subcommand -a " + command.name + " -d " +
              fishQuoted(briefly(command.summary)) + "\n";
  }
  for (const Option& option : commonOptions()) {
    script += fishOption("__fish_use_subcommand", option);
  }
  for (const Command& command : program.commands) {
    const std::string condition = "__fish_seen_subcommand_from " + command.name;
    for (const Option& option : optionsOf(command)) {
      script += fishOption(condition, option);
    }
    if (!command.inputName.empty()) {
      script += "complete -c dxf2d -n " + fishQuoted(condition) +
                (command.inputChoices.empty() ? " -F"
                                              : " -a " + fishQuoted(joined(command.inputChoices))) +
                "\n";
    }
  }
  return script;
}

}  // namespace dxf2d
