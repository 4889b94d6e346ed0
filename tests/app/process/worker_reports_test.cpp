#include "app/process/worker_reports.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "app/process/worker_protocol.h"

namespace dxf2d {

namespace {

std::string record(WorkerRecord kind, const std::string& text = "") {
  const auto length = static_cast<std::uint32_t>(text.size());
  std::string bytes(kRecordHeader, static_cast<char>(kind));
  std::memcpy(bytes.data() + 1, &length, sizeof length);
  return bytes + text;
}

TEST(WorkerReports, RecordsMayBeCutAnywhere) {
  const std::string bytes = record(WorkerRecord::kStarted) + record(WorkerRecord::kNote, "a note") +
                            record(WorkerRecord::kText, "one ") +
                            record(WorkerRecord::kMemoryRefused) +
                            record(WorkerRecord::kText, "two") + record(WorkerRecord::kReturned);
  WorkerReports reports;
  for (const char byte : bytes) {
    reports.Append({&byte, 1});
  }
  EXPECT_TRUE(reports.HasStarted());
  EXPECT_TRUE(reports.IsMemoryRefused());
  EXPECT_TRUE(reports.HasReturned());
  EXPECT_EQ(reports.Notes(), std::vector<std::string>{"a note"});
  EXPECT_EQ(reports.Text(), "one two");
  EXPECT_FALSE(reports.IsBroken());
}

TEST(WorkerReports, AnUnknownRecordEndsThem) {
  WorkerReports reports;
  reports.Append(record(static_cast<WorkerRecord>(77)) + record(WorkerRecord::kReturned));
  EXPECT_TRUE(reports.IsBroken());
  EXPECT_FALSE(reports.HasReturned());
}

TEST(WorkerReports, AWorkerThatReportsWithoutEndIsNotRemembered) {
  WorkerReports reports;
  std::string header = record(WorkerRecord::kText).substr(0, 1) + "\xff\xff\xff\xff";
  reports.Append(header);
  const std::string part(std::size_t{1} << 20, 'x');
  for (int i = 0; i < 300; ++i) {
    reports.Append(part);
  }
  EXPECT_TRUE(reports.IsBroken());
  EXPECT_EQ(reports.Text(), "");
}

TEST(WorkerReports, ANumberOfNotesIsEnough) {
  WorkerReports reports;
  for (int i = 0; i < 2000; ++i) {
    reports.Append(record(WorkerRecord::kNote, "again"));
  }
  EXPECT_TRUE(reports.IsBroken());
  EXPECT_LE(reports.Notes().size(), 1001U);
}

}  // namespace

}  // namespace dxf2d
