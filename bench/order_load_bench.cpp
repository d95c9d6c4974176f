// Loading an order for closing with 1, 10 and 100 containers: the public
// method against the same three procedure calls made straight through ODBC,
// in the same run, on the reference database's measurement orders (order-type
// records 160, 161 and 162).
//
//   QDR_BENCH_CONNECTION (else QDR_TEST_CONNECTION): ODBC connection string.
//
// Baselines: "odbc_held" runs the three statements on one connection kept
// open for the whole run; "odbc_connect" connects (through the driver
// manager's pool) for each statement, as the component does. Both bind the
// ids as integer parameters, execute with SQLExecDirect and fetch every
// column of every row as text. The ratios printed at the end are of
// wall-clock time per load.

#include <benchmark/benchmark.h>
#include <sql.h>
#include <sqlext.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "qdr/dispatch.h"
#include "qdr/qdr.h"
#include "qdr/variant.h"

namespace {

struct Order {
  int containers;
  int32_t record;
};
constexpr Order kOrders[] = {{1, 160}, {10, 161}, {100, 162}};

std::string bench_connection() {
  for (const char* name : {"QDR_BENCH_CONNECTION", "QDR_TEST_CONNECTION"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

// --- Straight ODBC ---------------------------------------------------------

void check(SQLRETURN rc, SQLSMALLINT type, SQLHANDLE handle, const char* what) {
  if (SQL_SUCCEEDED(rc) || rc == SQL_NO_DATA) return;
  SQLCHAR state[6] = {};
  SQLCHAR text[512] = {};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  SQLGetDiagRec(type, handle, 1, state, &native, text, sizeof text, &length);
  throw std::runtime_error(std::string(what) + ": " + reinterpret_cast<const char*>(text));
}

class Environment {
 public:
  Environment() {
    SQLSetEnvAttr(SQL_NULL_HANDLE, SQL_ATTR_CONNECTION_POOLING,
                  reinterpret_cast<SQLPOINTER>(static_cast<uintptr_t>(SQL_CP_ONE_PER_DRIVER)), 0);
    check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env_), SQL_HANDLE_ENV, env_,
          "SQLAllocHandle");
    SQLSetEnvAttr(env_, SQL_ATTR_ODBC_VERSION,
                  reinterpret_cast<SQLPOINTER>(static_cast<uintptr_t>(SQL_OV_ODBC3)), 0);
  }
  ~Environment() { SQLFreeHandle(SQL_HANDLE_ENV, env_); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  SQLHENV handle() const { return env_; }

 private:
  SQLHENV env_ = SQL_NULL_HENV;
};

class Connection {
 public:
  Connection(const Environment& env, const std::string& connection_string) {
    check(SQLAllocHandle(SQL_HANDLE_DBC, env.handle(), &dbc_), SQL_HANDLE_ENV, env.handle(),
          "SQLAllocHandle");
    std::string text = connection_string;
    check(SQLDriverConnect(dbc_, nullptr, reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS, nullptr,
                           0, nullptr, SQL_DRIVER_NOPROMPT),
          SQL_HANDLE_DBC, dbc_, "SQLDriverConnect");
    connected_ = true;
  }
  ~Connection() {
    if (connected_) SQLDisconnect(dbc_);
    SQLFreeHandle(SQL_HANDLE_DBC, dbc_);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Runs `sql` with integer parameters (nullopt binds NULL) and fetches
  // every column of every row as text; returns the rows.
  std::vector<std::vector<std::string>> query(const std::string& sql,
                                              const std::vector<std::optional<int32_t>>& params) {
    SQLHSTMT stmt = SQL_NULL_HSTMT;
    check(SQLAllocHandle(SQL_HANDLE_STMT, dbc_, &stmt), SQL_HANDLE_DBC, dbc_, "SQLAllocHandle");
    struct Guard {
      SQLHSTMT stmt;
      ~Guard() { SQLFreeHandle(SQL_HANDLE_STMT, stmt); }
    } guard{stmt};

    std::vector<SQLINTEGER> values(params.size());
    std::vector<SQLLEN> indicators(params.size());
    for (std::size_t i = 0; i < params.size(); ++i) {
      values[i] = params[i].value_or(0);
      indicators[i] = params[i] ? 0 : SQL_NULL_DATA;
      check(SQLBindParameter(stmt, static_cast<SQLUSMALLINT>(i + 1), SQL_PARAM_INPUT, SQL_C_SLONG,
                             SQL_INTEGER, 0, 0, &values[i], 0, &indicators[i]),
            SQL_HANDLE_STMT, stmt, "SQLBindParameter");
    }
    std::string text = sql;
    check(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS), SQL_HANDLE_STMT,
          stmt, "SQLExecDirect");
    SQLSMALLINT columns = 0;
    check(SQLNumResultCols(stmt, &columns), SQL_HANDLE_STMT, stmt, "SQLNumResultCols");
    std::vector<std::vector<std::string>> rows;
    while (true) {
      const SQLRETURN rc = SQLFetch(stmt);
      if (rc == SQL_NO_DATA) break;
      check(rc, SQL_HANDLE_STMT, stmt, "SQLFetch");
      auto& row = rows.emplace_back();
      for (SQLUSMALLINT c = 1; c <= static_cast<SQLUSMALLINT>(columns); ++c) {
        char buffer[1024];
        SQLLEN length = 0;
        check(SQLGetData(stmt, c, SQL_C_CHAR, buffer, sizeof buffer, &length), SQL_HANDLE_STMT,
              stmt, "SQLGetData");
        row.emplace_back(length == SQL_NULL_DATA
                             ? std::string()
                             : std::string(buffer, static_cast<std::size_t>(length)));
      }
    }
    return rows;
  }

 private:
  SQLHDBC dbc_ = SQL_NULL_HDBC;
  bool connected_ = false;
};

// The three calls of a load: the header gives the order id (second column),
// which keys the container list and the CTAC.
std::size_t load_directly(const Environment& env, const std::string& connection_string,
                          Connection* held, int32_t record) {
  const auto run = [&](const std::string& sql, const std::vector<std::optional<int32_t>>& params) {
    if (held != nullptr) return held->query(sql, params);
    Connection own(env, connection_string);
    return own.query(sql, params);
  };
  const auto header = run("SELECT * FROM sp_050_con_os_fechamento03(?)", {record});
  if (header.empty()) throw std::runtime_error("no header row");
  const int32_t order = std::stoi(header.at(0).at(1));
  const auto containers =
      run("SELECT * FROM sp_050_con_sol_cont_os_fecha03(?, ?)", {order, record});
  const auto ctac = run("SELECT * FROM sp_050_con_os_ctac02(?)", {order});
  benchmark::DoNotOptimize(ctac);
  return containers.size();
}

void BM_Odbc(benchmark::State& state, Order order, bool hold_connection) {
  const std::string connection_string = bench_connection();
  try {
    Environment env;
    std::optional<Connection> held;
    if (hold_connection) held.emplace(env, connection_string);
    for (auto _ : state) {
      const std::size_t rows =
          load_directly(env, connection_string, held ? &*held : nullptr, order.record);
      if (rows != static_cast<std::size_t>(order.containers)) {
        state.SkipWithError("unexpected container count: is the database seeded?");
        break;
      }
    }
  } catch (const std::exception& e) {
    state.SkipWithError(e.what());
  }
}

// --- The public method -----------------------------------------------------

void BM_Component(benchmark::State& state, Order order) {
  const std::string connection_string = bench_connection();
  const std::size_t count = qdr::find_method("gConsulta_Ordem_Servico_Tipo")->parameters.size();
  qdr::QDR object;
  for (auto _ : state) {
    std::vector<qdr::Variant> args(count);
    args[0] = qdr::Variant(connection_string);
    args[1] = qdr::Variant(2);
    args[2] = qdr::Variant(1);
    args[3] = qdr::Variant("SQLSERVER");
    args[4] = qdr::Variant("Fechamento de OS");
    args[5] = qdr::Variant(order.record);
    const qdr::Variant status = qdr::invoke(object, "gConsulta_Ordem_Servico_Tipo", args);
    if (!(status == qdr::Variant::integer(0)) || !(args[23] == qdr::Variant(order.containers))) {
      const std::string message = args[27].type() == qdr::VarType::String
                                      ? args[27].as_string()
                                      : std::string("unexpected container count");
      state.SkipWithError(message.c_str());
      break;
    }
    benchmark::DoNotOptimize(args);
  }
}

// --- Ratios ----------------------------------------------------------------

// The console report, then each load's time against its baselines.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      const bool mean = run.run_type == Run::RT_Aggregate && run.aggregate_name == "mean";
      if (run.run_type == Run::RT_Iteration || mean) {
        times_[run.run_name.function_name] = run.GetAdjustedRealTime();
      }
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\nWall-clock time of a load, component / straight ODBC:\n");
    std::printf("%-12s %16s %20s\n", "containers", "vs odbc_held", "vs odbc_connect");
    for (const Order& order : kOrders) {
      const std::string n = std::to_string(order.containers);
      const auto component = times_.find("OrderLoad/component/" + n);
      const auto held = times_.find("OrderLoad/odbc_held/" + n);
      const auto connect = times_.find("OrderLoad/odbc_connect/" + n);
      if (component == times_.end()) continue;
      std::printf("%-12s %16s %20s\n", n.c_str(), ratio(component, held).c_str(),
                  ratio(component, connect).c_str());
    }
  }

 private:
  using Times = std::map<std::string, double>;
  std::string ratio(Times::const_iterator a, Times::const_iterator b) const {
    if (b == times_.end() || b->second <= 0) return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.2fx", a->second / b->second);
    return text;
  }
  Times times_;
};

}  // namespace

int main(int argc, char** argv) {
  if (bench_connection().empty()) {
    std::fprintf(stderr,
                 "order_load_bench: set QDR_BENCH_CONNECTION or QDR_TEST_CONNECTION to the "
                 "reference database's ODBC connection string\n");
    return 2;
  }
  for (const Order& order : kOrders) {
    const std::string n = std::to_string(order.containers);
    benchmark::RegisterBenchmark(("OrderLoad/component/" + n).c_str(), BM_Component, order)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("OrderLoad/odbc_held/" + n).c_str(), BM_Odbc, order, true)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("OrderLoad/odbc_connect/" + n).c_str(), BM_Odbc, order, false)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
