// Where the translations of messages come from. Internal to this library.
#pragma once

#include <string>

namespace dxf2d {

// The text in the user's language, or the text itself where there is no translation. `text` is
// neither null nor empty.
std::u16string translate(const char16_t* text);

// The directory of the catalogs; empty: the installed one.
void setCatalogDirectory(const std::string& directory);

}  // namespace dxf2d
