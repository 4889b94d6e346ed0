// A node's attributes as the node callbacks (slots 1 and 3) see them.
#pragma once

#include <string>

#include "ktscene/export.h"
#include "ktscene/kt_scene.h"

// How hosts that build drawables on demand are to build one.
enum KTV_GRAPHIC_CREATE_TYPE { KTV_GRAPHIC_CREATE_DEFAULT = 0 };

// A view of one scene node. The walk owns it and lends it for one call; the node must outlive it.
class KT_SCENE_API KtGraphicAttribute {
 public:
  // A view of `node`, for hosts that call the slots themselves.
  explicit KtGraphicAttribute(const KtSceneNode& node) : node_(&node) {}

  // Each sets the string to the node's name of that kind (see KtSceneNode). Returns false, and
  // leaves the string empty, when the node has no such name.
  bool GetGraphicName(std::u16string& name) const;
  bool GetObjectID(std::u16string& id) const;
  bool GetRealObjectID(std::u16string& id) const;

  // Returns KtSceneNode::userData, null when there is none. It belongs to the scene.
  void* GetUserData() const;

  // Writes the node's local transform to `data`: 16 doubles, laid out as in KtMatrix.
  void GetMatrix(double* data) const;

  // Returns the node's drawable, null when it has none. It belongs to the scene.
  // The arguments select among drawables in hosts that build them on demand; here a node has at
  // most one and they are ignored (`matrix` may be null). A plug-in uses its address as an
  // identity and does not change it.
  KtGraphicItem* GetGraphicItem(const double* matrix, bool create,
                                KTV_GRAPHIC_CREATE_TYPE type) const;

  // Returns whether the node has a color or a material of its own. The color goes to color[0..2]
  // (unless `color` is null), the material's address to `material`; what the node does not have is
  // left alone. The material belongs to the scene.
  bool GetColorOrMaterial(double* color, KtMaterial*& material) const;

 private:
  const KtSceneNode* node_;
};
