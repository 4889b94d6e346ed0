#include "app/model/model_reader.h"

#include <assimp/config.h>
#include <assimp/importerdesc.h>
#include <assimp/scene.h>
#include <strings.h>

#include <assimp/Importer.hpp>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <new>
#include <system_error>
#include <utility>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"
#include "app/model/model_error.h"
#include "app/model/obj_materials.h"
#include "app/model/stated_unit.h"
#include "app/model/stl_triangles.h"

namespace dxf2d {
namespace {

[[noreturn]] void fail(const std::string& path, const std::string& problem,
                       const std::string& remedy) {
  throw ModelError(kExitInput, {path, tr("cannot be read: %1", {problem}), remedy});
}

// assimp says "no suitable reader" or worse for files that cannot be opened at all.
void checkReadable(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(filePath(path), error);
  if (status.type() == std::filesystem::file_type::not_found) {
    fail(path, tr("there is no such file"), tr("check the name"));
  }
  if (error) {
    fail(path, error.message(), tr("check the name and its permissions"));
  }
  if (std::filesystem::is_directory(status)) {
    fail(path, tr("it is a directory"), tr("name a file in it"));
  }
  // assimp seeks in both directions.
  if (!std::filesystem::is_regular_file(status)) {
    fail(path, tr("it is not a regular file"), tr("copy it to one"));
  }
  errno = 0;
  if (!std::ifstream(filePath(path), std::ios::binary)) {
    fail(path, std::generic_category().message(errno != 0 ? errno : EIO),
         tr("check its permissions"));
  }
}

// Readers quote from the model; some, all that is left of it.
std::string cut(std::string text) {
  // In bytes.
  constexpr std::size_t kLongest = 300;
  if (text.size() <= kLongest) {
    return text;
  }
  std::size_t end = kLongest;
  // At the first byte of a character of UTF-8.
  while (end > kLongest - 3 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80) {
    --end;
  }
  text.resize(end);
  return text + " ...";
}

// One line without the trailing stop, so that it ends a sentence of ours.
std::string oneLine(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
      c = ' ';
    }
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '.')) {
    text.pop_back();
  }
  return text;
}

// In any letter case.
bool hasEnd(const std::string& path, const char* end) {
  return strcasecmp(filePath(path).extension().string().c_str(), end) == 0;
}

[[noreturn]] void failAsReaderSays(const std::string& path, const std::string& message) {
  if (message.find("No suitable reader found") != std::string::npos) {
    fail(path, tr("no importer knows this format"),
         tr("save the model in a supported one, such as IFC, glTF, OBJ or STL"));
  }
  // Readers catch what they throw themselves.
  if (message.find("bad_alloc") != std::string::npos) {
    throw std::bad_alloc();
  }
  if (message.find("length_error") != std::string::npos) {
    fail(path, tr("it declares impossible sizes"), repairFile());
  }
  // assimp knows the first version alone.
  const bool isIfc = hasEnd(path, ".ifc");
  fail(path, message.empty() ? tr("the importer gives no reason") : cut(oneLine(message)),
       isIfc ? tr("install dxf2d-import-ifc, which reads IFC4 too, or repair the file")
             : repairFile());
}

std::string listOf(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    list += (list.empty() ? "" : ", ") + name;
  }
  return list;
}

// Throws ModelError when the scene, which may be null, is not what the files say.
void checkFiles(ModelFiles& files, const aiScene* scene, const std::string& path) {
  if (!files.failure.empty()) {
    const bool isModel = filePath(path).filename().string() == files.failedFile;
    fail(path, isModel ? files.failure : tr("its '%1': %2", {files.failedFile, files.failure}),
         tr("check the disk and that no program is writing the file"));
  }
  dropOptionalFiles(files, path);
  std::vector<std::string> absent = files.outside;
  if (scene != nullptr) {
    absent.insert(absent.end(), files.missing.begin(), files.missing.end());
  }
  // What a reader then puts into the scene stands for nothing in the model.
  const bool isEmpty = scene == nullptr || (scene->mFlags & AI_SCENE_FLAGS_INCOMPLETE) != 0;
  if (isEmpty && !absent.empty()) {
    fail(path,
         tr("what it shows is in files that are missing or outside its directory: %1",
            {cut(listOf(absent))}),
         tr("put them beside the model, or use --allow-outside"));
  }
}

std::string importerNameOf(const Assimp::Importer& importer) {
  const int index = importer.GetPropertyInteger("importerIndex", -1);
  const aiImporterDesc* description =
      index < 0 ? nullptr : importer.GetImporterInfo(static_cast<std::size_t>(index));
  return description == nullptr ? std::string() : description->mName;
}

// Null when the importer fails.
const aiScene* readScene(const std::string& path, Assimp::Importer& importer, ModelSource& source) {
  if (hasEnd(path, ".stl")) {
    source.triangles = StlTriangles::Open(path);
  }
  if (!source.triangles) {
    return importer.ReadFile(path, 0);
  }
  // The names, materials and axes of a model with this header.
  const auto sample = source.triangles->Sample();
  return importer.ReadFileFromMemory(sample.data(), sample.size(), 0, "stl");
}

}  // namespace

Model::Model() = default;
Model::Model(Model&&) noexcept = default;
Model::~Model() = default;

Model readModel(const std::string& path, const ReadOptions& options) {
  checkReadable(path);
  Model model;
  model.files = std::make_unique<ModelFiles>();
  model.importer = std::make_unique<Assimp::Importer>();
  // The importer deletes it.
  model.importer->SetIOHandler(
      std::make_unique<ModelFileSystem>(path, options.allowsOutside, *model.files).release());
  if (options.up != UpAxis::kAuto) {
    model.importer->SetPropertyBool(AI_CONFIG_IMPORT_COLLADA_IGNORE_UP_DIRECTION, true);
  }
  model.importer->SetPropertyBool(AI_CONFIG_IMPORT_IFC_SKIP_SPACE_REPRESENTATIONS,
                                  !options.hasSpaces);
  // No post-processing: triangles and joined vertices would only be in the way of the outline,
  // which welds by itself.
  model.scene = readScene(path, *model.importer, model.source);
  if (model.scene != nullptr) {
    const std::vector<std::string> libraries = model.files->materialLibraries;
    dropReadersColors(*model.scene, libraries, *model.importer->GetIOHandler());
  }
  checkFiles(*model.files, model.scene, path);
  if (model.scene == nullptr) {
    failAsReaderSays(path, model.importer->GetErrorString());
  }
  model.source.path = path;
  model.source.importer = importerNameOf(*model.importer);
  model.source.unit = statedUnit(*model.scene, model.source.importer, path);
  return model;
}

}  // namespace dxf2d
