// Labels as the host's parser reads them.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "ktscene/kt_scene.h"
#include "ktscene/kt_v.h"

namespace dxf2d {

struct ReadLabel {
  double height = 0.0;
  std::array<double, 3> anchor{};
  double angle = 0.0;
  char16_t alignment = 0;
  std::array<double, 3> color{};
  std::vector<std::u16string> lines;
};

inline ReadLabel readLabel(const KtSceneNode& node) {
  ReadLabel label;
  if (node.label == nullptr) {
    ADD_FAILURE() << "no label";
    return label;
  }
  double width = 0.0;
  double depth = 0.0;
  unsigned short alignment = 0;
  bool frame = false;
  unsigned int flags = 0;
  EXPECT_TRUE(KtV::ParseLabelString(node.label->text.substr(2), width, label.height, depth,
                                    label.anchor[0], label.anchor[1], label.anchor[2], label.angle,
                                    alignment, frame, label.color[0], label.color[1],
                                    label.color[2], flags, label.lines));
  label.alignment = static_cast<char16_t>(alignment);
  return label;
}

}  // namespace dxf2d
