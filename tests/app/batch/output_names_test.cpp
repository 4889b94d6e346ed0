#include "app/batch/output_names.h"

#include <gtest/gtest.h>

namespace dxf2d::batch {

namespace {

using Names = std::vector<std::string>;

TEST(OutputStems, AreTheNamesOfInputsWithoutTheirEnds) {
  const OutputStems outputs = outputStems({{"in/a.obj", ""}, {"b.v2.stl", ""}, {"c", ""}});
  EXPECT_EQ(outputs.stems, (Names{"a", "b.v2", "c"}));
  EXPECT_TRUE(outputs.clashes.empty());
}

TEST(OutputStems, FoldersAreMirrored) {
  EXPECT_EQ(outputStems({{"in/x/a.obj", "x"}, {"in/x/y/a.obj", "x/y"}, {"in/a.obj", ""}}).stems,
            (Names{"x/a", "x/y/a", "a"}));
}

TEST(OutputStems, InputsThatDifferInTheirEndsKeepThem) {
  const OutputStems outputs =
      outputStems({{"m/Wuson.stl", ""}, {"m/tree.obj", ""}, {"m/Wuson.off", ""}});
  EXPECT_EQ(outputs.stems, (Names{"Wuson.stl", "tree", "Wuson.off"}));
}

TEST(OutputStems, InputsOfOneNameAreNumbered) {
  EXPECT_EQ(outputStems({{"x/a.stl", ""}, {"y/a.stl", ""}, {"z/a.stl", ""}}).stems,
            (Names{"a.stl", "a.stl-2", "a.stl-3"}));
}

TEST(OutputStems, ANameThatAnotherInputHasIsNotGivenAway) {
  EXPECT_EQ(outputStems({{"a.stl.obj", ""}, {"a.stl", ""}, {"a.off", ""}}).stems,
            (Names{"a.stl", "a.stl-2", "a.off"}));
}

TEST(OutputStems, AllClashesAreListed) {
  const OutputStems outputs =
      outputStems({{"a.stl", ""}, {"b.stl", ""}, {"a.off", ""}, {"b.off", ""}, {"b.obj", ""}});
  ASSERT_EQ(outputs.clashes.size(), 2U);
  EXPECT_NE(outputs.clashes[0].find("a.stl, a.off"), std::string::npos) << outputs.clashes[0];
  EXPECT_NE(outputs.clashes[1].find("b.stl, b.off, b.obj"), std::string::npos)
      << outputs.clashes[1];
}

}  // namespace

}  // namespace dxf2d::batch
