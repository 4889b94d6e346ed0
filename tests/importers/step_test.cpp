// STEP and IGES by way of dxf2d-import-step.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {
namespace {

class StepImport : public Dxf2d {
 protected:
  // The assembly of make_assembly in a file of this name.
  std::string Assembly(const std::string& name, const std::string& pins = "") const {
    EXPECT_EQ(std::system(("'" MAKE_ASSEMBLY "' '" + Path(name) + "' " + pins).c_str()), 0);
    return Path(name);
  }
  int Export(const std::string& model, const std::string& options = "") {
    return Run("export " + model + " -f -o " + Path("out.dxf") + " " + options);
  }
  void ExpectSummary(const std::string& part) const {
    EXPECT_NE(out_.find(part), std::string::npos) << "no '" << part << "' in: " << out_;
  }
};

TEST_F(StepImport, PartsOfAnAssemblyAreInstancesInTheFilesOwnUnit) {
  ASSERT_EQ(Export(Assembly("fixture.step")), kExitDone) << error_;
  ExpectSummary("5 objects (3 instances shared)");
  ExpectSummary("x 0 to 10, y 0 to 6");
  ExpectSummary("unit in");
  ExpectSummary("; read by dxf2d-import-step");
}

TEST_F(StepImport, ThousandsOfPartsShareOneBlock) {
  ASSERT_EQ(Export(Assembly("fixture.step", "5000")), kExitDone) << error_;
  ExpectSummary("5001 objects (4999 instances shared), 2 parts");
}

TEST_F(StepImport, NamesAndColorsAreThoseOfTheFile) {
  ASSERT_EQ(Run("export --list --json " + Assembly("fixture.stp")), kExitDone) << error_;
  EXPECT_NE(out_.find("\"plate\""), std::string::npos) << out_;
  EXPECT_NE(out_.find("\"pin\""), std::string::npos) << out_;
  EXPECT_NE(out_.find("#ff0000"), std::string::npos) << out_;
  EXPECT_NE(out_.find("#0000ff"), std::string::npos) << out_;
}

TEST_F(StepImport, RoundFacesHaveNoFacetsAndNoSeams) {
  const std::string model = Assembly("fixture.step");
  // From the front two pairs of pins, one behind the other: a rectangle each.
  ASSERT_EQ(Export(model, "--view front --hidden remove --only pin --join on"), kExitDone)
      << error_;
  ExpectSummary("2 closed");
}

TEST_F(StepImport, TheToleranceIsThatOfCurvedFaces) {
  const std::string model = Assembly("fixture.step");
  const auto verticesAt = [&](const std::string& tolerance) {
    EXPECT_EQ(Export(model, "--only pin --tolerance " + tolerance), kExitDone) << error_;
    const std::size_t end = out_.find(" vertices");
    return std::stoi(out_.substr(out_.rfind(' ', end - 1) + 1));
  };
  EXPECT_GT(verticesAt("0.0001"), 2 * verticesAt("0.1"));
  EXPECT_EQ(Export(model, "--tolerance 0"), kExitUsage);
  ExpectOneSentence();
}

TEST_F(StepImport, EdgesStandInForCreases) {
  const std::string model = Assembly("fixture.step");
  ASSERT_EQ(Export(model, "--view iso --hidden remove --only plate --layers kind"), kExitDone);
  EXPECT_NE(Read(Path("out.dxf")).find("line"), std::string::npos);
  const auto verticesOf = [&] {
    const std::size_t end = out_.find(" vertices");
    return std::stoi(out_.substr(out_.rfind(' ', end - 1) + 1));
  };
  ASSERT_EQ(Export(model, "--view iso --hidden remove --only plate"), kExitDone);
  const int with = verticesOf();
  ASSERT_EQ(Export(model, "--view iso --hidden remove --only plate --creases off"), kExitDone);
  EXPECT_LT(verticesOf(), with);
}

TEST_F(StepImport, IgesIsReadInItsOwnUnit) {
  ASSERT_EQ(Export(Assembly("fixture.igs")), kExitDone) << error_;
  ExpectSummary("x 0 to 10, y 0 to 6");
  ExpectSummary("unit in");
}

TEST_F(StepImport, StepIsKnownByItsFirstLine) {
  const std::string model = Assembly("fixture.step");
  std::filesystem::rename(model, Path("fixture.txt"));
  EXPECT_EQ(Export(Path("fixture.txt")), kExitDone) << error_;
}

TEST_F(StepImport, WhatIsNotStepIsRefused) {
  EXPECT_EQ(Export(Write("wrong.step", "solid part")), kExitInput);
  ExpectOneSentence();
  EXPECT_NE(error_.find("wrong.step: cannot be read: it is neither STEP nor IGES"),
            std::string::npos)
      << error_;
  const std::string whole = Read(Assembly("fixture.step"));
  EXPECT_EQ(Export(Write("cut.step", whole.substr(0, whole.size() / 2))), kExitInput);
  ExpectOneSentence();
}

}  // namespace
}  // namespace dxf2d
