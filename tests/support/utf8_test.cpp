#include "support/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace sodam {
namespace {

TEST(Utf8, CountsCharactersAndEachStrayByteAsOne) {
  struct Case {
    std::string text;
    std::size_t length;
  };
  const Case cases[] = {
      {"", 0},
      {"소담자리", 4},
      {"caf\xC3\xA9", 4},
      {"\xF0\x9F\x99\x82!", 2},     // a four-byte character
      {"\xFF\xFE", 2},              // bytes that never start a character
      {"\xEC\x86", 2},              // a character cut short
      {"\xEC\x86\x41", 3},          // cut short before the letter A
      {"\xC0\xAF\xE0\x80\xAF", 5},  // overlong '/'
      {"\xED\xA0\x80", 3},          // a surrogate
      {"\xF4\x90\x80\x80", 4},      // past U+10FFFF
  };
  for (const auto& c : cases)
    EXPECT_EQ(utf8::length(c.text), c.length) << c.text;
}

TEST(Utf8, HangulAndFullWidthFormsTakeTwoColumns) {
  EXPECT_EQ(utf8::columns("거북목 3번"), 10u);
  EXPECT_EQ(utf8::columns("6/3 화 · ███▌"), 13u);
  EXPECT_EQ(utf8::columns("\xEF\xBC\x85"), 2u);  // a full-width percent sign
  EXPECT_EQ(utf8::columns("\xFF"), 1u);
}

TEST(Utf8, PrefixNeverCutsACharacter) {
  EXPECT_EQ(utf8::prefix("소담자리", 2), "소담");
  EXPECT_EQ(utf8::prefix("소담자리", 0), "");
  EXPECT_EQ(utf8::prefix("소담자리", 99), "소담자리");
  EXPECT_EQ(utf8::prefix("a\xFF\x62", 2), "a\xFF");
  EXPECT_EQ(utf8::prefix("\xEC\x86\xEC\x86\x8C", 2), "\xEC\x86");

  const std::string mixed =
      "a소\xF0\x9F\x99\x82"
      "b\xC3\xA9\xFF담";
  const std::size_t total = utf8::length(mixed);
  ASSERT_EQ(total, 7u);
  for (std::size_t n = 0; n <= total + 1; ++n) {
    const auto part = utf8::prefix(mixed, n);
    EXPECT_EQ(mixed.compare(0, part.size(), part), 0);
    EXPECT_EQ(utf8::length(part), std::min(n, total));
    // Whole characters only: the rest still counts the remaining characters.
    EXPECT_EQ(utf8::length(mixed.substr(part.size())), total - std::min(n, total));
  }
}

TEST(Utf8, TrimRemovesAsciiAndUnicodeSpaceAtBothEndsOnly) {
  struct Case {
    std::string text;
    std::string trimmed;
  };
  const Case cases[] = {
      {"  hi  ", "hi"},
      {"\t\r\n\v\f", ""},
      {" 소담 자리 ", "소담 자리"},
      {"\xE3\x80\x80소담\xC2\xA0\n", "소담"},          // ideographic and no-break space
      {"\xE2\x80\x83x\xE2\x80\xA8\xE2\x80\xA9", "x"},  // em space, line and paragraph separators
      {"\xC2\x85x\xE2\x80\xAF", "x"},                  // next line, narrow no-break space
      {"\xE2\x80\x8Bx", "\xE2\x80\x8Bx"},              // zero width space is not white space
      {" \xFF ", "\xFF"},
      {"\xEC\x86 ", "\xEC\x86"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(utf8::trim(c.text), c.trimmed) << c.text;
}

TEST(Utf8, PrintableEscapesWhatSteersATerminalAndCutsLongText) {
  struct Case {
    std::string text;
    std::string shown;
  };
  const Case cases[] = {
      {"소담 ok", "소담 ok"},
      {"a\nb\tc", "a\\nb\\tc"},
      {"\x1b[2J\x7f", "\\x1b[2J\\x7f"},
      {"\xC2\x9B"
       "31m",
       "\\xc2\\x9b31m"},  // the one-character CSI
      {"bad\xFF\xC3", "bad\\xff\\xc3"},
      {std::string("nul\0x", 5), "nul\\x00x"},
      {std::string(80, 'a'), std::string(80, 'a')},
      {std::string(81, 'a'), std::string(80, 'a') + "…"},
      {std::string(79, 'a') + "담자리", std::string(79, 'a') + "담…"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(utf8::printable(c.text), c.shown) << c.text;
}

}  // namespace
}  // namespace sodam
