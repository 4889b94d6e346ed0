#include "app/printable.h"

#include <gtest/gtest.h>

TEST(Printable, TextWithoutControlCharactersIsItself) {
  for (const char* text :
       {"", "plan.dxf", "Süd \xE2\x82\xAC \xF0\x9F\x8F\xA0", "\xFF\xC2", "\xC2\xA0"}) {
    EXPECT_EQ(printable(text), text);
  }
}

TEST(Printable, EachByteOfAControlCharacterIsAQuestionMark) {
  EXPECT_EQ(printable("a\nb\r\tc\x7f"), "a?b??c?");
  EXPECT_EQ(printable("\x1b[31mred"), "?[31mred");
  EXPECT_EQ(printable("\xC2\x9B"
                      "31mred"),
            "??31mred");
  EXPECT_EQ(printable(std::string("a\0b", 3)), "a?b");
}
