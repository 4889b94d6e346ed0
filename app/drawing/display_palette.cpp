#include "app/drawing/display_palette.h"

#include <algorithm>
#include <cmath>

namespace dxf2d {

namespace {

// One component of hue 0 to 23 at full strength: 1 within four steps of its own hue (red 0, green
// 8, blue 16), from there falling to 0 in quarters over the next four.
double fullComponent(int hue, int ownHue) {
  const int apart = std::abs(hue - ownHue);
  const int steps = std::min(apart, 24 - apart);
  return std::clamp((8 - steps) / 4.0, 0.0, 1.0);
}

// Ten entries to a hue: five strengths, each pure and halfway to white.
double hueComponent(int index, int ownHue) {
  static constexpr double kStrengths[] = {1.0, 0.65, 0.5, 0.3, 0.15};
  const double full = fullComponent((index - 10) / 10, ownHue);
  const double strength = kStrengths[index % 10 / 2];
  return strength * (index % 2 == 0 ? full : 0.5 + 0.5 * full);
}

}  // namespace

DisplayColor displayColor(int index) {
  static constexpr DisplayColor kBasic[] = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                            {0, 1, 1}, {0, 0, 1}, {1, 0, 1}};
  constexpr int kFirstHue = 10;
  constexpr int kFirstGray = 250;
  constexpr int kWhite = 255;
  if (index >= 1 && index <= 6) {
    return kBasic[index - 1];
  }
  if (index < kFirstHue || index >= kWhite) {
    return {};
  }
  if (index < kFirstGray) {
    return {hueComponent(index, 0), hueComponent(index, 8), hueComponent(index, 16)};
  }
  const double gray = 0.33 + 0.134 * (index - kFirstGray);
  return {gray, gray, gray};
}

}  // namespace dxf2d
