// Text that is safe to print on terminals and into logs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dxf2d {

// Returns `text` (UTF-8, or any bytes) with a question mark for each byte of a control character,
// of a character that changes the direction of text, and of what is not UTF-8: a file name can
// neither break a line, nor send the terminal an escape sequence in any encoding, nor show another
// name than it is.
std::string printable(std::string_view text);

// The characters of a text in UTF-8.
std::size_t lengthOf(std::string_view text);

// `text` with blanks after it, up to `length` characters.
std::string padded(std::string_view text, std::size_t length);

}  // namespace dxf2d
