#include "tests/plugin/exported_names.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace {

std::string outputOf(const std::string& command) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) {
    return output;
  }
  std::array<char, 4096> bytes;
  while (const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), pipe)) {
    output.append(bytes.data(), count);
  }
  EXPECT_EQ(pclose(pipe), 0) << command;
  return output;
}

}  // namespace

// nm writes "address T name" a line.
std::multiset<std::string> exportedNames(const std::string& path) {
  const std::string listing = outputOf("'" DXF2D_NM "' -D --defined-only '" + path + "'");
  std::multiset<std::string> names;
  for (std::size_t begin = 0; begin < listing.size();) {
    const std::size_t end = listing.find('\n', begin);
    const std::string line = listing.substr(begin, end - begin);
    const std::size_t name = line.find(" T ");
    names.insert(name == std::string::npos ? line : line.substr(name + 3));
    begin = end + 1;
  }
  return names;
}
