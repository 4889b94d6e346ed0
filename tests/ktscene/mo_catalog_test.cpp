#include "ktscene/mo_catalog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace dxf2d {
namespace {

using Texts = std::vector<std::pair<std::string, std::string>>;

std::string number(std::size_t value, bool bigEndian) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) {
    bytes += static_cast<char>(value >> 8 * i & 0xFF);
  }
  if (bigEndian) {
    std::ranges::reverse(bytes);
  }
  return bytes;
}

// A catalog of texts, which are sorted.
std::string catalog(const Texts& texts, bool bigEndian = false) {
  const std::size_t head = 28;
  const std::size_t table = 8 * texts.size();
  std::string originals;
  std::string translations;
  std::string bytes;
  const auto add = [&](std::string& list, const std::string& text) {
    list += number(text.size(), bigEndian) + number(head + 2 * table + bytes.size(), bigEndian);
    bytes += text + '\0';
  };
  for (const auto& [original, translation] : texts) {
    add(originals, original);
    add(translations, translation);
  }
  std::string all;
  for (const std::size_t value : {std::size_t{0x950412DE}, std::size_t{0}, texts.size(), head,
                                  head + table, std::size_t{0}, std::size_t{0}}) {
    all += number(value, bigEndian);
  }
  return all + originals + translations + bytes;
}

const Texts kTexts = {{"", "header"}, {"a", "A"}, {"b", ""}, {"c", "C1"}, {"d e", "D\xC3\xA4"}};

TEST(MoCatalog, FindsEachTextInEitherByteOrder) {
  for (const bool bigEndian : {false, true}) {
    const std::string bytes = catalog(kTexts, bigEndian);
    EXPECT_EQ(findTranslation(bytes, "a"), "A");
    EXPECT_EQ(findTranslation(bytes, "c"), "C1");
    EXPECT_EQ(findTranslation(bytes, "d e"), "D\xC3\xA4");
  }
}

TEST(MoCatalog, HasNothingForUnknownAndUntranslatedTexts) {
  const std::string bytes = catalog(kTexts);
  EXPECT_EQ(findTranslation(bytes, "b"), std::nullopt);
  EXPECT_EQ(findTranslation(bytes, "aa"), std::nullopt);
  EXPECT_EQ(findTranslation(bytes, "z"), std::nullopt);
  EXPECT_EQ(findTranslation(catalog({}), "a"), std::nullopt);
}

TEST(MoCatalog, OtherFilesHaveNothing) {
  EXPECT_EQ(findTranslation("", "a"), std::nullopt);
  EXPECT_EQ(findTranslation("\xDE\x12\x04", "a"), std::nullopt);
  EXPECT_EQ(findTranslation("msgid \"a\" msgstr \"A\" and so on for a while", "a"), std::nullopt);
}

TEST(MoCatalog, CatalogThatIsCutOrDamagedAnywhereIsReadWithoutHarm) {
  const std::string whole = catalog(kTexts);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    // On the heap and of just this size, so that sanitizers see every byte beyond.
    const std::vector<char> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const auto found = findTranslation({cut.data(), cut.size()}, "c");
    EXPECT_TRUE(!found || *found == "C1");
  }
  for (std::size_t at = 4; at < whole.size(); ++at) {
    std::string damaged = whole;
    damaged[at] = '\xFF';
    EXPECT_NO_THROW(findTranslation(damaged, "c"));
  }
}

TEST(MoCatalog, ReadsWhatMsgfmtWrites) {
  std::ifstream file(KT_SCENE_TEST_CATALOGS "/de/LC_MESSAGES/ktscene.mo", std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(findTranslation(bytes, "DXF export error"), "DXF-Exportfehler");
}

}  // namespace
}  // namespace dxf2d
