// Analytic geometry as the walk shows it to a plug-in.
#pragma once

#include <vector>

#include "ktscene/export.h"

enum KTV_GRAPHIC_TYPE {
  KTV_GRAPHIC_TYPE_UNKNOWN = 0,
  KTV_GRAPHIC_TYPE_BOX = 1,
  KTV_GRAPHIC_TYPE_CYLINDER = 2,
};

// An analytic shape. The walk owns it and lends it for one call.
class KT_SCENE_API KtGeometry {
 public:
  explicit KtGeometry(KTV_GRAPHIC_TYPE type) : type_(type) {}
  virtual ~KtGeometry();
  KtGeometry(const KtGeometry&) = delete;
  KtGeometry& operator=(const KtGeometry&) = delete;

  KTV_GRAPHIC_TYPE GetGraphicType() const { return type_; }
  // Fills `parameters` with the shape's sizes: a box its extents along x, y and z, a cylinder its
  // radius and height. Answers false, and leaves the list alone, when the shape has none.
  virtual bool GetParameters(std::vector<double>& parameters) const = 0;

 private:
  KTV_GRAPHIC_TYPE type_;
};
