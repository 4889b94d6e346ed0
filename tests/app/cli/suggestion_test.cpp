#include "app/cli/suggestion.h"

#include <gtest/gtest.h>

namespace dxf2d {

namespace {

const std::vector<std::string> kNames{"export", "finish", "preview", "report", "--hidden", "A4"};

TEST(NearestOf, FindsWhatFewLettersMakeOfAWord) {
  EXPECT_EQ(nearestOf("exprt", kNames), "export");
  EXPECT_EQ(nearestOf("exprot", kNames), "export");
  EXPECT_EQ(nearestOf("EXPORTS", kNames), "export");
  EXPECT_EQ(nearestOf("--hiden", kNames), "--hidden");
  EXPECT_EQ(nearestOf("fin", kNames), "finish");
  EXPECT_EQ(nearestOf("a44", kNames), "A4");
}

TEST(NearestOf, FindsNothingWhereNothingIsNearOrTwoAre) {
  EXPECT_EQ(nearestOf("paint", kNames), std::nullopt);
  EXPECT_EQ(nearestOf("", kNames), std::nullopt);
  EXPECT_EQ(nearestOf("x", {}), std::nullopt);
  EXPECT_EQ(nearestOf("rexport", {"export", "report"}), std::nullopt);
  EXPECT_EQ(nearestOf("cat", {"bat", "hat"}), std::nullopt);
  EXPECT_EQ(nearestOf(std::string(1000, 'e'), kNames), std::nullopt);
}

TEST(DidYouMean, AsksBeforeItSaysWhereToLook) {
  EXPECT_EQ(didYouMean("exprt", kNames, "see x"), "did you mean export? If not, see x");
  EXPECT_EQ(didYouMean("paint", kNames, "see x"), "see x");
}

}  // namespace

}  // namespace dxf2d
