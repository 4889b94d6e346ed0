#include "app/export/drawing_names.h"

#include <gtest/gtest.h>

#include "app/cli/failure.h"

namespace dxf2d {

namespace {

using Names = std::vector<std::string>;

Names drawingsOf(const std::vector<ExportJob>& jobs) {
  Names names;
  for (const ExportJob& job : jobs) {
    names.push_back(job.drawing);
  }
  return names;
}

std::vector<CutPlane> cutsAt(const std::vector<std::string>& heights) {
  std::vector<CutPlane> cuts;
  for (const std::string& height : heights) {
    CutPlane cut{};
    cut.text = height;
    cuts.push_back(cut);
  }
  return cuts;
}

TEST(JobsIntoFile, ASingleModelIsDrawnToTheOutput) {
  EXPECT_EQ(drawingsOf(jobsIntoFile("a.obj", "plan.dxf")), Names{"plan.dxf"});
  EXPECT_EQ(drawingsOf(jobsIntoFile("a.obj", "-")), Names{"-"});
}

TEST(JobsIntoFile, SeveralCutsAreNamedByTheirHeights) {
  EXPECT_EQ(drawingsOf(jobsIntoFile("a.obj", "plan-%h.dxf", cutsAt({"1", "2.5"}))),
            (Names{"plan-1.dxf", "plan-2.5.dxf"}));
  EXPECT_THROW(jobsIntoFile("a.obj", "plan.dxf", cutsAt({"1", "2"})), UsageError);
  EXPECT_THROW(jobsIntoFile("a.obj", "plan-%h.dxf", cutsAt({"1", "1"})), UsageError);
  EXPECT_THROW(jobsIntoFile("a.obj", "-", cutsAt({"1", "2"})), UsageError);
}

TEST(JobsIntoDirectory, DrawingsHaveTheNamesOfTheirModels) {
  EXPECT_EQ(drawingsOf(jobsIntoDirectory({{"in/a.obj", ""}, {"b.v2.stl", ""}}, "out").jobs),
            (Names{"out/a.dxf", "out/b.v2.dxf"}));
  EXPECT_EQ(drawingsOf(jobsIntoDirectory({{"a.obj", ""}}, "out/", {}, ".svg").jobs),
            Names{"out/a.svg"});
}

TEST(JobsIntoDirectory, JobsKeepTheirModelsInOrder) {
  const std::vector<ExportJob> jobs = jobsIntoDirectory({{"z.obj", ""}, {"a.obj", ""}}, "out").jobs;
  ASSERT_EQ(jobs.size(), 2U);
  EXPECT_EQ(jobs[0].model, "z.obj");
  EXPECT_EQ(jobs[1].model, "a.obj");
}

TEST(JobsIntoDirectory, FoldersOfModelsAreThoseOfTheirDrawings) {
  EXPECT_EQ(drawingsOf(jobsIntoDirectory({{"in/x/a.obj", "x"}}, "out").jobs), Names{"out/x/a.dxf"});
}

TEST(JobsIntoDirectory, ModelsOfOneNameKeepTheirEnds) {
  const ExportJobs jobs =
      jobsIntoDirectory({{"Wuson.stl", ""}, {"Wuson.off", ""}, {"b.obj", ""}}, "out");
  EXPECT_EQ(drawingsOf(jobs.jobs), (Names{"out/Wuson.stl.dxf", "out/Wuson.off.dxf", "out/b.dxf"}));
  EXPECT_EQ(jobs.clashes.size(), 1U);
}

TEST(JobsIntoDirectory, CutsStandAfterTheName) {
  EXPECT_EQ(drawingsOf(jobsIntoDirectory({{"a.obj", ""}}, "out/", cutsAt({"1", "2"})).jobs),
            (Names{"out/a-1.dxf", "out/a-2.dxf"}));
}

TEST(IsForDirectory, SeveralModelsAListOrASlash) {
  ExportOptions options;
  options.models = {"a.obj"};
  options.output = "plan.dxf";
  EXPECT_FALSE(isForDirectory(options));
  options.output = "plans/";
  EXPECT_TRUE(isForDirectory(options));
  options.output = "plans";
  options.models = {"a.obj", "b.obj"};
  EXPECT_TRUE(isForDirectory(options));
  options.models = {"."};
  EXPECT_TRUE(isForDirectory(options));
  options.models.clear();
  options.batch.lists = {"list"};
  EXPECT_TRUE(isForDirectory(options));
}

}  // namespace

}  // namespace dxf2d
