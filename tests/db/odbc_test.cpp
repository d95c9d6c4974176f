// The data layer against the reference PostgreSQL through unixODBC and
// psqlODBC: statement texts and commands in, typed columns and nulls out,
// pooled connections handed back clean, failures as DatabaseError.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "infra/ado.h"
#include "infra/backend_registry.h"
#include "infra/vb.h"
#include "qdr/error.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

using namespace qdr::ado;

class OdbcTest : public test::DbTest {
 protected:
  Recordset open(const std::string& text) {
    Recordset rs;
    rs.CursorLocation = adUseClient;
    rs.Open(text, connection_, adOpenStatic, adLockReadOnly, -1);
    return rs;
  }
  int32_t calls(int32_t value) {
    Recordset rs = open("EXEC sp_test_count_calls " + std::to_string(value));
    return rs.Fields("calls").as_long();
  }
};

DatabaseError database_error(const std::function<void()>& action) {
  try {
    action();
  } catch (const DatabaseError& e) {
    return e;
  }
  ADD_FAILURE() << "no DatabaseError";
  return DatabaseError(0, "");
}

TEST_F(OdbcTest, AnExecTextReadsTypedColumnsAndNulls) {
  test::under_both([&](int) {
    Recordset rs = open("EXEC sp_test_types");
    ASSERT_EQ(rs.State(), adStateOpen);
    EXPECT_EQ(rs.RecordCount(), 2);
    struct Row {
      const char* column;
      Variant expected;
    };
    // One column of each type the routines read; field names in any case.
    const std::vector<Row> rows = {
        {"small", Variant::integer(7)},
        {"WHOLE", Variant(123456)},
        {"big_fit", Variant(42)},
        {"big_wide", Variant(9000000000.0)},
        {"amount", Variant(1234.5)},
        {"ratio", Variant(0.25)},
        {"precise", Variant(2.5)},
        {"price", Variant::currency_scaled(12345600)},
        {"day", Variant::date(vb::make_date(2024, 1, 31))},
        {"moment", Variant::date(vb::make_date(2024, 1, 31, 10, 20, 30))},
        {"flag", Variant(true)},
        {"label", Variant("não")},
        {"note", Variant("Nº 5")}};
    for (const auto& row : rows) {
      const Variant& got = rs.Fields(row.column);
      EXPECT_TRUE(got == row.expected) << row.column << ": type " << static_cast<int>(got.type());
    }
    rs.MoveNext();
    for (const auto& row : rows) EXPECT_TRUE(rs.Fields(row.column).is_null()) << row.column;
    rs.MoveNext();
    EXPECT_TRUE(rs.Eof());
  });
}

TEST_F(OdbcTest, LiteralsReachTheDatabaseAsBoundValuesOfTheDeclaredTypes) {
  test::under_both([&](int) {
    struct Row {
      std::string text;
      Variant whole, amount, texto, quando;
      int32_t nulls;
    };
    const Variant null = Variant::null();
    const std::vector<Row> rows = {
        {"EXEC sp_test_echo 12, 3.5, 'O''K', '2024/01/31 10:00'", Variant(12), Variant(3.5),
         Variant("O'K"), Variant::date(vb::make_date(2024, 1, 31, 10, 0, 0)), 0},
        {"EXECUTE SP_TEST_ECHO null, NULL, null, null", null, null, null, null, 4},
        {"exec sp_test_echo -5, -0.25, 'não Nº', null", Variant(-5), Variant(-0.25),
         Variant("não Nº"), null, 1},
        // What would be an injection in a concatenated batch is just a text.
        {"EXEC sp_test_echo 1, 2, 'x''); DROP TABLE sp_test_calls; --', null", Variant(1),
         Variant(2.0), Variant("x'); DROP TABLE sp_test_calls; --"), null, 1},
    };
    for (const auto& row : rows) {
      SCOPED_TRACE(row.text);
      Recordset rs = open(row.text);
      ASSERT_EQ(rs.RecordCount(), 1);
      EXPECT_TRUE(rs.Fields("whole") == row.whole);
      EXPECT_TRUE(rs.Fields("amount") == row.amount);
      EXPECT_TRUE(rs.Fields("texto") == row.texto);
      EXPECT_TRUE(rs.Fields("quando") == row.quando);
      EXPECT_TRUE(rs.Fields("nulls") == Variant(row.nulls));
    }
    EXPECT_GE(calls(0), 0);  // the table is still there
  });
}

TEST_F(OdbcTest, NamedArgumentsGoByName) {
  Recordset rs = open("EXEC sp_test_named @second_text = 'dois', @first_id = 9");
  EXPECT_TRUE(rs.Fields("first_id") == Variant(9));
  EXPECT_TRUE(rs.Fields("second_text") == Variant("dois"));
  Recordset defaults = open("EXEC sp_test_named @second_text = 'só'");
  EXPECT_TRUE(defaults.Fields("first_id") == Variant(0));
}

TEST_F(OdbcTest, AProcedureOrVoidFunctionLeavesTheRecordsetClosed) {
  const int32_t before = calls(901);
  Recordset rs = open("EXEC sp_test_record 901, 'procedure'");
  EXPECT_EQ(rs.State(), adStateClosed);
  Recordset void_rs = open("EXECUTE sp_test_record_void 901");
  EXPECT_EQ(void_rs.State(), adStateClosed);
  EXPECT_EQ(calls(901), before + 2);
}

TEST_F(OdbcTest, StoredProcedureCommandsRunWithTypedParameters) {
  test::under_both([&](int) {
    Connection connection;
    connection.CursorLocation = adUseClient;
    connection.Open(connection_);

    Command command;
    command.ActiveConnection(connection);
    command.CommandTimeout = 120;
    command.CommandType = adCmdStoredProc;
    command.CommandText("sp_test_echo");
    command.Parameters().Append(
        command.CreateParameter("p_whole", adInteger, adParamInput, 10, Variant("42")));
    command.Parameters().Append(command.CreateParameter("p_amount", adCurrency, adParamInput, 10,
                                                        Variant::currency_scaled(123456)));
    command.Parameters().Append(
        command.CreateParameter("p_text", adVarChar, adParamInput, 20, Variant("Nº não")));
    command.Parameters().Append(
        command.CreateParameter("p_when", adDBTimeStamp, adParamInput, 20,
                                Variant::date(vb::make_date(2024, 2, 29, 23, 59, 58))));
    EXPECT_EQ(command.CommandText(), "{ call sp_test_echo(?, ?, ?, ?) }");
    Recordset rs = command.Execute();
    ASSERT_EQ(rs.State(), adStateOpen);
    EXPECT_TRUE(rs.Fields("whole") == Variant(42));
    EXPECT_TRUE(rs.Fields("amount") == Variant(12.3456));
    EXPECT_TRUE(rs.Fields("texto") == Variant("Nº não"));
    EXPECT_TRUE(rs.Fields("quando") == Variant::date(vb::make_date(2024, 2, 29, 23, 59, 58)));

    // A double goes through the driver's own formatting, under either locale.
    command.Parameters().Item(1).Type = adDouble;
    command.Parameters().Item(1).Value = Variant(2.25);
    EXPECT_TRUE(command.Execute().Fields("amount") == Variant(2.25));

    command.Parameters().Item(0).Value = Variant::null();
    command.Parameters().Item(2).Value = Variant::null();
    Recordset nulls = command.Execute();
    EXPECT_TRUE(nulls.Fields("nulls") == Variant(2));
  });
}

TEST_F(OdbcTest, APooledConnectionComesBackClean) {
  Recordset baseline = open("EXEC sp_test_session");
  const Variant work_mem = baseline.Fields("work_mem");
  const Variant time_zone = baseline.Fields("time_zone");
  ASSERT_FALSE(work_mem == Variant("7MB"));
  ASSERT_FALSE(time_zone == Variant("Asia/Tokyo"));

  Recordset dirty = open("EXEC sp_test_dirty_session");
  EXPECT_TRUE(dirty.Fields("work_mem") == Variant("7MB"));
  const Variant backend = dirty.Fields("backend");

  Recordset after = open("EXEC sp_test_session");
  if (!(after.Fields("backend") == backend))
    GTEST_SKIP() << "the connection was not pooled (is [ODBC] Pooling=Yes in odbcinst.ini?)";
  EXPECT_TRUE(after.Fields("work_mem") == work_mem);
  EXPECT_TRUE(after.Fields("time_zone") == time_zone);
  EXPECT_TRUE(after.Fields("in_transaction") == Variant(false));
}

TEST_F(OdbcTest, TheOleDbFormForPostgreSqlReachesTheSameDatabase) {
  const auto odbc = parse_connection_string(connection_);
  const std::string oledb = "Provider=PostgreSQL;Data Source=" + odbc.at("servername") +
                            ";Port=" + odbc.at("port") + ";Initial Catalog=" + odbc.at("database") +
                            ";User ID=" + odbc.at("uid") + ";Password=" + odbc.at("pwd");
  Recordset rs;
  rs.Open("EXEC sp_test_rows 3", oledb);
  EXPECT_EQ(rs.RecordCount(), 3);
}

TEST_F(OdbcTest, FailuresAreDatabaseErrors) {
  DatabaseError raised = database_error([&] { open("EXEC sp_test_fail 'caiu aqui'"); });
  EXPECT_EQ(raised.sqlstate(), "P0001");
  EXPECT_NE(std::string(raised.what()).find("caiu aqui"), std::string::npos) << raised.what();

  raised = database_error([&] { open("EXEC sp_test_no_such_thing 1"); });
  EXPECT_EQ(raised.sqlstate(), "42883");

  raised = database_error([&] { open("EXEC sp_test_record 1, 'x'; DROP TABLE sp_test_calls"); });
  EXPECT_EQ(raised.sqlstate(), "42000");
  EXPECT_GE(calls(0), 0);

  // Nothing listens on port 1: refused at once, not a hang.
  for (const std::string unreachable :
       {"Driver={PostgreSQL Unicode};Servername=127.0.0.1;Port=1;Database=x;UID=qdr;PWD=qdr;",
        "Provider=PostgreSQL;Data Source=127.0.0.1;Port=1;Initial Catalog=x;User ID=qdr"}) {
    raised = database_error([&] {
      Recordset rs;
      rs.Open("EXEC sp_test_rows 1", unreachable);
    });
    EXPECT_EQ(raised.sqlstate().substr(0, 2), "08") << raised.what();
  }
}

TEST_F(OdbcTest, ACommandTimeoutStopsASlowCall) {
  Connection connection;
  connection.Open(connection_);
  Command command;
  command.ActiveConnection(connection);
  command.CommandTimeout = 1;
  command.CommandType = adCmdStoredProc;
  command.CommandText("sp_test_sleep");
  command.Parameters().Append(
      command.CreateParameter("p_seconds", adVarChar, adParamInput, 5, Variant("30")));
  const DatabaseError raised = database_error([&] { command.Execute(); });
  EXPECT_FALSE(std::string(raised.what()).empty());
  // The connection is still usable afterwards.
  Recordset rs;
  rs.Open("EXEC sp_test_rows 2", connection);
  EXPECT_EQ(rs.RecordCount(), 2);
}

}  // namespace
}  // namespace qdr
