#include "labels/label_callback.h"

#include "ktscene/kt_graphic_node.h"
#include "labels/label_text.h"
#include "session/export_session.h"

namespace dxf2d {

bool labelCallback(KtGraphicNode* node, bool /*flag*/, int colorIndex) {
  if (node == nullptr || !node->GetIsLabel()) {
    return false;
  }
  std::u16string label;
  return node->GetLabelText(label) && writeLabelText(label, colorIndex);
}

bool writeLabelText(const std::u16string& label, int colorIndex) {
  const ExportSession& session = exportSession();
  return session.CanDraw() && writeLabel(*session.writer, *session.currentNode, label, colorIndex);
}

}  // namespace dxf2d
