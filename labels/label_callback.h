// The label callback.
#pragma once

#include <string>

class KtGraphicNode;

namespace dxf2d {

// The label callback, slot 16: writes the label of `node` as texts in the current node's block.
// `flag` is ignored; `colorIndex` as for writeLabel. Returns false, with nothing written, for a
// null node, one that is not a label or has no text, without a session or a current node, and for a
// label that cannot be parsed; otherwise true.
bool labelCallback(KtGraphicNode* node, bool flag, int colorIndex);

// The same for a label without a node, for hosts that have their own. `label` begins with the two
// characters of its tag.
bool writeLabelText(const std::u16string& label, int colorIndex);

}  // namespace dxf2d
