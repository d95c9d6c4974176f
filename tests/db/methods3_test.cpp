// The incident type list, incident recording and port lookup on the
// reference database (QDR_TEST_CONNECTION), seeded by db/postgres/*/300_*.

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "infra/backend_registry.h"
#include "infra/vb.h"
#include "qdr/qdr.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

const Variant kOk = Variant::integer(0);
const Variant kFailed = Variant::integer(10);

// One value read through a plain session, outside the routines under test.
std::string scalar(const std::string& sql) {
  Statement statement;
  statement.text = statement.sql = sql;
  const auto result = open_session(test::db_connection())->execute(statement);
  if (!result || result->rows.empty()) throw std::runtime_error("no row: " + sql);
  return vb::text_of(result->rows.at(0).at(0));
}

// The error log's rows whose text, pieces joined, holds `token`.
const std::string kLogged =
    " FROM log_msg WHERE strpos(concat(msg01, msg02, msg03, msg04, msg05), ";
int log_rows_with(const std::string& token) {
  return std::stoi(scalar("SELECT count(*)" + kLogged + "$t$" + token + "$t$) > 0"));
}

Variant list(std::initializer_list<Variant> items) {
  Variant out = Variant::array(0, static_cast<int32_t>(items.size()) - 1);
  int32_t i = 0;
  for (const Variant& item : items) out.at(i++) = item;
  return out;
}

struct Lista {
  Variant conecta, base{"SQLSERVER"}, usuario{2}, tam{"antes"}, ids, desc, sel, ident, just,
      canhoto, msg, cadastro;
  Lista(const std::string& connection, Variant record) : conecta(connection), ident(record) {}
  Variant call() {
    return QDR().gMonta_Lista_Tab_Tipo_Incidente(conecta, base, usuario, tam, ids, desc, sel, ident,
                                                 just, canhoto, msg, cadastro);
  }
};

struct Gravacao {
  Variant conecta, base{"SQLSERVER"}, usuario{2}, ident{102}, ids, sel, grava_obs{"S"}, tam, obs,
      just, msg, tipo_os{2}, cadastro;
  explicit Gravacao(const std::string& connection) : conecta(connection) {}
  // A single line on the screen.
  Gravacao& line(const char* id, const char* selected, const char* justification,
                 const char* kind) {
    ids = list({id});
    sel = list({selected});
    just = list({justification});
    cadastro = list({kind});
    tam = Variant(1);
    return *this;
  }
  Variant call() {
    return QDR().gGrava_Incidente(conecta, base, usuario, ident, ids, sel, grava_obs, tam, obs,
                                  just, msg, tipo_os, cadastro);
  }
};

struct Portos {
  Variant usuario, conecta, base{"SQLSERVER"}, ponto{"antes"}, tam{"antes"}, ids, msg, nomes;
  Portos(const std::string& connection, Variant user) : usuario(user), conecta(connection) {}
  Variant call() {
    return QDR().gConsulta_Porto_Ponto(usuario, conecta, base, ponto, tam, ids, msg, nomes);
  }
};

class Methods3Db : public test::DbTest {};

TEST_F(Methods3Db, IncidentTypesOfSeededRecords) {
  Lista r101(connection_, Variant(101));
  ASSERT_EQ(r101.call(), kOk) << r101.msg.as_string();
  EXPECT_EQ(r101.tam, Variant::long_integer(4));
  EXPECT_EQ(r101.ids, list({10, 12, 13, 16}));
  EXPECT_EQ(r101.desc,
            list({"Atraso na retirada do container no terminal", "Avaria no container",
                  "Lacre divergente do informado na OS", "Veículo quebrado no percurso"}));
  EXPECT_EQ(r101.sel, list({"N", "N", "N", "N"}));
  EXPECT_EQ(r101.just, list({"", "", "", ""}));
  EXPECT_EQ(r101.canhoto, list({"N", "N", "N", "N"}));
  EXPECT_EQ(r101.cadastro, list({"A", "A", "A", "M"}));

  // Record 103 comes with incident 17 recorded.
  Lista r103(connection_, Variant("103"));
  ASSERT_EQ(r103.call(), kOk) << r103.msg.as_string();
  EXPECT_EQ(r103.ids, list({10, 11, 17}));
  EXPECT_EQ(r103.sel, list({"N", "N", "S"}));
  EXPECT_EQ(r103.just, list({"", "", "Motorista substituído na saída do terminal"}));

  // Order type 7 offers no incident types; neither does a missing record.
  for (const Variant& record : {Variant(107), Variant(0), Variant("abc"), Variant(99999)}) {
    Lista none(connection_, record);
    EXPECT_EQ(none.call(), kOk);
    EXPECT_EQ(none.tam, Variant("antes"));
    EXPECT_TRUE(none.ids.is_empty());
  }
}

TEST_F(Methods3Db, RecordIncidentsThenListThem) {
  const std::string observacao =
      "SELECT observacao FROM ordem_servico_tipo WHERE ordem_servico_tipo_id = 102";
  Lista before(connection_, Variant(102));
  ASSERT_EQ(before.call(), kOk) << before.msg.as_string();
  ASSERT_EQ(before.ids, list({11, 12, 15, 18}));

  // The screen sends the whole list back: 11 ticked, 12 untouched, 15 with a
  // justification only, 18 ticked with its required justification.
  Gravacao g(connection_);
  g.ids = list({"11", "12", "15", "18"});
  g.sel = list({"S", "", "", "S"});
  g.just = list({"", "", "Canhoto retido pelo cliente", "Destinatário ausente"});
  g.cadastro = before.cadastro;
  g.tam = before.tam;
  g.obs = Variant("Cliente avisado por telefone");
  ASSERT_EQ(g.call(), kOk) << g.msg.as_string();

  Lista after(connection_, Variant(102));
  ASSERT_EQ(after.call(), kOk) << after.msg.as_string();
  EXPECT_EQ(after.ids, list({11, 12, 15, 18}));
  EXPECT_EQ(after.sel, list({"S", "N", "N", "S"}));
  EXPECT_EQ(after.just, list({"", "", "Canhoto retido pelo cliente", "Destinatário ausente"}));
  EXPECT_EQ(scalar(observacao), "Cliente avisado por telefone");
  EXPECT_EQ(scalar("SELECT usuario_internet_id FROM incidente_os_tipo "
                   "WHERE ordem_servico_tipo_id = 102 AND tab_tipo_incidente_id = 18"),
            "2");

  // Saving with nothing ticked clears the record; the observation stays when
  // the flag does not ask for it.
  Gravacao clear(connection_);
  clear.tam = Variant(0);
  clear.grava_obs = Variant("N");
  ASSERT_EQ(clear.call(), kOk) << clear.msg.as_string();
  Lista cleared(connection_, Variant(102));
  ASSERT_EQ(cleared.call(), kOk);
  EXPECT_EQ(cleared.sel, list({"N", "N", "N", "N"}));
  EXPECT_EQ(cleared.just, list({"", "", "", ""}));
  EXPECT_EQ(scalar(observacao), "Cliente avisado por telefone");
}

TEST_F(Methods3Db, PortsOfAUser) {
  Portos rio(connection_, Variant(2));
  ASSERT_EQ(rio.call(), kOk) << rio.msg.as_string();
  EXPECT_EQ(rio.ponto, Variant(2));
  EXPECT_EQ(rio.tam, Variant::long_integer(3));
  EXPECT_EQ(rio.ids, list({23, 22, 21}));
  EXPECT_EQ(rio.nomes,
            list({"Porto de Angra dos Reis", "Porto de Itaguaí", "Porto do Rio de Janeiro"}));

  Portos santos(connection_, Variant("1"));  // the id as text
  ASSERT_EQ(santos.call(), kOk) << santos.msg.as_string();
  EXPECT_EQ(santos.ids, list({11, 12}));
}

// The procedure refuses an incident type that order type 2 does not offer:
// the technical detail reaches user 1 only and nothing is written. Each
// failure logs one row holding the detail too, cut into pieces of 255
// characters and without the filtered characters.
TEST_F(Methods3Db, TechnicalDetailForUserOneOnly) {
  const std::string recorded =
      "SELECT count(*) FROM incidente_os_tipo WHERE ordem_servico_tipo_id = 102";
  const std::string rows_before = scalar(recorded);
  const std::string fixed =
      "Problemas na inclusão do Incidente. Contacte o Administrador do Sistema.";
  for (int user : {1, 2}) {
    SCOPED_TRACE(user);
    const std::string u = std::to_string(user);
    const std::string token = "methods3 tipo recusado usuario " + u;
    const std::string obs = token + std::string(100, '.');
    const int logged = log_rows_with(token);
    Gravacao g(connection_);
    g.line("10", "S", "x", "A").usuario = Variant(user);
    g.grava_obs = Variant("N");
    g.obs = Variant(obs);
    EXPECT_EQ(g.call(), kFailed);
    const std::string detail =
        " - T318QDR.mInclui_Incidente( Retorno > 0  :  No Nº 0)SQL: EXECUTE "
        "SP_050_INC_INCIDENTE01 102, 'N', '10', '" +
        obs + "', 'x', 'S', " + u + ", 'A' ";
    EXPECT_EQ(g.msg, Variant(user == 1 ? fixed + detail : fixed));
    ASSERT_EQ(log_rows_with(token), logged + 1);
    std::string kept = fixed + detail;
    std::erase_if(kept, [](char c) {
      return std::string_view("'<>();%&+\"").find(c) != std::string_view::npos;
    });
    EXPECT_EQ(scalar("SELECT concat_ws('|', msg01, msg02, msg03, msg04, msg05)" + kLogged + "$t$" +
                     token + "$t$) > 0"),
              vb::left(kept, 255) + "|" + vb::mid(kept, 256));
  }
  EXPECT_EQ(scalar(recorded), rows_before);
}

// Errors trapped inside each routine with the database up: the fixed text
// (user 2 or no user), one log row each.
TEST_F(Methods3Db, EachTrappedFailureLogsOneRow) {
  const auto run = [](auto routine) {
    const Variant status = routine.call();
    return std::pair{status, routine.msg};
  };
  const struct {
    const char* token;
    std::function<std::pair<Variant, Variant>()> call;
    std::string message;
  } cases[] = {
      // not a number and not null: the statement is not a single call
      {"OS01 987abc", [&] { return run(Lista(connection_, Variant("987abc"))); },
       "Problemas na Montagem da Lista de Indicadores. Contacte o Administrador do Sistema."},
      {"gGrava_Incidente Subscript out of range",
       [&] {
         Gravacao g(connection_);  // more lines than the arrays hold
         g.line("11", "S", "", "A").tam = Variant(2);
         return run(g);
       },
       "Problemas na Gravação do Incidente. Contacte o Administrador do Sistema."},
      {"PORTO_PONTO01   4x", [&] { return run(Portos(connection_, Variant("4x"))); },
       "Problema na Consulta do Porto e Agente relacionados ao Usuário. Contacte o Administrador "
       "do Sistema."},
      // a user without ports
      {"PORTO_PONTO01   3", [&] { return run(Portos(connection_, Variant(3))); },
       "Problemas ao identificar os Portos relacionado à Filial do Usuário.Contacte o "
       "Administrador do Sistema."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.token);
    const int logged = log_rows_with(c.token);
    const auto [status, message] = c.call();
    EXPECT_EQ(status, kFailed);
    EXPECT_EQ(message, Variant(c.message));
    EXPECT_EQ(log_rows_with(c.token), logged + 1);
  }
}

}  // namespace
}  // namespace qdr
