// Texts in the user's language. The source language is English; catalogs are in po/.
#pragma once

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

// A text of a command's description, which `dxf2d help --messages` lists for translators.
inline std::string translated(const std::string& text) { return tr(text.c_str()); }

// Looks for catalogs in share/locale next to the directory of this program, or some levels above
// it: where packages, moved trees and build trees have them.
void findCatalogs();

}  // namespace dxf2d
