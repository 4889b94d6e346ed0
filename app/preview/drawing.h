// A drawing in memory, as plain data: what a plan of this system holds.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

// A point of the plan, in drawing units; drawings of this system are flat.
struct PlanPoint {
  double x = 0.0;
  double y = 0.0;
};

// Colours are palette indices, 1 to 255; this one stands where an entity names none: that of the
// layer.
inline constexpr int kColorByLayer = 256;

struct LineEntity {
  int color = kColorByLayer;
  PlanPoint start;
  PlanPoint end;
};

struct PolylineEntity {
  int color = kColorByLayer;
  bool closed = false;
  std::vector<PlanPoint> vertices;
};

struct FaceEntity {
  int color = kColorByLayer;
  std::array<PlanPoint, 4> corners;
};

struct CircleEntity {
  int color = kColorByLayer;
  PlanPoint center;
  double radius = 0.0;
};

// Where a text stands against its point, as groups 72 and 73 number it.
enum class TextAcross { kLeft = 0, kCenter = 1, kRight = 2 };
enum class TextUp { kBaseline = 0, kBottom = 1, kMiddle = 2, kTop = 3 };

struct TextEntity {
  int color = kColorByLayer;
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

struct InsertEntity {
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
  std::vector<DrawingBlock> blocks;
  // Number in `blocks` of each name.
  std::unordered_map<std::string, std::size_t> blockNumbers;
  // What the drawing shows: the ENTITIES section.
  std::vector<DrawingEntity> entities;
  // Entities of kinds that no structure here stands for, left out, and the first few such kinds.
  std::size_t skippedCount = 0;
  std::vector<std::string> skippedKinds;
};
