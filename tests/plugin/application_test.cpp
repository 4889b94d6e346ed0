// The objects that exist from the module's load on.
#include "plugin/application.h"

#include <gtest/gtest.h>

#include "session/export_session.h"

namespace dxf2d {

TEST(LoadedModule, HasAnEmptySession) {
  const ExportSession& session = exportSession();
  EXPECT_EQ(session.currentNode, nullptr);
  EXPECT_EQ(session.writer, nullptr);
  EXPECT_TRUE(session.insertList.empty());
  EXPECT_TRUE(session.reuseMap.empty());
}

TEST(LoadedModule, HasAnApplicationWithoutAName) { EXPECT_EQ(application.m_strAppName, CString()); }

TEST(LoadedModule, ApplicationInitializesItsInstance) {
  CWinApp& base = application;
  EXPECT_TRUE(base.InitInstance());
}

}  // namespace dxf2d
