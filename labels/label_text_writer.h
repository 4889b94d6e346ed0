// Lays out a label and writes it as TEXT entities.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct BlockNode;
class DxfWriter;

// What a label says, as the host's parser reads it. Lengths in drawing units, the angle in degrees.
struct ParsedLabel {
  double height = 0.0;
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  double angle = 0.0;
  // 'C' centred, 'L' left, 'R' right; with any other the texts are written without a place.
  char16_t alignment = 0;
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
  std::vector<std::u16string> lines;
};

// Writes one label; lives for one call.
//
// The drawing has no multi-line text, so each line is a TEXT of its own: lines stand 1.5 heights
// apart, centred as a stack on the anchor, turned about it by the label's angle. A character is
// taken to advance 0.8 heights (0.32 for "!", "i" and "l").
class LabelTextWriter {
 public:
  LabelTextWriter();

  // Writes the block of `node` (null: nothing, false) with the texts of `label`, whose first two
  // characters are its tag. A colour index from 1 to 255 is the texts' colour, any other stands for
  // the colour in the label. False when the label cannot be read; true, with nothing written, for a
  // label without lines and on a node tilted out of the plane.
  bool WriteLabel(BlockNode* node, const std::u16string& label, int colorIndex);

 private:
  bool IsTiltedOutOfPlane() const;
  void WriteLines(const ParsedLabel& label, int colorIndex);
  void WriteColorOf(const ParsedLabel& label, int colorIndex);
  void WritePlace(const ParsedLabel& label, std::size_t line, double width);

  DxfWriter* writer_;
  BlockNode* node_ = nullptr;
};

// The advance of one character in heights, `advance` for all but the narrow ones.
double characterAdvance(char16_t character, double advance);

// Turns (x, y, z) about the axis by `angle` degrees; below 1e-5 degrees it stays as it is.
void rotateOffset(double& x, double& y, double& z, double angle, double axisX, double axisY,
                  double axisZ);
