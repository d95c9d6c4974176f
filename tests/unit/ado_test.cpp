#include "infra/ado.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "infra/backend_registry.h"
#include "infra/odbc/connection_string.h"
#include "infra/odbc/values.h"
#include "qdr/error.h"
#include "tests/support/variant_json.h"

namespace qdr {
namespace {

using namespace qdr::ado;

// A scripted data source: answers each statement with the next response and
// remembers what it was asked and how many sessions are open.
struct Fake {
  std::deque<std::function<std::optional<ResultSet>()>> responses;
  std::vector<Statement> statements;
  int opened = 0, open_now = 0;
};

Fake* fake = nullptr;

class FakeSession : public Session {
 public:
  FakeSession() {
    ++fake->opened;
    ++fake->open_now;
  }
  ~FakeSession() override { --fake->open_now; }
  std::optional<ResultSet> execute(const Statement& statement) override {
    fake->statements.push_back(statement);
    if (fake->responses.empty()) throw DatabaseError(-1, "no response left");
    auto response = std::move(fake->responses.front());
    fake->responses.pop_front();
    return response();
  }
};

std::unique_ptr<Session> fake_session(const std::map<std::string, std::string>&,
                                      const std::string&) {
  return std::make_unique<FakeSession>();
}

constexpr const char* kConnection = "Provider=DataLayerFake;Data Source=nowhere";

class AdoTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fake = &state_;
    register_backend("DataLayerFake", fake_session);
  }
  void TearDown() override {
    unregister_backend("DataLayerFake");
    fake = nullptr;
  }
  // std::nullopt answers "no result set".
  void answer(std::optional<ResultSet> result) {
    state_.responses.push_back([result] { return result; });
  }
  Fake state_;
};

ResultSet three_rows() {
  return {
      {"Retorno", "Msg_Ret"},
      {{Variant(1), Variant("um")}, {Variant(2), Variant::null()}, {Variant(3), Variant("três")}}};
}

// The number of the data-access error `action` raises.
int32_t ado_error(const std::function<void()>& action) {
  try {
    action();
  } catch (const DatabaseError&) {
    ADD_FAILURE() << "a database error where the data-access objects should fail";
    return 0;
  } catch (const Error& e) {
    return e.number();
  }
  ADD_FAILURE() << "no error";
  return 0;
}

// What the data source was asked: kind, text, procedure, timeout, then each
// parameter's name, type, size and value.
std::string described(const Statement& s) {
  std::string out = (s.kind == Statement::Kind::Command ? "command [" : "text [") + s.text + "] " +
                    s.procedure + " timeout " + std::to_string(s.timeout);
  for (const Parameter& p : s.parameters)
    out += " | " + p.name + " " + std::to_string(p.type) + " " + std::to_string(p.size) + " " +
           test::shown(p.value);
  return out;
}

TEST_F(AdoTest, ARefusedTextNeverReachesTheDatabase) {
  Recordset rs;
  EXPECT_THROW(rs.Open("EXEC SP_A 1; DROP TABLE LOG_MSG", kConnection), DatabaseError);
  EXPECT_EQ(state_.opened, 0);
  EXPECT_EQ(rs.State(), adStateClosed);

  Connection connection;
  connection.Open(kConnection);
  Command command;
  command.ActiveConnection(connection);
  command.CommandType = adCmdStoredProc;
  command.CommandText("SP_A; DROP TABLE LOG_MSG");
  EXPECT_THROW(command.Execute(), DatabaseError);
  EXPECT_TRUE(state_.statements.empty());
}

TEST_F(AdoTest, OpenSendsTheParsedCallThenNavigatesTheRowsWithTheSessionReleased) {
  answer(three_rows());
  Recordset rs;
  rs.CursorLocation = adUseClient;
  rs.Open("EXEC SP_050_CON_PORTO_PONTO01   7 ", kConnection, adOpenStatic, adLockReadOnly, -1);
  ASSERT_EQ(state_.statements.size(), 1u);
  EXPECT_EQ(
      described(state_.statements[0]),
      "text [EXEC SP_050_CON_PORTO_PONTO01   7 ] SP_050_CON_PORTO_PONTO01 timeout 30 |  3 0 7");
  // Every row is already read, so the connection went back at once.
  EXPECT_EQ(state_.open_now, 0);
  EXPECT_EQ(rs.State(), adStateOpen);
  EXPECT_EQ(rs.RecordCount(), 3);
  EXPECT_FALSE(rs.Eof());
  EXPECT_TRUE(rs.Fields("RETORNO") == Variant(1));
  EXPECT_TRUE(rs.Fields("msg_ret") == Variant("um"));
  EXPECT_FALSE(rs.HasField("Msg"));
  EXPECT_EQ(ado_error([&] { rs.Fields("Msg"); }), adErrItemNotFound);
  rs.MoveNext();
  EXPECT_TRUE(rs.Fields("Msg_Ret").is_null());
  rs.MoveLast();
  EXPECT_TRUE(rs.Fields("Retorno") == Variant(3));
  rs.MoveNext();
  EXPECT_TRUE(rs.Eof());
  EXPECT_EQ(ado_error([&] { rs.Fields("Retorno"); }), adErrNoCurrentRecord);
  EXPECT_EQ(ado_error([&] { rs.MoveNext(); }), adErrNoCurrentRecord);
  rs.MoveFirst();
  EXPECT_TRUE(rs.Fields("Retorno") == Variant(1));
  EXPECT_EQ(ado_error([&] { rs.Open("EXEC SP_X", kConnection); }), adErrObjectOpen);
  rs.Close();
  EXPECT_EQ(rs.State(), adStateClosed);
  EXPECT_EQ(ado_error([&] { rs.Close(); }), adErrObjectClosed);

  answer(ResultSet{{"Retorno"}, {}});  // an empty result is open at both ends
  rs.Open("EXEC SP_X", kConnection);
  EXPECT_TRUE(rs.Eof() && rs.Bof());
  EXPECT_EQ(rs.RecordCount(), 0);
  EXPECT_EQ(ado_error([&] { rs.MoveFirst(); }), adErrNoCurrentRecord);
}

TEST_F(AdoTest, NoResultSetOrADatabaseErrorLeavesTheRecordsetClosed) {
  answer(std::nullopt);
  Recordset rs;
  rs.Open("EXEC SP_GRAVA 1", kConnection);
  EXPECT_EQ(rs.State(), adStateClosed);
  EXPECT_EQ(ado_error([&] { rs.Eof(); }), adErrObjectClosed);
  EXPECT_EQ(ado_error([&] { rs.Fields("Retorno"); }), adErrObjectClosed);
  EXPECT_EQ(ado_error([&] { rs.MoveNext(); }), adErrObjectClosed);

  // The database's error passes through as it came, and the session is still released.
  state_.responses.push_back(
      []() -> std::optional<ResultSet> { throw DatabaseError(547, "conflict", "23000"); });
  try {
    rs.Open("EXEC SP_X 1", kConnection);
    FAIL() << "no error";
  } catch (const DatabaseError& e) {
    EXPECT_EQ(std::to_string(e.number()) + " " + e.sqlstate() + " " + e.what(),
              "547 23000 conflict");
  }
  EXPECT_EQ(state_.open_now, 0);
  EXPECT_EQ(rs.State(), adStateClosed);
}

TEST_F(AdoTest, StoredProcedureCommandReadsBackInCallFormAndSendsTypedParameters) {
  Command command;
  command.CommandTimeout = 120;
  command.CommandType = adCmdStoredProc;
  command.CommandText("SP_050_GRA_TRACKING_OS02");
  EXPECT_EQ(command.CommandText(), "{ call SP_050_GRA_TRACKING_OS02 }");
  command.Parameters().Append(
      command.CreateParameter("pORDEM_SERVICO_ID", adInteger, adParamInput, 10, Variant(77)));
  command.Parameters().Append(
      command.CreateParameter("pHORA_INI_EXECUCAO", adVarChar, adParamInput, 5, Variant("10:00")));
  command.Parameters().Append(
      command.CreateParameter("pTERMINAL_ID", adInteger, adParamInput, 10, Variant::null()));
  EXPECT_EQ(command.CommandText(), "{ call SP_050_GRA_TRACKING_OS02(?, ?, ?) }");
  EXPECT_EQ(ado_error([&] { command.Parameters().Item(3); }), adErrItemNotFound);
  EXPECT_EQ(ado_error([&] { command.Execute(); }), adErrInvalidConnection);

  answer(ResultSet{{"retorno"}, {{Variant(0)}}});
  Connection connection;
  connection.Open(kConnection);
  command.ActiveConnection(connection);
  Recordset rs = command.Execute();
  EXPECT_TRUE(rs.Fields("RETORNO") == Variant(0));
  ASSERT_EQ(state_.statements.size(), 1u);
  EXPECT_EQ(described(state_.statements[0]),
            "command [{ call SP_050_GRA_TRACKING_OS02(?, ?, ?) }] SP_050_GRA_TRACKING_OS02 timeout "
            "120 | pORDEM_SERVICO_ID 3 10 77 | "
            "pHORA_INI_EXECUCAO 200 5 \"10:00\" | pTERMINAL_ID 3 10 null");
  // The command's connection stays open for the routine to close.
  EXPECT_EQ(state_.open_now, 1);
  connection.Close();
  EXPECT_EQ(state_.open_now, 0);

  // A text command is parsed like a recordset's source.
  answer(std::nullopt);
  connection.Open(kConnection);
  Command text;
  text.ActiveConnection(connection);
  text.CommandText("EXEC SP_X 'a'");
  EXPECT_EQ(text.Execute().State(), adStateClosed);
  EXPECT_EQ(described(state_.statements.at(1)),
            "text [EXEC SP_X 'a'] SP_X timeout 30 |  200 1 \"a\"");
}

TEST_F(AdoTest, ConnectionStatesAndFailures) {
  Connection connection;
  EXPECT_EQ(ado_error([&] { connection.session(); }), adErrObjectClosed);
  // A version-qualified provider, in any case, is the provider it qualifies.
  connection.ConnectionString = "Provider=datalayerfake.1;Data Source=nowhere";
  connection.Open();
  EXPECT_EQ(connection.State(), adStateOpen);
  EXPECT_EQ(ado_error([&] { connection.Open(); }), adErrObjectOpen);

  answer(ResultSet{{"n"}, {{Variant(1)}}});
  Recordset rs;
  rs.Open("EXEC SP_X", connection);
  EXPECT_EQ(state_.opened, 1);  // ran on the open connection, no new one
  connection.Close();
  connection.Close();  // harmless when closed
  EXPECT_EQ(state_.open_now, 0);
  Recordset other;
  EXPECT_EQ(ado_error([&] { other.Open("EXEC SP_X", connection); }), adErrInvalidConnection);

  for (const char* bad : {"", "Provider=NoSuchThing;Data Source=x", "Data Source=x"}) {
    Connection c;
    try {
      c.Open(bad);
      ADD_FAILURE() << "opened: " << bad;
    } catch (const DatabaseError& e) {
      EXPECT_STRNE(e.what(), "");
    }
    EXPECT_EQ(c.State(), adStateClosed);
  }
}

TEST(ConnectionStrings, OleDbFormsMapOntoOdbcDrivers) {
  unsetenv(odbc::kSqlServerDriverVariable);
  unsetenv(odbc::kPostgreSqlDriverVariable);
  struct Row {
    std::string given;
    std::string odbc;
  };
  const std::string sql_server = "Driver={ODBC Driver 18 for SQL Server};";
  const std::string postgres = "Driver={PostgreSQL Unicode};";
  const std::vector<Row> rows = {
      {"Provider=SQLOLEDB.1;Data Source=s\\i;Initial Catalog=P;User ID=u;Password=p;"
       "Persist Security Info=False",
       sql_server + "Server=s\\i;Database=P;UID=u;PWD=p;"},
      {"Provider=SQLOLEDB;Data Source=s,1433;Initial Catalog=P;User ID=u;Password={a;b}",
       sql_server + "Server=s,1433;Database=P;UID=u;PWD={a;b};"},
      {"Provider=MSOLEDBSQL;Server=s;Database=P;Integrated Security=SSPI;User ID=ignored",
       sql_server + "Server=s;Database=P;Trusted_Connection=yes;"},
      {"Provider=SQLNCLI11;Data Source=s;Use Encryption for Data=True;"
       "Trust Server Certificate=True;Application Name=QDR",
       sql_server + "Server=s;Encrypt=yes;TrustServerCertificate=yes;APP=QDR;"},
      {"Provider=PostgreSQL;Host=db.local;Port=5433;Database=porto;User ID=qdr;Password=x",
       postgres + "Servername=db.local;Port=5433;Database=porto;UID=qdr;PWD=x;"},
      {"Provider=PostgreSQL;Data Source=10.0.0.5:6543;Initial Catalog=porto;User ID=qdr",
       postgres + "Servername=10.0.0.5;Port=6543;Database=porto;UID=qdr;"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(odbc_string_for_provider(parse_connection_string(row.given)), row.odbc) << row.given;

  setenv(odbc::kSqlServerDriverVariable, "FreeTDS", 1);
  EXPECT_EQ(odbc_string_for_provider(parse_connection_string("Provider=SQLOLEDB;Server=s")),
            "Driver={FreeTDS};Server=s;");
  unsetenv(odbc::kSqlServerDriverVariable);

  EXPECT_THROW(odbc_string_for_provider(parse_connection_string("Provider=MSDAORA;Data Source=x")),
               DatabaseError);
  EXPECT_EQ(odbc::odbc_value("a}b;c"), "{a}}b;c}");
  EXPECT_EQ(odbc::odbc_value(" padded"), "{ padded}");
}

TEST(OdbcValues, MoneyAsTheDatabasesPrintIt) {
  struct Row {
    std::string text;
    std::optional<int64_t> scaled;
  };
  const std::vector<Row> rows = {{"$1,234.56", 12345600},
                                 {"-$1,234.56", -12345600},
                                 {"($3.00)", -30000},
                                 {"1234.5000", 12345000},
                                 {"R$ 1.234,56", 12345600},
                                 {"0.0001", 1},
                                 {"7", 70000},
                                 {"$", std::nullopt}};
  for (const auto& row : rows) EXPECT_EQ(odbc::parse_money(row.text), row.scaled) << row.text;
}

}  // namespace
}  // namespace qdr
