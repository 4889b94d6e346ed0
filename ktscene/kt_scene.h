// The scene graph.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ktscene/export.h"
#include "ktscene/kt_graphic_attribute.h"
#include "ktscene/kt_matrix.h"

// Tessellated surface. `coords` are x, y, z triples (a remainder is ignored); `indices` are runs of
// point numbers, each closed by a code: -7 polygon, -6 line strip, -5 triangles, -4 fan, -3 strip,
// -2 nothing, -1 one segment.
struct KtFaceSet {
  std::vector<double> coords;
  std::vector<int> indices;
  // False: counter-clockwise is the front.
  bool reverseOrientation = false;
  bool closedSurface = true;
};

// Lines; coordinates and codes as in KtFaceSet.
struct KtLineSet {
  std::vector<double> coords;
  std::vector<int> indices;
};

// A box of extents a, b, c centred on the origin in x and y, from z = 0 to c.
struct KtBox {
  double a = 1.0;
  double b = 1.0;
  double c = 1.0;
};

// A cylinder about the z axis, from z = 0 to `height`.
struct KtCylinder {
  double radius = 1.0;
  double height = 1.0;
};

// Sets are shared, so that many nodes can show one mesh; never null.
using KtSceneGeometry = std::variant<std::shared_ptr<const KtFaceSet>,
                                     std::shared_ptr<const KtLineSet>, KtBox, KtCylinder>;

struct KtLabel {
  std::u16string text;  // tag and label string, see KtV::ParseLabelString
  int colorIndex = 0;   // 1 to 255; any other: the colour in the text
};

struct KtBounds {
  std::array<double, 3> min{};
  std::array<double, 3> max{};
};

// One node. Plain data; owns its children. Moving and destroying a node is safe at any depth.
struct KT_SCENE_API KtSceneNode : KtGraphicItem {
  KtSceneNode();
  KtSceneNode(KtSceneNode&&) noexcept;
  KtSceneNode& operator=(KtSceneNode&&) noexcept;
  KtSceneNode(const KtSceneNode&) = delete;
  KtSceneNode& operator=(const KtSceneNode&) = delete;
  ~KtSceneNode();

  std::u16string graphicName;  // names what is drawn: nodes that share it may be drawn as instances
  std::u16string objectId;     // names the object that a drawing places
  std::u16string realObjectId;  // names the object whose frame holds the geometry
  bool hasGraphicItem = true;
  KtMatrix matrix;                             // local transform
  std::optional<std::array<double, 3>> color;  // own colour, red, green, blue from 0 to 1
  std::unique_ptr<KtMaterial> material;        // own material
  std::vector<KtSceneGeometry> geometry;
  std::unique_ptr<KtLabel> label;
  std::unique_ptr<KtBounds> bounds;

  // A level-of-detail group holds levels and nothing else; only the first level is walked.
  struct Lod {
    std::vector<double> ranges;
    std::vector<KtSceneNode> levels;
  };
  std::unique_ptr<Lod> lod;

  std::vector<KtSceneNode> children;
};

struct KtScene {
  std::vector<KtSceneNode> nodes;
};
