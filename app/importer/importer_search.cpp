#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include "app/cli/file_path.h"
#include "app/cli/option_values.h"
#include "app/importer/importer.h"
#include "app/process/worker_location.h"

namespace dxf2d {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> searchedDirectories() {
  std::vector<std::string> directories;
  if (const char* const path = std::getenv("DXF2D_IMPORTER_PATH")) {
    std::istringstream list(path);
    for (std::string directory; std::getline(list, directory, ':');) {
      if (!directory.empty()) {
        directories.push_back(directory);
      }
    }
  }
  directories.push_back((filePath(workerProgram()).parent_path() / "importers").string());
  return directories;
}

// The descriptions in a directory, which need not be there.
std::vector<std::string> descriptionsIn(const std::string& directory) {
  std::vector<std::string> found;
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(filePath(directory), ignored)) {
    if (entry.path().extension() == ".json") {
      found.push_back(entry.path().string());
    }
  }
  std::ranges::sort(found);
  return found;
}

template <typename IsIts>
const Importer* firstWithFormat(const std::vector<Importer>& importers, IsIts isIts) {
  const auto found = std::ranges::find_if(importers, [&](const Importer& importer) {
    return std::ranges::any_of(importer.formats, isIts);
  });
  return found == importers.end() ? nullptr : &*found;
}

}  // namespace

std::vector<Importer> findImporters(const std::vector<std::string>& asked) {
  std::vector<std::string> descriptions = asked;
  for (const std::string& directory : searchedDirectories()) {
    const std::vector<std::string> more = descriptionsIn(directory);
    descriptions.insert(descriptions.end(), more.begin(), more.end());
  }
  std::vector<Importer> importers;
  for (const std::string& path : descriptions) {
    Importer importer = readImporter(path);
    if (std::ranges::find(importers, importer.name, &Importer::name) == importers.end()) {
      importers.push_back(std::move(importer));
    }
  }
  return importers;
}

const Importer* importerByName(const std::vector<Importer>& importers, const std::string& model) {
  const std::string extension = normalized(filePath(model).extension().string());
  return firstWithFormat(importers, [&](const ImporterFormat& format) {
    return std::ranges::find(format.extensions, extension) != format.extensions.end();
  });
}

const Importer* importerByMagic(const std::vector<Importer>& importers, const std::string& model) {
  std::error_code ignored;
  if (!fs::is_regular_file(filePath(model), ignored)) {
    return nullptr;
  }
  std::string beginning(64, '\0');
  std::ifstream file(filePath(model), std::ios::binary);
  file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
  beginning.resize(static_cast<std::size_t>(file.gcount()));
  return firstWithFormat(importers, [&](const ImporterFormat& format) {
    return !format.magic.empty() && beginning.starts_with(format.magic);
  });
}

}  // namespace dxf2d
