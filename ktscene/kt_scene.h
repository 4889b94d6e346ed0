// The scene graph: plain data that a host builds, or reads from a scene file, to be walked.
//
// Example, a scene of one box that a drawing places:
//
//   KtSceneNode node;
//   node.graphicName = u"crate";
//   node.objectId = node.realObjectId = u"crate-1";
//   node.geometry.emplace_back(KtBox{2.0, 1.0, 0.5});
//   KtScene scene;
//   scene.nodes.push_back(std::move(node));
//
// Lengths are in drawing units, color components from 0 to 1. Values may be built on any thread; a
// scene must not change while it is walked.
//
// Within one major version of the SDK the structs below keep their sizes (see KtReserved), and
// KtBox, KtCylinder and KtSceneGeometry stay as they are: new kinds of content become members of
// KtSceneNode.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ktscene/export.h"
#include "ktscene/kt_matrix.h"
#include "ktscene/kt_reserved.h"

// The drawable of a node. Its address is its identity; it lives as long as its scene.
class KtGraphicItem {};

// A surface's colors, each red, green, blue from 0 to 1.
struct KtMaterial {
  double ambient[3] = {0.0, 0.0, 0.0};   // in ambient light
  double diffuse[3] = {1.0, 1.0, 1.0};   // in direct light: the color that plans are drawn in
  double specular[3] = {0.0, 0.0, 0.0};  // of highlights
  double emission[3] = {0.0, 0.0, 0.0};  // of its own light
  double shininess = 0.0;                // 0 (dull) to 1
  double transparency = 0.0;             // 0 (opaque) to 1
  KtReserved<4> reserved{};
};

// A tessellated surface.
struct KtFaceSet {
  // x, y, z triples in the node's coordinates; a remainder of one or two is ignored.
  std::vector<double> coords;
  // Runs of point numbers, counted from 0, each ended by a code (ktscene/kt_run_code.h).
  std::vector<int> indices;
  // False: counter-clockwise is the front.
  bool reverseOrientation = false;
  // True: the set bounds a solid, so that the back of a face is never visible.
  bool closedSurface = true;
  KtReserved<4> reserved{};
};

// Lines; coordinates and codes as in KtFaceSet.
struct KtLineSet {
  std::vector<double> coords;  // x, y, z triples
  std::vector<int> indices;    // runs of point numbers
  KtReserved<4> reserved{};
};

// Lists that stay where the host has them, such as a viewer's buffers. The walk reads them when it
// comes to them, one set at a time, so that there is never a second copy of a whole scene.
struct KtBorrowedLists {
  // x, y, z triples, as floats or as doubles; the other pointer is null. `coordCount` counts
  // numbers.
  const float* floats = nullptr;
  const double* doubles = nullptr;
  std::size_t coordCount = 0;
  // Point numbers and codes as in KtFaceSet. (Unsigned 32-bit numbers may be cast to these.)
  const int* indices = nullptr;
  std::size_t indexCount = 0;
  // A KtRunCode if `indices` are point numbers of a single run, such as KtRunCode::kTriangles; 0 if
  // the codes are in the list.
  int runCode = 0;
  // What keeps the lists alive; null if the host does so while scenes are walked.
  std::shared_ptr<const void> owner{};
  KtReserved<4> reserved{};
};

// A KtFaceSet in borrowed lists.
struct KtBorrowedFaces {
  KtBorrowedLists lists{};          // the points and the runs
  bool reverseOrientation = false;  // false: counter-clockwise is the front
  bool closedSurface = true;        // whether the set bounds a solid
  KtReserved<4> reserved{};
};

// A KtLineSet in borrowed lists.
struct KtBorrowedLines {
  KtBorrowedLists lists{};  // the points and the runs
  KtReserved<4> reserved{};
};

// Copies what is borrowed.
KT_SCENE_API KtFaceSet KtCopyLists(const KtBorrowedFaces& faces);
KT_SCENE_API KtLineSet KtCopyLists(const KtBorrowedLines& lines);

// A box of extents a, b, c, each above 0, centered on the origin in x and y, from z = 0 to c.
struct KtBox {
  double a = 1.0;  // along x
  double b = 1.0;  // along y
  double c = 1.0;  // along z
};

// A cylinder about the z axis, from z = 0 to `height`; both sizes are above 0.
struct KtCylinder {
  double radius = 1.0;  // of the circle in plan
  double height = 1.0;  // along z
};

// The face sets that stand in for shapes which a plug-in declines: closed, counter-clockwise from
// outside. A box has 8 points and 6 quadrilaterals.
KT_SCENE_API KtFaceSet MakeBoxMesh(const KtBox& box);
// A cylinder has 64 points, 32 quadrilaterals about the axis and two 32-gons.
KT_SCENE_API KtFaceSet MakeCylinderMesh(const KtCylinder& cylinder);

// One item of a node's geometry. Sets are shared, so that many nodes can show one mesh; never null.
using KtSceneGeometry =
    std::variant<std::shared_ptr<const KtFaceSet>, std::shared_ptr<const KtLineSet>, KtBox,
                 KtCylinder, std::shared_ptr<const KtBorrowedFaces>,
                 std::shared_ptr<const KtBorrowedLines>>;

// A text in the drawing.
struct KtLabel {
  // A tag of two characters and a label string, see KtV::ParseLabelString.
  std::u16string text;
  // 1 to 255 in the drawing's palette; any other value: the color in the text.
  int colorIndex = 0;
  KtReserved<4> reserved{};
};

// A box that holds a node's content, by its lower and upper corner in the node's coordinates.
// Passed to plug-ins unchanged; nothing compares it with the content.
struct KtBounds {
  std::array<double, 3> min{};  // lower corner
  std::array<double, 3> max{};  // upper corner
  KtReserved<2> reserved{};
};

// One node. Owns its children; their order is that of the walk. Moving and destroying a node is
// safe at any depth and takes no memory; it cannot be copied.
struct KT_SCENE_API KtSceneNode : KtGraphicItem {
  // A node without names, content or children, in the place of its parent.
  KtSceneNode();
  // Afterwards, the other node can only be assigned to or destroyed.
  KtSceneNode(KtSceneNode&&) noexcept;
  KtSceneNode& operator=(KtSceneNode&&) noexcept;
  KtSceneNode(const KtSceneNode&) = delete;
  KtSceneNode& operator=(const KtSceneNode&) = delete;
  ~KtSceneNode();

  // Names what is drawn: nodes that share it must look the same, and may be drawn as instances.
  std::u16string graphicName;
  // Names the object that a drawing places.
  std::u16string objectId;
  // Names the object in whose frame the geometry is drawn.
  std::u16string realObjectId;
  // False: plug-ins are told that the node has no drawable, so that no later node reuses its
  // drawing.
  bool hasGraphicItem = true;
  // From the node's coordinates to its parent's.
  KtMatrix matrix;
  // The node's own color, red, green, blue from 0 to 1; children without one inherit it.
  std::optional<std::array<double, 3>> color;
  // The node's own material, null for none; if a node has both, `color` replaces the material's
  // diffuse color.
  std::unique_ptr<KtMaterial> material;
  // In the order of the walk.
  std::vector<KtSceneGeometry> geometry;
  // Null for none.
  std::unique_ptr<KtLabel> label;
  // Null for none.
  std::unique_ptr<KtBounds> bounds;

  // A level-of-detail group.
  struct Lod {
    // The distances at which the levels change; shown to plug-ins as they are.
    std::vector<double> ranges;
    // From fine to coarse. Only the first is walked.
    std::vector<KtSceneNode> levels;
    KtReserved<2> reserved{};
  };
  // Null for an ordinary node. The walk ignores everything else in a node that has it.
  std::unique_ptr<Lod> lod;

  // In the order of the walk, which reaches them after the node's own content.
  std::vector<KtSceneNode> children;

  // The host's own data, such as the viewer's node from which this one was made; kept as long as
  // the node. Plug-ins of the same author get it by KtGraphicAttribute::GetUserData; it does not
  // affect drawings.
  std::shared_ptr<void> userData;

  KtReserved<8> reserved{};
};

// What a plug-in draws. A scene without nodes gives a drawing without objects.
struct KtScene {
  // The top-level nodes, in the order of the walk.
  std::vector<KtSceneNode> nodes;
  KtReserved<4> reserved{};
};
