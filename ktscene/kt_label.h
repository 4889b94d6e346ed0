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
  // The size of a letter.
  double width = 1.0;
  double height = 1.0;
  double depth = 0.0;

  // The point that `align` refers to, in the node's coordinates.
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  double angle = 0.0;     // in degrees, counter-clockwise
  char16_t align = u'L';  // any unit but a space
  bool frame = false;     // whether a frame is wanted around it

  // The color, each from 0 to 1, unless KtLabel::colorIndex gives another.
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;

  unsigned flags = 0;                   // passed on as it is
  std::vector<std::u16string> lines{};  // from the top to the bottom
  KtReserved<4> reserved{};
};

// The text for KtLabel::text, with a tag. Quotes and backslashes in lines are escaped, control
// characters become spaces, and numbers have decimal points in every locale; ParseLabelString
// returns exactly the same numbers. Throws std::invalid_argument for a number that is not finite or
// beyond 1e15 and for an alignment that is a space or a control character.
KT_SCENE_API std::u16string KtMakeLabel(const KtLabelContent& content);
