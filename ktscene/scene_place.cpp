#include "ktscene/scene_place.h"

#include <algorithm>
#include <cstdio>

namespace dxf2d {

namespace {

bool isInsideCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Escapes "~" and "/" as JSON pointers require, and control characters so that messages stay on one
// line.
void appendToken(std::string& pointer, std::string_view token) {
  pointer += '/';
  for (const char c : token) {
    if (c == '~') {
      pointer += "~0";
    } else if (c == '/') {
      pointer += "~1";
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(c));
      pointer += escape;
    } else {
      pointer += c;
    }
  }
}

// A sentence stays readable however deep its subject lies.
std::string shortened(const std::string& pointer) {
  constexpr std::size_t kKept = 500;
  if (pointer.size() <= 2 * kKept) {
    return pointer;
  }
  std::size_t head = kKept;
  while (head > 0 && isInsideCharacter(pointer[head])) {
    --head;
  }
  std::size_t tail = pointer.size() - kKept;
  while (tail < pointer.size() && isInsideCharacter(pointer[tail])) {
    ++tail;
  }
  return pointer.substr(0, head) + " … " + pointer.substr(tail);
}

}  // namespace

std::string jsonPointer(const std::vector<SceneLevel>& levels, const std::string_view* unknownKey) {
  std::string pointer;
  for (const SceneLevel& level : levels) {
    if (level.isList) {
      appendToken(pointer, std::to_string(level.done));
    } else if (level.hasKey) {
      appendToken(pointer, ruleOf(level.key).name);
    }
  }
  if (unknownKey != nullptr) {
    appendToken(pointer, *unknownKey);
  }
  return shortened(pointer);
}

}  // namespace dxf2d
