// Reads one scene a line from standard input and says of each what the reader says: "valid", or why
// not.
#include <cstdio>
#include <iostream>
#include <string>

#include "ktscene/kt_scene_reader.h"

int main() {
  std::string line;
  while (std::getline(std::cin, line)) {
    try {
      static_cast<void>(ParseScene(line, "scene"));
      std::puts("valid");
    } catch (const KtSceneError& error) {
      std::puts(error.what());
    }
  }
  return 0;
}
