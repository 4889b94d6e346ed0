#include "app/cli/help_text.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string_view>

#include "app/cli/printable.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

constexpr std::size_t kWidth = 80;
// Where explanations begin.
constexpr std::size_t kColumn = 26;

// Breaks `text` into lines, each after `indent` blanks. The first one begins at column `at`.
std::string wrapped(std::string_view text, std::size_t indent, std::size_t at) {
  std::string lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, end);
    if (at > indent && at + 1 + lengthOf(word) > kWidth) {
      lines.append(1, '\n').append(indent, ' ');
      at = indent;
    } else if (at > indent) {
      lines += ' ';
      ++at;
    }
    lines += word;
    at += lengthOf(word);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines + "\n";
}

// "  NAME        explanation".
std::string entry(const std::string& name, const std::string& help) {
  std::string line(2, ' ');
  line += name;
  const std::size_t length = lengthOf(line);
  if (length + 2 > kColumn) {
    line.append(1, '\n').append(kColumn, ' ');
  } else {
    line.append(kColumn - length, ' ');
  }
  return line + wrapped(help, kColumn, kColumn);
}

std::string heading(const std::string& text, Headings headings) {
  std::string line(1, '\n');
  line += headings == Headings::kBold ? "\x1b[1m" : "";
  line += text + ":";
  line += headings == Headings::kBold ? "\x1b[0m" : "";
  return line += '\n';
}

std::string entryOf(const Option& option) {
  std::string names = option.names;
  if (const std::size_t comma = names.find(','); comma != std::string::npos) {
    names.insert(comma + 1, 1, ' ');
  }
  return entry(names + (option.value.empty() ? "" : " " + option.value), helpOf(option));
}

std::string listOf(const std::vector<Meaning>& meanings) {
  std::string text;
  for (const Meaning& meaning : meanings) {
    text += entry(meaning.name, translated(meaning.help));
  }
  return text;
}

std::string programHelp(const Program& program, Headings headings) {
  std::string text = tr("Usage: %1", {"dxf2d COMMAND [OPTION...] [FILE...]"}) + "\n\n" +
                     wrapped(translated(program.about), 0, 0);
  text += heading(tr("Commands"), headings);
  for (const Command& command : program.commands) {
    text += entry(command.name, translated(command.summary));
  }
  text += heading(tr("Options"), headings);
  for (const Option& option : commonOptions()) {
    text += entryOf(option);
  }
  text += heading(tr("Exit codes"), headings) + listOf(program.exitCodes);
  text += '\n';
  return text + wrapped(translated(program.ending), 0, 0);
}

}  // namespace

std::vector<Option> commonOptions() {
  return {{"-h,--help", "", "Print this help", "", {}},
          {"-V,--version", "", "Print the version", "", {}}};
}

std::string helpOf(const Option& option) {
  const std::string help = translated(option.help);
  return option.isRequired ? tr("%1 (required)", {help}) : help;
}

std::string translatableTexts(const Program& program) {
  std::set<std::string> texts{program.about, program.ending};
  const auto addMeanings = [&](const std::vector<Meaning>& meanings) {
    for (const Meaning& meaning : meanings) {
      texts.insert(meaning.help);
    }
  };
  const auto addOptions = [&](const std::vector<Option>& options) {
    for (const Option& option : options) {
      texts.insert({option.help, option.expected, option.group});
    }
  };
  addMeanings(program.exitCodes);
  addMeanings(program.environment);
  addOptions(commonOptions());
  for (const Command& command : program.commands) {
    texts.insert({command.summary, command.help, command.inputHelp});
    addOptions(command.options);
    for (const Example& example : command.examples) {
      texts.insert(example.help);
    }
  }
  texts.erase("");
  std::string list = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
  for (const std::string& text : texts) {
    std::string escaped;
    for (const char letter : text) {
      escaped.append(letter == '"' || letter == '\\' ? 1 : 0, '\\').append(1, letter);
    }
    list += "\nmsgid \"" + escaped + "\"\nmsgstr \"\"\n";
  }
  return list;
}

std::string usageOf(const Command& command) {
  std::string usage = command.options.empty() ? "" : "[OPTION...] ";
  if (command.inputName.empty()) {
    return usage.substr(0, usage.find(' '));
  }
  usage += command.needsInputs ? "" : "[";
  usage += command.inputName + (command.takesSeveralInputs ? "..." : "");
  usage += command.needsInputs ? "" : "]";
  return usage;
}

std::string helpText(const Program& program, const Command* command, Headings headings) {
  if (command == nullptr) {
    return programHelp(program, headings);
  }
  std::string text = tr("Usage: %1", {"dxf2d " + command->name + " " + usageOf(*command)}) +
                     "\n\n" + wrapped(translated(command->summary), 0, 0);
  if (!command->help.empty()) {
    text += '\n';
    text += wrapped(translated(command->help), 0, 0);
  }
  if (!command->inputName.empty()) {
    text += '\n';
    text += entry(command->inputName, translated(command->inputHelp));
  }
  for (const std::string& group : groupsOf(*command)) {
    text += heading(group.empty() ? tr("Options") : translated(group), headings);
    for (const Option& option : command->options) {
      text += option.group == group ? entryOf(option) : "";
    }
  }
  if (!command->examples.empty()) {
    text += heading(tr("Examples"), headings);
    for (const Example& example : command->examples) {
      text.append(2, ' ').append(example.words).append("\n      ");
      text += wrapped(translated(example.help), 6, 6);
    }
  }
  return text;
}

}  // namespace dxf2d
