// The inputs of a command that takes many.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/cli/failure.h"

namespace dxf2d::batch {

struct Input {
  std::string path;
  // Where the output is to stand below the directory for outputs: that of the input below the
  // folder that was given, such as "ground/left"; empty for inputs that were given themselves.
  std::string folder;

  friend bool operator==(const Input&, const Input&) = default;
};

struct InputRequest {
  // Files and folders.
  std::vector<std::string> paths{};
  // Files that list more of both; "-" is standard input.
  std::vector<std::string> lists{};
  // Whether the folders in folders are looked through, too.
  bool isRecursive = false;
  // Where outputs go: nothing below it is an input. Empty for none.
  std::string outputs{};
};

struct Inputs {
  std::vector<Input> inputs;
  // What could not be looked through.
  std::vector<Message> problems;
};

// The paths in the text of a list: one a line or, where it holds a null character, one before each.
std::vector<std::string> pathsInList(const std::string& text);

// The inputs of a request, in its order and those of a folder in the order of their names; none
// twice. Of the files in folders, those that `isInput` accepts; neither hidden files and folders
// nor links to folders. Throws UsageError for a list that cannot be read.
Inputs collectInputs(const InputRequest& request,
                     const std::function<bool(const std::string&)>& isInput);

}  // namespace dxf2d::batch
