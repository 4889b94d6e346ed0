// Descriptions of importer programs.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "app/cli/failure.h"
#include "app/importer/importer.h"

namespace dxf2d {
namespace {

constexpr const char* kValid = R"({"name": "grids", "version": "2.1",
  "formats": [{"name": "Grid", "extensions": [".ASC", ".grd"], "magic": "ncols"}],
  "command": ["./read", "--fast", "{in}", "{out}"]})";

class ImporterDescription : public testing::Test {
 protected:
  static std::string Write(const std::string& name, const std::string& text) {
    const std::string path = testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  static std::string ProblemOf(const std::string& text) {
    try {
      static_cast<void>(readImporter(Write("wrong.json", text)));
    } catch (const UsageError& error) {
      return error.Text().problem;
    }
    return "none";
  }
};

TEST_F(ImporterDescription, SaysWhatIsReadAndHowToCallIt) {
  const Importer importer = readImporter(Write("grids.json", kValid));
  EXPECT_EQ(importer.name, "grids");
  EXPECT_EQ(importer.version, "2.1");
  ASSERT_EQ(importer.formats.size(), 1U);
  EXPECT_EQ(importer.formats[0].extensions, (std::vector<std::string>{".asc", ".grd"}));
  EXPECT_EQ(importer.formats[0].magic, "ncols");
  EXPECT_EQ(importer.command.front(), importer.directory + "/read");
  EXPECT_EQ(importer.command.back(), "{out}");
}

TEST_F(ImporterDescription, OptionsStandBeforeTheModel) {
  const Importer importer = readImporter(
      Write("options.json",
            R"({"name": "a", "version": "1", "formats": [{"name": "F", "extensions": [".f"]}],
          "options": {"tolerance": ["--step={value}", "--most", "{value}"], "spaces": ["-s"]},
          "command": ["read", "{out}", "{in}", "end"]})"));
  using Words = std::vector<std::string>;
  EXPECT_EQ(commandFor(importer, {}, "m.f", "r"), (Words{"read", "r", "m.f", "end"}));
  EXPECT_EQ(commandFor(importer, {{"tolerance", "0.5"}, {"other", "1"}}, "m.f", "r"),
            (Words{"read", "r", "--step=0.5", "--most", "0.5", "m.f", "end"}));
  EXPECT_EQ(commandFor(importer, {{"spaces", ""}}, "m.f", "r"),
            (Words{"read", "r", "-s", "m.f", "end"}));
}

TEST_F(ImporterDescription, FaultsAreNamed) {
  EXPECT_EQ(ProblemOf("nothing"), "is not the description of an importer: it is not a JSON object");
  EXPECT_EQ(ProblemOf("{}"), "is not the description of an importer: 'name' is not a text");
  EXPECT_EQ(ProblemOf(R"({"name": "a", "version": "1", "command": [7]})"),
            "is not the description of an importer: 'command' is not a list of texts");
  EXPECT_EQ(ProblemOf(R"({"name": "a", "version": "1", "command": ["a"], "formats": []})"),
            "is not the description of an importer: 'formats' is not a list of formats");
  EXPECT_EQ(
      ProblemOf(R"({"name": "a", "version": "1", "command": ["a"],
                          "formats": [{"name": "F", "extensions": ["obj"]}]})"),
      "is not the description of an importer: 'obj' in 'extensions' does not begin with a dot");
}

TEST_F(ImporterDescription, AFormatIsKnownByTheEndOfTheNameOrByItsFirstBytes) {
  const std::vector<Importer> importers = {readImporter(Write("grids.json", kValid))};
  EXPECT_EQ(importerByName(importers, "a/hill.Asc"), importers.data());
  EXPECT_EQ(importerByName(importers, "a/hill.asc.obj"), nullptr);
  EXPECT_EQ(importerByMagic(importers, Write("hill.txt", "ncols 5\n")), importers.data());
  EXPECT_EQ(importerByMagic(importers, Write("hill.txt", "nrows 5\n")), nullptr);
  EXPECT_EQ(importerByMagic(importers, "/no/such/file"), nullptr);
}

TEST_F(ImporterDescription, OfTwoWithOneNameTheFirstStays) {
  const std::string first = Write("first.json", kValid);
  std::string other = kValid;
  other.replace(other.find("2.1"), 3, "9.9");
  const std::vector<Importer> importers = findImporters({first, Write("second.json", other)});
  ASSERT_FALSE(importers.empty());
  EXPECT_EQ(importers.front().version, "2.1");
  EXPECT_EQ(std::ranges::count(importers, "grids", &Importer::name), 1);
}

}  // namespace
}  // namespace dxf2d
