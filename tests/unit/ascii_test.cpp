#include "infra/ascii.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_env.h"

namespace qdr {
namespace {

// Only A-Z and a-z fold, under any locale: accented letters, UTF-8 bytes
// and the punctuation between the two alphabets ("[" and "{") stay apart.
TEST(Ascii, FoldsOnlyAsciiLettersUnderAnyLocale) {
  const struct {
    const char* a;
    const char* b;
    bool equal;
  } pairs[] = {
      {"LOG_MSG", "log_msg", true},
      {"Provider", "pROVIDER", true},
      {"", "", true},
      {"null", "nul", false},
      {"[", "{", false},
      {"@", "`", false},
      {"AÇÃO", "aÇÃo", true},
      {"AÇÃO", "ação", false},
      {"\xC9", "\xE9", false},
  };
  for (const char* name : {"C", test::kPtBr, test::kEnUs}) {
    test::ScopedLocale locale(name);
    SCOPED_TRACE(name);
    for (const auto& p : pairs) {
      EXPECT_EQ(ascii::iequals(p.a, p.b), p.equal) << p.a << " / " << p.b;
      EXPECT_EQ(ascii::iequals(p.b, p.a), p.equal) << p.b << " / " << p.a;
    }
    EXPECT_EQ(ascii::to_lower("Provider=Replay;ÇA\xC9"), "provider=replay;Ça\xC9");
    EXPECT_EQ(ascii::to_lower('Z'), 'z');
    EXPECT_EQ(ascii::to_lower('['), '[');
  }
}

TEST(Ascii, StartsWithIgnoringCase) {
  EXPECT_TRUE(ascii::istarts_with("EXEC SP_X 1", "exec sp_x"));
  EXPECT_TRUE(ascii::istarts_with("exec", ""));
  EXPECT_TRUE(ascii::istarts_with("exec", "EXEC"));
  EXPECT_FALSE(ascii::istarts_with("exe", "exec"));
  EXPECT_FALSE(ascii::istarts_with("EXEC", "exed"));
  EXPECT_FALSE(ascii::istarts_with(" EXEC", "exec"));
}

}  // namespace
}  // namespace qdr
