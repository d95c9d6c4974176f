#include "infra/odbc/session.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <set>

#include "infra/ado.h"
#include "infra/ascii.h"
#include "infra/backend_registry.h"
#include "infra/odbc/environment.h"
#include "infra/odbc/values.h"
#include "infra/sql_text.h"
#include "qdr/error.h"

namespace qdr::odbc {

namespace {

SQLPOINTER integer_attribute(uintptr_t value) { return reinterpret_cast<SQLPOINTER>(value); }

// What each name is, per connection string. Shared by every session of the
// process so the catalog is asked once, not on every call.
class RoutineKinds {
 public:
  std::optional<RoutineKind> find(const std::string& key) {
    std::lock_guard lock(mutex_);
    if (auto it = kinds_.find(key); it != kinds_.end()) return it->second;
    return std::nullopt;
  }
  void remember(const std::string& key, RoutineKind kind) {
    std::lock_guard lock(mutex_);
    kinds_[key] = kind;
  }
  void forget(const std::string& key) {
    std::lock_guard lock(mutex_);
    kinds_.erase(key);
  }

 private:
  std::mutex mutex_;
  std::map<std::string, RoutineKind> kinds_;
};

RoutineKinds& routine_kinds() {
  static auto* kinds = new RoutineKinds;
  return *kinds;
}

std::string routine_key(const std::string& connection_string, const std::string& procedure) {
  return connection_string + '\n' + ascii::to_lower(procedure);
}

// Unquoted names fold to lower case on PostgreSQL, as the call will.
constexpr const char* kRoutineKindQuery =
    "SELECT DISTINCT CASE WHEN p.prokind = 'p' THEN 2"
    " WHEN p.prorettype = 'pg_catalog.void'::pg_catalog.regtype THEN 1 ELSE 0 END"
    " FROM pg_catalog.pg_proc p JOIN pg_catalog.pg_namespace n ON n.oid = p.pronamespace"
    " WHERE p.proname = ? AND (CASE WHEN ? = '' THEN pg_catalog.pg_function_is_visible(p.oid)"
    " ELSE n.nspname = ? END)";

}  // namespace

OdbcSession::OdbcSession(std::string connection_string)
    : connection_string_(std::move(connection_string)), connection_(take_connection_handle()) {
  try {
    check(SQLSetConnectAttr(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                            integer_attribute(kLoginTimeoutSeconds), SQL_IS_UINTEGER),
          connection_, "SQLSetConnectAttr");
    std::string in = connection_string_;
    check(SQLDriverConnect(connection_.get(), nullptr, reinterpret_cast<SQLCHAR*>(in.data()),
                           SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
          connection_, "SQLDriverConnect");
    connected_ = true;
    SQLCHAR name[128] = {};
    SQLSMALLINT length = 0;
    check(SQLGetInfo(connection_.get(), SQL_DBMS_NAME, name, sizeof name, &length), connection_,
          "SQLGetInfo");
    dialect_ = dialect_for(reinterpret_cast<const char*>(name));
  } catch (...) {
    release();
    throw;
  }
}

OdbcSession::~OdbcSession() { release(); }

void OdbcSession::release() noexcept {
  if (connected_) {
    reset();
    // Still connected: freeing would fail too, so the handle is left alone.
    if (!SQL_SUCCEEDED(SQLDisconnect(connection_.get()))) return;
    connected_ = false;
  }
  // Kept even after a failed connect: the next call clears its diagnostics.
  keep_connection_handle(std::move(connection_));
}

void OdbcSession::reset() noexcept {
  SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
  SQLSetConnectAttr(connection_.get(), SQL_ATTR_AUTOCOMMIT, integer_attribute(SQL_AUTOCOMMIT_ON),
                    SQL_IS_UINTEGER);
  if (dialect_ != Dialect::PostgreSql) return;
  SQLHANDLE raw = SQL_NULL_HANDLE;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection_.get(), &raw))) return;
  StatementHandle statement(raw);
  // psqlODBC applies a query timeout with "SET statement_timeout" before a
  // statement whenever the value differs from the one it set last. Every
  // connection goes back to the pool with the recordsets' usual limit both
  // set and remembered, so the next routine's statement costs no extra
  // round trip: the reset runs under that limit and ends by setting it.
  SQLSetStmtAttr(statement.get(), SQL_ATTR_QUERY_TIMEOUT,
                 integer_attribute(static_cast<uintptr_t>(ado::kRecordsetTimeoutSeconds)),
                 SQL_IS_UINTEGER);
  // RESET ALL also undoes what psqlODBC itself set when it connected, and
  // it reads dates and floats back in those formats: they are set again.
  static_assert(ado::kRecordsetTimeoutSeconds == 30, "the reset below sets 30000 ms");
  SQLCHAR sql[] =
      "SET SESSION AUTHORIZATION DEFAULT; RESET ALL; SET DateStyle = 'ISO'; "
      "SET extra_float_digits = 2; SET statement_timeout = 30000";
  SQLExecDirect(statement.get(), sql, SQL_NTS);
}

std::optional<ResultSet> OdbcSession::execute(const Statement& statement) {
  if (!statement.procedure.empty()) {
    // The name is spliced into the SQL, so it is checked here as well as by
    // the parser: a hand-made Statement must not get around the rule.
    if (!sql_text::is_plain_name(statement.procedure))
      throw DatabaseError(sql_text::kRefusedNumber,
                          "Statement refused: the procedure name \"" + statement.procedure +
                              "\" is not a plain name",
                          sql_text::kRefusedState);
    const RoutineKind kind =
        dialect_ == Dialect::PostgreSql ? routine_kind(statement.procedure) : RoutineKind::Function;
    const Call call = render_call(dialect_, statement, kind);
    try {
      return run(call.sql, statement, call.discard_result);
    } catch (const DatabaseError& error) {
      // 42883 no such function (with these arguments), 42809 wrong kind of
      // routine: the name may have been redefined since it was looked up.
      if (error.sqlstate() == "42883" || error.sqlstate() == "42809")
        routine_kinds().forget(routine_key(connection_string_, statement.procedure));
      throw;
    }
  }
  if (statement.sql.empty())
    throw DatabaseError(sql_text::kRefusedNumber, "Statement refused: it names nothing to run",
                        sql_text::kRefusedState);
  return run(statement.sql, statement, false);
}

std::optional<ResultSet> OdbcSession::run(const std::string& sql, const Statement& statement,
                                          bool discard_result) {
  auto handle = StatementHandle::allocate<SQL_HANDLE_DBC>(connection_.get());
  if (statement.timeout > 0)
    check(SQLSetStmtAttr(handle.get(), SQL_ATTR_QUERY_TIMEOUT,
                         integer_attribute(static_cast<uintptr_t>(statement.timeout)),
                         SQL_IS_UINTEGER),
          handle, "SQLSetStmtAttr");
  ParameterBuffers buffers;
  buffers.bind(handle, statement, dialect_);
  std::string text = sql;
  const SQLRETURN rc =
      check(SQLExecDirect(handle.get(), reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS), handle,
            "SQLExecDirect");
  if (rc == SQL_NO_DATA || discard_result) return std::nullopt;
  for (;;) {
    SQLSMALLINT columns = 0;
    check(SQLNumResultCols(handle.get(), &columns), handle, "SQLNumResultCols");
    if (columns > 0) return read_result_set(handle, columns);
    if (check(SQLMoreResults(handle.get()), handle, "SQLMoreResults") == SQL_NO_DATA)
      return std::nullopt;
  }
}

RoutineKind OdbcSession::routine_kind(const std::string& procedure) {
  const std::string key = routine_key(connection_string_, procedure);
  if (auto known = routine_kinds().find(key)) return *known;

  const auto dot = procedure.find('.');
  const std::string schema =
      dot == std::string::npos ? "" : ascii::to_lower(procedure.substr(0, dot));
  const std::string name =
      ascii::to_lower(dot == std::string::npos ? procedure : procedure.substr(dot + 1));
  Statement query;
  query.kind = Statement::Kind::Text;
  query.timeout = 30;
  for (const auto& value : {name, schema, schema})
    query.parameters.push_back({"", 200, static_cast<int>(value.size()), Variant(value)});
  const auto result = run(kRoutineKindQuery, query, false);

  std::set<int32_t> kinds;
  if (result)
    for (const auto& row : result->rows)
      if (!row.empty() && row[0].type() == VarType::Long) kinds.insert(row[0].as_long());
  // An unknown name is not remembered (it may be created later); the call
  // itself will report it. Overloads of different kinds are called as
  // functions and left to the database to sort out.
  if (kinds.empty()) return RoutineKind::Function;
  RoutineKind kind = RoutineKind::Function;
  if (kinds.size() == 1 && *kinds.begin() == 2) kind = RoutineKind::Procedure;
  if (kinds.size() == 1 && *kinds.begin() == 1) kind = RoutineKind::VoidFunction;
  routine_kinds().remember(key, kind);
  return kind;
}

}  // namespace qdr::odbc

namespace qdr {

std::unique_ptr<Session> open_odbc_session(const std::string& odbc_connection_string) {
  return std::make_unique<odbc::OdbcSession>(odbc_connection_string);
}

}  // namespace qdr
