#include "app/inspect/callback_slots.h"

#include "app/cli/translation.h"

namespace dxf2d {

std::array<CallbackSlot, 20> slotsOf(const KtCallbacks& callbacks) {
  return {{{marked("open node"), callbacks.openNode != nullptr},
           {marked("close node"), callbacks.closeNode != nullptr},
           {marked("reuse"), callbacks.reuse != nullptr},
           {marked("open level-of-detail group"), callbacks.openLod != nullptr},
           {marked("close level-of-detail group"), callbacks.closeLod != nullptr},
           {marked("bounds"), callbacks.boundingBox != nullptr},
           {marked("material"), callbacks.material != nullptr},
           {marked("matrix"), callbacks.matrix != nullptr},
           {marked("face geometry"), callbacks.faceGeometry != nullptr},
           {marked("face set"), callbacks.faceSet != nullptr},
           {marked("line set"), callbacks.lineSet != nullptr},
           {marked("point set"), callbacks.pointSet != nullptr},
           {marked("graphic node"), callbacks.graphicNode != nullptr},
           {marked("analytic shape"), callbacks.specialGeometry != nullptr},
           {marked("text"), callbacks.text != nullptr},
           {marked("label"), callbacks.label != nullptr},
           {marked("begin file"), callbacks.beginFile != nullptr},
           {marked("end file"), callbacks.endFile != nullptr},
           {marked("open file for model"), callbacks.openFile != nullptr},
           {marked("close file for model"), callbacks.closeFile != nullptr}}};
}

}  // namespace dxf2d
