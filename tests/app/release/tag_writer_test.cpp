#include "app/release/tag_writer.h"

#include <gtest/gtest.h>

#include <string>

namespace dxf2d::release {
namespace {

template <typename Write>
std::string textOf(const Write& write) {
  std::string text;
  TagWriter tags([&](std::string_view bytes) { text += bytes; });
  write(tags);
  tags.Flush();
  return text;
}

TEST(TagWriter, CodesAreRightAlignedInThreeCharacters) {
  EXPECT_EQ(textOf([](TagWriter& tags) { tags.Text(0, "EOF"); }), "  0\nEOF\n");
  EXPECT_EQ(textOf([](TagWriter& tags) { tags.Integer(62, -3); }), " 62\n-3\n");
  EXPECT_EQ(textOf([](TagWriter& tags) { tags.Subclass("AcDbLine"); }), "100\nAcDbLine\n");
}

TEST(TagWriter, HandlesAreHexadecimalWithCapitals) {
  EXPECT_EQ(textOf([](TagWriter& tags) { tags.Reference(5, 0x1AF); }), "  5\n1AF\n");
  EXPECT_EQ(textOf([](TagWriter& tags) { tags.Reference(330, 0); }), "330\n0\n");
}

TEST(TagWriter, PointsAreTheirCoordinates) {
  EXPECT_EQ(textOf([](TagWriter& tags) {
              tags.Point(10, {1.5, -2});
            }),
            " 10\n1.5\n 20\n-2.0\n 30\n0.0\n");
  EXPECT_EQ(textOf([](TagWriter& tags) {
              tags.FlatPoint(11, {0.25, 3});
            }),
            " 11\n0.25\n 21\n3.0\n");
}

TEST(TagWriter, ALongTextIsWhole) {
  const std::string name(1'000'000, 'x');
  EXPECT_EQ(textOf([&](TagWriter& tags) { tags.Text(1, name); }), "  1\n" + name + "\n");
}

TEST(TagWriter, ManyGroupsComeInPiecesAndInOrder) {
  std::string expected;
  for (int i = 0; i < 50'000; ++i) {
    expected += " 70\n" + std::to_string(i) + "\n";
  }
  EXPECT_EQ(textOf([](TagWriter& tags) {
              for (int i = 0; i < 50'000; ++i) {
                tags.Integer(70, i);
              }
            }),
            expected);
}

}  // namespace
}  // namespace dxf2d::release
