#include "app/model/stated_unit.h"

#include <assimp/scene.h>
#include <minizip/unzip.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

#include "app/cli/file_path.h"
#include "platform/input_file.h"

namespace dxf2d {
namespace {

struct NamedUnit {
  std::string_view name;
  LengthUnit unit;
};

constexpr std::array kNamedUnits =
    std::to_array<NamedUnit>({{"Collada Importer", kMeter},
                              {"Industry Foundation Classes (IFC) Importer", kMeter},
                              {"glTF Importer", kMeter},
                              {"glTF2 Importer", kMeter},
                              {"Extensible 3D(X3D) Importer", kMeter}});

constexpr std::string_view kFbxImporter = "Autodesk FBX Importer";
constexpr std::string_view k3mfImporter = "3mf Importer";
constexpr std::string_view kAmfImporter = "Additive manufacturing file format(AMF) Importer";

// FBX files count in so many centimeters.
LengthUnit unitOfFbx(const aiScene& scene) {
  double centimeters = 0.0;
  float single = 0.0F;
  if (scene.mMetaData != nullptr && !scene.mMetaData->Get("UnitScaleFactor", centimeters) &&
      scene.mMetaData->Get("UnitScaleFactor", single)) {
    centimeters = static_cast<double>(single);
  }
  // Also false for what is not a number.
  return centimeters > 0.0 && centimeters < 1e9 ? LengthUnit{centimeters * 0.01} : LengthUnit{};
}

// How much of an XML file is looked through for its first element.
constexpr std::size_t kBeginning = std::size_t{1} << 16;

std::string beginningOf(const std::string& path) {
  std::string text(kBeginning, '\0');
  std::ifstream file(filePath(path), std::ios::binary);
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

// As minizip asks for it: its own function does not know names in UTF-8 on Windows.
voidpf openPackage(voidpf /*opaque*/, const void* path, int /*mode*/) {
  return openForReading(static_cast<const char*>(path));
}

// The beginning of the model in a package of the Open Packaging Conventions; empty where there is
// none.
std::string beginningOfPackagedModel(const std::string& path) {
  constexpr int kAnyLetterCase = 2;
  zlib_filefunc64_def files;
  fill_fopen64_filefunc(&files);
  files.zopen64_file = &openPackage;
  const std::unique_ptr<void, int (*)(unzFile)> package(unzOpen2_64(path.c_str(), &files),
                                                        &unzClose);
  if (package == nullptr ||
      unzLocateFile(package.get(), "3D/3dmodel.model", kAnyLetterCase) != UNZ_OK ||
      unzOpenCurrentFile(package.get()) != UNZ_OK) {
    return {};
  }
  std::string text(kBeginning, '\0');
  const int read =
      unzReadCurrentFile(package.get(), text.data(), static_cast<unsigned>(text.size()));
  unzCloseCurrentFile(package.get());
  text.resize(read > 0 ? static_cast<std::size_t>(read) : 0);
  return text;
}

// What stands in quotes after `name` = in the first start tag of `element`. Empty when there is no
// such tag; an empty text when the tag has no such attribute.
std::optional<std::string> attributeOf(std::string_view xml, const std::string& element,
                                       const std::string& name) {
  constexpr std::string_view kSpaces = " \t\r\n";
  const std::size_t tag = xml.find("<" + element);
  if (tag == std::string_view::npos) {
    return std::nullopt;
  }
  std::string_view rest = xml.substr(tag + 1 + element.size());
  rest = rest.substr(0, rest.find('>'));
  for (std::size_t at = rest.find(name); at != std::string_view::npos;
       at = rest.find(name, at + 1)) {
    if (at == 0 || kSpaces.find(rest[at - 1]) == std::string_view::npos) {
      continue;
    }
    std::size_t quote = rest.find_first_not_of(kSpaces, at + name.size());
    if (quote == std::string_view::npos || rest[quote] != '=') {
      continue;
    }
    quote = rest.find_first_not_of(kSpaces, quote + 1);
    if (quote == std::string_view::npos || (rest[quote] != '"' && rest[quote] != '\'')) {
      continue;
    }
    const std::string_view value = rest.substr(quote + 1);
    return std::string(value.substr(0, value.find(rest[quote])));
  }
  return std::string();
}

// The units of 3MF (core specification, section 3.4) and AMF (ISO/ASTM 52915, section 6).
LengthUnit unitOfPrint(const std::optional<std::string>& name) {
  constexpr std::array kNames = std::to_array<NamedUnit>({{"", kMillimeter},
                                                          {"millimeter", kMillimeter},
                                                          {"micron", {1e-6}},
                                                          {"centimeter", kCentimeter},
                                                          {"meter", kMeter},
                                                          {"inch", kInch},
                                                          {"foot", kFoot},
                                                          {"feet", kFoot}});
  for (const NamedUnit& named : kNames) {
    if (name && named.name == *name) {
      return named.unit;
    }
  }
  return {};
}

}  // namespace

LengthUnit statedUnit(const aiScene& scene, std::string_view importer, const std::string& path) {
  if (importer == kFbxImporter) {
    return unitOfFbx(scene);
  }
  if (importer == k3mfImporter) {
    return unitOfPrint(attributeOf(beginningOfPackagedModel(path), "model", "unit"));
  }
  if (importer == kAmfImporter) {
    return unitOfPrint(attributeOf(beginningOf(path), "amf", "unit"));
  }
  for (const NamedUnit& format : kNamedUnits) {
    if (format.name == importer) {
      return format.unit;
    }
  }
  return {};
}

}  // namespace dxf2d
