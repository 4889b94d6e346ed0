// A drawing in memory, as plain data: what a plan of this system holds.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

namespace dxf2d {

// A point of the plan, in drawing units; drawings of this system are flat.
struct PlanPoint {
  double x = 0.0;
  double y = 0.0;
};

// Colors are palette indices, 1 to 255; this one stands where an entity names none: that of the
// layer.
inline constexpr int kColorByLayer = 256;
// Stands where no true color is given: the palette index alone counts.
inline constexpr std::int32_t kNoTrueColor = -1;
// Stands for the line weight of the layer, and on a layer for that of the reader.
inline constexpr std::int16_t kDefaultLineWeight = -1;

enum class LineType : std::uint8_t { kByLayer, kContinuous, kDashed };

// What every entity has besides its shape.
struct EntityProperties {
  int color = kColorByLayer;
  // 0xRRGGBB, or kNoTrueColor.
  std::int32_t trueColor = kNoTrueColor;
  // Number in Drawing::layers.
  std::uint32_t layer = 0;
  // Hundredths of a millimeter, or kDefaultLineWeight.
  std::int16_t lineWeight = kDefaultLineWeight;
  LineType lineType = LineType::kByLayer;

  friend bool operator==(const EntityProperties&, const EntityProperties&) = default;
};

struct Layer {
  std::string name;
  // 1 to 255.
  int color = 7;
  std::int32_t trueColor = kNoTrueColor;
  std::int16_t lineWeight = kDefaultLineWeight;
  LineType lineType = LineType::kContinuous;
};

enum class Release : std::uint8_t { kR10, kR2000, kR2004 };

struct LineEntity : EntityProperties {
  PlanPoint start;
  PlanPoint end;
};

struct PolylineEntity : EntityProperties {
  bool closed = false;
  std::vector<PlanPoint> vertices;
};

struct FaceEntity : EntityProperties {
  std::array<PlanPoint, 4> corners;
};

struct CircleEntity : EntityProperties {
  PlanPoint center;
  double radius = 0.0;
};

// Where a text stands against its point, as groups 72 and 73 number it.
enum class TextAcross { kLeft = 0, kCenter = 1, kRight = 2 };
enum class TextUp { kBaseline = 0, kBottom = 1, kMiddle = 2, kTop = 3 };

struct TextEntity : EntityProperties {
  // The point that `across` and `up` refer to; the origin when the drawing gives none.
  PlanPoint at;
  TextAcross across = TextAcross::kLeft;
  TextUp up = TextUp::kBaseline;
  // Height of a capital letter, in drawing units. What is not above 0 draws nothing.
  double height = 0.0;
  // How much wider than the font the letters are, above 0.
  double widthFactor = 1.0;
  // Degrees, counter-clockwise.
  double rotation = 0.0;
  // The bytes of the drawing, in its code page.
  std::string bytes;
};

struct InsertEntity : EntityProperties {
  // Number of the inserted block in Drawing::blocks.
  std::size_t block = 0;
  PlanPoint at;
  // Degrees, counter-clockwise.
  double rotation = 0.0;
};

using DrawingEntity =
    std::variant<LineEntity, PolylineEntity, FaceEntity, CircleEntity, TextEntity, InsertEntity>;

struct DrawingBlock {
  std::string name;
  // False for a name that INSERTs mention and no BLOCK defines; it draws nothing.
  bool defined = false;
  // The point of the block that an INSERT puts at its own.
  PlanPoint base;
  std::vector<DrawingEntity> entities;
};

struct Drawing {
  Release release = Release::kR10;
  // $INSUNITS: 0 for none given, 1 inch, 2 foot, 4 mm, 5 cm, 6 m, ...
  int units = 0;
  // Length of a dash of the dashed line type, in drawing units; a gap is half as long.
  double dashLength = 1.0;
  // Number 0 is the layer "0", which every drawing has.
  std::vector<Layer> layers{Layer{.name = "0"}};
  // Number in `layers` of each name.
  std::unordered_map<std::string, std::uint32_t> layerNumbers{{"0", 0}};
  std::vector<DrawingBlock> blocks;
  // Number in `blocks` of each name.
  std::unordered_map<std::string, std::size_t> blockNumbers;
  // What the drawing shows: the ENTITIES section.
  std::vector<DrawingEntity> entities;
  // Entities of kinds that no structure here stands for, left out, and the first few such kinds.
  std::size_t skippedCount = 0;
  std::vector<std::string> skippedKinds;
};

}  // namespace dxf2d
