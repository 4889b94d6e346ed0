// A node as the label callback (slot 16) sees it.
#pragma once

#include <string>

#include "ktscene/export.h"

// What a node has besides geometry, which is at most a label. The walk owns it and lends it for one
// call. Hosts with nodes of their own derive from it.
class KT_SCENE_API KtGraphicNode {
 public:
  // `isLabel`: what GetIsLabel returns.
  explicit KtGraphicNode(bool isLabel) : isLabel_(isLabel) {}
  virtual ~KtGraphicNode();
  KtGraphicNode(const KtGraphicNode&) = delete;
  KtGraphicNode& operator=(const KtGraphicNode&) = delete;

  // Returns whether the node has a label.
  bool GetIsLabel() const { return isLabel_; }

  // Sets `text` to the label's string, its two-character tag included (see KtV::ParseLabelString
  // for what follows the tag). Returns false, and leaves it alone, when there is none.
  virtual bool GetLabelText(std::u16string& text) const = 0;

 private:
  bool isLabel_;
};
