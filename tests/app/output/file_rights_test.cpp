#include "app/output/file_rights.h"

#include <gtest/gtest.h>

namespace dxf2d {

namespace {

TEST(NarrowedMode, StaysAsItIsWhereOwnerAndGroupDo) {
  for (mode_t mode = 0; mode <= 0777; ++mode) {
    EXPECT_EQ(narrowedMode(mode, true, true), mode);
  }
}

TEST(NarrowedMode, NeitherGroupNorOthersGainWhereTheGroupChanges) {
  EXPECT_EQ(narrowedMode(0640, true, false), 0600U);
  EXPECT_EQ(narrowedMode(0664, true, false), 0644U);
  EXPECT_EQ(narrowedMode(0606, true, false), 0600U);
}

TEST(NarrowedMode, TheFormerOwnerDoesNotGainWhereTheOwnerChanges) {
  EXPECT_EQ(narrowedMode(0466, false, true), 0444U);
  EXPECT_EQ(narrowedMode(0077, false, true), 0000U);
  EXPECT_EQ(narrowedMode(0644, false, true), 0644U);
}

// What a user may do with a file: as its owner, as a member of its group, or as one of the others.
mode_t rightsOf(mode_t mode, bool isOwner, bool isMember) {
  return (isOwner ? mode >> 6 : isMember ? mode >> 3 : mode) & 7;
}

TEST(NarrowedMode, NobodyButTheNewOwnerGainsWhateverClassTheyWereIn) {
  for (mode_t mode = 0; mode <= 0777; ++mode) {
    const mode_t bothChange = narrowedMode(mode, false, false);
    for (const bool wasOwner : {false, true}) {
      for (const bool wasMember : {false, true}) {
        for (const bool isMember : {false, true}) {
          const mode_t before = rightsOf(mode, wasOwner, wasMember);
          EXPECT_EQ(rightsOf(bothChange, false, isMember) & ~before, 0U) << std::oct << mode;
        }
      }
    }
  }
}

}  // namespace

}  // namespace dxf2d
