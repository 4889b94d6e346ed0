// Scenes as importers hand them over: binary glTF 2.0, and in asset.extras what glTF cannot say
// (see docs/importers.md).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace dxf2d::glb {

// Linear red, green and blue, each from 0 to 1.
using Color = std::array<float, 3>;

struct Primitive {
  // Indices come in threes for triangles, counter-clockwise as seen from outside, and in twos for
  // lines.
  enum class Kind : std::uint8_t { kLines = 1, kTriangles = 4 };
  Kind kind = Kind::kTriangles;
  std::vector<std::array<float, 3>> points;
  std::vector<std::uint32_t> indices;
  // None: the default color of the program that reads it.
  std::optional<Color> color;
};

using Mesh = std::vector<Primitive>;

struct Node {
  std::string name;
  // Column-major, as in glTF; empty for the identity.
  std::optional<std::array<double, 16>> matrix;
  std::optional<std::size_t> mesh;
  std::vector<std::size_t> children;
};

struct Scene {
  std::vector<Mesh> meshes;
  std::vector<Node> nodes;
  std::vector<std::size_t> roots;
  // The importer and its version.
  std::string generator;
  // The unit of the coordinates: "mm", "cm", "m", "in" or "ft".
  std::string unit;
  // What was left out, as sentences without a period.
  std::vector<std::string> notes;
};

// Writes a scene with z up whose lines are the true edges of its faces. Throws std::length_error
// when it has more than the 4 GiB that the format can hold; a failed write shows in the stream.
void write(const Scene& scene, std::ostream& file);

}  // namespace dxf2d::glb
