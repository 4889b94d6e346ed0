// The files of web/, which every page holds.
#pragma once

#include <string_view>

namespace dxf2d::page {

// The document, with places that makePage fills.
extern const std::string_view kHtml;
extern const std::string_view kStyle;
extern const std::string_view kScript;

}  // namespace dxf2d::page
