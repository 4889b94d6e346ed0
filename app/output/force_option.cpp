#include "app/output/output_file.h"

namespace dxf2d {

Option forceOption(Existing& existing) {
  const auto replace = [&existing](const std::string&) {
    existing = Existing::kReplace;
    return true;
  };
  return {"-f,--force", "", "Replace an existing file", "", replace};
}

}  // namespace dxf2d
