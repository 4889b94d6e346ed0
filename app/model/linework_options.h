// Which lines of a model are drawn when its objects are looked at together.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace dxf2d {

// What becomes of lines behind faces.
enum class HiddenLines {
  // They are drawn as all others.
  kShow,
  // They are left out.
  kRemove,
  // They are drawn dashed.
  kDash,
};

// What is drawn as an outline, and nothing else.
enum class OutlineOf { kNothing, kWholeView, kEachObject };

// A horizontal plane; what is above it is removed.
struct CutPlane {
  // In drawing units along the view's direction, towards the viewer.
  double height = 0.0;
  // True: `height` is the plane's z. False: it is above the model's lowest point.
  bool isAbsolute = false;
  // The height as the user wrote it.
  std::string text;
};

struct LineworkOptions {
  HiddenLines hidden = HiddenLines::kShow;
  // Length of dashes in drawing units, above 0; none: defaultDashLength.
  std::optional<double> dashLength;
  // With kDash: whether hidden lines stay whole, for drawings with a dashed line type.
  bool keepsHiddenWhole = false;
  OutlineOf outline = OutlineOf::kNothing;
  std::optional<CutPlane> cut;

  // Whether each object can be drawn by itself, as if the others were not there.
  bool IsByObject() const {
    return hidden == HiddenLines::kShow && outline == OutlineOf::kNothing && !cut;
  }
};

}  // namespace dxf2d
