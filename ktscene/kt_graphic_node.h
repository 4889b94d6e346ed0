// A node as the label callback sees it.
#pragma once

#include <string>

#include "ktscene/export.h"

// The walk owns it and lends it for one call.
class KT_SCENE_API KtGraphicNode {
 public:
  explicit KtGraphicNode(bool isLabel) : isLabel_(isLabel) {}
  virtual ~KtGraphicNode();
  KtGraphicNode(const KtGraphicNode&) = delete;
  KtGraphicNode& operator=(const KtGraphicNode&) = delete;

  bool GetIsLabel() const { return isLabel_; }
  // Fills `text` with the label's string, its two-character tag included (see
  // KtV::ParseLabelString for what follows it). Answers false when there is none.
  virtual bool GetLabelText(std::u16string& text) const = 0;

 private:
  bool isLabel_;
};
