#include "ktscene/node_walk.h"

#include <cassert>
#include <cmath>
#include <initializer_list>

#include "ktscene/borrowed_lists.h"
#include "ktscene/kt_geometry.h"
#include "ktscene/kt_graphic_node.h"

namespace dxf2d {

namespace {

template <typename Callback, typename... Arguments>
void call(Callback callback, const Arguments&... arguments) {
  if (callback != nullptr) {
    callback(arguments...);
  }
}

// An analytic shape as its kind and its sizes.
class Shape final : public KtGeometry {
 public:
  Shape(KTV_GRAPHIC_TYPE type, std::initializer_list<double> sizes)
      : KtGeometry(type), sizes_(sizes) {}
  bool GetParameters(std::vector<double>& parameters) const override {
    parameters = sizes_;
    return true;
  }

 private:
  std::vector<double> sizes_;
};

// A scene node's label, or the lack of one.
class LabelView final : public KtGraphicNode {
 public:
  explicit LabelView(const KtLabel* label) : KtGraphicNode(label != nullptr), label_(label) {}
  bool GetLabelText(std::u16string& text) const override {
    if (label_ == nullptr) {
      return false;
    }
    text = label_->text;
    return true;
  }

 private:
  const KtLabel* label_;
};

// Passes one geometry item to the callbacks.
class GeometryCalls {
 public:
  // What is borrowed is copied into `scratch`, which keeps its memory from one set to the next.
  GeometryCalls(const KtCallbacks& callbacks, KtFaceSet& scratch)
      : callbacks_(callbacks), scratch_(scratch) {}

  void operator()(const std::shared_ptr<const KtFaceSet>& set) const {
    assert(set != nullptr);
    ShowFaces(*set);
  }
  void operator()(const std::shared_ptr<const KtLineSet>& set) const {
    assert(set != nullptr);
    call(callbacks_.lineSet, set->coords, set->indices);
  }
  void operator()(const std::shared_ptr<const KtBorrowedFaces>& faces) const {
    assert(faces != nullptr);
    copyLists(faces->lists, scratch_.coords, scratch_.indices);
    scratch_.reverseOrientation = faces->reverseOrientation;
    scratch_.closedSurface = faces->closedSurface;
    ShowFaces(scratch_);
  }
  void operator()(const std::shared_ptr<const KtBorrowedLines>& lines) const {
    assert(lines != nullptr);
    copyLists(lines->lists, scratch_.coords, scratch_.indices);
    call(callbacks_.lineSet, scratch_.coords, scratch_.indices);
  }
  void operator()(const KtBox& box) const {
    Shape shape(KTV_GRAPHIC_TYPE_BOX, {box.a, box.b, box.c});
    if (!IsTaken(shape)) {
      ShowFaces(MakeBoxMesh(box));
    }
  }
  void operator()(const KtCylinder& cylinder) const {
    Shape shape(KTV_GRAPHIC_TYPE_CYLINDER, {cylinder.radius, cylinder.height});
    if (!IsTaken(shape)) {
      ShowFaces(MakeCylinderMesh(cylinder));
    }
  }

 private:
  bool IsTaken(Shape& shape) const {
    return callbacks_.specialGeometry != nullptr && callbacks_.specialGeometry(&shape, false);
  }

  void ShowFaces(const KtFaceSet& set) const {
    if (callbacks_.faceGeometry != nullptr && ShowFaceGeometry(set)) {
      return;
    }
    call(callbacks_.faceSet, set.coords, set.indices, set.reverseOrientation, set.closedSurface);
  }

  bool ShowFaceGeometry(const KtFaceSet& set) const {
    const std::vector<double> noReals;
    const std::vector<int> noIndices;
    constexpr bool kNormalPerVertex = false;
    constexpr bool kConvex = false;
    return callbacks_.faceGeometry(set.coords, set.indices, noReals, noIndices, noReals, noIndices,
                                   set.reverseOrientation, set.closedSurface, kNormalPerVertex,
                                   kConvex, nullptr);
  }

  const KtCallbacks& callbacks_;
  KtFaceSet& scratch_;
};

void showBounds(const KtCallbacks& callbacks, const KtBounds& bounds) {
  const double x = bounds.max[0] - bounds.min[0];
  const double y = bounds.max[1] - bounds.min[1];
  const double z = bounds.max[2] - bounds.min[2];
  call(callbacks.boundingBox, bounds.min.data(), bounds.max.data(),
       std::sqrt((x * x + y * y) + z * z));
}

void showMaterial(const KtCallbacks& callbacks, const KtSceneNode& node) {
  const double* color = node.color ? node.color->data() : nullptr;
  const KtMaterial* own = node.material.get();
  if (own != nullptr) {
    call(callbacks.material, own->ambient, color != nullptr ? color : own->diffuse, own->specular,
         own->emission, &own->shininess, &own->transparency);
  } else if (color != nullptr) {
    call(callbacks.material, nullptr, color, nullptr, nullptr, nullptr, nullptr);
  }
}

}  // namespace

bool NodeWalk::Run(const KtSceneNode& node) {
  bool goesOn = Enter(node);
  while (!open_.empty()) {
    OpenNode& top = open_.back();
    if (goesOn && top.next != top.end) {
      goesOn = Enter(*top.next++);
    } else {
      call(top.isLod ? callbacks_.closeLod : callbacks_.closeNode);
      open_.pop_back();
    }
  }
  return goesOn;
}

bool NodeWalk::Enter(const KtSceneNode& node) {
  if (node.lod) {
    EnterLod(*node.lod);
    return true;
  }
  if (progress_ && !progress_(count_++)) {
    return false;
  }
  KtGraphicAttribute attribute(node);
  if (callbacks_.reuse != nullptr && callbacks_.reuse(&attribute)) {
    call(callbacks_.closeNode);
    return true;
  }
  ShowNode(node, attribute);
  const KtSceneNode* children = node.children.data();
  open_.push_back({children, children + node.children.size(), false});
  return true;
}

void NodeWalk::EnterLod(const KtSceneNode::Lod& lod) {
  constexpr double kDistance = 0.0;
  call(callbacks_.openLod, lod.ranges, kDistance);
  const KtSceneNode* first = lod.levels.data();
  open_.push_back({first, lod.levels.empty() ? first : first + 1, true});
}

void NodeWalk::ShowNode(const KtSceneNode& node, KtGraphicAttribute& attribute) {
  call(callbacks_.openNode, &attribute);
  call(callbacks_.matrix, node.matrix.Data());
  if (node.bounds) {
    showBounds(callbacks_, *node.bounds);
  }
  showMaterial(callbacks_, node);
  for (const KtSceneGeometry& item : node.geometry) {
    std::visit(GeometryCalls(callbacks_, scratch_), item);
  }
  LabelView view(node.label.get());
  call(callbacks_.label, &view, false, node.label ? node.label->colorIndex : 0);
}

}  // namespace dxf2d
