#include "app/model/model_reader.h"

#include <assimp/config.h>
#include <assimp/importerdesc.h>
#include <assimp/scene.h>

#include <assimp/Importer.hpp>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <new>
#include <system_error>
#include <utility>

#include "app/model/model_error.h"
#include "app/quiet_output.h"

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw ModelError(kExitInput, "cannot read '" + path + "': " + reason);
}

// assimp says "no suitable reader" or worse for files that cannot be opened at all.
void checkReadable(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found) fail(path, "there is no such file");
  if (error) fail(path, error.message());
  if (std::filesystem::is_directory(status)) fail(path, "it is a directory; name a file in it");
  // assimp seeks to and fro.
  if (!std::filesystem::is_regular_file(status)) fail(path, "it is not a plain file");
  errno = 0;
  if (!std::ifstream(path, std::ios::binary)) {
    fail(path, std::generic_category().message(errno != 0 ? errno : EIO));
  }
}

// Readers quote from the model; some, all that is left of it.
std::string cut(std::string text) {
  // In bytes.
  constexpr std::size_t kLongest = 300;
  if (text.size() <= kLongest) return text;
  std::size_t end = kLongest;
  // At the first byte of a character of UTF-8.
  while (end > kLongest - 3 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80) --end;
  text.resize(end);
  return text + " ...";
}

// One line without the trailing stop, so that it ends a sentence of ours.
std::string oneLine(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = ' ';
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
  return text;
}

[[noreturn]] void failAsReaderSays(const std::string& path, const std::string& message) {
  if (message.find("No suitable reader found") != std::string::npos) {
    fail(path, "no reader knows this format");
  }
  // Readers catch what they throw themselves.
  if (message.find("bad_alloc") != std::string::npos) throw std::bad_alloc();
  if (message.find("length_error") != std::string::npos) fail(path, "its sizes make no sense");
  fail(path, message.empty() ? "its reader gives no reason" : cut(oneLine(message)));
}

std::string importerNameOf(const Assimp::Importer& importer) {
  const int index = importer.GetPropertyInteger("importerIndex", -1);
  const aiImporterDesc* description =
      index < 0 ? nullptr : importer.GetImporterInfo(static_cast<std::size_t>(index));
  return description == nullptr ? std::string() : description->mName;
}

}  // namespace

Model::Model() = default;
Model::Model(Model&&) noexcept = default;
Model::~Model() = default;

Model readModel(const std::string& path, UpAxis up) {
  checkReadable(path);
  Model model;
  model.importer = std::make_unique<Assimp::Importer>();
  if (up != UpAxis::kAuto) {
    model.importer->SetPropertyBool(AI_CONFIG_IMPORT_COLLADA_IGNORE_UP_DIRECTION, true);
  }
  // No post-processing: triangles and joined vertices would only be in the way of the outline,
  // which welds by itself.
  {
    // Some readers talk, where the drawing or our one sentence goes.
    const QuietOutput quiet;
    model.scene = model.importer->ReadFile(path, 0);
  }
  if (model.scene == nullptr) failAsReaderSays(path, model.importer->GetErrorString());
  model.importerName = importerNameOf(*model.importer);
  return model;
}
