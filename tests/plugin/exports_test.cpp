// The module's dynamic symbol table, as the linker left it.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <set>
#include <string>

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

// The names of the defined dynamic symbols, without arguments; "address T name(arguments)" a line.
std::multiset<std::string> exportedNames() {
  const std::string listing = outputOf("'" DXF2D_NM "' -D --defined-only -C '" DXF2D_MODULE "'");
  std::multiset<std::string> names;
  for (std::size_t begin = 0; begin < listing.size();) {
    const std::size_t end = listing.find('\n', begin);
    const std::string line = listing.substr(begin, end - begin);
    const std::size_t name = line.find(" T ");
    names.insert(name == std::string::npos ? line
                                           : line.substr(name + 3, line.find('(') - name - 3));
    begin = end + 1;
  }
  return names;
}

}  // namespace

TEST(Exports, AreTheEntryAndThirteenCallbacks) {
  const std::multiset<std::string> expected = {
      "InitializeTraverser", "DXF2dOpenFileForModel", "DXF2dCloseFileForModel",
      "DXF2dOpenNode",       "DXF2dCloseNode",        "DXF2DReuseCallback",
      "DXF2dOpenLODNode",    "DXF2dCloseLODNode",     "DXF2dBBox",
      "DXF2dMaterial",       "DXF2dMatrix",           "DXF2dFaceGeometry",
      "DXF2dLineGeometry",   "DXF2dSpecialGeometry"};
  EXPECT_EQ(exportedNames(), expected);
  EXPECT_EQ(exportedNames().size(), 14U);
}
