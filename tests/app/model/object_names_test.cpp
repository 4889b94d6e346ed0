#include "app/model/object_names.h"

#include <gtest/gtest.h>

namespace dxf2d {
namespace {

TEST(ObjectNames, EqualNamesGetNumbers) {
  ObjectNames names;
  EXPECT_EQ(names.Unique("wall"), u"wall");
  EXPECT_EQ(names.Unique("wall"), u"wall 2");
  EXPECT_EQ(names.Unique("wall"), u"wall 3");
}

TEST(ObjectNames, ANameThatLooksNumberedIsNotGivenTwice) {
  ObjectNames names;
  EXPECT_EQ(names.Unique("wall 2"), u"wall 2");
  EXPECT_EQ(names.Unique("wall"), u"wall");
  EXPECT_EQ(names.Unique("wall"), u"wall 3");
}

TEST(ObjectNames, AnEmptyNameIsNotGiven) {
  ObjectNames names;
  EXPECT_EQ(names.Unique(""), u"object");
  EXPECT_EQ(names.Unique(""), u"object 2");
}

}  // namespace
}  // namespace dxf2d
