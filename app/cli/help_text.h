// What --help prints.
#pragma once

#include <string>

#include "app/cli/command.h"

namespace dxf2d {

// How headings are set off.
enum class Headings { kPlain, kBold };

// Of the program where `command` is null. Ends with a line end.
std::string helpText(const Program& program, const Command* command,
                     Headings headings = Headings::kPlain);

// "[OPTION...] MODEL...".
std::string usageOf(const Command& command);

// With a remark on options that must be given.
std::string helpOf(const Option& option);

// Every text of the description that is translated, as a template of catalogs.
std::string translatableTexts(const Program& program);

// The options of every command.
std::vector<Option> commonOptions();

}  // namespace dxf2d
