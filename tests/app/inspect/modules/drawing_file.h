// Slots 19 and 20 of test plug-ins that are sound in how they write: one line for each thing shown.
#pragma once

#include <cstdio>
#include <string>

#include "platform/path_text.h"
#include "plugin_entry.h"

inline std::FILE* drawing = nullptr;

inline bool openDrawing(const std::u16string& path) {
  if (drawing != nullptr) {
    std::fclose(drawing);
  }
  drawing = std::fopen(pathToBytes(path).c_str(), "wb");
  return drawing != nullptr && std::fputs("begin\n", drawing) >= 0;
}

inline bool closeDrawing() {
  if (drawing == nullptr) {
    return false;
  }
  std::FILE* const file = drawing;
  drawing = nullptr;
  const bool isWritten = std::fputs("end\n", file) >= 0;
  return std::fclose(file) == 0 && isWritten;
}

// Registers `given`, with these slots where it has none.
inline void registerDrawing(KtTraverser& traverser, KtCallbacks given) {
  given.openFile = given.openFile == nullptr ? openDrawing : given.openFile;
  given.closeFile = given.closeFile == nullptr ? closeDrawing : given.closeFile;
  registerCallbacks(traverser, given);
}
