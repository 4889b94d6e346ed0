#include "app/export/output_format.h"

#include "app/cli/failure.h"
#include "app/cli/option_values.h"
#include "app/cli/translation.h"
#include "app/output/destination.h"

namespace dxf2d {

std::optional<OutputFormat> parseOutputFormat(const std::string& name) {
  return oneOf<OutputFormat>({{"dxf", OutputFormat::kDxf},
                              {"svg", OutputFormat::kSvg},
                              {"pdf", OutputFormat::kPdf},
                              {"png", OutputFormat::kPng},
                              {"html", OutputFormat::kHtml}})(name);
}

OutputFormat formatOfName(const std::string& output) {
  const std::string end = Destination::EndOf(output);
  if (end.empty()) {
    return OutputFormat::kDxf;
  }
  if (const std::optional<OutputFormat> format = parseOutputFormat(end.substr(1))) {
    return *format;
  }
  throw UsageError({output, tr("the format '%1' is unknown", {end}),
                    tr("end the name in .dxf, .svg, .pdf, .png or .html, or give --format")});
}

std::string endOfFormat(OutputFormat format) {
  if (format == OutputFormat::kHtml) {
    return ".html";
  }
  const std::optional<PictureFormat> picture = pictureFormatOf(format);
  return picture ? endOf(*picture) : ".dxf";
}

std::optional<PictureFormat> pictureFormatOf(OutputFormat format) {
  switch (format) {
    case OutputFormat::kSvg:
      return PictureFormat::kSvg;
    case OutputFormat::kPdf:
      return PictureFormat::kPdf;
    case OutputFormat::kPng:
      return PictureFormat::kPng;
    case OutputFormat::kDxf:
    case OutputFormat::kHtml:
      break;
  }
  return std::nullopt;
}

}  // namespace dxf2d
