#include "infra/sql_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "infra/odbc/dialect.h"
#include "qdr/error.h"

namespace qdr {
namespace {

using sql_text::parse_text;

// A parameter as the parser should produce it: a Long (3), a Double (5), a
// text (200) or null (0), named or not.
struct Expected {
  std::string name;
  int type;
  Variant value;
};
Expected n(int32_t v) { return {"", 3, Variant(v)}; }
Expected d(double v) { return {"", 5, Variant(v)}; }
Expected t(const char* v) { return {"", 200, Variant(v)}; }
const Expected nul{"", 0, Variant::null()};
Expected named(const char* name, Expected e) { return {name, e.type, e.value}; }

void expect_parameters(const Statement& s, const std::vector<Expected>& expected) {
  ASSERT_EQ(s.parameters.size(), expected.size()) << s.text;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    SCOPED_TRACE("parameter " + std::to_string(i + 1) + " of " + s.text);
    EXPECT_EQ(s.parameters[i].name, expected[i].name);
    EXPECT_EQ(s.parameters[i].type, expected[i].type);
    EXPECT_TRUE(s.parameters[i].value == expected[i].value);
    const int size =
        expected[i].type == 200 ? static_cast<int>(expected[i].value.as_string().size()) : 0;
    EXPECT_EQ(s.parameters[i].size, size);
  }
}

std::string refusal(const std::string& text) {
  try {
    parse_text(text);
  } catch (const DatabaseError& e) {
    EXPECT_EQ(e.number(), sql_text::kRefusedNumber) << text;
    EXPECT_EQ(e.sqlstate(), "42000") << text;
    return e.what();
  }
  ADD_FAILURE() << "accepted: " << text;
  return {};
}

TEST(SqlTextCall, TheRoutinesTextsBecomeOneCallWithTheirLiterals) {
  struct Row {
    std::string text;
    std::string procedure;
    std::vector<Expected> parameters;
  };
  const std::vector<Row> rows = {
      {"EXEC SP_050_CON_PORTO_PONTO01   null", "SP_050_CON_PORTO_PONTO01", {nul}},
      // Commas inside quotes are text.
      {"EXECUTE SP_050_INC_INCIDENTE01 12, 'S', '1,2', null, 'a|b', 'S,N', 7, 'M,A' ",
       "SP_050_INC_INCIDENTE01",
       {n(12), t("S"), t("1,2"), nul, t("a|b"), t("S,N"), n(7), t("M,A")}},
      {"EXEC SP_KRN_INC_LOG_SISTEMA2  @Tabela_Sistema_Id = 1, @Usuario_Id = 2, @Registro_Id = 3, "
       "@Tab_Tipo_Acao_Id = 4, @Retorno = 0",
       "SP_KRN_INC_LOG_SISTEMA2",
       {named("@Tabela_Sistema_Id", n(1)), named("@Usuario_Id", n(2)), named("@Registro_Id", n(3)),
        named("@Tab_Tipo_Acao_Id", n(4)), named("@Retorno", n(0))}},
      // Separators glued to either side, NULL in capitals.
      {"EXECUTE SP_050_DUP_SOLICIT01 NULL ,'ABCU1234567','20',5,7",
       "SP_050_DUP_SOLICIT01",
       {nul, t("ABCU1234567"), t("20"), n(5), n(7)}},
      // Signs, decimals, exponents, a number past 32 bits, a doubled quote,
      // an empty text, the nasties harmless inside quotes.
      {"exec dbo.sp_x -5, +3.25, .5, 1E3, 2147483648, 'O''K', '', 'a; b -- c /* d'",
       "dbo.sp_x",
       {n(-5), d(3.25), d(0.5), d(1000.0), d(2147483648.0), t("O'K"), t(""), t("a; b -- c /* d")}},
      // Line breaks and tabs; no arguments at all.
      {"\n\tEXECUTE\r\n  SP_050_CONS_TERMINAL_VAS_OS01\t", "SP_050_CONS_TERMINAL_VAS_OS01", {}},
      {"EXEC SP_TEXT 'não Nº'", "SP_TEXT", {t("não Nº")}},
  };
  for (const auto& row : rows) {
    const Statement s = parse_text(row.text);
    EXPECT_EQ(s.kind, Statement::Kind::Text);
    EXPECT_EQ(s.text, row.text);
    EXPECT_EQ(s.procedure, row.procedure);
    EXPECT_EQ(s.sql, "");
    expect_parameters(s, row.parameters);
  }
}

TEST(SqlTextPlain, TheErrorLogInsertWithEachDateExpressionAndTheCounter) {
  const std::string head =
      "INSERT INTO LOG_MSG ( TAB_TIPO_MSG_ID, USUARIO_INTERNET_ID ,  DATA_LOG    ,  MSG01       "
      ",  MSG02       ,  MSG03       ,  MSG04       ,  MSG05       )  VALUES ( 1 , 25 , ";
  const std::string tail = "'Falha X - T318QDR.m', '' , null , null , null ) ";
  const std::string columns =
      "INSERT INTO LOG_MSG (TAB_TIPO_MSG_ID, USUARIO_INTERNET_ID, DATA_LOG, MSG01, MSG02, MSG03, "
      "MSG04, MSG05) VALUES (?, ?, ";
  const std::vector<Expected> messages = {t("Falha X - T318QDR.m"), t(""), nul, nul, nul};
  struct Row {
    std::string text;
    std::string sql;
    std::vector<Expected> parameters;
  };
  const std::vector<Row> rows = {
      {head + " GETDATE() , " + tail, columns + "GETDATE(), ?, ?, ?, ?, ?)", {n(1), n(25)}},
      {head + " TO_DATE('2024/01/31 10:00:00' , 'YYYY/MM/DD hh24:mi:ss') , " + tail,
       columns + "TO_DATE(?, ?), ?, ?, ?, ?, ?)",
       {n(1), n(25), t("2024/01/31 10:00:00"), t("YYYY/MM/DD hh24:mi:ss")}},
      {head + " '2002/01/01' , " + tail,
       columns + "?, ?, ?, ?, ?, ?)",
       {n(1), n(25), t("2002/01/01")}},
      {"SELECT  log_gerador_id FROM infra_ids ", "SELECT log_gerador_id FROM infra_ids", {}},
      {"UPDATE infra_ids SET log_gerador_id = 42",
       "UPDATE infra_ids SET log_gerador_id = ?",
       {n(42)}},
      {"update INFRA_IDS set Log_Gerador_Id = null",
       "UPDATE INFRA_IDS SET Log_Gerador_Id = ?",
       {nul}},
  };
  for (auto row : rows) {
    const Statement s = parse_text(row.text);
    EXPECT_EQ(s.procedure, "");
    EXPECT_EQ(s.sql, row.sql);
    // Every insert ends with the same five messages.
    if (row.text.rfind("INSERT", 0) == 0)
      row.parameters.insert(row.parameters.end(), messages.begin(), messages.end());
    expect_parameters(s, row.parameters);
  }
}

TEST(SqlTextRefused, BatchesCommentsQuotesAndOtherNasties) {
  const std::vector<std::string> texts = {
      "EXEC SP_A 1; EXEC SP_B 2",               // a second statement
      "EXEC SP_A 1;",                           // a lone semicolon
      "EXEC SP_A 1 EXEC SP_B 2",                // a batch without a semicolon
      "EXEC SP_A 1 -- the rest",                // line comment
      "EXEC SP_A 1 /* the rest */",             // block comment
      "EXEC SP_A 'abc",                         // unbalanced quote
      "EXEC SP_A 'it's', 2",                    // an undoubled quote inside a text
      "EXEC SP'A 1",                            // a quote in the name
      "EXEC SP A 1",                            // a blank in the name
      "EXEC SP_A 1 x",                          // trailing garbage
      "EXEC SP_A 1,",                           // a missing last argument
      "EXEC SP_A @a = 1, 2",                    // positional after named
      "EXEC SP_A @a = @b",                      // a variable as value
      "EXEC a.b.c 1",                           // more than one qualifier
      "EXEC SP_A 1e999",                        // a number out of range
      "EXEC",                                   // no name
      "INSERT INTO USERS (A) VALUES (1)",       // another table
      "INSERT INTO LOG_MSG (A, B) VALUES (1)",  // fewer values than columns
      "SELECT * FROM infra_ids",                // all columns
      "SELECT a FROM infra_ids WHERE 1 = 1",    // a condition
      "UPDATE users SET a = 1",                 // another table
      "DELETE FROM LOG_MSG",                    // any other statement
      "",                                       // nothing
      "EXEC SP_A 1\x01",                        // a control character
  };
  for (const auto& text : texts) {
    SCOPED_TRACE(text);
    refusal(text);
  }
}

TEST(SqlTextRefused, MessagesSayWhatAndWhere) {
  EXPECT_EQ(refusal("EXEC SP_A 1; DROP TABLE T"),
            "Statement refused: more than one statement (\";\" at character 12)");
  EXPECT_EQ(refusal("EXEC SP_A 1 -- x"), "Statement refused: a comment (\"--\") at character 13");
  EXPECT_EQ(refusal("EXEC SP_A 'x"), "Statement refused: unbalanced quote at character 11");
  EXPECT_EQ(refusal("EXEC SP_A 1 x"),
            "Statement refused: expected \",\" after argument 1 but found \"x\" at character 13");
  EXPECT_EQ(refusal("INSERT INTO USERS (A) VALUES (1)"),
            "Statement refused: INSERT is only accepted into LOG_MSG, not into USERS");
  EXPECT_EQ(refusal("DELETE FROM LOG_MSG"),
            "Statement refused: not a procedure call (EXEC or EXECUTE) nor one of the "
            "component's own statements");
  // A comment later in the text is found even when the parse would fail first.
  EXPECT_EQ(refusal("EXEC SP_A x /* y */"),
            "Statement refused: a comment (\"/*\") at character 13");
}

// The command's call form and parameters are pinned by the data-access tests.
TEST(SqlTextCommand, OnlyPlainNamesAreCalled) {
  for (const char* good : {"a", "_x1", "dbo.SP_X"}) EXPECT_TRUE(sql_text::is_plain_name(good));
  for (const char* bad : {"", "1a", "a.", ".a", "a.b.c", "a b", "a;b", "a'b", "[a]", "a-b", "ç"})
    EXPECT_FALSE(sql_text::is_plain_name(bad)) << bad;
  EXPECT_THROW(sql_text::parse_command("SP_X; DROP TABLE T", {}), DatabaseError);
}

TEST(SqlDialect, EachDatabaseCallsInItsOwnForm) {
  using odbc::Dialect;
  using odbc::RoutineKind;
  const Statement positional = parse_text("EXEC SP_X 1, 'a'");
  const Statement named = parse_text("EXEC SP_X 1, @b = 'a'");
  const Statement bare = parse_text("EXEC SP_X");
  const Statement command =
      sql_text::parse_command("SP_X", {{"p1", 3, 10, Variant(1)}, {"p2", 200, 5, Variant("a")}});
  struct Row {
    Dialect dialect;
    const Statement* statement;
    RoutineKind kind;
    std::string sql;
    bool discard;
  };
  const std::vector<Row> rows = {
      {Dialect::SqlServer, &positional, RoutineKind::Function, "{call SP_X(?, ?)}", false},
      {Dialect::SqlServer, &named, RoutineKind::Function, "EXEC SP_X ?, @b = ?", false},
      {Dialect::SqlServer, &bare, RoutineKind::Function, "{call SP_X}", false},
      {Dialect::PostgreSql, &positional, RoutineKind::Function, "SELECT * FROM SP_X(?, ?)", false},
      {Dialect::PostgreSql, &named, RoutineKind::Function, "SELECT * FROM SP_X(?, b => ?)", false},
      {Dialect::PostgreSql, &bare, RoutineKind::Procedure, "CALL SP_X()", false},
      {Dialect::PostgreSql, &positional, RoutineKind::VoidFunction, "SELECT SP_X(?, ?)", true},
      {Dialect::PostgreSql, &command, RoutineKind::Procedure, "CALL SP_X(?, ?)", false},
      {Dialect::Generic, &named, RoutineKind::Function, "{call SP_X(?, ?)}", false},
  };
  for (const auto& row : rows) {
    const auto call = odbc::render_call(row.dialect, *row.statement, row.kind);
    EXPECT_EQ(call.sql, row.sql) << row.statement->text;
    EXPECT_EQ(call.discard_result, row.discard) << row.statement->text;
  }
  EXPECT_EQ(odbc::dialect_for("Microsoft SQL Server"), Dialect::SqlServer);
  EXPECT_EQ(odbc::dialect_for("PostgreSQL"), Dialect::PostgreSql);
  EXPECT_EQ(odbc::dialect_for("Oracle"), Dialect::Generic);
}

}  // namespace
}  // namespace qdr
