#include "app/batch/output_names.h"

#include <filesystem>
#include <map>
#include <set>

#include "app/cli/file_path.h"
#include "app/cli/translation.h"

namespace dxf2d::batch {

namespace {

namespace fs = std::filesystem;

std::string stemOf(const Input& input) {
  return (filePath(input.folder) / filePath(input.path).stem()).string();
}

std::string nameOf(const Input& input) {
  return (filePath(input.folder) / filePath(input.path).filename()).string();
}

// `name`, numbered where it is taken.
std::string freeName(const std::string& name, const std::set<std::string>& taken) {
  std::string numbered = name;
  for (int number = 2; taken.contains(numbered); ++number) {
    numbered = name + "-" + std::to_string(number);
  }
  return numbered;
}

// "a.stl, a.off".
std::string listed(const std::vector<std::size_t>& numbers, const std::vector<Input>& inputs) {
  std::string list;
  for (const std::size_t number : numbers) {
    list += (list.empty() ? "" : ", ") + inputs[number].path;
  }
  return list;
}

}  // namespace

OutputStems outputStems(const std::vector<Input>& inputs) {
  std::map<std::string, std::vector<std::size_t>> inputsOf;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    inputsOf[stemOf(inputs[i])].push_back(i);
  }
  OutputStems outputs;
  outputs.stems.resize(inputs.size());
  std::set<std::string> taken;
  for (const auto& [stem, numbers] : inputsOf) {
    if (numbers.size() == 1) {
      outputs.stems[numbers.front()] = stem;
      taken.insert(stem);
    }
  }
  for (const auto& [stem, numbers] : inputsOf) {
    if (numbers.size() == 1) {
      continue;
    }
    for (const std::size_t number : numbers) {
      outputs.stems[number] = freeName(nameOf(inputs[number]), taken);
      taken.insert(outputs.stems[number]);
    }
    outputs.clashes.push_back(
        tr("'%1' would be the drawing of each of %2; each keeps its end in its drawing's name",
           {stem, listed(numbers, inputs)}));
  }
  return outputs;
}

}  // namespace dxf2d::batch
