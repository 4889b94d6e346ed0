// Names as the texts of a drawing.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d {

// The most characters of a text that readers of the drawing's release take.
inline constexpr std::size_t kMaxLabelText = 255;

// What a TEXT holds so that readers show `name`, which is UTF-8: ASCII whatever the code page, at
// most kMaxLabelText characters. Empty when there is nothing to show.
//
// - Letters beyond ASCII are \U+XXXX, one for each UTF-16 unit: readers take four digits and no
//   more, so that what lies beyond U+FFFF must be a surrogate pair. Bytes that are not UTF-8 show
//   as U+FFFD.
// - Control characters are spaces; spaces around the name are dropped.
// - The format's own notations show as they are written: a backslash that begins a \U+ or \M+ is
//   itself \U+005C, percent signs next to each other are %%% each, and a caret is followed by a
//   space, which belongs to it.
// - What is too long ends in "...".
std::u16string textOfName(std::string_view name);

}  // namespace dxf2d
