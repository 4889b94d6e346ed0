// Analytic geometry as the walk shows it to a plug-in (slot 14).
#pragma once

#include <vector>

#include "ktscene/export.h"

// The kinds of shapes. The values are fixed; a plug-in declines those that it does not know.
enum KTV_GRAPHIC_TYPE {
  KTV_GRAPHIC_TYPE_UNKNOWN = 0,
  KTV_GRAPHIC_TYPE_BOX = 1,
  KTV_GRAPHIC_TYPE_CYLINDER = 2,
};

// An analytic shape in its node's coordinates: a box as KtBox lies, a cylinder as KtCylinder. The
// walk owns it and lends it for one call. Hosts with shapes of their own derive from it.
class KT_SCENE_API KtGeometry {
 public:
  // A shape of this type, which cannot change.
  explicit KtGeometry(KTV_GRAPHIC_TYPE type) : type_(type) {}
  virtual ~KtGeometry();
  KtGeometry(const KtGeometry&) = delete;
  KtGeometry& operator=(const KtGeometry&) = delete;

  // Returns which kind of shape this is.
  KTV_GRAPHIC_TYPE GetGraphicType() const { return type_; }

  // Replaces `parameters` by the shape's sizes in drawing units: of a box its extents along x, y
  // and z, of a cylinder its radius and height. Returns false, and leaves the list alone, when the
  // shape has none.
  virtual bool GetParameters(std::vector<double>& parameters) const = 0;

 private:
  KTV_GRAPHIC_TYPE type_;
};
