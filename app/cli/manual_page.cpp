#include "app/cli/manual_page.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string_view>

#include "app/cli/help_text.h"

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

// A paragraph as lines of moderate length, none of which reads as a request.
std::string paragraph(std::string_view text) {
  constexpr std::size_t kWidth = 76;
  std::string lines;
  std::size_t at = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string word = escaped(text.substr(0, end));
    const bool isFirst = at == 0 || at + 1 + word.size() > kWidth;
    if (at != 0) {
      lines += isFirst ? '\n' : ' ';
    }
    const std::string guard = isFirst && word.starts_with('.') ? "\\&" : "";
    lines += guard + word;
    at = isFirst ? word.size() : at + 1 + word.size();
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines + "\n";
}

// A term and its explanation.
std::string item(const std::string& term, std::string_view help) {
  return ".TP\n" + term + "\n" + paragraph(help);
}

std::string items(const std::vector<Meaning>& meanings) {
  std::string text;
  for (const Meaning& meaning : meanings) {
    text += item(bold(meaning.name), meaning.help);
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
  return item(term, option.help + (option.isRequired ? " (required)" : ""));
}

std::string optionsOf(const Command& command) {
  std::string text;
  for (const std::string& group : groupsOf(command)) {
    text += group.empty() ? "" : ".SS " + escaped(group) + "\n";
    for (const Option& option : command.options) {
      text += option.group == group ? itemOf(option) : "";
    }
  }
  return text;
}

std::string examplesOf(const Command& command) {
  std::string text;
  for (const Example& example : command.examples) {
    text += item(bold(example.words), example.help);
  }
  return text.empty() ? "" : ".SH EXAMPLES\n" + text;
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
         "\" \"User Commands\"\n.SH NAME\n" + escaped(name) + " \\-\n" +
         paragraph(briefly(summary)) + ".SH SYNOPSIS\n";
}

std::string programPage(const Program& program) {
  std::string page = head(program, "dxf2d", program.about);
  page += bold("dxf2d") + " " + italic("COMMAND") + " " + escaped("[OPTION...] [FILE...]") +
          "\n.SH DESCRIPTION\n" + paragraph(program.about);
  page += ".SH COMMANDS\n";
  for (const Command& command : program.commands) {
    page += item(bold(command.name), command.summary);
  }
  page += ".SH OPTIONS\n";
  for (const Option& option : commonOptions()) {
    page += itemOf(option);
  }
  page += ".SH EXIT STATUS\n" + items(program.exitCodes) + ".PP\n" + paragraph(program.ending);
  page += ".SH ENVIRONMENT\n" + items(program.environment) + ".SH SEE ALSO\n";
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
  page += bold("dxf2d " + command->name) + " " + escaped(usageOf(*command)) +
          "\n.SH DESCRIPTION\n" + paragraph(command->summary + " " + command->help);
  if (!command->inputName.empty()) {
    page += item(italic(command->inputName), command->inputHelp);
  }
  if (!command->options.empty()) {
    page += ".SH OPTIONS\n" + optionsOf(*command);
  }
  return page + examplesOf(*command) + ".SH SEE ALSO\n" + bold("dxf2d") + "(1)\n";
}

}  // namespace dxf2d
