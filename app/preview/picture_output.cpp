#include "app/preview/picture_output.h"

#include <string>

#include "app/cli/failure.h"

namespace dxf2d {

int writePicture(const Drawing& drawing, const PictureStyle& style, const WorkOutput& output) {
  const Picture picture = drawPicture(drawing, style);
  if (picture.leftOut != 0) {
    note(style.name + ": " + std::to_string(picture.leftOut) +
         " entities with coordinates out of range were left out");
  }
  if (picture.bytes.empty()) {
    return fail(kExitNothingToDraw, {style.name, "contains nothing to draw",
                                     "check that its scene has geometry in visible objects"});
  }
  output.Write(picture.bytes);
  return kExitDone;
}

}  // namespace dxf2d
