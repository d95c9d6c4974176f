#include "infra/vb.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/test_env.h"

namespace qdr::vb {
namespace {

using test::under_both;

// The number and description of the qdr::Error `action` raises, or "none".
std::string raised(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& e) {
    return std::to_string(e.number()) + " " + e.description();
  }
  return "none";
}

Variant date_of(int y, int m, int d, int hh = 0, int mm = 0, int ss = 0) {
  return Variant::date(make_date(y, m, d, hh, mm, ss));
}

TEST(VbCstr, TextOfEachSubtypeUnderBothLocales) {
  struct Row {
    Variant value;
    std::string pt, en;
  };
  const std::vector<Row> rows = {
      {Variant(12.5), "12,5", "12.5"},
      {Variant(0.1 + 0.2), "0,3", "0.3"},  // 15 significant digits hide the binary noise
      {Variant(1.0 / 3), "0,333333333333333", "0.333333333333333"},
      {Variant(1e15), "1E+15", "1E+15"},
      {Variant(0.0001), "0,0001", "0.0001"},
      {Variant(0.00001), "1E-05", "1E-05"},
      {Variant(-0.0), "0", "0"},
      {Variant::currency_scaled(-5), "-0,0005", "-0.0005"},
      {Variant::integer(-32768), "-32768", "-32768"},
      {Variant(true), "True", "True"},
      {Variant(), "", ""},
      {Variant("não"), "não", "não"},
      {date_of(2001, 10, 13), "13/10/2001", "10/13/2001"},
      {date_of(2001, 10, 13, 8, 10, 5), "13/10/2001 08:10:05", "10/13/2001 08:10:05"},
      {Variant::date(0.5), "12:00:00", "12:00:00"},  // day zero shows as a time
  };
  under_both([&](int col) {
    for (const Row& row : rows) EXPECT_EQ(cstr(row.value), col == 0 ? row.pt : row.en);
  });
  EXPECT_EQ(raised([] { cstr(Variant::null()); }), "94 Invalid use of Null");
  EXPECT_EQ(raised([] { cstr(Variant::array(0, 1)); }), "13 Type mismatch");
  EXPECT_EQ(text_of(Variant::null()), "");
}

TEST(VbVal, LeadingNumberWithThePointWhateverTheLocale) {
  struct Row {
    const char* text;
    double expected;
  };
  const std::vector<Row> rows = {{" 12abc", 12},     {"1 2 3", 123}, {"-3.5", -3.5}, {"1,5", 1},
                                 {"abc", 0},         {"", 0},        {".5", 0.5},    {"1.2.3", 1.2},
                                 {"1e3", 1000},      {"2D2", 200},   {"1e", 1},      {"- 4", -4},
                                 {"\t8\n", 8},       {"1e-400", 0},  {"&HFF", 255},  {"&HFFFF", -1},
                                 {"&H10000", 65536}, {"&O17", 15},   {"&Hzz", 0},    {"12-3", 12}};
  under_both([&](int) {
    for (const Row& row : rows) EXPECT_DOUBLE_EQ(val(row.text), row.expected) << row.text;
  });
  EXPECT_EQ(raised([] { val("1e400"); }), "6 Overflow");
  EXPECT_EQ(raised([] { val("&H100000000"); }), "6 Overflow");
}

TEST(VbIsNumeric, RegionalSeparatorsBlanksAndSigns) {
  struct Row {
    Variant value;
    bool pt, en;
  };
  // "10,5": en reads the comma as grouping; ".5": pt refuses grouping before any digit.
  const std::vector<Row> rows = {
      {Variant("10,5"), true, true},        {Variant("1.234,5"), true, false},
      {Variant("1,234.5"), false, true},    {Variant(" 12 "), true, true},
      {Variant("12-"), true, true},         {Variant("+-12"), false, false},
      {Variant("1e3"), true, true},         {Variant("1e400"), false, false},
      {Variant("&H1F"), true, true},        {Variant(".5"), false, true},
      {Variant(""), false, false},          {Variant("R$ 5"), false, false},
      {Variant("12abc"), false, false},     {Variant(), true, true},
      {Variant::null(), false, false},      {Variant(true), true, true},
      {date_of(2001, 10, 13), false, false}};
  under_both([&](int col) {
    for (std::size_t i = 0; i < rows.size(); ++i)
      EXPECT_EQ(is_numeric(rows[i].value), col == 0 ? rows[i].pt : rows[i].en) << "row " << i;
  });
}

TEST(VbConversions, RegionalTextsAndRounding) {
  under_both([](int col) {
    EXPECT_DOUBLE_EQ(cdbl(Variant("10,5")), col == 0 ? 10.5 : 105);
    if (col == 0) {
      EXPECT_DOUBLE_EQ(cdbl(Variant("1.234,5")), 1234.5);
    } else {
      EXPECT_EQ(raised([] { cdbl(Variant("1.234,5")); }), "13 Type mismatch");
    }
  });

  struct Row {
    Variant value;
    int32_t expected;
  };
  const std::vector<Row> half_even = {
      {Variant(2.5), 2},   {Variant(3.5), 4},   {Variant(-2.5), -2},
      {Variant(-3.5), -4}, {Variant(2.51), 3},  {Variant(), 0},
      {Variant(true), -1}, {Variant("4.5"), 4}, {Variant::currency_scaled(25000), 2}};
  test::ScopedLocale en(test::kEnUs);
  for (const Row& row : half_even) {
    EXPECT_EQ(clng(row.value), row.expected) << cstr(row.value);
    EXPECT_EQ(cint(row.value), row.expected) << cstr(row.value);
  }
  EXPECT_EQ(clng(Variant(2147483647.4)), 2147483647);
  EXPECT_EQ(cint(Variant(-32768.5)), -32768);
  EXPECT_EQ(raised([] { clng(Variant(2147483647.5)); }), "6 Overflow");
  EXPECT_EQ(raised([] { cint(Variant(32767.5)); }), "6 Overflow");
  EXPECT_EQ(raised([] { clng(Variant(std::nan(""))); }), "6 Overflow");
  EXPECT_EQ(raised([] { clng(Variant::null()); }), "94 Invalid use of Null");
  EXPECT_EQ(raised([] { clng(Variant("abc")); }), "13 Type mismatch");
}

TEST(VbDates, OleDatesAndCalendarFields) {
  EXPECT_EQ(make_date(2004, 2, 29, 18), 38046.75);
  EXPECT_EQ(make_date(1899, 12, 29, 6), -1.25);  // before the epoch the time counts away from 0
  EXPECT_EQ(make_date(2001, 13, 1), make_date(2002, 1, 1));
  EXPECT_EQ(raised([] { make_date(10000, 1, 1); }), "5 Invalid procedure call or argument");
  const DateParts p = date_parts(37177.9999999);  // rounds to the next midnight
  EXPECT_EQ(std::vector<int>({p.year, p.month, p.day, p.hour, p.minute, p.second}),
            std::vector<int>({2001, 10, 14, 0, 0, 0}));
  EXPECT_EQ(raised([] { date_parts(1e10); }), "6 Overflow");
}

TEST(VbDates, TextsInTheRegionalOrderThenTheOther) {
  struct Row {
    const char* text;
    double pt, en;  // the OLE date, or -1e9 for "not a date"
  };
  const double no = -1e9;
  const double oct13 = 37177;
  const std::vector<Row> rows = {
      {"13/10/2001", oct13, oct13},
      {"10/13/2001", oct13, oct13},  // the other order when the first cannot be
      {"05/06/2001", 37047, 37017},  // both orders valid: the regional one wins
      {"31/02/2001", no, no},
      {"29/02/2004", 38046, 38046},
      {"13/10/29", 47404, 47404},
      {"13/10/30", 11244, 11244},
      {"13-10-2001", oct13, oct13},
      {"2001/10/13", oct13, oct13},
      {"2001-10-13T18:00:00.000", oct13 + 0.75, oct13 + 0.75},
      {" 13/10/2001   18:00 ", oct13 + 0.75, oct13 + 0.75},
      {"13/10/2001 6:00 PM", oct13 + 0.75, oct13 + 0.75},
      {"12:00 am", 0, 0},
      {"8:10", 490.0 / 1440, 490.0 / 1440},
      {"24:00", no, no},
      {"13/10/2001x", no, no},
      {"13/10", no, no},
      {"", no, no}};
  under_both([&](int col) {
    for (const Row& row : rows) {
      const double expected = col == 0 ? row.pt : row.en;
      EXPECT_EQ(is_date(Variant(row.text)), expected != no) << row.text;
      if (expected != no) {
        EXPECT_NEAR(cdate(Variant(row.text)), expected, 1e-9) << row.text;
      }
    }
  });
  EXPECT_EQ(raised([] { cdate(Variant("31/02/2001")); }), "13 Type mismatch");
  EXPECT_EQ(raised([] { cdate(Variant::null()); }), "94 Invalid use of Null");
  EXPECT_EQ(cdate(Variant(2)), 2);
  EXPECT_FALSE(is_date(Variant(2)));
}

TEST(VbFormatDate, PatternTokensAndTexts) {
  const Variant evening = date_of(2001, 10, 13, 20, 5, 9);
  struct Row {
    Variant value;
    const char* pattern;
    std::string pt, en;
  };
  const std::vector<Row> rows = {
      {evening, "yyyy/mm/dd hh:mm", "2001/10/13 20:05", "2001/10/13 20:05"},
      {evening, "YYYY/MM/DD hh:mm:ss", "2001/10/13 20:05:09", "2001/10/13 20:05:09"},
      {evening, "d/m/yy", "13/10/01", "13/10/01"},
      {evening, "mm:ss", "05:09", "05:09"},  // minutes before seconds
      {evening, "hh:nn AM/PM", "08:05 PM", "08:05 PM"},
      {evening, "\\y\\y yyyy \"dd\" dd", "yy 2001 dd 13", "yy 2001 dd 13"},
      {evening, "mmm mmmm ddd dddd", "out outubro sáb sábado", "Oct October Sat Saturday"},
      {evening, "ddddd", "13/10/2001", "10/13/2001"},
      {Variant("05/06/2001 08:10"), "yyyy/mm/dd hh:mm", "2001/06/05 08:10", "2001/05/06 08:10"},
      {Variant("2001/10/13"), "yyyy/mm/dd hh:mm", "2001/10/13 00:00", "2001/10/13 00:00"},
      {Variant("abc"), "yyyy", "abc", "abc"},  // not a date: passed through
      {Variant::null(), "yyyy", "", ""},
      {Variant(2.5), "yyyy", "2,5", "2.5"}};
  under_both([&](int col) {
    for (const Row& row : rows)
      EXPECT_EQ(format_date(row.value, row.pattern), col == 0 ? row.pt : row.en) << row.pattern;
  });
}

TEST(VbText, CharactersNotBytes) {
  EXPECT_EQ(len("não"), 3);
  EXPECT_EQ(len("Nº"), 2);
  EXPECT_EQ(len("\xff"), 1);  // a stray byte counts as one character
  EXPECT_EQ(mid("não pode", 2, 2), "ão");
  EXPECT_EQ(mid("não pode", 5), "pode");
  EXPECT_EQ(mid("abc", 2, 99), "bc");
  EXPECT_EQ(left("ãé", 1), "ã");
  EXPECT_EQ(right("ãé", 9), "ãé");
  EXPECT_EQ(instr(1, "não é", "é"), 5);
  EXPECT_EQ(instr(3, "abcabc", "b"), 5);
  EXPECT_EQ(instr(2, "abc", ""), 2);
  EXPECT_EQ(instr(5, "abc", ""), 0);
  EXPECT_EQ(raised([] { mid("abc", 0); }), "5 Invalid procedure call or argument");
  EXPECT_EQ(raised([] { left("abc", -1); }), "5 Invalid procedure call or argument");
  EXPECT_EQ(raised([] { instr(0, "abc", "a"); }), "5 Invalid procedure call or argument");

  under_both([](int) {
    EXPECT_EQ(ucase("ação nº ç ü ÿ é1"), "AÇÃO Nº Ç Ü Ÿ É1");
    EXPECT_EQ(lcase("AÇÃO Nº Ç ÀÉÍÓÚ"), "ação nº ç àéíóú");
    EXPECT_EQ(ucase("x\xffy÷ß"), "X\xffY÷ß");
  });
  EXPECT_EQ(trim("  a b  "), "a b");
  EXPECT_EQ(trim("\ta\t"), "\ta\t");  // blanks only
  EXPECT_EQ(rtrim("  a  "), "  a");
  EXPECT_EQ(replace("aaa", "aa", "b"), "ba");
}

TEST(VbCompare, NumericWhenBothSidesAreElseText) {
  enum Result { kLt, kEq, kGt, kNull };
  struct Row {
    Variant a, b;
    Result pt, en;
  };
  const std::vector<Row> rows = {
      {Variant(1), Variant("1"), kEq, kEq},
      {Variant("10"), Variant("9"), kGt, kGt},
      {Variant(5), Variant("abc"), kLt, kLt},  // "5" against "abc" as texts
      {Variant(12.5), Variant("12,5"), kEq, kLt},
      {Variant(true), Variant(-1), kEq, kEq},
      {Variant::currency_scaled(25000), Variant(2.5), kEq, kEq},
      {Variant(), Variant(""), kEq, kEq},
      {Variant(), Variant(0), kEq, kEq},
      {Variant(), Variant("0"), kLt, kLt},  // Empty is "" against a text
      {date_of(2001, 10, 13), Variant("13/10/2001"), kEq, kEq},
      {date_of(2001, 10, 13), Variant("2001/10/14"), kLt, kLt},
      {Variant::null(), Variant(""), kNull, kNull},
      {Variant::null(), Variant::null(), kNull, kNull},
      {Variant(std::nan("")), Variant(1), kNull, kNull}};
  under_both([&](int col) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const Row& r = rows[i];
      const Result want = col == 0 ? r.pt : r.en;
      SCOPED_TRACE("row " + std::to_string(i));
      EXPECT_EQ(eq(r.a, r.b), want == kEq);
      EXPECT_EQ(ne(r.a, r.b), want == kLt || want == kGt);
      EXPECT_EQ(lt(r.a, r.b), want == kLt);
      EXPECT_EQ(le(r.a, r.b), want == kLt || want == kEq);
      EXPECT_EQ(gt(r.a, r.b), want == kGt);
      EXPECT_EQ(ge(r.a, r.b), want == kGt || want == kEq);
      EXPECT_EQ(lt(r.b, r.a), want == kGt);  // swapping the sides mirrors the answer
    }
  });
  EXPECT_EQ(raised([] { eq(Variant::array(0, 0), Variant(1)); }), "13 Type mismatch");
}

}  // namespace
}  // namespace qdr::vb
