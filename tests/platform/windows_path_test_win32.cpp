#include <gtest/gtest.h>

#include <string>

#include "platform/windows_path.h"

namespace dxf2d {
namespace {

const std::u16string kLong(300, u'a');
const std::wstring kWideLong(300, L'a');

TEST(WindowsPath, ShortPathsStayAsTheyAre) {
  for (const char* path : {"", "a.dxf", "C:\\a.dxf", "..\\a", "C:/a/b.dxf", "NUL"}) {
    const std::string text(path);
    EXPECT_EQ(windowsPath(text), std::wstring(text.begin(), text.end()));
  }
}

TEST(WindowsPath, LongPathsAreCompleteAndMarked) {
  EXPECT_EQ(windowsPath(u"C:/plans/../" + kLong), LR"(\\?\C:\)" + kWideLong);
  EXPECT_TRUE(windowsPath(kLong).starts_with(LR"(\\?\)"));
  EXPECT_TRUE(windowsPath(kLong).ends_with(L"\\" + kWideLong));
}

TEST(WindowsPath, LongPathsOfServersAreMarkedAsSuch) {
  EXPECT_EQ(windowsPath(uR"(\\server\share\)" + kLong), LR"(\\?\UNC\server\share\)" + kWideLong);
}

TEST(WindowsPath, MarkedPathsAndDevicesStayAsTheyAre) {
  EXPECT_EQ(windowsPath(uR"(\\?\C:\)" + kLong), LR"(\\?\C:\)" + kWideLong);
  EXPECT_EQ(windowsPath(uR"(\\.\pipe\)" + kLong), LR"(\\.\pipe\)" + kWideLong);
}

}  // namespace
}  // namespace dxf2d
