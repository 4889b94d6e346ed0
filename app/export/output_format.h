// What an export writes: a drawing, a picture of it, or a page that shows it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/preview/picture.h"

namespace dxf2d {

enum class OutputFormat : std::uint8_t { kDxf, kSvg, kPdf, kPng, kHtml };

inline constexpr const char* kExpectedFormat = "dxf, svg, pdf, png or html";

// The format of that name, in any letter case.
std::optional<OutputFormat> parseOutputFormat(const std::string& name);

// The format that the end of `output` names, in any letter case. Names without an end, "-" and what
// is there and no regular file are drawings. Throws UsageError for an end that names no format.
OutputFormat formatOfName(const std::string& output);

// ".dxf" and so on.
std::string endOfFormat(OutputFormat format);

// Nothing for drawings and pages.
std::optional<PictureFormat> pictureFormatOf(OutputFormat format);

}  // namespace dxf2d
