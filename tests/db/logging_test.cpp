#include "infra/logging.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "component/call_frame.h"
#include "infra/backend_registry.h"
#include "infra/vb.h"
#include "qdr/error.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

using Row = std::vector<std::optional<std::string>>;

// Reads the database with the test's own SQL, run as it stands (`bound`
// goes to its one "?"), so the check does not pass through the code under
// test's statement building.
std::vector<Row> query(const std::string& sql, const std::string& bound) {
  Statement statement;
  statement.text = statement.sql = sql;
  statement.parameters.push_back({"", 200, static_cast<int>(bound.size()), Variant(bound)});
  std::vector<Row> out;
  if (auto result = open_session(test::db_connection())->execute(statement)) {
    for (const auto& values : result->rows) {
      Row row;
      for (const auto& v : values)
        row.push_back(v.is_null() ? std::nullopt : std::optional(vb::text_of(v)));
      out.push_back(row);
    }
  }
  return out;
}

// A text that tells this run's rows apart from every other run's.
std::string tag(const std::string& stem) {
  static int counter = 0;
  return stem + std::to_string(::getpid()) + "x" + std::to_string(std::time(nullptr)) + "x" +
         std::to_string(++counter);
}

// The LOG_MSG rows whose MSG01 holds `text`.
std::vector<Row> log_rows(const std::string& text) {
  return query(
      "SELECT tab_tipo_msg_id::text, usuario_internet_id::text, data_log::text, msg01, "
      "char_length(msg02)::text, char_length(msg03)::text, msg04, msg05, "
      "CASE WHEN concat(msg01, msg02, msg03) ~ '[''<>();%&+\"]' THEN 'found' END, "
      "CASE WHEN data_log::date = current_date THEN 'today' END, "
      "CASE WHEN abs(extract(epoch FROM data_log - localtimestamp)) < 300 THEN 'now' END "
      "FROM log_msg WHERE position(? in msg01) > 0",
      text);
}

class LoggingDb : public ::testing::Test {
 protected:
  void SetUp() override {
    if (test::db_connection().empty()) GTEST_SKIP() << "QDR_TEST_CONNECTION not set";
  }
  const Variant db_{test::db_connection()};
};

// One row per trapped failure, cut into pieces, without the filtered
// characters.
TEST_F(LoggingDb, TrappedFailureLeavesOneRow) {
  const std::string t = tag("falha");
  std::string description = t;  // 17 of the 29 characters are kept, three of them two bytes long
  for (int i = 0; i < 30; ++i) description += " (ação; 100% <x> & \"y\" + 'z')";
  Variant message;
  run_call_frame(kFrames[4], db_, Variant("SQLSERVER"), Variant(2), message,
                 [&]() -> bool { throw Error(13, description); });
  const std::string kept =
      "Acesso ao Fechamento da OS não disponível. Favor tentar mais tarde. "
      "- T318QDR.gGrava_Fechamento " +
      t + " ação 100 x  y  z";
  const auto rows = log_rows(t);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0][0], "1");
  EXPECT_EQ(rows[0][1], "2");
  EXPECT_EQ(rows[0][3]->substr(0, kept.size()), kept);
  EXPECT_EQ(vb::len(*rows[0][3]), 255);
  EXPECT_EQ(rows[0][4], "255");
  // the detail ends " : 13   No Nº 0" once filtered
  EXPECT_EQ(rows[0][5], std::to_string(vb::len(kept) - 17 + 30 * 17 + 15 - 510));
  EXPECT_EQ(rows[0][6], std::nullopt);
  EXPECT_EQ(rows[0][7], std::nullopt);
  EXPECT_EQ(rows[0][8], std::nullopt);  // none of the filtered characters
}

TEST_F(LoggingDb, EveryDateExpressionStores) {
  struct Case {
    const char* kind;
    size_t column;
    const char* expected;
  };
  const Case cases[] = {
      {"SQLSERVER", 10, "now"},                // the server's clock
      {"ORACLE", 9, "today"},                  // the reference TO_DATE keeps the day only
      {"POSTGRES", 2, "2002-01-01 00:00:00"},  // the placeholder date
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.kind);
    const std::string t = tag("data");
    gGrava_Log_Msg(Variant(c.kind), db_, Variant(2), Variant(1), Variant(t));
    const auto rows = log_rows(t);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0][c.column], c.expected);
  }
}

TEST_F(LoggingDb, UnreachableDatabaseIsQuiet) {
  std::string no_database = test::db_connection();
  no_database.insert(no_database.find("Database=") + 9, "nao_existe_");
  for (const std::string& connection :
       {std::string("Driver={PostgreSQL Unicode};Servername=127.0.0.1;Port=1;Database=x;"),
        std::string("Driver={Nenhum Driver};Servername=127.0.0.1;"), no_database}) {
    SCOPED_TRACE(connection);
    Variant message;
    report_failure(message, "Erro.", " - detalhe", Variant("SQLSERVER"), Variant(connection),
                   Variant(1));
    EXPECT_EQ(message.as_string(), "Erro. - detalhe");
  }
}

TEST_F(LoggingDb, CounterAndActivityLog) {
  Variant first, second, message("antes");
  ASSERT_TRUE(gAtualiza_infra_ids(db_, "parametro_job_id", first, message));
  ASSERT_TRUE(gAtualiza_infra_ids(db_, "parametro_job_id", second, message));
  EXPECT_EQ(second.as_long(), first.as_long() + 1);
  EXPECT_EQ(message.as_string(), "antes");
  EXPECT_FALSE(gAtualiza_infra_ids(db_, "nao_existe", first, message));
  EXPECT_NE(message.as_string().find("no nº 1 strsq: SELECT  nao_existe FROM infra_ids "),
            std::string::npos);

  const auto count = [] {
    return query(
               "SELECT count(*)::text FROM log_sistema WHERE registro_id = ?::int AND "
               "tabela_sistema_id = 5 AND usuario_id = 3 AND tab_tipo_acao_id = 2",
               "77")
        .at(0)
        .at(0)
        .value();
  };
  const std::string before = count();
  int32_t table = 5, action = 2, user = 3, record = 77, retorno = 9;
  EXPECT_TRUE(gInclui_Log_Sistema(db_, table, action, user, record, retorno));
  EXPECT_EQ(retorno, 0);
  EXPECT_EQ(std::stoi(count()), std::stoi(before) + 1);
}

}  // namespace
}  // namespace qdr
