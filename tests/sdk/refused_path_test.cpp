// A path that no file can have, given to the plug-in as a host gives it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "ktscene/kt_traverser.h"
#include "tests/support/error_boxes.h"

TEST(Walk, RefusesAPathWithAZeroCharacterInAnErrorBox) {
  void* module = dlopen(DXF2D_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr) << dlerror();
  using Entry = bool (*)(KtTraverser*, void*);
  const auto entry = reinterpret_cast<Entry>(dlsym(module, "InitializeTraverser"));
  KtTraverser traverser;
  ASSERT_TRUE(entry(&traverser, nullptr));

  const std::filesystem::path cut = std::filesystem::path(testing::TempDir()) / "cut.dxf";
  std::filesystem::remove(cut);
  const ErrorBoxes boxes;
  KtScene scene;
  EXPECT_FALSE(traverser.Walk(scene, cut.u16string() + std::u16string(u"\0.dxf", 5)));
  EXPECT_FALSE(std::filesystem::exists(cut));
  ASSERT_EQ(boxes.Shown().size(), 1U);
  EXPECT_TRUE(boxes.Shown()[0].text.ends_with(u"because its name has a zero character."));
}
