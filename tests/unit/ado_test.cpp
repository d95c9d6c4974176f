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

namespace qdr {
namespace {

using namespace qdr::ado;

// A scripted data source: answers each statement with the next response and
// remembers what it was asked and how many sessions are open.
struct Fake {
  std::deque<std::function<std::optional<ResultSet>()>> responses;
  std::vector<Statement> statements;
  int opened = 0;
  int open_now = 0;
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

constexpr const char* kConnection = "Provider=DataLayerFake;Data Source=nowhere";

class AdoTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fake = &state_;
    register_backend("DataLayerFake",
                     [](const std::map<std::string, std::string>&, const std::string&) {
                       return std::make_unique<FakeSession>();
                     });
  }
  void TearDown() override {
    unregister_backend("DataLayerFake");
    fake = nullptr;
  }
  void answer(ResultSet result) {
    state_.responses.push_back([result] { return std::optional<ResultSet>(result); });
  }
  void answer_nothing() {
    state_.responses.push_back([] { return std::optional<ResultSet>(); });
  }
  void answer_error(DatabaseError error) {
    state_.responses.push_back([error]() -> std::optional<ResultSet> { throw error; });
  }
  Fake state_;
};

ResultSet three_rows() {
  return {
      {"Retorno", "Msg_Ret"},
      {{Variant(1), Variant("um")}, {Variant(2), Variant::null()}, {Variant(3), Variant("três")}}};
}

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

TEST_F(AdoTest, OpenOnAConnectionStringSendsTheParsedCallAndReleasesTheSession) {
  answer(three_rows());
  Recordset rs;
  rs.CursorLocation = adUseClient;
  rs.Open("EXEC SP_050_CON_PORTO_PONTO01   7 ", kConnection, adOpenStatic, adLockReadOnly, -1);
  ASSERT_EQ(state_.statements.size(), 1u);
  const Statement& s = state_.statements[0];
  EXPECT_EQ(s.kind, Statement::Kind::Text);
  EXPECT_EQ(s.text, "EXEC SP_050_CON_PORTO_PONTO01   7 ");
  EXPECT_EQ(s.procedure, "SP_050_CON_PORTO_PONTO01");
  ASSERT_EQ(s.parameters.size(), 1u);
  EXPECT_TRUE(s.parameters[0].value == Variant(7));
  EXPECT_EQ(s.timeout, 30);
  // Every row is already read, so the connection went back at once.
  EXPECT_EQ(state_.open_now, 0);
  EXPECT_EQ(rs.State(), adStateOpen);
  EXPECT_EQ(rs.RecordCount(), 3);
}

TEST_F(AdoTest, ARefusedTextNeverOpensAConnection) {
  Recordset rs;
  EXPECT_THROW(rs.Open("EXEC SP_A 1; DROP TABLE LOG_MSG", kConnection), DatabaseError);
  EXPECT_EQ(state_.opened, 0);
  EXPECT_EQ(rs.State(), adStateClosed);

  Connection connection;
  connection.Open(kConnection);
  EXPECT_THROW(rs.Open("EXEC SP_A 'x", connection), DatabaseError);
  Command command;
  command.ActiveConnection(connection);
  command.CommandType = adCmdStoredProc;
  command.CommandText("SP_A; DROP TABLE LOG_MSG");
  EXPECT_THROW(command.Execute(), DatabaseError);
  EXPECT_TRUE(state_.statements.empty());
}

TEST_F(AdoTest, NavigationCountsAndFieldsByNameInAnyCase) {
  answer(three_rows());
  Recordset rs;
  rs.Open("EXEC SP_X", kConnection);
  EXPECT_FALSE(rs.Eof());
  EXPECT_FALSE(rs.Bof());
  EXPECT_TRUE(rs.Fields("RETORNO") == Variant(1));
  EXPECT_TRUE(rs.Fields("msg_ret") == Variant("um"));
  EXPECT_TRUE(rs.HasField("Msg_Ret"));
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
  EXPECT_EQ(rs.RecordCount(), 3);
  EXPECT_EQ(ado_error([&] { rs.Open("EXEC SP_X", kConnection); }), adErrObjectOpen);
  rs.Close();
  EXPECT_EQ(rs.State(), adStateClosed);
  EXPECT_EQ(ado_error([&] { rs.Close(); }), adErrObjectClosed);
}

TEST_F(AdoTest, NoResultSetLeavesTheRecordsetClosed) {
  answer_nothing();
  Recordset rs;
  rs.Open("EXEC SP_GRAVA 1", kConnection);
  EXPECT_EQ(rs.State(), adStateClosed);
  EXPECT_EQ(ado_error([&] { rs.Eof(); }), adErrObjectClosed);
  EXPECT_EQ(ado_error([&] { rs.RecordCount(); }), adErrObjectClosed);
  EXPECT_EQ(ado_error([&] { rs.Fields("Retorno"); }), adErrObjectClosed);
  EXPECT_EQ(ado_error([&] { rs.MoveNext(); }), adErrObjectClosed);
}

TEST_F(AdoTest, AnEmptyResultIsOpenAtBothEnds) {
  answer({{"Retorno"}, {}});
  Recordset rs;
  rs.Open("EXEC SP_X", kConnection);
  EXPECT_EQ(rs.State(), adStateOpen);
  EXPECT_TRUE(rs.Eof());
  EXPECT_TRUE(rs.Bof());
  EXPECT_EQ(rs.RecordCount(), 0);
  EXPECT_EQ(ado_error([&] { rs.MoveFirst(); }), adErrNoCurrentRecord);
  EXPECT_EQ(ado_error([&] { rs.MoveLast(); }), adErrNoCurrentRecord);
}

TEST_F(AdoTest, ADatabaseErrorPassesThroughAndTheSessionIsStillReleased) {
  answer_error(DatabaseError(547, "conflict", "23000"));
  Recordset rs;
  try {
    rs.Open("EXEC SP_X 1", kConnection);
    FAIL() << "no error";
  } catch (const DatabaseError& e) {
    EXPECT_EQ(e.number(), 547);
    EXPECT_EQ(e.sqlstate(), "23000");
    EXPECT_STREQ(e.what(), "conflict");
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
  EXPECT_EQ(command.Parameters().Count(), 3);
  EXPECT_EQ(command.Parameters().Item(1).Name, "pHORA_INI_EXECUCAO");
  EXPECT_EQ(ado_error([&] { command.Parameters().Item(3); }), adErrItemNotFound);

  EXPECT_EQ(ado_error([&] { command.Execute(); }), adErrInvalidConnection);

  answer({{"retorno"}, {{Variant(0)}}});
  Connection connection;
  connection.CursorLocation = adUseClient;
  connection.Open(kConnection);
  command.ActiveConnection(connection);
  Recordset rs = command.Execute();
  EXPECT_EQ(rs.State(), adStateOpen);
  EXPECT_TRUE(rs.Fields("RETORNO") == Variant(0));
  ASSERT_EQ(state_.statements.size(), 1u);
  const Statement& s = state_.statements[0];
  EXPECT_EQ(s.kind, Statement::Kind::Command);
  EXPECT_EQ(s.text, "{ call SP_050_GRA_TRACKING_OS02(?, ?, ?) }");
  EXPECT_EQ(s.procedure, "SP_050_GRA_TRACKING_OS02");
  EXPECT_EQ(s.timeout, 120);
  ASSERT_EQ(s.parameters.size(), 3u);
  EXPECT_EQ(s.parameters[1].name, "pHORA_INI_EXECUCAO");
  EXPECT_EQ(s.parameters[1].type, adVarChar);
  EXPECT_EQ(s.parameters[1].size, 5);
  EXPECT_TRUE(s.parameters[1].value == Variant("10:00"));
  EXPECT_TRUE(s.parameters[2].value.is_null());
  // The command's connection stays open for the routine to close.
  EXPECT_EQ(state_.open_now, 1);
  connection.Close();
  EXPECT_EQ(state_.open_now, 0);
}

TEST_F(AdoTest, ATextCommandIsParsedLikeARecordsetSource) {
  answer_nothing();
  Connection connection;
  connection.Open(kConnection);
  Command command;
  command.ActiveConnection(connection);
  command.CommandText("EXEC SP_X 'a'");
  EXPECT_EQ(command.CommandText(), "EXEC SP_X 'a'");
  Recordset rs = command.Execute();
  EXPECT_EQ(rs.State(), adStateClosed);
  ASSERT_EQ(state_.statements.size(), 1u);
  EXPECT_EQ(state_.statements[0].kind, Statement::Kind::Text);
  EXPECT_EQ(state_.statements[0].timeout, 30);
}

TEST_F(AdoTest, ConnectionStatesAndFailures) {
  Connection connection;
  EXPECT_EQ(connection.State(), adStateClosed);
  EXPECT_EQ(ado_error([&] { connection.session(); }), adErrObjectClosed);
  connection.ConnectionString = kConnection;
  connection.Open();
  EXPECT_EQ(connection.State(), adStateOpen);
  EXPECT_EQ(ado_error([&] { connection.Open(); }), adErrObjectOpen);

  answer({{"n"}, {{Variant(1)}}});
  Recordset rs;
  rs.Open("EXEC SP_X", connection);
  EXPECT_EQ(rs.RecordCount(), 1);
  EXPECT_EQ(state_.opened, 1);  // ran on the open connection, no new one
  connection.Close();
  connection.Close();  // harmless when closed
  EXPECT_EQ(connection.State(), adStateClosed);
  EXPECT_EQ(state_.open_now, 0);
  Recordset other;
  EXPECT_EQ(ado_error([&] { other.Open("EXEC SP_X", connection); }), adErrInvalidConnection);

  for (const char* bad : {"", "   ", "Provider=NoSuchThing;Data Source=x", "Data Source=x"}) {
    Connection c;
    try {
      c.Open(bad);
      ADD_FAILURE() << "opened: " << bad;
    } catch (const DatabaseError& e) {
      EXPECT_FALSE(std::string(e.what()).empty());
    }
    EXPECT_EQ(c.State(), adStateClosed);
  }
}

TEST_F(AdoTest, AVersionQualifiedProviderIsTheProviderItQualifies) {
  register_backend("SQLOLEDB", [](const std::map<std::string, std::string>&, const std::string&) {
    return std::make_unique<FakeSession>();
  });
  Connection connection;
  connection.Open("Provider=SQLOLEDB.1;Data Source=db;Initial Catalog=x");
  EXPECT_EQ(connection.State(), adStateOpen);
  connection.Close();
  // Put the built-in mapping back.
  register_backend("SQLOLEDB",
                   [](const std::map<std::string, std::string>& attributes, const std::string&) {
                     return open_odbc_session(odbc_string_for_provider(attributes));
                   });
}

TEST(ConnectionStrings, OleDbFormsMapOntoOdbcDrivers) {
  unsetenv(odbc::kSqlServerDriverVariable);
  unsetenv(odbc::kPostgreSqlDriverVariable);
  struct Row {
    std::string given;
    std::string odbc;
  };
  const std::vector<Row> rows = {
      {"Provider=SQLOLEDB.1;Data Source=srv\\inst;Initial Catalog=PORTO;User ID=app;"
       "Password=s3cr;Persist Security Info=False",
       "Driver={ODBC Driver 18 for SQL Server};Server=srv\\inst;Database=PORTO;UID=app;"
       "PWD=s3cr;"},
      {"Provider=SQLOLEDB;Data Source=srv,1433;Initial Catalog=PORTO;User ID=app;"
       "Password={a;b}",
       "Driver={ODBC Driver 18 for SQL Server};Server=srv,1433;Database=PORTO;UID=app;"
       "PWD={a;b};"},
      {"Provider=MSOLEDBSQL;Server=srv;Database=PORTO;Integrated Security=SSPI;User ID=ignored",
       "Driver={ODBC Driver 18 for SQL Server};Server=srv;Database=PORTO;"
       "Trusted_Connection=yes;"},
      {"Provider=SQLNCLI11;Data Source=srv;Initial Catalog=P;User ID=u;Password=p;"
       "Use Encryption for Data=True;Trust Server Certificate=True;Application Name=QDR",
       "Driver={ODBC Driver 18 for SQL Server};Server=srv;Database=P;UID=u;PWD=p;Encrypt=yes;"
       "TrustServerCertificate=yes;APP=QDR;"},
      {"Provider=PostgreSQL;Host=db.local;Port=5433;Database=porto;User ID=qdr;Password=x",
       "Driver={PostgreSQL Unicode};Servername=db.local;Port=5433;Database=porto;UID=qdr;PWD=x;"},
      {"Provider=PostgreSQL;Data Source=10.0.0.5:6543;Initial Catalog=porto;User ID=qdr",
       "Driver={PostgreSQL Unicode};Servername=10.0.0.5;Port=6543;Database=porto;UID=qdr;"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(odbc_string_for_provider(parse_connection_string(row.given)), row.odbc) << row.given;

  setenv(odbc::kSqlServerDriverVariable, "FreeTDS", 1);
  EXPECT_EQ(odbc_string_for_provider(parse_connection_string("Provider=SQLOLEDB;Server=s")),
            "Driver={FreeTDS};Server=s;");
  unsetenv(odbc::kSqlServerDriverVariable);

  EXPECT_THROW(odbc_string_for_provider(parse_connection_string("Provider=MSDAORA;Data Source=x")),
               DatabaseError);
  EXPECT_EQ(odbc::odbc_value("plain"), "plain");
  EXPECT_EQ(odbc::odbc_value("a}b;c"), "{a}}b;c}");
  EXPECT_EQ(odbc::odbc_value(" padded"), "{ padded}");
}

TEST(OdbcValues, MoneyAsTheDatabasesPrintIt) {
  struct Row {
    std::string text;
    std::optional<int64_t> scaled;
  };
  const std::vector<Row> rows = {
      {"$1,234.56", 12345600},
      {"-$1,234.56", -12345600},
      {"($3.00)", -30000},
      {"1234.5000", 12345000},
      {"R$ 1.234,56", 12345600},
      {"$1,234", 12340000},
      {"0.0001", 1},
      {"7", 70000},
      {"$", std::nullopt},
  };
  for (const auto& row : rows) EXPECT_EQ(odbc::parse_money(row.text), row.scaled) << row.text;
}

}  // namespace
}  // namespace qdr
