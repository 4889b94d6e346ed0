#include "app/inspect/module_exports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "app/host/plugin_module.h"

namespace dxf2d {

namespace {

using testing::Contains;
using testing::Not;

TEST(ExportedNames, AreTheLinkersInAlphabeticalOrder) {
  const std::vector<std::string> names = exportedNames(PLUGIN);
  EXPECT_EQ(names.size(), 14U);
  EXPECT_TRUE(std::ranges::is_sorted(names));
  EXPECT_THAT(names, Contains("InitializeTraverser"));
  EXPECT_THAT(names, Contains("_Z14DXF2dCloseNodev"));
}

TEST(ExportedNames, HoldNothingThatTheModuleTakesFromOthers) {
  EXPECT_THAT(exportedNames(PLUGIN), Not(Contains("malloc")));
}

TEST(ExportedNames, CutModuleIsRefusedOrRead) {
  std::ifstream module(PLUGIN, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(module), {});
  const std::string path = testing::TempDir() + "cut_module.so";
  for (const std::size_t size : {std::size_t{0}, std::size_t{4}, std::size_t{63}, std::size_t{64},
                                 bytes.size() / 2, bytes.size() - 1}) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(size));
    try {
      EXPECT_LE(exportedNames(path).size(), 14U) << size;
    } catch (const PluginError& error) {
      EXPECT_NE(std::string(error.what()).find("is not a plug-in"), std::string::npos) << size;
    }
  }
  std::filesystem::remove(path);
}

TEST(WrittenInCpp, DemanglesNamesOfCppAlone) {
  EXPECT_EQ(writtenInCpp("_Z14DXF2dCloseNodev"), "DXF2dCloseNode()");
  EXPECT_EQ(writtenInCpp("InitializeTraverser"), "InitializeTraverser");
  EXPECT_EQ(writtenInCpp("_Zx"), "_Zx");
}

}  // namespace

}  // namespace dxf2d
