// Labels of the host as texts of the drawing.
#pragma once

#include <string>

class KtGraphicNode;

// Label callback, slot 16. Writes the block of the current node with the label's texts and answers
// true; false, with nothing written, for a null node, one that is no label or has no text, without
// a current node, and for a label that cannot be read. `flag` is not looked at; `colorIndex` as in
// LabelTextWriter::WriteLabel.
bool labelCallback(KtGraphicNode* node, bool flag, int colorIndex);

// The same for a label string without a node around it; for hosts that bring their own.
bool writeLabelText(const std::u16string& label, int colorIndex);
