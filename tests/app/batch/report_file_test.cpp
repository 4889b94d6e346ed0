#include "app/batch/report_file.h"

#include <gtest/gtest.h>

#include "app/cli/failure.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d::batch {

namespace {

Record recordOf(const std::string& input) {
  Record record;
  record.input = input;
  return record;
}

TEST(ReportFile, IsValidAfterEachRecord) {
  for (const char* const name : {"night.jsonl", "night.csv"}) {
    const ScratchDirectory directory;
    ReportFile report(directory / name);
    EXPECT_TRUE(readReport(directory / name).empty());
    report.Add(recordOf("a.obj"));
    EXPECT_EQ(readReport(directory / name).size(), 1U);
    report.Add(recordOf("b.obj"));
    EXPECT_EQ(readReport(directory / name).size(), 2U);
  }
}

TEST(ReportFile, GoesOnWithoutAnUnfinishedLine) {
  for (const char* const name : {"night.jsonl", "night.csv"}) {
    const ScratchDirectory directory;
    { ReportFile(directory / name).Add(recordOf("a.obj")); }
    const std::string whole = ScratchDirectory::ContentOf(directory / name);
    ScratchDirectory::Fill(directory / name, whole + "{\"input\":\"b");
    { ReportFile(directory / name).Add(recordOf("c.obj")); }
    const std::vector<Record> records = readReport(directory / name);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[1].input, "c.obj");
  }
}

TEST(ReportFile, OtherFilesAreKept) {
  const ScratchDirectory directory;
  ScratchDirectory::Fill(directory / "data.csv", "a,b\n1,2\n");
  EXPECT_THROW(ReportFile(directory / "data.csv"), UsageError);
  EXPECT_THROW(readReport(directory / "data.csv"), UsageError);
  EXPECT_EQ(ScratchDirectory::ContentOf(directory / "data.csv"), "a,b\n1,2\n");
}

TEST(ReportFile, NeedsAKnownEnd) {
  const ScratchDirectory directory;
  EXPECT_THROW(ReportFile(directory / "night.txt"), UsageError);
  EXPECT_EQ(directory.FileCount(), 0U);
}

TEST(ReportFile, IsWrittenByOneRunAtATime) {
  const ScratchDirectory directory;
  const ReportFile first(directory / "night.jsonl");
  EXPECT_THROW(ReportFile(directory / "night.jsonl"), Failure);
}

TEST(ReadReport, AMissingReportIsUnreadableInput) {
  const ScratchDirectory directory;
  try {
    readReport(directory / "none.jsonl");
    FAIL() << "it was read";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitInput);
  }
}

}  // namespace

}  // namespace dxf2d::batch
