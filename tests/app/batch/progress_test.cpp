#include "app/batch/progress.h"

#include <gtest/gtest.h>

namespace dxf2d::batch {

namespace {

TEST(ProgressLine, OfSeveralInputsSaysHowManyHowFastAndHowLong) {
  EXPECT_EQ(progressLine({.total = 400, .done = 100, .seconds = 20.0}, 80),
            "[#####...............] 100/400, 5.0/s, 1:00 left");
}

TEST(ProgressLine, SaysNoRateBeforeTheFirstIsDone) {
  EXPECT_EQ(progressLine({.total = 4, .seconds = 1.0}, 80), "[....................] 0/4");
}

TEST(ProgressLine, NamesTheStageAndTheInput) {
  EXPECT_EQ(
      progressLine({.total = 4, .seconds = 1.0, .stage = "reading", .input = "house.ifc"}, 80),
      "[....................] 0/4, reading house.ifc");
}

TEST(ProgressLine, OfASingleInputIsItsStage) {
  EXPECT_EQ(
      progressLine({.total = 1, .seconds = 3.2, .stage = "reading", .input = "house.ifc"}, 80),
      "3 s, reading house.ifc");
}

TEST(ProgressLine, HoursAreTold) {
  EXPECT_EQ(progressLine({.total = 10'000, .done = 1, .seconds = 1.0}, 80),
            "[....................] 1/10000, 1.0/s, 2:46:39 left");
}

TEST(ProgressLine, FitsTheTerminal) {
  EXPECT_EQ(progressLine({.total = 4, .seconds = 1.0}, 8), "[.......");
  EXPECT_EQ(progressLine({.total = 1, .stage = "", .input = ""}, 0), "");
}

TEST(ProgressLine, IsCutBetweenLetters) {
  EXPECT_EQ(progressLine({.total = 1, .stage = "reading", .input = "\xC3\xA4\xC3\xB6\xC3\xBC"}, 15),
            "0 s, reading \xC3\xA4\xC3\xB6");
}

TEST(ProgressLine, HasNoControlCharacters) {
  const std::string line = progressLine({.total = 1, .stage = "reading", .input = "a\x1b[2Jb"}, 80);
  EXPECT_EQ(line.find('\x1b'), std::string::npos);
}

}  // namespace

}  // namespace dxf2d::batch
