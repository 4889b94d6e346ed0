#include "app/inspect/callback_slots.h"

namespace dxf2d {

std::array<CallbackSlot, 20> slotsOf(const KtCallbacks& callbacks) {
  return {{{"open node", callbacks.openNode != nullptr},
           {"close node", callbacks.closeNode != nullptr},
           {"reuse", callbacks.reuse != nullptr},
           {"open level-of-detail group", callbacks.openLod != nullptr},
           {"close level-of-detail group", callbacks.closeLod != nullptr},
           {"bounds", callbacks.boundingBox != nullptr},
           {"material", callbacks.material != nullptr},
           {"matrix", callbacks.matrix != nullptr},
           {"face geometry", callbacks.faceGeometry != nullptr},
           {"face set", callbacks.faceSet != nullptr},
           {"line set", callbacks.lineSet != nullptr},
           {"point set", callbacks.pointSet != nullptr},
           {"graphic node", callbacks.graphicNode != nullptr},
           {"analytic shape", callbacks.specialGeometry != nullptr},
           {"text", callbacks.text != nullptr},
           {"label", callbacks.label != nullptr},
           {"begin file", callbacks.beginFile != nullptr},
           {"end file", callbacks.endFile != nullptr},
           {"open file for model", callbacks.openFile != nullptr},
           {"close file for model", callbacks.closeFile != nullptr}}};
}

}  // namespace dxf2d
