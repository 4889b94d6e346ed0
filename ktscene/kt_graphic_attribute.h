// A node's attributes as the node callbacks see them.
#pragma once

#include <string>

#include "ktscene/export.h"
#include "ktscene/kt_matrix.h"

struct KtSceneNode;

enum KTV_GRAPHIC_CREATE_TYPE { KTV_GRAPHIC_CREATE_DEFAULT = 0 };

// The drawable of a node. Its address is its identity; it lives as long as its scene.
class KtGraphicItem {};

// A surface's colours, each red, green, blue from 0 to 1.
struct KtMaterial {
  double ambient[3] = {0.0, 0.0, 0.0};
  double diffuse[3] = {1.0, 1.0, 1.0};
  double specular[3] = {0.0, 0.0, 0.0};
  double emission[3] = {0.0, 0.0, 0.0};
  double shininess = 0.0;     // 0 (dull) to 1
  double transparency = 0.0;  // 0 (opaque) to 1
};

// A view of one scene node. The walk owns it and lends it for one call; the node must outlive it.
class KT_SCENE_API KtGraphicAttribute {
 public:
  explicit KtGraphicAttribute(KtSceneNode& node) : node_(&node) {}

  // Each answers false, and leaves the string empty, when the node has no such name.
  bool GetGraphicName(std::u16string& name) const;
  bool GetObjectID(std::u16string& id) const;
  bool GetRealObjectID(std::u16string& id) const;

  // The node's local transform, 16 doubles.
  void GetMatrix(double* data) const;
  // The node's drawable, null when it has none. The arguments select among drawables in hosts that
  // build them on demand; here a node has at most one and they are ignored (`matrix` may be null).
  KtGraphicItem* GetGraphicItem(const double* matrix, bool create,
                                KTV_GRAPHIC_CREATE_TYPE type) const;
  // True when the node has a colour or a material of its own. An own colour goes to colour[0..2], a
  // material's address to `material`; what the node does not have is left alone.
  bool GetColorOrMaterial(double* colour, KtMaterial*& material) const;

 private:
  KtSceneNode* node_;
};
