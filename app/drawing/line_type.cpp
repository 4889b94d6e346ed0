#include "app/drawing/line_type.h"

#include <algorithm>

namespace dxf2d {

namespace {

bool equalInAnyCase(std::string_view a, std::string_view b) {
  const auto upper = [](char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  };
  return std::ranges::equal(a, b, {}, upper, upper);
}

}  // namespace

LineType lineTypeOf(std::string_view name) {
  if (name.empty() || equalInAnyCase(name, "BYLAYER")) {
    return LineType::kByLayer;
  }
  return equalInAnyCase(name, kDashedName) ? LineType::kDashed : LineType::kContinuous;
}

std::string_view lineTypeName(LineType lineType) {
  switch (lineType) {
    case LineType::kContinuous:
      return kContinuousName;
    case LineType::kDashed:
      return kDashedName;
    case LineType::kByLayer:
      break;
  }
  return "ByLayer";
}

}  // namespace dxf2d
