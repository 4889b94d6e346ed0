// The words of a command line.
#pragma once

#include <string>
#include <vector>

namespace dxf2d {

// The arguments of main, in UTF-8 on Windows, whose C library gives them in a code page that lacks
// most characters. Elsewhere they are what they are.
class ProgramArguments {
 public:
  ProgramArguments(int count, char** words);

  int Count() const { return static_cast<int>(words_.size()) - 1; }
  // Ends with a null pointer.
  char** Words() { return words_.data(); }

 private:
  std::vector<std::string> texts_;
  std::vector<char*> words_;
};

}  // namespace dxf2d
