#include <algorithm>
#include <string>

#include "app/preview/picture.h"

namespace dxf2d {

std::optional<PictureFormat> pictureFormat(std::string_view path) {
  constexpr std::size_t kEndLength = 4;
  if (path.size() < kEndLength) {
    return std::nullopt;
  }
  std::string end(path.substr(path.size() - kEndLength));
  std::ranges::transform(end, end.begin(), [](unsigned char letter) {
    return static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter);
  });
  if (end == ".png") {
    return PictureFormat::kPng;
  }
  if (end == ".svg") {
    return PictureFormat::kSvg;
  }
  if (end == ".pdf") {
    return PictureFormat::kPdf;
  }
  return std::nullopt;
}

const char* endOf(PictureFormat format) {
  switch (format) {
    case PictureFormat::kSvg:
      return ".svg";
    case PictureFormat::kPdf:
      return ".pdf";
    case PictureFormat::kPng:
      break;
  }
  return ".png";
}

}  // namespace dxf2d
