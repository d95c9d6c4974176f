#include "infra/logging.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "component/call_frame.h"
#include "infra/backend_registry.h"
#include "infra/vb.h"
#include "qdr/error.h"
#include "qdr/qdr.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

// The first column of each row of the test's own SQL, run as it stands
// (`bound` goes to its one "?"), so the check does not pass through the code
// under test's statement building.
std::vector<std::string> query(const std::string& sql, const std::string& bound) {
  Statement statement;
  statement.text = statement.sql = sql;
  statement.parameters.push_back({"", 200, static_cast<int>(bound.size()), Variant(bound)});
  std::vector<std::string> out;
  if (auto result = open_session(test::db_connection())->execute(statement))
    for (const auto& row : result->rows) out.push_back(vb::text_of(row.at(0)));
  return out;
}

// A text that tells this run's rows apart from every other run's.
std::string tag(const std::string& stem) {
  static int counter = 0;
  return stem + std::to_string(::getpid()) + "x" + std::to_string(std::time(nullptr)) + "x" +
         std::to_string(++counter);
}

// The LOG_MSG rows whose MSG01 holds `text`, each as message kind, user,
// date ("today" for midnight today, "now" within five minutes of the clock)
// and the pieces present, joined by "|".
std::vector<std::string> log_rows(const std::string& text) {
  return query(
      "SELECT concat_ws('|', tab_tipo_msg_id, usuario_internet_id, CASE WHEN data_log = "
      "current_date THEN 'today' WHEN abs(extract(epoch FROM data_log - localtimestamp)) < 300 "
      "THEN 'now' ELSE data_log::text END, msg01, msg02, msg03, msg04, msg05) "
      "FROM log_msg WHERE position(? in msg01) > 0",
      text);
}

class LoggingDb : public test::DbTest {
 protected:
  const Variant db_{test::db_connection()};
};

// One row per trapped failure, cut into pieces of 255 characters, without
// the filtered characters.
TEST_F(LoggingDb, TrappedFailureLeavesOneRow) {
  const std::string t = tag("falha");
  std::string description = t;
  std::string kept =
      "Acesso ao Fechamento da OS não disponível. Favor tentar mais tarde. - "
      "T318QDR.gGrava_Fechamento " +
      t;
  for (int i = 0; i < 30; ++i) {
    description += " (ação; 100% <x> & \"y\" + 'z')";
    kept += " ação 100 x  y  z";
  }
  kept += " : 13   No Nº 0";
  Variant message;
  run_call_frame(kFrames[4], db_, Variant("SQLSERVER"), Variant(2), message,
                 [&]() -> bool { throw Error(13, description); });
  EXPECT_EQ(log_rows(t),
            std::vector<std::string>{"1|2|now|" + vb::left(kept, 255) + "|" +
                                     vb::mid(kept, 256, 255) + "|" + vb::mid(kept, 511)});
}

TEST_F(LoggingDb, EveryDateExpressionStores) {
  const std::pair<const char*, std::string> cases[] = {
      {"SQLSERVER", "now"},                 // the server's clock
      {"ORACLE", "today"},                  // the reference TO_DATE keeps the day only
      {"POSTGRES", "2002-01-01 00:00:00"},  // the placeholder date
  };
  for (const auto& [kind, when] : cases) {
    SCOPED_TRACE(kind);
    const std::string t = tag("data");
    gGrava_Log_Msg(Variant(kind), db_, Variant(2), Variant(1), Variant(t));
    EXPECT_EQ(log_rows(t), std::vector<std::string>{"1|2|" + when + "|" + t});
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

    // A method on a database that is down still answers, with its own text.
    QDR component;
    Variant user(2), db(connection), kind("SQLSERVER"), point, count, ports, names;
    EXPECT_EQ(component.gConsulta_Porto_Ponto(user, db, kind, point, count, ports, message, names),
              Variant::integer(10));
    EXPECT_EQ(message.as_string(),
              "Problema na Consulta do Porto e Agente relacionados ao Usuário. Contacte o "
              "Administrador do Sistema.");
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

  const std::string activity =
      "SELECT count(*) FROM log_sistema WHERE registro_id = ?::int AND tabela_sistema_id = 5 "
      "AND usuario_id = 3 AND tab_tipo_acao_id = 2";
  const int before = std::stoi(query(activity, "77").at(0));
  int32_t table = 5, action = 2, user = 3, record = 77, retorno = 9;
  EXPECT_TRUE(gInclui_Log_Sistema(db_, table, action, user, record, retorno));
  EXPECT_EQ(retorno, 0);
  EXPECT_EQ(std::stoi(query(activity, "77").at(0)), before + 1);
}

}  // namespace
}  // namespace qdr
