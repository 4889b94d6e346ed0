// Texts that stand in a page as nothing but text.
#pragma once

#include <string>
#include <string_view>

namespace dxf2d::page {

// For content and quoted attributes of HTML.
std::string htmlText(std::string_view text);

// JSON for the content of a script element: no character in it ends the element, begins a comment
// or ends a line of script. `json` is ASCII.
std::string scriptText(std::string_view json);

std::string base64Of(std::string_view bytes);

// As a content security policy names a script or a style: 'sha256-...'.
std::string policySource(std::string_view text);

}  // namespace dxf2d::page
