#include "app/cli/manual_page.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string_view>

#include "app/cli/help_text.h"
#include "app/cli/translation.h"

namespace dxf2d {
namespace {

// As text: hyphens are those that one types, and quotes are straight.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char letter : text) {
    switch (letter) {
      case '\\':
        result += "\\e";
        break;
      case '-':
        result += "\\-";
        break;
      case '\'':
        result += "\\(aq";
        break;
      case '`':
        result += "\\(ga";
        break;
      case '^':
        result += "\\(ha";
        break;
      case '~':
        result += "\\(ti";
        break;
      case '"':
        result += "\\(dq";
        break;
      default:
        result += letter;
    }
  }
  return result;
}

// In a font of the manual's, by its letter.
std::string inFont(char font, std::string_view text) {
  std::string result("\\f");
  return result.append(1, font).append(escaped(text)).append("\\fR");
}

std::string bold(std::string_view text) { return inFont('B', text); }
std::string italic(std::string_view text) { return inFont('I', text); }

// In bytes, as a formatter counts that writes \[u00E4] for letters beyond ASCII.
std::size_t lengthOf(std::string_view text) {
  constexpr std::size_t kEscape = 8;
  std::size_t length = 0;
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    length += code < 0x80 ? 1 : code >= 0xC0 ? kEscape : 0;
  }
  return length;
}

// A paragraph as lines of moderate length, none of which reads as a request.
std::string paragraph(std::string_view text) {
  constexpr std::size_t kWidth = 76;
  std::string lines;
  std::size_t at = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string word = escaped(text.substr(0, end));
    const bool isFirst = at == 0 || at + 1 + lengthOf(word) > kWidth;
    if (at != 0) {
      lines += isFirst ? '\n' : ' ';
    }
    const std::string guard = isFirst && word.starts_with('.') ? "\\&" : "";
    lines += guard + word;
    at = isFirst ? lengthOf(word) : at + 1 + lengthOf(word);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines + "\n";
}

// A term and its explanation.
std::string item(const std::string& term, std::string_view help) {
  return ".TP\n" + term + "\n" + paragraph(help);
}

std::string section(const std::string& title) { return ".SH " + escaped(title) + "\n"; }

std::string items(const std::vector<Meaning>& meanings) {
  std::string text;
  for (const Meaning& meaning : meanings) {
    text += item(bold(meaning.name), translated(meaning.help));
  }
  return text;
}

std::string itemOf(const Option& option) {
  std::string term;
  for (std::size_t begin = 0; begin < option.names.size();) {
    const std::size_t end = std::min(option.names.find(',', begin), option.names.size());
    term += (term.empty() ? "" : ", ") + bold(option.names.substr(begin, end - begin));
    begin = end + 1;
  }
  if (!option.value.empty()) {
    term.append(1, ' ').append(italic(option.value));
  }
  return item(term, helpOf(option));
}

std::string optionsOf(const Command& command) {
  std::string text;
  for (const std::string& group : groupsOf(command)) {
    text += group.empty() ? "" : ".SS " + escaped(translated(group)) + "\n";
    for (const Option& option : command.options) {
      text += option.group == group ? itemOf(option) : "";
    }
  }
  return text;
}

std::string examplesOf(const Command& command) {
  std::string text;
  for (const Example& example : command.examples) {
    text += item(bold(example.words), translated(example.help));
  }
  return text.empty() ? "" : section(tr("EXAMPLES")) + text;
}

// "Draws pictures: of drawings." as the line NAME has it: "draws pictures".
std::string briefly(std::string summary) {
  summary.resize(std::min(summary.find(": "), summary.size()));
  if (summary.ends_with('.')) {
    summary.pop_back();
  }
  const bool isAcronym = summary.size() > 1 && std::isupper(static_cast<unsigned char>(summary[1]));
  if (!summary.empty() && !isAcronym) {
    summary[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(summary[0])));
  }
  return summary;
}

std::string head(const Program& program, const std::string& name, const std::string& summary) {
  std::string title = name;
  for (char& letter : title) {
    letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  }
  return ".TH " + escaped(title) + " 1 " + program.date + " \"" + escaped(program.version) +
         "\" \"" + tr("User Commands") + "\"\n" + section(tr("NAME")) + escaped(name) + " \\-\n" +
         paragraph(briefly(translated(summary))) + section(tr("SYNOPSIS"));
}

std::string programPage(const Program& program) {
  std::string page = head(program, "dxf2d", program.about);
  page += bold("dxf2d") + " " + italic("COMMAND") + " " + escaped("[OPTION...] [FILE...]") + "\n" +
          section(tr("DESCRIPTION")) + paragraph(translated(program.about));
  page += section(tr("COMMANDS"));
  for (const Command& command : program.commands) {
    page += item(bold(command.name), translated(command.summary));
  }
  page += section(tr("OPTIONS"));
  for (const Option& option : commonOptions()) {
    page += itemOf(option);
  }
  page += section(tr("EXIT STATUS")) + items(program.exitCodes) + ".PP\n" +
          paragraph(translated(program.ending));
  page += section(tr("ENVIRONMENT")) + items(program.environment) + section(tr("SEE ALSO"));
  for (const Command& command : program.commands) {
    const bool isLast = &command == &program.commands.back();
    page += bold("dxf2d-" + command.name) + "(1)" + (isLast ? "\n" : ",\n");
  }
  return page;
}

}  // namespace

std::string manualPage(const Program& program, const Command* command) {
  if (command == nullptr) {
    return programPage(program);
  }
  std::string page = head(program, "dxf2d-" + command->name, command->summary);
  page += bold("dxf2d " + command->name) + " " + escaped(usageOf(*command)) + "\n" +
          section(tr("DESCRIPTION")) +
          paragraph(translated(command->summary) + " " + translated(command->help));
  if (!command->inputName.empty()) {
    page += item(italic(command->inputName), translated(command->inputHelp));
  }
  if (!command->options.empty()) {
    page += section(tr("OPTIONS")) + optionsOf(*command);
  }
  return page + examplesOf(*command) + section(tr("SEE ALSO")) + bold("dxf2d") + "(1)\n";
}

}  // namespace dxf2d
