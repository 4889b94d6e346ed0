#include "app/export/export_facts.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/export/export_summary.h"
#include "app/output/sha256.h"

namespace dxf2d {

namespace {

using Json = nlohmann::ordered_json;

// As sha256sum prints it; empty when the file cannot be read.
std::string sha256Of(const std::string& path) {
  std::ifstream file(filePath(path), std::ios::binary);
  Sha256 hash;
  std::array<char, 1 << 16> bytes{};
  while (file.read(bytes.data(), bytes.size()) || file.gcount() > 0) {
    hash.Add({bytes.data(), static_cast<std::size_t>(file.gcount())});
  }
  if (!file.eof() || file.bad()) {
    return "";
  }
  std::string text;
  for (const std::uint8_t byte : hash.Digest()) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text;
}

std::string textOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string factsOfScene(const std::string& path, const DrawingCounts& counts) {
  const Json facts{{"sha256", sha256Of(path)},
                   {"reader", "scene file"},
                   {"polylines", counts.polylines},
                   {"vertices", counts.vertices},
                   {"labels", counts.texts}};
  return textOf(facts);
}

std::string factsOfModel(const std::string& path, const std::string& reader,
                         const PlanContent& content, const DrawingCounts& counts) {
  const PlanExtent& extent = content.extent;
  const Json facts{{"sha256", sha256Of(path)},
                   {"reader", reader},
                   {"unit", unitName(content.drawingUnit)},
                   {"model_unit", unitName(content.modelUnit)},
                   {"views", content.views},
                   {"objects", content.objects},
                   {"instances", content.instances},
                   {"parts", content.parts},
                   {"polylines", counts.polylines},
                   {"vertices", counts.vertices},
                   {"labels", counts.texts},
                   {"extents", Json::array({extent.minX, extent.minY, extent.maxX, extent.maxY})},
                   {"repairs", inEnglish(repairsOf(content.meshWork))},
                   {"skipped", inEnglish(skippedOf(content, counts))}};
  return textOf(facts);
}

}  // namespace dxf2d
