#include "app/page/page_text.h"

#include <gtest/gtest.h>

namespace dxf2d::page {

namespace {

TEST(PageText, HtmlHasNoMarkupOfItsOwn) {
  EXPECT_EQ(htmlText("<b title='a'>\"&amp;\"</b>"),
            "&lt;b title=&#39;a&#39;&gt;&quot;&amp;amp;&quot;&lt;/b&gt;");
}

TEST(PageText, ScriptTextEndsNoElementAndBeginsNoComment) {
  EXPECT_EQ(scriptText(R"({"a":"</script><!--&"})"),
            R"({"a":"\u003c/script\u003e\u003c!--\u0026"})");
}

TEST(PageText, Base64IsPadded) {
  EXPECT_EQ(base64Of(""), "");
  EXPECT_EQ(base64Of("any"), "YW55");
  EXPECT_EQ(base64Of("an"), "YW4=");
  EXPECT_EQ(base64Of(std::string_view("\xFF\0", 2)), "/wA=");
}

// From printf %s | openssl dgst -sha256 -binary | base64.
TEST(PageText, PolicyNamesAScriptByItsHash) {
  EXPECT_EQ(policySource("alert(1)"), "'sha256-bhHHL3z2vDgxUt0W3dWQOrprscmda2Y5pLsLg4GF+pI='");
}

}  // namespace

}  // namespace dxf2d::page
