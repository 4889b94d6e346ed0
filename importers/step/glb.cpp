#include "importers/step/glb.h"

#include <algorithm>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <span>
#include <stdexcept>
#include <utility>

namespace dxf2d::glb {
namespace {

using Json = nlohmann::ordered_json;

// Numbers of the format: glTF 2.0, sections 3.6.2.2 and 4.4.
constexpr std::uint32_t kMagic = 0x46546c67;
constexpr std::uint32_t kVersion = 2;
constexpr std::uint32_t kJsonChunk = 0x4e4f534a;
constexpr std::uint32_t kBinaryChunk = 0x004e4942;
constexpr int kFloat = 5126;
constexpr int kUnsignedInt = 5125;
constexpr int kVertexBuffer = 34962;
constexpr int kIndexBuffer = 34963;

// The arrays of the primitives, one after the other, as accessors know them. All are made of
// four-byte numbers, so that each begins where the format wants it.
class Arrays {
 public:
  explicit Arrays(Json& document) : document_(document) {
    document_["accessors"] = Json::array();
    document_["bufferViews"] = Json::array();
  }

  std::size_t AddPoints(const std::vector<std::array<float, 3>>& points) {
    auto low = points.front();
    auto high = points.front();
    for (const auto& point : points) {
      for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], point[axis]);
        high[axis] = std::max(high[axis], point[axis]);
      }
    }
    return Add(std::as_bytes(std::span(points)), kVertexBuffer,
               {{"componentType", kFloat},
                {"count", points.size()},
                {"type", "VEC3"},
                {"min", low},
                {"max", high}});
  }

  std::size_t AddIndices(const std::vector<std::uint32_t>& indices) {
    return Add(std::as_bytes(std::span(indices)), kIndexBuffer,
               {{"componentType", kUnsignedInt}, {"count", indices.size()}, {"type", "SCALAR"}});
  }

  std::uint64_t Size() const { return size_; }
  void Write(std::ostream& file) const {
    for (const std::span<const std::byte> array : arrays_) {
      file.write(reinterpret_cast<const char*>(array.data()),
                 static_cast<std::streamsize>(array.size()));
    }
  }

 private:
  std::size_t Add(std::span<const std::byte> array, int target, Json accessor) {
    Json& views = document_["bufferViews"];
    Json& accessors = document_["accessors"];
    accessor["bufferView"] = views.size();
    views.push_back(
        {{"buffer", 0}, {"byteOffset", size_}, {"byteLength", array.size()}, {"target", target}});
    accessors.push_back(std::move(accessor));
    arrays_.push_back(array);
    size_ += array.size();
    return accessors.size() - 1;
  }

  Json& document_;
  std::vector<std::span<const std::byte>> arrays_;
  std::uint64_t size_ = 0;
};

// Each color once.
class Materials {
 public:
  std::size_t NumberOf(const Color& color) {
    const auto [known, isNew] = numbers_.emplace(color, numbers_.size());
    if (isNew) {
      list_.push_back(
          {{"pbrMetallicRoughness",
            {{"baseColorFactor", {color[0], color[1], color[2], 1.0}}, {"metallicFactor", 0.0}}}});
    }
    return known->second;
  }
  const Json& List() const { return list_; }

 private:
  std::map<Color, std::size_t> numbers_;
  Json list_ = Json::array();
};

Json meshesOf(const Scene& scene, Arrays& arrays, Materials& materials) {
  Json meshes = Json::array();
  for (const Mesh& mesh : scene.meshes) {
    Json primitives = Json::array();
    for (const Primitive& primitive : mesh) {
      Json json{{"attributes", {{"POSITION", arrays.AddPoints(primitive.points)}}},
                {"indices", arrays.AddIndices(primitive.indices)},
                {"mode", static_cast<int>(primitive.kind)}};
      if (primitive.color) {
        json["material"] = materials.NumberOf(*primitive.color);
      }
      primitives.push_back(std::move(json));
    }
    meshes.push_back({{"primitives", std::move(primitives)}});
  }
  return meshes;
}

Json nodesOf(const Scene& scene) {
  Json nodes = Json::array();
  for (const Node& node : scene.nodes) {
    Json json = Json::object();
    if (!node.name.empty()) {
      json["name"] = node.name;
    }
    if (node.matrix) {
      json["matrix"] = *node.matrix;
    }
    if (node.mesh) {
      json["mesh"] = *node.mesh;
    }
    if (!node.children.empty()) {
      json["children"] = node.children;
    }
    nodes.push_back(std::move(json));
  }
  return nodes;
}

Json documentOf(const Scene& scene) {
  Json extras{{"unit", scene.unit}, {"up", "z"}, {"edges", true}};
  if (!scene.notes.empty()) {
    extras["notes"] = scene.notes;
  }
  return {{"asset", {{"version", "2.0"}, {"generator", scene.generator}, {"extras", extras}}},
          {"scene", 0},
          {"scenes", {{{"nodes", scene.roots}}}}};
}

void writeNumber(std::ostream& file, std::uint32_t number) {
  file.write(reinterpret_cast<const char*>(&number), sizeof number);
}

}  // namespace

void write(const Scene& scene, std::ostream& file) {
  Json document = documentOf(scene);
  Arrays arrays(document);
  Materials materials;
  document["meshes"] = meshesOf(scene, arrays, materials);
  document["nodes"] = nodesOf(scene);
  if (!materials.List().empty()) {
    document["materials"] = materials.List();
  }
  document["buffers"] = {{{"byteLength", arrays.Size()}}};
  // Names come from files that nobody has looked at.
  std::string text = document.dump(-1, ' ', false, Json::error_handler_t::replace);
  text.resize((text.size() + 3) / 4 * 4, ' ');
  constexpr std::uint64_t kHeaders = 12 + 8 + 8;
  const std::uint64_t size = kHeaders + text.size() + arrays.Size();
  if (size > std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("its triangles take more than the 4 GiB that binary glTF can hold");
  }
  for (const std::uint64_t number : {std::uint64_t{kMagic}, std::uint64_t{kVersion}, size,
                                     std::uint64_t{text.size()}, std::uint64_t{kJsonChunk}}) {
    writeNumber(file, static_cast<std::uint32_t>(number));
  }
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  writeNumber(file, static_cast<std::uint32_t>(arrays.Size()));
  writeNumber(file, kBinaryChunk);
  arrays.Write(file);
}

}  // namespace dxf2d::glb
