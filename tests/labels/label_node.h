// Graphic nodes as the label callback gets them.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "ktscene/kt_graphic_node.h"

// A label; without a text its accessor fails.
class LabelNode : public KtGraphicNode {
 public:
  explicit LabelNode(std::optional<std::u16string> text, bool isLabel = true)
      : KtGraphicNode(isLabel), text_(std::move(text)) {}

  bool GetLabelText(std::u16string& text) const override {
    if (!text_) {
      return false;
    }
    text = *text_;
    return true;
  }

 private:
  std::optional<std::u16string> text_;
};
