// Finds what is wrong with one set of faces or lines.
#pragma once

#include <string>
#include <vector>

namespace dxf2d {

struct SetFault {
  bool isError;
  std::string problem;
  std::string remedy;
};

// Lists what of a set is not drawn, each kind of fault once.
std::vector<SetFault> faultsOfSet(const std::vector<double>& coords,
                                  const std::vector<int>& indices);

}  // namespace dxf2d
