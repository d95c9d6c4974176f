// The data layer's cost against plain ODBC, measured in one run against the
// reference PostgreSQL (QDR_BENCH_CONNECTION, else QDR_TEST_CONNECTION: an
// ODBC connection string naming its driver with "Driver=").
//
//   DataLayerExec            Recordset.Open of an EXEC text on the connection
//                            string (pooled connect, parse, bind, run, read
//                            the row, reset, disconnect), then a field read
//   DirectExec               the same call straight through ODBC on an open
//                            connection: SQLExecDirect with bound
//                            parameters, fetch, read the row
//   DirectExecPooledConnect  the same, with a pooled connect and disconnect
//                            around it as the routines' open-per-call does
//   ConnectPooled            SQLDriverConnect + SQLDisconnect through the
//                            driver manager, whose pool is on
//   ConnectUnpooled          the same calls made on the driver library
//                            itself, where no pool exists: the real cost of
//                            a connection
//   DataLayerConnect         Connection.Open + Close (adds the dialect query
//                            and the reset before the connection goes back)
//
// After the table, the ratios between them are printed as "ratio" lines.

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sql.h>
#include <sqlext.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "infra/ado.h"
#include "infra/backend_registry.h"
#include "qdr/error.h"

namespace {

constexpr const char* kExecText = "EXEC sp_test_echo 12, 3.5, 'abc', '2024/01/31 10:00'";
constexpr const char* kDirectSql = "SELECT * FROM sp_test_echo(?, ?, ?, ?)";
const std::vector<std::string> kDirectArguments = {"12", "3.5", "abc", "2024/01/31 10:00"};

std::string connection_string() {
  for (const char* name : {"QDR_BENCH_CONNECTION", "QDR_TEST_CONNECTION"})
    if (const char* value = std::getenv(name); value && *value) return value;
  return {};
}

SQLPOINTER attribute(uintptr_t value) { return reinterpret_cast<SQLPOINTER>(value); }

void ok(SQLRETURN rc, const char* what) {
  if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA)
    throw std::runtime_error(std::string(what) + " failed");
}

// --- Plain ODBC through the driver manager -----------------------------------

struct DriverManager {
  SQLHENV env = SQL_NULL_HENV;
  DriverManager() {
    ok(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env), "SQLAllocHandle(ENV)");
    ok(SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, attribute(SQL_OV_ODBC3), 0), "SQLSetEnvAttr");
  }
  ~DriverManager() { SQLFreeHandle(SQL_HANDLE_ENV, env); }
  DriverManager(const DriverManager&) = delete;
  DriverManager& operator=(const DriverManager&) = delete;
};

SQLHDBC connect(SQLHENV env, const std::string& connection) {
  SQLHDBC dbc = SQL_NULL_HDBC;
  ok(SQLAllocHandle(SQL_HANDLE_DBC, env, &dbc), "SQLAllocHandle(DBC)");
  std::string in = connection;
  const SQLRETURN rc = SQLDriverConnect(dbc, nullptr, reinterpret_cast<SQLCHAR*>(in.data()),
                                        SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (!SQL_SUCCEEDED(rc)) {
    SQLFreeHandle(SQL_HANDLE_DBC, dbc);
    throw std::runtime_error("SQLDriverConnect failed");
  }
  return dbc;
}

void disconnect(SQLHDBC dbc) {
  SQLDisconnect(dbc);
  SQLFreeHandle(SQL_HANDLE_DBC, dbc);
}

// The call with its four arguments bound as text, the one row read.
int32_t direct_call(SQLHDBC dbc) {
  SQLHSTMT stmt = SQL_NULL_HSTMT;
  ok(SQLAllocHandle(SQL_HANDLE_STMT, dbc, &stmt), "SQLAllocHandle(STMT)");
  std::vector<SQLLEN> lengths(kDirectArguments.size());
  for (std::size_t i = 0; i < kDirectArguments.size(); ++i) {
    lengths[i] = static_cast<SQLLEN>(kDirectArguments[i].size());
    ok(SQLBindParameter(stmt, static_cast<SQLUSMALLINT>(i + 1), SQL_PARAM_INPUT, SQL_C_CHAR,
                        SQL_VARCHAR, kDirectArguments[i].size(), 0,
                        const_cast<char*>(kDirectArguments[i].data()), lengths[i], &lengths[i]),
       "SQLBindParameter");
  }
  SQLCHAR sql[128];
  std::snprintf(reinterpret_cast<char*>(sql), sizeof sql, "%s", kDirectSql);
  ok(SQLExecDirect(stmt, sql, SQL_NTS), "SQLExecDirect");
  ok(SQLFetch(stmt), "SQLFetch");
  SQLINTEGER whole = 0;
  SQLLEN indicator = 0;
  ok(SQLGetData(stmt, 1, SQL_C_SLONG, &whole, sizeof whole, &indicator), "SQLGetData");
  char text[64];
  for (SQLUSMALLINT column = 2; column <= 5; ++column)
    ok(SQLGetData(stmt, column, SQL_C_CHAR, text, sizeof text, &indicator), "SQLGetData");
  SQLFreeHandle(SQL_HANDLE_STMT, stmt);
  return whole;
}

// --- The driver library itself, no driver manager and so no pool --------------

template <typename F>
F symbol(void* library, const char* name) {
  void* address = dlsym(library, name);
  if (address == nullptr) throw std::runtime_error(std::string("driver lacks ") + name);
  F function;
  std::memcpy(&function, &address, sizeof function);
  return function;
}

struct DriverLibrary {
  using AllocHandle = SQLRETURN (*)(SQLSMALLINT, SQLHANDLE, SQLHANDLE*);
  using FreeHandle = SQLRETURN (*)(SQLSMALLINT, SQLHANDLE);
  using SetEnvAttr = SQLRETURN (*)(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER);
  using DriverConnect = SQLRETURN (*)(SQLHDBC, SQLHWND, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                      SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT);
  using Disconnect = SQLRETURN (*)(SQLHDBC);

  void* library = nullptr;
  AllocHandle alloc_handle = nullptr;
  FreeHandle free_handle = nullptr;
  DriverConnect driver_connect = nullptr;
  Disconnect disconnect = nullptr;
  SQLHENV env = SQL_NULL_HENV;

  explicit DriverLibrary(const std::string& path) {
    library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw std::runtime_error("cannot load " + path);
    alloc_handle = symbol<AllocHandle>(library, "SQLAllocHandle");
    free_handle = symbol<FreeHandle>(library, "SQLFreeHandle");
    driver_connect = symbol<DriverConnect>(library, "SQLDriverConnect");
    disconnect = symbol<Disconnect>(library, "SQLDisconnect");
    ok(alloc_handle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env), "driver SQLAllocHandle(ENV)");
    ok(symbol<SetEnvAttr>(library, "SQLSetEnvAttr")(env, SQL_ATTR_ODBC_VERSION,
                                                    attribute(SQL_OV_ODBC3), 0),
       "driver SQLSetEnvAttr");
  }
  ~DriverLibrary() {
    if (env != SQL_NULL_HENV) free_handle(SQL_HANDLE_ENV, env);
    // The driver manager may have the same library loaded: only our
    // reference goes.
    if (library != nullptr) dlclose(library);
  }
  DriverLibrary(const DriverLibrary&) = delete;
  DriverLibrary& operator=(const DriverLibrary&) = delete;
};

// The library file of the connection string's Driver=, as the driver
// manager's configuration lists it (or the path itself).
std::string driver_path(const std::string& connection) {
  const auto attributes = qdr::parse_connection_string(connection);
  const auto it = attributes.find("driver");
  if (it == attributes.end()) throw std::runtime_error("the connection string names no Driver=");
  if (it->second.find('/') != std::string::npos) return it->second;
  DriverManager dm;
  SQLCHAR description[256];
  SQLCHAR pairs[4096];
  SQLSMALLINT description_length = 0, pairs_length = 0;
  for (SQLUSMALLINT direction = SQL_FETCH_FIRST;
       SQL_SUCCEEDED(SQLDrivers(dm.env, direction, description, sizeof description,
                                &description_length, pairs, sizeof pairs, &pairs_length));
       direction = SQL_FETCH_NEXT) {
    if (it->second != reinterpret_cast<const char*>(description)) continue;
    // "key=value\0key=value\0\0"
    for (const char* pair = reinterpret_cast<const char*>(pairs); *pair;
         pair += std::strlen(pair) + 1)
      if (std::strncmp(pair, "Driver=", 7) == 0) return pair + 7;
  }
  throw std::runtime_error("driver " + it->second + " is not configured");
}

// --- Benchmarks ---------------------------------------------------------------

// The connection string, or "" with the benchmark marked skipped.
std::string required_connection(benchmark::State& state) {
  std::string connection = connection_string();
  if (connection.empty()) state.SkipWithError("set QDR_BENCH_CONNECTION or QDR_TEST_CONNECTION");
  return connection;
}

void DataLayerExec(benchmark::State& state) {
  const std::string connection = required_connection(state);
  if (connection.empty()) return;
  try {
    for (auto _ : state) {
      qdr::ado::Recordset rs;
      rs.CursorLocation = qdr::ado::adUseClient;
      rs.Open(kExecText, connection, qdr::ado::adOpenStatic, qdr::ado::adLockReadOnly, -1);
      benchmark::DoNotOptimize(rs.Fields("whole").as_long());
    }
  } catch (const std::exception& e) {
    state.SkipWithError(e.what());
  }
}

void DirectExec(benchmark::State& state) {
  const std::string connection = required_connection(state);
  if (connection.empty()) return;
  try {
    DriverManager dm;
    SQLHDBC dbc = connect(dm.env, connection);
    for (auto _ : state) benchmark::DoNotOptimize(direct_call(dbc));
    disconnect(dbc);
  } catch (const std::exception& e) {
    state.SkipWithError(e.what());
  }
}

void DirectExecPooledConnect(benchmark::State& state) {
  const std::string connection = required_connection(state);
  if (connection.empty()) return;
  try {
    DriverManager dm;
    for (auto _ : state) {
      SQLHDBC dbc = connect(dm.env, connection);
      benchmark::DoNotOptimize(direct_call(dbc));
      disconnect(dbc);
    }
  } catch (const std::exception& e) {
    state.SkipWithError(e.what());
  }
}

void ConnectPooled(benchmark::State& state) {
  const std::string connection = required_connection(state);
  if (connection.empty()) return;
  try {
    DriverManager dm;
    for (auto _ : state) disconnect(connect(dm.env, connection));
  } catch (const std::exception& e) {
    state.SkipWithError(e.what());
  }
}

void ConnectUnpooled(benchmark::State& state) {
  const std::string connection = required_connection(state);
  if (connection.empty()) return;
  try {
    DriverLibrary driver(driver_path(connection));
    std::string in = connection;
    for (auto _ : state) {
      SQLHDBC dbc = SQL_NULL_HDBC;
      ok(driver.alloc_handle(SQL_HANDLE_DBC, driver.env, &dbc), "driver SQLAllocHandle(DBC)");
      ok(driver.driver_connect(dbc, nullptr, reinterpret_cast<SQLCHAR*>(in.data()), SQL_NTS,
                               nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
         "driver SQLDriverConnect");
      driver.disconnect(dbc);
      driver.free_handle(SQL_HANDLE_DBC, dbc);
    }
  } catch (const std::exception& e) {
    state.SkipWithError(e.what());
  }
}

void DataLayerConnect(benchmark::State& state) {
  const std::string connection = required_connection(state);
  if (connection.empty()) return;
  try {
    for (auto _ : state) {
      qdr::ado::Connection c;
      c.Open(connection);
      c.Close();
    }
  } catch (const std::exception& e) {
    state.SkipWithError(e.what());
  }
}

BENCHMARK(DataLayerExec)->Unit(benchmark::kMicrosecond);
BENCHMARK(DirectExec)->Unit(benchmark::kMicrosecond);
BENCHMARK(DirectExecPooledConnect)->Unit(benchmark::kMicrosecond);
BENCHMARK(ConnectPooled)->Unit(benchmark::kMicrosecond);
BENCHMARK(ConnectUnpooled)->Unit(benchmark::kMicrosecond);
BENCHMARK(DataLayerConnect)->Unit(benchmark::kMicrosecond);

// Keeps each benchmark's seconds per iteration for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  RatioReporter() : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_Defaults : OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const auto& run : runs)
      if (run.run_type == Run::RT_Iteration && !run.error_occurred && run.iterations > 0)
        seconds_[run.benchmark_name()] =
            run.real_accumulated_time / static_cast<double>(run.iterations);
  }

  void print_ratio(const char* what, const char* numerator, const char* denominator) const {
    const auto n = seconds_.find(numerator);
    const auto d = seconds_.find(denominator);
    if (n == seconds_.end() || d == seconds_.end() || d->second <= 0) return;
    std::printf("ratio %-58s %8.2f  (%s / %s)\n", what, n->second / d->second, numerator,
                denominator);
  }

 private:
  std::map<std::string, double> seconds_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n");
  reporter.print_ratio("data layer EXEC round trip vs direct ODBC call", "DataLayerExec",
                       "DirectExec");
  reporter.print_ratio("data layer EXEC round trip vs direct call + pooled connect",
                       "DataLayerExec", "DirectExecPooledConnect");
  reporter.print_ratio("unpooled connect vs pooled connect", "ConnectUnpooled", "ConnectPooled");
  reporter.print_ratio("data layer connect (with reset) vs pooled connect", "DataLayerConnect",
                       "ConnectPooled");
  benchmark::Shutdown();
  return 0;
}
