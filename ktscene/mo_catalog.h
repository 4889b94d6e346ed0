// Compiled gettext catalogs (.mo). Internal to this library.
#pragma once

#include <optional>
#include <string_view>

namespace dxf2d {

// The translation of `original` in `catalog`, the bytes of a .mo file, which the result points
// into; nothing when the catalog has none or is damaged. Neither byte order nor alignment matters.
std::optional<std::string_view> findTranslation(std::string_view catalog,
                                                std::string_view original);

}  // namespace dxf2d
