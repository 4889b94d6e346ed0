// Makes the text of a label.
//
// Example:
//
//   KtLabelContent content;
//   content.height = 2.5;
//   content.lines = {u"Door \"A\""};
//   node.label = std::make_unique<KtLabel>(KtLabel{KtMakeLabel(content), 3});
#pragma once

#include <string>
#include <vector>

#include "ktscene/export.h"
#include "ktscene/kt_reserved.h"

// What KtV::ParseLabelString takes apart; see there for the fields. Lengths are in drawing units.
struct KtLabelContent {
  double width = 1.0;
  double height = 1.0;
  double depth = 0.0;
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  double angle = 0.0;     // in degrees
  char16_t align = u'L';  // any unit but a space
  bool frame = false;
  double red = 0.0;  // components from 0 to 1
  double green = 0.0;
  double blue = 0.0;
  unsigned flags = 0;
  std::vector<std::u16string> lines{};
  KtReserved<4> reserved{};
};

// The text for KtLabel::text, with a tag. Quotes and backslashes in lines are escaped, control
// characters become spaces, and numbers have points in every locale; ParseLabelString gives back
// the same numbers exactly. Throws std::invalid_argument for a number that is not finite or beyond
// 1e15 and for an alignment that is a space or a control character.
KT_SCENE_API std::u16string KtMakeLabel(const KtLabelContent& content);
