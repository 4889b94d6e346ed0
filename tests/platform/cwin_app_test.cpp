#include "platform/cwin_app.h"

#include <gtest/gtest.h>

TEST(CWinApp, KeepsItsName) { EXPECT_EQ(CWinApp(u"Plan").m_strAppName, CString(u"Plan")); }

TEST(CWinApp, MayHaveNoName) { EXPECT_TRUE(CWinApp().m_strAppName.IsEmpty()); }

TEST(CWinApp, InitInstanceSucceeds) { EXPECT_TRUE(CWinApp(u"Plan").InitInstance()); }
