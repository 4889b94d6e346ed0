#include "app/page/page_output.h"

#include <string>

#include "app/cli/failure.h"

namespace dxf2d::page {

int writePage(const Drawing& drawing, const PageStyle& style, const WorkOutput& output) {
  const Page page = makePage(drawing, style);
  if (page.leftOut != 0) {
    note(style.name + ": " + std::to_string(page.leftOut) +
         " entities with coordinates out of range were left out");
  }
  if (page.html.empty()) {
    return fail(kExitNothingToDraw, {style.name, "contains nothing to draw",
                                     "check that its scene has geometry in visible objects"});
  }
  output.Write(page.html);
  return kExitDone;
}

}  // namespace dxf2d::page
