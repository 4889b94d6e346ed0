// What importers state in asset.extras.
#include "app/model/imported_model.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "app/model/model_error.h"

namespace dxf2d {
namespace {

std::string littleEndian(std::uint32_t number) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) {
    bytes += static_cast<char>(number >> 8 * i & 0xff);
  }
  return bytes;
}

// A binary glTF with this document and no arrays.
std::string glbOf(const std::string& document) {
  const auto length = static_cast<std::uint32_t>(document.size());
  return "glTF" + littleEndian(2) + littleEndian(20 + length) + littleEndian(length) + "JSON" +
         document;
}

std::string glbWith(const std::string& extras) {
  return glbOf(R"({"nodes": [{"asset": {"extras": {"unit": "ft"}}}], "asset": {"extras": )" +
               extras + "}}");
}

ImporterStatement statementIn(const std::string& extras) {
  return importerStatement(glbWith(extras), "part.x", "import-x");
}

std::string problemIn(const std::string& glb) {
  try {
    static_cast<void>(importerStatement(glb, "part.x", "import-x"));
  } catch (const ModelError& error) {
    return error.Text().problem;
  }
  return "none";
}

TEST(ImporterStatement, WithoutExtrasIsThatOfGltf) {
  const ImporterStatement statement =
      importerStatement(glbOf(R"({"asset": {"version": "2.0"}})"), "part.x", "import-x");
  EXPECT_EQ(statement.unit, kMeter);
  EXPECT_EQ(statement.up, UpAxis::kAuto);
  EXPECT_EQ(statement.origin, (std::array<double, 3>{}));
  EXPECT_FALSE(statement.hasTrueEdges);
  EXPECT_TRUE(statement.notes.empty());
}

TEST(ImporterStatement, HoldsWhatTheExtrasSay) {
  const ImporterStatement statement = statementIn(
      R"({"unit": "in", "up": "z", "origin": [500000.25, -2, 1e3], "edges": true,
          "notes": ["2 faces left out", 7]})");
  EXPECT_EQ(statement.unit, kInch);
  EXPECT_EQ(statement.up, UpAxis::kZ);
  EXPECT_EQ(statement.origin, (std::array<double, 3>{500000.25, -2.0, 1000.0}));
  EXPECT_TRUE(statement.hasTrueEdges);
  EXPECT_EQ(statement.notes, std::vector<std::string>{"2 faces left out"});
}

TEST(ImporterStatement, WhatCannotBeIsTheImportersFault) {
  EXPECT_EQ(problemIn(glbWith(R"({"unit": "furlong"})")),
            "cannot be read: import-x states a unit that is none of mm, cm, m, in and ft");
  EXPECT_EQ(problemIn(glbWith(R"({"up": "x"})")),
            "cannot be read: import-x states an up axis that is neither y nor z");
  EXPECT_EQ(problemIn(glbWith(R"({"origin": [1, 2]})")),
            "cannot be read: import-x states an origin that is not three numbers");
  EXPECT_EQ(problemIn(glbWith(R"({"origin": [1, 2, "3"]})")),
            "cannot be read: import-x states an origin that is not three numbers");
}

TEST(ImporterStatement, WhatIsNoBinaryGltfIsRefused) {
  constexpr const char* kProblem = "cannot be read: import-x did not write a binary glTF file";
  EXPECT_EQ(problemIn(""), kProblem);
  EXPECT_EQ(problemIn("solid part"), kProblem);
  // The first chunk ends beyond the file.
  std::string glb = glbOf("{}");
  glb.pop_back();
  EXPECT_EQ(problemIn(glb), kProblem);
}

}  // namespace
}  // namespace dxf2d
