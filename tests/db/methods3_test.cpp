// The incident type list, incident recording and port lookup on the
// reference database (QDR_TEST_CONNECTION), seeded by db/postgres/*/300_*.

#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "qdr/qdr.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

const Variant kOk = Variant::integer(0);
const Variant kFailed = Variant::integer(10);

// A plain ODBC connection for looking at tables the component only writes.
class Peek {
 public:
  explicit Peek(const std::string& connection) {
    SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &env_);
    SQLSetEnvAttr(env_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, env_, &dbc_);
    std::string text = connection;
    const SQLRETURN rc = SQLDriverConnect(dbc_, nullptr, reinterpret_cast<SQLCHAR*>(text.data()),
                                          SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(rc)) throw std::runtime_error("cannot connect: " + connection);
    connected_ = true;
  }
  ~Peek() {
    if (connected_) SQLDisconnect(dbc_);
    SQLFreeHandle(SQL_HANDLE_DBC, dbc_);
    SQLFreeHandle(SQL_HANDLE_ENV, env_);
  }
  Peek(const Peek&) = delete;
  Peek& operator=(const Peek&) = delete;

  // The first column of the first row as text; "" for null or no row.
  std::string scalar(const std::string& sql) {
    SQLHSTMT stmt = nullptr;
    SQLAllocHandle(SQL_HANDLE_STMT, dbc_, &stmt);
    std::string query = sql;
    std::string out;
    SQLRETURN rc = SQLExecDirect(stmt, reinterpret_cast<SQLCHAR*>(query.data()), SQL_NTS);
    if (SQL_SUCCEEDED(rc) && SQL_SUCCEEDED(SQLFetch(stmt))) {
      char buffer[4096];
      SQLLEN length = 0;
      rc = SQLGetData(stmt, 1, SQL_C_CHAR, buffer, sizeof buffer, &length);
      if (SQL_SUCCEEDED(rc) && length != SQL_NULL_DATA) out = buffer;
    } else if (!SQL_SUCCEEDED(rc)) {
      SQLFreeHandle(SQL_HANDLE_STMT, stmt);
      throw std::runtime_error("query failed: " + sql);
    }
    SQLFreeHandle(SQL_HANDLE_STMT, stmt);
    return out;
  }

  // Error-log rows whose text holds `token` (after the log's own filtering).
  int log_rows_with(const std::string& token) {
    return std::stoi(scalar(
        "SELECT count(*) FROM log_msg WHERE strpos(concat(msg01, msg02, msg03, msg04, msg05), "
        "$t$" +
        token + "$t$) > 0"));
  }

 private:
  SQLHENV env_ = nullptr;
  SQLHDBC dbc_ = nullptr;
  bool connected_ = false;
};

Variant strings(const std::vector<std::string>& items) {
  Variant out = Variant::array(0, static_cast<int32_t>(items.size()) - 1);
  for (std::size_t i = 0; i < items.size(); ++i)
    out.at(static_cast<int32_t>(i)) = Variant(items[i]);
  return out;
}

Variant longs(const std::vector<int32_t>& items) {
  Variant out = Variant::array(0, static_cast<int32_t>(items.size()) - 1);
  for (std::size_t i = 0; i < items.size(); ++i)
    out.at(static_cast<int32_t>(i)) = Variant(items[i]);
  return out;
}

struct Lista {
  Variant conecta, base{"SQLSERVER"}, usuario{2}, tam{"antes"}, ids, desc, sel, ident, just,
      canhoto, msg, cadastro;
  Lista(const std::string& connection, Variant record) : conecta(connection), ident(record) {}
  Variant call() {
    QDR qdr;
    return qdr.gMonta_Lista_Tab_Tipo_Incidente(conecta, base, usuario, tam, ids, desc, sel, ident,
                                               just, canhoto, msg, cadastro);
  }
};

struct Gravacao {
  Variant conecta, base{"SQLSERVER"}, usuario{2}, ident{102}, ids, sel, grava_obs{"S"}, tam, obs,
      just, msg, tipo_os{2}, cadastro;
  explicit Gravacao(const std::string& connection) : conecta(connection) {}
  Variant call() {
    QDR qdr;
    return qdr.gGrava_Incidente(conecta, base, usuario, ident, ids, sel, grava_obs, tam, obs, just,
                                msg, tipo_os, cadastro);
  }
};

struct Portos {
  Variant usuario, conecta, base{"SQLSERVER"}, ponto{"antes"}, tam{"antes"}, ids, msg, nomes;
  Portos(const std::string& connection, Variant user) : usuario(user), conecta(connection) {}
  Variant call() {
    QDR qdr;
    return qdr.gConsulta_Porto_Ponto(usuario, conecta, base, ponto, tam, ids, msg, nomes);
  }
};

class Methods3Db : public ::testing::Test {
 protected:
  void SetUp() override {
    connection_ = test::db_connection();
    if (connection_.empty()) GTEST_SKIP() << "QDR_TEST_CONNECTION is not set";
  }
  std::string connection_;
};

TEST_F(Methods3Db, IncidentTypesOfSeededRecords) {
  Lista r101(connection_, Variant(101));
  ASSERT_EQ(r101.call(), kOk) << r101.msg.as_string();
  EXPECT_EQ(r101.tam, Variant::long_integer(4));
  EXPECT_EQ(r101.ids, longs({10, 12, 13, 16}));
  EXPECT_EQ(r101.desc,
            strings({"Atraso na retirada do container no terminal", "Avaria no container",
                     "Lacre divergente do informado na OS", "Veículo quebrado no percurso"}));
  EXPECT_EQ(r101.sel, strings({"N", "N", "N", "N"}));
  EXPECT_EQ(r101.just, strings({"", "", "", ""}));
  EXPECT_EQ(r101.canhoto, strings({"N", "N", "N", "N"}));
  EXPECT_EQ(r101.cadastro, strings({"A", "A", "A", "M"}));

  // Record 103 comes with incident 17 recorded.
  Lista r103(connection_, Variant("103"));
  ASSERT_EQ(r103.call(), kOk) << r103.msg.as_string();
  EXPECT_EQ(r103.ids, longs({10, 11, 17}));
  EXPECT_EQ(r103.sel, strings({"N", "N", "S"}));
  EXPECT_EQ(r103.just, strings({"", "", "Motorista substituído na saída do terminal"}));

  // Order type 7 offers no incident types; neither does a missing record.
  for (const Variant& record : {Variant(107), Variant(0), Variant("abc"), Variant(99999)}) {
    Lista none(connection_, record);
    EXPECT_EQ(none.call(), kOk);
    EXPECT_EQ(none.tam, Variant("antes"));
    EXPECT_TRUE(none.ids.is_empty());
  }
}

TEST_F(Methods3Db, RecordIncidentsThenListThem) {
  Peek peek(connection_);
  Lista before(connection_, Variant(102));
  ASSERT_EQ(before.call(), kOk) << before.msg.as_string();
  ASSERT_EQ(before.ids, longs({11, 12, 15, 18}));

  // The screen sends the whole list back: 11 ticked, 12 untouched, 15 with a
  // justification only, 18 ticked with its required justification.
  Gravacao g(connection_);
  g.ids = strings({"11", "12", "15", "18"});
  g.sel = strings({"S", "", "", "S"});
  g.just = strings({"", "", "Canhoto retido pelo cliente", "Destinatário ausente"});
  g.cadastro = before.cadastro;
  g.tam = before.tam;
  g.obs = Variant("Cliente avisado por telefone");
  ASSERT_EQ(g.call(), kOk) << g.msg.as_string();

  Lista after(connection_, Variant(102));
  ASSERT_EQ(after.call(), kOk) << after.msg.as_string();
  EXPECT_EQ(after.ids, longs({11, 12, 15, 18}));
  EXPECT_EQ(after.sel, strings({"S", "N", "N", "S"}));
  EXPECT_EQ(after.just, strings({"", "", "Canhoto retido pelo cliente", "Destinatário ausente"}));
  EXPECT_EQ(after.cadastro, strings({"A", "A", "A", "M"}));
  EXPECT_EQ(
      peek.scalar("SELECT observacao FROM ordem_servico_tipo WHERE ordem_servico_tipo_id = 102"),
      "Cliente avisado por telefone");
  EXPECT_EQ(peek.scalar("SELECT usuario_internet_id FROM incidente_os_tipo "
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
  EXPECT_EQ(cleared.sel, strings({"N", "N", "N", "N"}));
  EXPECT_EQ(cleared.just, strings({"", "", "", ""}));
  EXPECT_EQ(
      peek.scalar("SELECT observacao FROM ordem_servico_tipo WHERE ordem_servico_tipo_id = 102"),
      "Cliente avisado por telefone");
}

TEST_F(Methods3Db, PortsOfAUser) {
  Portos rio(connection_, Variant(2));
  ASSERT_EQ(rio.call(), kOk) << rio.msg.as_string();
  EXPECT_EQ(rio.ponto, Variant(2));
  EXPECT_EQ(rio.tam, Variant::long_integer(3));
  EXPECT_EQ(rio.ids, longs({23, 22, 21}));
  EXPECT_EQ(rio.nomes,
            strings({"Porto de Angra dos Reis", "Porto de Itaguaí", "Porto do Rio de Janeiro"}));

  Portos santos(connection_, Variant("1"));
  ASSERT_EQ(santos.call(), kOk) << santos.msg.as_string();
  EXPECT_EQ(santos.ponto, Variant(1));
  EXPECT_EQ(santos.ids, longs({11, 12}));
}

TEST_F(Methods3Db, UserWithoutPortsIsLogged) {
  Peek peek(connection_);
  const std::string token = "PORTO_PONTO01   3";
  const int logged = peek.log_rows_with(token);
  Portos none(connection_, Variant(3));
  EXPECT_EQ(none.call(), kFailed);
  EXPECT_EQ(none.msg, Variant("Problemas ao identificar os Portos relacionado à Filial do "
                              "Usuário.Contacte o Administrador do Sistema."));
  EXPECT_EQ(none.tam, Variant("antes"));
  EXPECT_EQ(peek.log_rows_with(token), logged + 1);
  // The log keeps the detail, without its parentheses.
  EXPECT_EQ(peek.scalar("SELECT msg01 FROM log_msg WHERE usuario_internet_id = 3 AND "
                        "tab_tipo_msg_id = 1 ORDER BY log_msg_id DESC LIMIT 1"),
            "Problemas ao identificar os Portos relacionado à Filial do Usuário.Contacte o "
            "Administrador do Sistema. - T529LW.mConsulta_Porto_Ponto - State = 0:  No Nº "
            "0EXEC SP_050_CON_PORTO_PONTO01   3");
}

// The procedure refuses an incident type that order type 2 does not offer:
// the technical detail reaches user 1 only, nothing is written, one log row
// per failure.
TEST_F(Methods3Db, TechnicalDetailForUserOneOnly) {
  Peek peek(connection_);
  const std::string recorded =
      "SELECT count(*) FROM incidente_os_tipo WHERE ordem_servico_tipo_id = 102";
  const std::string rows_before = peek.scalar(recorded);
  const std::string fixed =
      "Problemas na inclusão do Incidente. Contacte o Administrador do Sistema.";
  for (int user : {1, 2}) {
    SCOPED_TRACE(user);
    const std::string obs = "methods3 tipo recusado usuario " + std::to_string(user);
    const int logged = peek.log_rows_with(obs);
    Gravacao g(connection_);
    g.usuario = Variant(user);
    g.ids = strings({"10"});
    g.sel = strings({"S"});
    g.just = strings({"x"});
    g.cadastro = strings({"A"});
    g.tam = Variant(1);
    g.grava_obs = Variant("N");
    g.obs = Variant(obs);
    EXPECT_EQ(g.call(), kFailed);
    EXPECT_EQ(g.msg, Variant(user == 1 ? fixed +
                                             " - T318QDR.mInclui_Incidente( Retorno > 0  :  No "
                                             "Nº 0)SQL: EXECUTE SP_050_INC_INCIDENTE01 102, 'N', "
                                             "'10', '" +
                                             obs + "', 'x', 'S', 1, 'A' "
                                       : fixed));
    EXPECT_EQ(peek.log_rows_with(obs), logged + 1);
  }
  EXPECT_EQ(peek.scalar(recorded), rows_before);
}

// Errors trapped inside each routine with the database up: one log row each.
TEST_F(Methods3Db, EachTrappedFailureLogsOneRow) {
  Peek peek(connection_);
  {
    // Not a number and not null: the statement is not a single call.
    const std::string token = "OS01 987abc";
    const int logged = peek.log_rows_with(token);
    Lista lista(connection_, Variant("987abc"));
    lista.usuario = Variant(1);
    EXPECT_EQ(lista.call(), kFailed);
    EXPECT_EQ(lista.msg.as_string().rfind(
                  "Problemas na Montagem da Lista de Indicadores. Contacte o Administrador do "
                  "Sistema. - T318QDR.mMonta_Lista_Tab_Tipo_Incidente( ",
                  0),
              0u)
        << lista.msg.as_string();
    EXPECT_EQ(peek.log_rows_with(token), logged + 1);
  }
  {
    const std::string token = "gGrava_Incidente Subscript out of range";
    const int logged = peek.log_rows_with(token);
    Gravacao g(connection_);
    g.ids = strings({"11"});
    g.sel = strings({"S"});
    g.just = strings({""});
    g.cadastro = strings({"A"});
    g.tam = Variant(2);
    EXPECT_EQ(g.call(), kFailed);
    EXPECT_EQ(g.msg, Variant("Problemas na Gravação do Incidente. Contacte o Administrador do "
                             "Sistema."));
    EXPECT_EQ(peek.log_rows_with(token), logged + 1);
  }
  {
    const std::string token = "PORTO_PONTO01   4x";
    const int logged = peek.log_rows_with(token);
    Portos p(connection_, Variant("4x"));
    EXPECT_EQ(p.call(), kFailed);
    EXPECT_EQ(p.msg, Variant("Problema na Consulta do Porto e Agente relacionados ao Usuário. "
                             "Contacte o Administrador do Sistema."));
    EXPECT_EQ(peek.log_rows_with(token), logged + 1);
  }
}

}  // namespace
}  // namespace qdr
