#include "app/batch/record.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace dxf2d::batch {

namespace {

Record sample() {
  return {"in/a \"b\", c.obj",
          "out/a.dxf",
          "--view front",
          Outcome::kFailed,
          3,
          "in/a: malformed,\nreally; repair it",
          0.25,
          std::uint64_t{5} << 20,
          R"({"sha256": "00ff", "unit": "m", "polylines": 12, "extents": [0, 0, 1.5, 2]})"};
}

constexpr RecordFormat kFormats[] = {RecordFormat::kJsonLines, RecordFormat::kCsv};

TEST(Record, IsOneLineInEveryFormat) {
  for (const RecordFormat format : kFormats) {
    const std::string line = lineOf(sample(), format);
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
  }
}

TEST(Record, ReadsBackAsItWasWritten) {
  for (const RecordFormat format : kFormats) {
    const auto records =
        recordsOf(headOf(format) + lineOf(sample(), format) + lineOf({}, format), format);
    ASSERT_TRUE(records);
    ASSERT_EQ(records->size(), 2U);
    const Record& record = records->front();
    EXPECT_EQ(record.input, sample().input);
    EXPECT_EQ(record.options, "--view front");
    EXPECT_EQ(record.outcome, Outcome::kFailed);
    EXPECT_EQ(record.exitCode, 3);
    EXPECT_EQ(record.seconds, 0.25);
    EXPECT_EQ(record.peakMemory, std::uint64_t{5} << 20);
    EXPECT_EQ(nlohmann::json::parse(record.facts), nlohmann::json::parse(sample().facts));
  }
}

TEST(Record, TheJsonHasTheFactsBesideTheRest) {
  const auto json = nlohmann::json::parse(lineOf(sample(), RecordFormat::kJsonLines));
  EXPECT_EQ(json["outcome"], "failed");
  EXPECT_EQ(json["sha256"], "00ff");
  EXPECT_EQ(json["extents"], nlohmann::json::parse("[0, 0, 1.5, 2]"));
}

TEST(Record, UnknownFactsAreLeftOut) {
  Record record = sample();
  record.facts = R"({"surprise": 1, "unit": "m"})";
  const auto json = nlohmann::json::parse(lineOf(record, RecordFormat::kJsonLines));
  EXPECT_FALSE(json.contains("surprise"));
  EXPECT_EQ(json["unit"], "m");
}

TEST(Record, BytesThatAreNotUtf8AreReplaced) {
  Record record = sample();
  record.input = "a\xFF.obj";
  EXPECT_NE(lineOf(record, RecordFormat::kJsonLines).find("a\xEF\xBF\xBD.obj"), std::string::npos);
  EXPECT_NE(lineOf(record, RecordFormat::kCsv).find("a\xEF\xBF\xBD.obj"), std::string::npos);
}

TEST(Records, AnUnfinishedLastLineIsPassedOver) {
  for (const RecordFormat format : kFormats) {
    const std::string line = lineOf(sample(), format);
    const auto records = recordsOf(headOf(format) + line + line.substr(0, line.size() / 2), format);
    ASSERT_TRUE(records);
    EXPECT_EQ(records->size(), 1U);
  }
}

TEST(Records, OtherTextsAreNone) {
  EXPECT_FALSE(recordsOf("hello\n", RecordFormat::kJsonLines));
  EXPECT_FALSE(recordsOf("{\"a\": 1}\n", RecordFormat::kJsonLines));
  EXPECT_FALSE(recordsOf("a,b\n1,2\n", RecordFormat::kCsv));
}

TEST(RecordFormat, IsTheEndOfTheName) {
  EXPECT_EQ(recordFormat("night.jsonl"), RecordFormat::kJsonLines);
  EXPECT_EQ(recordFormat("night.CSV"), RecordFormat::kCsv);
  EXPECT_FALSE(recordFormat("night.txt"));
}

}  // namespace

}  // namespace dxf2d::batch
