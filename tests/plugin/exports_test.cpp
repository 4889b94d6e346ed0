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

// The names of the defined dynamic symbols as the linker has them; "address T name" a line.
std::multiset<std::string> exportedNames() {
  const std::string listing = outputOf("'" DXF2D_NM "' -D --defined-only '" DXF2D_MODULE "'");
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

}  // namespace

// Hosts look callbacks up by these names, so a changed argument or namespace breaks them.
TEST(Exports, AreTheEntryAndThirteenCallbacksByTheirMangledNames) {
  const std::multiset<std::string> expected = {
      "InitializeTraverser",
      "_Z11DXF2dMatrixPKd",
      "_Z13DXF2dMaterialPKdS0_S0_S0_S0_S0_",
      "_Z13DXF2dOpenNodeP18KtGraphicAttribute",
      "_Z14DXF2dCloseNodev",
      "_Z16DXF2dOpenLODNodeRKSt6vectorIdSaIdEEd",
      "_Z17DXF2dCloseLODNodev",
      "_Z17DXF2dFaceGeometryRKSt6vectorIdSaIdEERKS_IiSaIiEES3_S7_S3_S7_bbbbPK7Texture",
      "_Z17DXF2dLineGeometryRKSt6vectorIdSaIdEERKS_IiSaIiEE",
      "_Z18DXF2DReuseCallbackP18KtGraphicAttribute",
      "_Z20DXF2dSpecialGeometryP10KtGeometryb",
      "_Z21DXF2dOpenFileForModelRKNSt7__cxx1112basic_stringIDsSt11char_traitsIDsESaIDsEEE",
      "_Z22DXF2dCloseFileForModelv",
      "_Z9DXF2dBBoxPKdS0_d"};
  EXPECT_EQ(exportedNames(), expected);
}
