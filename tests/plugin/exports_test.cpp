// The module's table of exports, as the linker left it.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/plugin/exported_names.h"

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
  EXPECT_EQ(exportedNames(DXF2D_MODULE), expected);
}
