// The catalog of the user's language.
#pragma once

#include <cstdint>

namespace dxf2d {

// Takes the locale of messages, and no other, from the environment. Looks for catalogs in
// share/locale next to the directory of this program, or some levels above it: where packages,
// moved trees and build trees have them. Reads the one of the user's language, since a confined
// process may not be able to later.
void findCatalogs();

// The translation of `text`; the same pointer where there is none.
const char* catalogText(const char* text);

// The same of a text that depends on a count; one of the two pointers where there is none.
const char* catalogText(const char* one, const char* many, std::uint64_t count);

}  // namespace dxf2d
