#include "app/finish/symbol_names.h"

#include <gtest/gtest.h>

#include <string>

namespace dxf2d::finish {
namespace {

TEST(SymbolName, LegalNamesStay) { EXPECT_EQ(symbolName("Wall-2 (left)_$"), "Wall-2 (left)_$"); }

TEST(SymbolName, IllegalCharactersAreUnderscores) {
  EXPECT_EQ(symbolName("a<b>c/d\\e\"f:g;h?i*j|k=l`m,n^o"), "a_b_c_d_e_f_g_h_i_j_k_l_m_n_o");
  EXPECT_EQ(symbolName("a\tb\nc"), "a_b_c");
}

TEST(SymbolName, LatinLettersBeyondAsciiAreNearOnesInAscii) {
  EXPECT_EQ(symbolName("W\xC3\xA4nde"), "Waende");
  EXPECT_EQ(symbolName("Stra\xC3\x9F"
                       "e"),
            "Strasse");
  EXPECT_EQ(symbolName("\xC5\xBD\xC3\xAD\xC5\x99"), "Zir");
}

TEST(SymbolName, OtherLettersAreTheirNumbers) {
  EXPECT_EQ(symbolName("\xE5\xA2\x99"), "U+5899");
  EXPECT_EQ(symbolName("\xF0\x9F\x8F\xA0"), "U+D83CU+DFE0");
}

TEST(SymbolName, NoNotationsAreLeft) {
  EXPECT_EQ(symbolName("5 % of %%d %%%"), "5 % of %_d %_%");
  EXPECT_EQ(symbolName("\\U+00E4^M"), "_U+00E4_M");
}

TEST(SymbolName, EmptyNamesAreUnnamed) {
  EXPECT_EQ(symbolName(""), "unnamed");
  EXPECT_EQ(symbolName("  "), "unnamed");
}

TEST(SymbolName, LongNamesAreCutBetweenCharacters) {
  EXPECT_EQ(symbolName(std::string(300, 'x')).size(), 255U);
  const std::string fits(254, 'x');
  std::string name(fits);
  EXPECT_EQ(symbolName(name.append("\xC3\xA4")), fits);
}

TEST(SymbolNames, TakenNamesAreNumberedWhateverTheirCase) {
  SymbolNames names;
  EXPECT_EQ(names.Add("Wall"), "Wall");
  EXPECT_EQ(names.Add("WALL"), "WALL_2");
  EXPECT_EQ(names.Add("wall"), "wall_3");
  EXPECT_EQ(names.Add("wall_3"), "wall_3_2");
}

TEST(SymbolNames, NumbersHaveRoomInLongNames) {
  SymbolNames names;
  names.Add(std::string(300, 'x'));
  std::string second(253, 'x');
  EXPECT_EQ(names.Add(std::string(300, 'x')), second.append("_2"));
}

}  // namespace
}  // namespace dxf2d::finish
