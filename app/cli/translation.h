// Texts in the user's language. The source language is English; catalogs are in po/.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace dxf2d {

// `text` in the user's language, with %1 to %9 replaced by `values`. Every sentence that users see
// and that this program makes itself passes here as a whole, since other languages order its parts
// otherwise. xgettext finds the literals by this name.
//
// Example:
//   tr("unknown option '%1'", {word})
std::string tr(const char* text, std::initializer_list<std::string_view> values = {});

// Has xgettext find a literal that is translated elsewhere.
constexpr const char* marked(const char* text) { return text; }

// The same as tr for a sentence that depends on a count, which is among `values` where the sentence
// has it: `one` and `many` are its English forms.
//
// Example:
//   trn("%1 file", "%1 files", count, {std::to_string(count)})
std::string trn(const char* one, const char* many, std::uint64_t count,
                std::initializer_list<std::string_view> values = {});

// A text that tr, trn or sentenceOf made on this thread, in English: reports are read by programs,
// which know no other language. Remembers the latest texts; others are returned as they are.
std::string inEnglish(const std::string& text);

// Has inEnglish(text) return `english`.
void rememberEnglish(const std::string& text, const std::string& english);

// A text of a command's description, which `dxf2d help --messages` lists for translators.
inline std::string translated(const std::string& text) { return tr(text.c_str()); }

}  // namespace dxf2d
