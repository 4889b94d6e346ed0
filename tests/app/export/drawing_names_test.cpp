#include "app/export/drawing_names.h"

#include <gtest/gtest.h>

#include "app/failure.h"

namespace {

std::vector<std::string> drawingsOf(const std::vector<std::string>& models,
                                    const std::string& output) {
  std::vector<std::string> names;
  for (const ExportJob& job : exportJobs(models, output)) names.push_back(job.drawing);
  return names;
}

using Names = std::vector<std::string>;

TEST(DrawingNames, ASingleModelIsDrawnToTheOutput) {
  EXPECT_EQ(drawingsOf({"a.obj"}, "plan.dxf"), Names{"plan.dxf"});
  EXPECT_EQ(drawingsOf({"a.obj"}, "-"), Names{"-"});
}

TEST(DrawingNames, ASlashAtTheEndMakesADirectoryOfIt) {
  EXPECT_EQ(drawingsOf({"in/a.obj"}, "out/"), Names{"out/a.dxf"});
}

TEST(DrawingNames, SeveralModelsAreDrawnIntoADirectory) {
  EXPECT_EQ(drawingsOf({"in/a.obj", "b.v2.stl", "c"}, "out"),
            (Names{"out/a.dxf", "out/b.v2.dxf", "out/c.dxf"}));
  EXPECT_EQ(drawingsOf({"a.obj", "b.stl"}, "out/"), (Names{"out/a.dxf", "out/b.dxf"}));
}

TEST(DrawingNames, JobsKeepTheirModelsInOrder) {
  const std::vector<ExportJob> jobs = exportJobs({"z.obj", "a.obj"}, "out");
  ASSERT_EQ(jobs.size(), 2U);
  EXPECT_EQ(jobs[0].model, "z.obj");
  EXPECT_EQ(jobs[1].model, "a.obj");
}

TEST(DrawingNames, TwoModelsOfOneNameAreRefused) {
  EXPECT_THROW(exportJobs({"x/a.obj", "y/a.stl"}, "out"), UsageError);
  EXPECT_THROW(exportJobs({"a.obj", "a.obj"}, "out"), UsageError);
}

TEST(DrawingNames, SeveralModelsDoNotGoToStandardOutput) {
  EXPECT_THROW(exportJobs({"a.obj", "b.obj"}, "-"), UsageError);
}

}  // namespace
