// Names for the outputs of many inputs.
#pragma once

#include <string>
#include <vector>

#include "app/batch/batch_input.h"

namespace dxf2d::batch {

struct OutputStems {
  // Of each input, the output's path below the directory for outputs, without an end.
  std::vector<std::string> stems;
  // One sentence for each name that several inputs would have had.
  std::vector<std::string> clashes;
};

// An output has the name of its input without its end. Where several in one folder would have one
// name, each keeps its end ("Wuson.stl", "Wuson.off"); those that are still the same are numbered.
OutputStems outputStems(const std::vector<Input>& inputs);

}  // namespace dxf2d::batch
