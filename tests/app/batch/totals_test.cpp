#include "app/batch/totals.h"

#include <gtest/gtest.h>

namespace dxf2d::batch {

namespace {

Record ended(const std::string& input, Outcome outcome, int code = 0, double seconds = 1.0) {
  Record record;
  record.input = input;
  record.outcome = outcome;
  record.exitCode = code;
  record.seconds = seconds;
  return record;
}

TEST(Totals, CountOutcomesAndExitCodes) {
  const Totals totals = totalsOf({ended("a", Outcome::kDrawn), ended("b", Outcome::kFailed, 3),
                                  ended("c", Outcome::kFailed, 7), ended("d", Outcome::kFailed, 3),
                                  ended("e", Outcome::kSkipped)});
  EXPECT_EQ(totals.inputs, 5U);
  EXPECT_EQ(totals.drawn, 1U);
  EXPECT_EQ(totals.skipped, 1U);
  EXPECT_EQ(totals.failed, (std::map<int, std::size_t>{{3, 2}, {7, 1}}));
}

TEST(Totals, TheLastRecordOfAnInputCounts) {
  const Totals totals = totalsOf({ended("a", Outcome::kFailed, 7), ended("a", Outcome::kDrawn),
                                  ended("a", Outcome::kSkipped)});
  EXPECT_EQ(totals.inputs, 1U);
  EXPECT_EQ(totals.drawn, 1U);
  EXPECT_TRUE(totals.failed.empty());
}

TEST(Totals, AddUpAndNameTheLargest) {
  Record large = ended("large.ifc", Outcome::kDrawn, 0, 4.5);
  large.peakMemory = std::uint64_t{300} << 20;
  large.facts = R"({"polylines": 10, "vertices": 40})";
  Record small = ended("small.ifc", Outcome::kDrawn, 0, 0.5);
  small.facts = R"({"polylines": 1, "vertices": 4})";
  EXPECT_EQ(textOf(totalsOf({large, small})),
            "2 inputs: 2 drawn, 0 skipped, 0 failed\n"
            "11 polylines, 44 vertices\n"
            "5.0 s in all, at most 4.5 s: large.ifc\n"
            "at most 300 MiB of memory: large.ifc\n");
}

TEST(Totals, ExitCodesAreExplained) {
  EXPECT_EQ(textOf(totalsOf({ended("a", Outcome::kFailed, 3, 0.0)})),
            "1 input: 0 drawn, 0 skipped, 1 failed\n"
            "exit code 3 (unreadable input): 1\n"
            "0 polylines, 0 vertices\n"
            "0.0 s in all\n");
}

}  // namespace

}  // namespace dxf2d::batch
