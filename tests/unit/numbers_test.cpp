#include "infra/numbers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "infra/vb.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

using test::under_both;

TEST(Separators, ProbedFromTheRegionalTextOfOneHalf) {
  under_both([](int col) {
    const Separators s = probe_separators();
    EXPECT_EQ(s.machine, col == 0 ? ',' : '.');
    EXPECT_EQ(s.foreign, col == 0 ? '.' : ',');
  });
}

TEST(TrataSeparadorDecimal, OnlyASingleForeignSeparatorIsTakenForAPoint) {
  struct Row {
    Variant value, pt, en;
  };
  const std::vector<Row> rows = {
      {Variant::null(), Variant::integer(0), Variant::integer(0)},
      {Variant(""), Variant::integer(0), Variant::integer(0)},
      {Variant(), Variant::integer(0), Variant::integer(0)},
      {Variant("3.5"), Variant("3,5"), Variant("3.5")},
      {Variant("3,5"), Variant("3,5"), Variant("3.5")},
      {Variant("1.234.567"), Variant("1.234.567"), Variant("1.234.567")},
      {Variant("1,234,567"), Variant("1,234,567"), Variant("1,234,567")},
      {Variant("1.234,5"), Variant("1,234,5"), Variant("1.234.5")},  // deliberately blind
      {Variant("abc"), Variant("abc"), Variant("abc")},
      {Variant(3.5), Variant(3.5), Variant(3.5)},  // its regional text has no foreign mark
      {Variant(7), Variant(7), Variant(7)},
      {Variant(0), Variant(0), Variant(0)},
      {Variant::array(0, 1), Variant(), Variant()},  // a failure gives Empty
  };
  under_both([&](int col) {
    for (std::size_t i = 0; i < rows.size(); ++i)
      EXPECT_TRUE(gTrata_Separador_Decimal(rows[i].value) == (col == 0 ? rows[i].pt : rows[i].en))
          << "row " << i;
  });
}

TEST(ConverteNumeroSeparador, DigitsBeforeTheFirstSeparatorAreTheWholePart) {
  struct Row {
    Variant text;
    const char* separator;
    double expected;
  };
  const std::vector<Row> rows = {
      {Variant("12,50"), ",", 12.5},   {Variant("7"), ",", 7},
      {Variant("1,2,3"), ",", 1.23},  // later separators are dropped
      {Variant("  3,25 "), ",", 3.25}, {Variant(",5"), ",", 0.5},
      {Variant("5,"), ",", 5},         {Variant(""), ",", 0},
      {Variant::null(), ",", 0},       {Variant("-12,5"), ",", -12.5},
      {Variant("12.5"), ".", 12.5},    {Variant("12,05"), ",", 12.05},
  };
  under_both([&](int) {
    for (const Row& row : rows)
      EXPECT_DOUBLE_EQ(gConverte_Numero_Separador(row.text, Variant(row.separator)), row.expected)
          << vb::text_of(row.text);
    EXPECT_THROW(gConverte_Numero_Separador(Variant("12a,5"), Variant(",")), Error);
  });
}

TEST(FormataNumero, FixedDecimalsWithADecimalComma) {
  struct Row {
    Variant value;
    Variant places;
    Variant expected;  // the same under both locales
  };
  const Variant dflt("-");
  const std::vector<Row> rows = {
      {Variant(12.5), Variant(2), Variant("12,50")},
      {Variant(1234.567), Variant(2), Variant("1234,56")},  // cut, not rounded, from 1 up
      {Variant(0.125), Variant(2), Variant("0,12")},        // ties to even below 1
      {Variant(0.375), Variant(2), Variant("0,38")},
      {Variant(-0.5), Variant(2), Variant("-0,50")},
      {Variant(-12.5), Variant(1), Variant("-12,5")},
      {Variant(0.001), Variant(2), Variant("0,00")},
      {Variant(-0.001), Variant(2), Variant("0,00")},
      {Variant(0.000015), Variant(5), Variant("0,00002")},
      {Variant(7), Variant(2), Variant("7,00")},
      {Variant(1e20), Variant(2), Variant("100000000000000000000,00")},
      {Variant("12.5"), Variant(2), Variant("12,50")},
      {Variant("12,5"), Variant(2), Variant("12,50")},
      {Variant(12.7), Variant(0), Variant("12")},
      {Variant(12.5), Variant("3"), Variant("12,500")},
      {Variant::currency_scaled(123456), Variant(2), Variant("12,34")},
      {Variant(0), Variant(2), dflt},
      {Variant("0,00"), Variant(2), dflt},
      {Variant(""), Variant(2), dflt},
      {Variant::null(), Variant(2), dflt},
      {Variant(), Variant(2), dflt},
      {Variant("abc"), Variant(2), Variant()},
      {Variant(12.5), Variant(-1), Variant()},
      {Variant(12.5), Variant(256), Variant()},
      {Variant(12.5), Variant::null(), Variant()},
      {Variant::array(0, 0), Variant(2), Variant()},
  };
  under_both([&](int) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      Variant places = rows[i].places;
      const Variant got = gFormata_Numero(rows[i].value, dflt, places);
      EXPECT_TRUE(got == rows[i].expected)
          << "row " << i << ": " << (got.type() == VarType::String ? got.as_string() : "?");
    }
  });
}

TEST(NumericValue, ReadsEitherSeparatorAndNeverRaises) {
  struct Row {
    Variant value;
    double pt, en;
  };
  const std::vector<Row> rows = {
      {Variant("12.5"), 12.5, 12.5},
      {Variant("12,5"), 12.5, 12.5},
      {Variant(" 3 "), 3, 3},
      {Variant(4.25), 4.25, 4.25},
      {Variant::null(), 0, 0},
      {Variant(""), 0, 0},
      {Variant("abc"), 0, 0},
      {Variant("1.234.567"), 1234567, 0},  // grouping regionally; not a number under en_US
      {Variant::array(0, 0), 0, 0},
  };
  under_both([&](int col) {
    for (const Row& row : rows)
      EXPECT_DOUBLE_EQ(numeric_value(row.value), col == 0 ? row.pt : row.en);
  });
}

}  // namespace
}  // namespace qdr
