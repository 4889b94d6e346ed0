#include "app/page/page_output.h"

#include <string>

#include "app/cli/failure.h"
#include "app/cli/translation.h"

namespace dxf2d::page {

int writePage(const Drawing& drawing, const PageStyle& style, const WorkOutput& output) {
  const Page page = makePage(drawing, style);
  if (page.leftOut != 0) {
    note(trn("%1: %2 entity with coordinates out of range was left out",
             "%1: %2 entities with coordinates out of range were left out", page.leftOut,
             {style.name, std::to_string(page.leftOut)}));
  }
  if (page.html.empty()) {
    return fail(kExitNothingToDraw, {style.name, tr("contains nothing to draw"),
                                     tr("check that its scene has geometry in visible objects")});
  }
  output.Write(page.html);
  return kExitDone;
}

}  // namespace dxf2d::page
