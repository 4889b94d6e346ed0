#include "labels/label_callback.h"

#include "ktscene/kt_graphic_node.h"
#include "labels/label_text_writer.h"
#include "session/export_session.h"

bool labelCallback(KtGraphicNode* node, bool /*flag*/, int colorIndex) {
  if (node == nullptr || !node->GetIsLabel()) {
    return false;
  }
  std::u16string label;
  if (!node->GetLabelText(label)) {
    return false;
  }
  return writeLabelText(label, colorIndex);
}

bool writeLabelText(const std::u16string& label, int colorIndex) {
  LabelTextWriter writer;
  return writer.WriteLabel(exportSession().currentNode, label, colorIndex);
}
