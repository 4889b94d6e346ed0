#include "app/cli/printable.h"

#include <gtest/gtest.h>

namespace dxf2d {

TEST(Printable, TextWithoutControlCharactersIsItself) {
  for (const char* text : {"", "plan.dxf", "Süd \xE2\x82\xAC \xF0\x9F\x8F\xA0", "\xC2\xA0"}) {
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

TEST(Printable, EachByteThatIsNotUtf8IsAQuestionMark) {
  // The escape sequences of eight bits, a cut character, an overlong slash, a surrogate.
  EXPECT_EQ(printable("\x9b"
                      "31m \x80\x90"),
            "?31m ??");
  EXPECT_EQ(printable("\xFF\xC2"), "??");
  EXPECT_EQ(printable("a\xE2\x82"), "a??");
  EXPECT_EQ(printable("\xC0\xAF"), "??");
  EXPECT_EQ(printable("\xED\xA0\x80"), "???");
}

TEST(Printable, EachByteOfADirectionalCharacterIsAQuestionMark) {
  EXPECT_EQ(printable("plan\u202Efxd.\u2066x\u2069\u200F"), "plan???fxd.???x??????");
  EXPECT_EQ(printable("\u061C"), "??");
}

}  // namespace dxf2d
