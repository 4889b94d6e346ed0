#include "app/output/work_output.h"

namespace dxf2d {

std::string WorkOutput::AsUserNamesIt(std::string text) const {
  for (std::size_t at = 0; (at = text.find(path, at)) != std::string::npos; at += name.size()) {
    text.replace(at, path.size(), name);
  }
  return text;
}

std::vector<std::string> WorkOutput::Words() const {
  return {std::to_string(file), path, name, remedy};
}

WorkOutput WorkOutput::Of(std::span<const std::string> words) {
  return {std::stoi(words[0]), words[1], words[2], words[3]};
}

}  // namespace dxf2d
