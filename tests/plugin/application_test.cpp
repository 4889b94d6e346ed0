// What stands from the module's load on.
#include <gtest/gtest.h>

#include "session/export_session.h"

TEST(LoadedModule, HasAnEmptySession) {
  const ExportSession& session = exportSession();
  EXPECT_EQ(session.currentNode, nullptr);
  EXPECT_EQ(session.writer, nullptr);
  EXPECT_TRUE(session.insertList.empty());
  EXPECT_TRUE(session.reuseMap.empty());
}
