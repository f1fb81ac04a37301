#include "texte/affichable.h"

#include <gtest/gtest.h>

using namespace topomine;

TEST(Affichable, ShowsControlsAndKeepsLettersOfBothEncodings) {
  const struct {
    std::string_view texte, visible, utf8;
  } rangees[]{
      {"", "", ""},
      {"a b\\x", "a b\\x", "a b\\x"},
      {"\033[31m\r\n\t\177", R"(\x1B[31m\x0D\x0A\x09\x7F)", "\033[31m\r\n\t\177"},
      {std::string_view("\0", 1), R"(\x00)", std::string_view("\0", 1)},
      {"\351t\351", "\351t\351", "\xC3\xA9t\xC3\xA9"},       // ISO-8859-1
      {"\xC3\xA9\351", "\xC3\xA9\351", "\xC3\xA9\xC3\xA9"},  // both
      {"\x9B"
       "2J",
       R"(\x9B2J)",
       "\xC2\x9B"
       "2J"},                                   // C1
      {"\xC2\x9B", R"(\xC2\x9B)", "\xC2\x9B"},  // C1 in UTF-8
      {"\xC3\x9B\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\x9B\xE2\x82\xAC\xF0\x9F\x98\x80",
       "\xC3\x9B\xE2\x82\xAC\xF0\x9F\x98\x80"},
      {"\xE2\x80\xAE", R"(\xE2\x80\xAE)", "\xE2\x80\xAE"},  // right to left
      {"\xE2\x82", "\xE2\\x82", "\xC3\xA2\xC2\x82"},
      {"\xC0\x80", "\xC0\\x80", "\xC3\x80\xC2\x80"},                  // too long a form
      {"\xED\xA0\x80", "\xED\xA0\\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},  // half a pair
  };
  for (const auto& r : rangees) {
    EXPECT_EQ(affichable(r.texte), r.visible);
    EXPECT_EQ(en_utf8(r.texte), r.utf8);
  }
}
