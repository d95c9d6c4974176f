#include "infra/literals.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "infra/vb.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

using test::under_both;

std::string show(const Variant& v) {
  if (v.is_null()) return "<Null>";
  if (v.is_empty()) return "<Empty>";
  return v.type() == VarType::String ? "'" + v.as_string() + "'" : vb::cstr(v);
}

// Rows of one value in, one variant out, alike under both locales.
struct Row {
  Variant value;
  Variant expected;
};

void check_rows(const std::vector<Row>& rows, Variant (*routine)(const Variant&)) {
  under_both([&](int) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const Variant got = routine(rows[i].value);
      EXPECT_TRUE(got == rows[i].expected)
          << "row " << i << ": got " << show(got) << ", want " << show(rows[i].expected);
    }
  });
}

const Variant kOct13 = Variant::date(37177 + (8 * 60 + 5) / 1440.0 + 9 / 86400.0);

TEST(FormataDataSQL, MinutesNoSecondsOrNull) {
  check_rows({{kOct13, Variant("'2001/10/13 08:05'")},
              {Variant("2001/10/13"), Variant("'2001/10/13 00:00'")},
              {Variant("13/10/2001 18:40"), Variant("'2001/10/13 18:40'")},
              {Variant("abc"), Variant("'abc'")},  // not a date: passed through
              {Variant(""), Variant("null")},
              {Variant::null(), Variant("null")},
              {Variant(), Variant("null")}},
             gFormata_Data_SQL);
  under_both([](int col) {
    EXPECT_TRUE(gFormata_Data_SQL(Variant("05/06/2001")) ==
                Variant(col == 0 ? "'2001/06/05 00:00'" : "'2001/05/06 00:00'"));
  });
}

TEST(TrataNulo, NullBecomesTheEmptyTextOtherValuesKeepTheirType) {
  check_rows({{Variant::null(), Variant("")},
              {Variant(5), Variant(5)},
              {Variant(), Variant()},
              {Variant("x"), Variant("x")}},
             gTrata_Nulo);
}

TEST(FormataNumeroSQL, ZeroByValMeansNull) {
  check_rows({{Variant(0), Variant("null")},
              {Variant("0"), Variant("null")},
              {Variant("0,00"), Variant("null")},
              {Variant("abc"), Variant("null")},
              {Variant(""), Variant("null")},
              {Variant::null(), Variant("null")},
              {Variant(12), Variant(12)},
              {Variant("12abc"), Variant("12abc")},
              {Variant(" -3"), Variant(" -3")}},
             gFormata_Numero_SQL);
  // The value's regional text is what Val reads, so a fraction below one is
  // null on a decimal-comma machine.
  under_both([](int col) {
    EXPECT_TRUE(gFormata_Numero_SQL(Variant(0.5)) == (col == 0 ? Variant("null") : Variant(0.5)));
  });
}

TEST(FormataTextoSQL, QuotedAsItIsOrNull) {
  check_rows({{Variant(""), Variant("null")},
              {Variant::null(), Variant("null")},
              {Variant(), Variant("null")},
              {Variant("O'K"), Variant("'O'K'")},  // quotes are not doubled
              {Variant("não"), Variant("'não'")},
              {Variant(0), Variant("'0'")}},
             gFormata_Texto_SQL);
}

TEST(TrocaVirgulaPonto, EveryCommaAndAnyInput) {
  struct TrocaRow {
    Variant in;
    const char* out;
  };
  const std::vector<TrocaRow> rows = {
      {Variant("1,5"), "1.5"},    {Variant("a,b,,c"), "a.b..c"},
      {Variant("12"), "12"},      {Variant::null(), ""},
      {Variant::array(0, 1), ""}, {Variant::error(Variant::kParamNotFound), ""}};
  for (const TrocaRow& row : rows) {
    Variant out("untouched");
    EXPECT_TRUE(gTroca_Virgula_Ponto(row.in, out));
    EXPECT_TRUE(out == Variant(row.out)) << row.out;
  }
  test::ScopedLocale pt(test::kPtBr);
  Variant out;
  gTroca_Virgula_Ponto(Variant(12.5), out);
  EXPECT_TRUE(out == Variant("12.5"));
}

TEST(RetiraCaracteresEspeciais, DropsTheTenCharacters) {
  check_rows({{Variant("a(b);c"), Variant("abc")},
              {Variant("O'Brien"), Variant("OBrien")},
              {Variant("<x>\"%&+"), Variant("x")},
              {Variant("não, nº 5-6/7"), Variant("não, nº 5-6/7")},
              {Variant(""), Variant("")},
              {Variant::null(), Variant("")}},
             gRetira_Caracteres_Especiais);
}

TEST(ValorPadrao, ValueWhenItHasTextElseDefaultOrNull) {
  EXPECT_TRUE(gValor_Padrao(Variant("abc"), Variant(5)) == Variant("abc"));
  EXPECT_TRUE(gValor_Padrao(Variant(0), Variant(5)) == Variant(0));
  EXPECT_TRUE(gValor_Padrao(Variant(""), Variant(5)) == Variant(5));
  EXPECT_TRUE(gValor_Padrao(Variant::null(), Variant("x")) == Variant("x"));
  EXPECT_TRUE(gValor_Padrao(Variant()) == Variant::null());
  EXPECT_TRUE(gValor_Padrao(Variant("")).is_null());
}

TEST(WherePieces, ValueOrTheNullFormOfTheOperator) {
  struct WhereRow {
    Variant (*routine)(const Variant&, Variant&);
    Variant value;
    const char* op;
    const char* expected;
  };
  const std::vector<WhereRow> rows = {
      {gWhere_Numero, Variant(12), ">=", " >= 12"},
      {gWhere_Numero, Variant("12abc"), "=", " = 12abc"},
      {gWhere_Numero, Variant(0), ">", " null"},  // any other operator meets zero so
      {gWhere_Numero, Variant(0), "=", " is null"},
      {gWhere_Numero, Variant(""), "<>", " is not null"},
      {gWhere_Numero, Variant::null(), "=", " is null"},
      {gWhere_Texto, Variant("abc"), "=", " = 'ABC'"},
      {gWhere_Texto, Variant("ação"), "like", " LIKE 'AÇÃO'"},
      {gWhere_Texto, Variant(""), "<>", " IS NOT NULL"},
      {gWhere_Texto, Variant::null(), "=", " IS NULL"},
      {gWhere_Texto, Variant(""), "like", " NULL"},
      {gWhere_Data_Oracle, Variant("2001/10/13 08:10"),
       ">=", " >= to_date('2001/10/13 08:10:00', 'yyyy/mm/dd hh24:mi:ss')"},
      {gWhere_Data_Oracle, kOct13, "<",
       " < to_date('2001/10/13 08:05:09', 'yyyy/mm/dd hh24:mi:ss')"},
      {gWhere_Data_Oracle, Variant(""), "=", " is null"},
      {gWhere_Data_Oracle, Variant::null(), "<>", " is not null"},
  };
  under_both([&](int) {
    for (const WhereRow& row : rows) {
      Variant op(row.op);
      EXPECT_TRUE(row.routine(row.value, op) == Variant(row.expected)) << row.expected;
    }
  });
}

}  // namespace
}  // namespace qdr
