#include "ktscene/kt_label.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <stdexcept>

#include "ktscene/kt_v.h"
#include "tests/platform/numeric_locale.h"

namespace {

// What the parser makes of a label's text.
struct Parsed {
  bool isLabel = false;
  KtLabelContent content;
};

Parsed parse(const std::u16string& text) {
  Parsed parsed;
  KtLabelContent& c = parsed.content;
  unsigned short align = 0;
  parsed.isLabel =
      KtV::ParseLabelString(text.substr(2), c.width, c.height, c.depth, c.x, c.y, c.z, c.angle,
                            align, c.frame, c.red, c.green, c.blue, c.flags, c.lines);
  c.align = align;
  return parsed;
}

}  // namespace

TEST(KtMakeLabel, IsReadBackAsItWasMade) {
  const NumericLocale german(kCommaLocales);
  KtLabelContent content;
  content.width = 0.1;
  content.height = 1.0 / 3.0;
  content.x = -1e15;
  content.y = 5e-324;
  content.angle = -0.5;
  content.align = u'C';
  content.frame = true;
  content.green = 0.25;
  content.flags = 4294967295U;
  content.lines = {u"say \"hi\"", u"C:\\plans\\", u"", u"\u00DC"};
  const Parsed parsed = parse(KtMakeLabel(content));
  ASSERT_TRUE(parsed.isLabel);
  EXPECT_EQ(parsed.content.width, content.width);
  EXPECT_EQ(parsed.content.height, content.height);
  EXPECT_EQ(parsed.content.x, content.x);
  EXPECT_EQ(parsed.content.y, content.y);
  EXPECT_EQ(parsed.content.angle, content.angle);
  EXPECT_EQ(parsed.content.align, content.align);
  EXPECT_EQ(parsed.content.frame, content.frame);
  EXPECT_EQ(parsed.content.green, content.green);
  EXPECT_EQ(parsed.content.flags, content.flags);
  EXPECT_EQ(parsed.content.lines, content.lines);
}

TEST(KtMakeLabel, TakesControlCharactersForSpaces) {
  KtLabelContent content;
  content.lines = {u"a\nb"};
  EXPECT_EQ(parse(KtMakeLabel(content)).content.lines, std::vector<std::u16string>{u"a b"});
}

TEST(KtMakeLabel, RefusesWhatNoLabelHolds) {
  KtLabelContent content;
  content.z = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THROW(KtMakeLabel(content), std::invalid_argument);
  content.z = 1e16;
  EXPECT_THROW(KtMakeLabel(content), std::invalid_argument);
  content.z = 0.0;
  content.align = u' ';
  EXPECT_THROW(KtMakeLabel(content), std::invalid_argument);
}
