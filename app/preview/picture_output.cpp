#include "app/preview/picture_output.h"

#include <string>

#include "app/cli/failure.h"
#include "app/cli/translation.h"

namespace dxf2d {

int writePicture(const Drawing& drawing, const PictureStyle& style, const WorkOutput& output) {
  const Picture picture = drawPicture(drawing, style);
  if (picture.leftOut != 0) {
    note(trn("%1: %2 entity with coordinates out of range was left out",
             "%1: %2 entities with coordinates out of range were left out", picture.leftOut,
             {style.name, std::to_string(picture.leftOut)}));
  }
  if (picture.bytes.empty()) {
    return fail(kExitNothingToDraw, {style.name, tr("contains nothing to draw"),
                                     tr("check that its scene has geometry in visible objects")});
  }
  output.Write(picture.bytes);
  return kExitDone;
}

}  // namespace dxf2d
