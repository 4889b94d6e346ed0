#include "app/inspect/windows_module.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "tests/app/inspect/windows_module_bytes.h"

namespace dxf2d {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr std::size_t kDirectories = WindowsModuleBytes::kHeader + 24 + 112;

TEST(WindowsExports, AreTheNamesInAlphabeticalOrder) {
  for (const bool is64Bit : {true, false}) {
    const WindowsModuleBytes module({"Walk", "InitializeTraverser", "_Z3addii"}, is64Bit);
    EXPECT_THAT(windowsExports(module.Bytes()),
                Optional(ElementsAre("InitializeTraverser", "Walk", "_Z3addii")));
  }
}

TEST(WindowsExports, ModuleWithoutATableHasNone) {
  WindowsModuleBytes module({"Walk"});
  module.Put32(kDirectories, 0);
  EXPECT_THAT(windowsExports(module.Bytes()), Optional(IsEmpty()));
  WindowsModuleBytes short_({"Walk"});
  short_.Put32(kDirectories - 4, 0);
  EXPECT_THAT(windowsExports(short_.Bytes()), Optional(IsEmpty()));
}

TEST(WindowsExports, ProgramsAndOtherFilesHaveNothing) {
  WindowsModuleBytes program({"Walk"});
  program.Put16(WindowsModuleBytes::kFlags, 0x0002);
  EXPECT_EQ(windowsExports(program.Bytes()), std::nullopt);
  WindowsModuleBytes unknown({"Walk"});
  unknown.Put16(WindowsModuleBytes::kHeader + 24, 0x107);
  EXPECT_EQ(windowsExports(unknown.Bytes()), std::nullopt);
  EXPECT_EQ(windowsExports(""), std::nullopt);
  EXPECT_EQ(windowsExports("MZ"), std::nullopt);
  EXPECT_EQ(windowsExports(std::string(1000, 'M')), std::nullopt);
}

TEST(WindowsExports, CutModuleHasNothing) {
  const std::string bytes = WindowsModuleBytes({"Walk", "InitializeTraverser"}).Bytes();
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_EQ(windowsExports(bytes.substr(0, size)), std::nullopt) << size;
  }
}

TEST(WindowsExports, TablesOutsideOfTheFileAreRefused) {
  for (const std::uint32_t count : {3U, 1000U, 0x10000U, 0xffffffffU}) {
    WindowsModuleBytes module({"Walk", "InitializeTraverser"});
    module.Put32(WindowsModuleBytes::kNameCount, count);
    EXPECT_EQ(windowsExports(module.Bytes()), std::nullopt) << count;
  }
  for (const std::uint32_t address : {0x10U, 0xfffU, 0x2000U, 0xffffffffU}) {
    WindowsModuleBytes module({"Walk"});
    module.Put32(kDirectories, address);
    EXPECT_EQ(windowsExports(module.Bytes()), std::nullopt) << address;
  }
}

TEST(WindowsExports, NameWithoutAnEndIsRefused) {
  const std::string bytes = WindowsModuleBytes({std::string(5000, 'a')}).Bytes();
  EXPECT_EQ(windowsExports(bytes), std::nullopt);
}

TEST(WindowsExports, AnyBytesAreSafe) {
  const std::string bytes = WindowsModuleBytes({"Walk", "InitializeTraverser", "Other"}).Bytes();
  std::mt19937 random(1);
  int readable = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string changed = bytes;
    for (int times = 0; times < 3; ++times) {
      changed[random() % changed.size()] = static_cast<char>(random());
    }
    if (const auto names = windowsExports(changed)) {
      ++readable;
      EXPECT_LE(names->size(), 0x10000U);
    }
  }
  // Neither all nor none.
  EXPECT_GT(readable, 1000);
  EXPECT_LT(readable, 19000);
}

}  // namespace

}  // namespace dxf2d
