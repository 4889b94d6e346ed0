#include "app/model/imported_model.h"

#include <assimp/scene.h>

#include <assimp/Importer.hpp>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <utility>

#include "app/cli/translation.h"
#include "app/model/model_error.h"
#include "app/process/input_mapping.h"

namespace dxf2d {
namespace {

using Json = nlohmann::json;

// The headers of the file and of its first chunk (glTF 2.0, section 4.4).
constexpr std::size_t kHeaders = 20;
constexpr std::uint32_t kMagic = 0x46546c67;
constexpr std::uint32_t kJsonChunk = 0x4e4f534a;

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

[[noreturn]] void blame(const std::string& path, const std::string& reader,
                        const std::string& problem) {
  throw ModelError(kExitInput, {path, tr("cannot be read: %1 %2", {reader, problem}),
                                tr("update the importer, or save the model in another format")});
}

// asset.extras of a document; null where there is none.
Json extrasOf(std::string_view document) {
  // The rest of a scene, which may be large, is not kept.
  const auto isWanted = [](int depth, Json::parse_event_t event, const Json& parsed) {
    return depth != 1 || event != Json::parse_event_t::key || parsed == "asset";
  };
  Json json = Json::parse(document, isWanted, false);
  if (!json.is_object() || !json.contains("asset") || !json["asset"].is_object()) {
    return {};
  }
  return json["asset"].value("extras", Json());
}

// Takes the members of asset.extras.
class StatementReader {
 public:
  StatementReader(const Json& extras, const std::string& path, const std::string& reader)
      : extras_(extras), path_(path), reader_(reader) {}

  ImporterStatement Read() const {
    ImporterStatement statement;
    if (!extras_.is_object()) {
      return statement;
    }
    statement.unit = Unit();
    statement.up = Up();
    statement.origin = Origin();
    statement.hasTrueEdges = extras_.contains("edges") && extras_["edges"] == true;
    if (extras_.contains("notes") && extras_["notes"].is_array()) {
      for (const Json& note : extras_["notes"]) {
        if (note.is_string()) {
          statement.notes.push_back(note.get<std::string>());
        }
      }
    }
    return statement;
  }

 private:
  LengthUnit Unit() const {
    if (!extras_.contains("unit")) {
      return kMeter;
    }
    const Json& unit = extras_["unit"];
    const auto known = unit.is_string() ? parseUnit(unit.get_ref<const std::string&>())
                                        : std::optional<LengthUnit>();
    if (!known) {
      blame(path_, reader_, tr("states a unit that is none of mm, cm, m, in and ft"));
    }
    return *known;
  }

  UpAxis Up() const {
    if (!extras_.contains("up")) {
      return UpAxis::kAuto;
    }
    if (extras_["up"] == "z") {
      return UpAxis::kZ;
    }
    if (extras_["up"] == "y") {
      return UpAxis::kY;
    }
    blame(path_, reader_, tr("states an up axis that is neither y nor z"));
  }

  std::array<double, 3> Origin() const {
    std::array<double, 3> origin{};
    if (!extras_.contains("origin")) {
      return origin;
    }
    const Json& numbers = extras_["origin"];
    bool isValid = numbers.is_array() && numbers.size() == origin.size();
    for (std::size_t axis = 0; isValid && axis < origin.size(); ++axis) {
      isValid = numbers[axis].is_number();
      origin[axis] = isValid ? numbers[axis].get<double>() : 0.0;
      isValid = isValid && std::isfinite(origin[axis]);
    }
    if (!isValid) {
      blame(path_, reader_, tr("states an origin that is not three numbers"));
    }
    return origin;
  }

  const Json& extras_;
  const std::string& path_;
  const std::string& reader_;
};

}  // namespace

ImporterStatement importerStatement(std::string_view glb, const std::string& path,
                                    const std::string& reader) {
  const bool isBinary = glb.size() >= kHeaders && numberAt(glb, 0) == kMagic &&
                        numberAt(glb, 16) == kJsonChunk &&
                        numberAt(glb, 12) <= glb.size() - kHeaders;
  if (!isBinary) {
    blame(path, reader, tr("did not write a binary glTF file"));
  }
  const Json extras = extrasOf(glb.substr(kHeaders, numberAt(glb, 12)));
  return StatementReader(extras, path, reader).Read();
}

Model readImportedModel(const std::string& file, const std::string& path,
                        const std::string& reader) {
  const InputMapping glb(file);
  const std::string_view bytes(glb.Bytes().data(), glb.Bytes().size());
  ImporterStatement statement = importerStatement(bytes, path, reader);
  Model model;
  model.files = std::make_unique<ModelFiles>();
  model.importer = std::make_unique<Assimp::Importer>();
  model.scene = model.importer->ReadFileFromMemory(bytes.data(), bytes.size(), 0, "glb");
  if (model.scene == nullptr) {
    const std::string reason = model.importer->GetErrorString();
    if (reason.find("bad_alloc") != std::string::npos) {
      throw std::bad_alloc();
    }
    blame(path, reader, tr("did not write a valid binary glTF file"));
  }
  model.source.path = path;
  model.source.importer = reader;
  model.source.unit = statement.unit;
  model.source.up = statement.up;
  model.source.origin = statement.origin;
  model.source.hasTrueEdges = statement.hasTrueEdges;
  model.source.notes = std::move(statement.notes);
  return model;
}

}  // namespace dxf2d
