#pragma once

// A session on an ODBC data source.

#include <optional>
#include <string>

#include "infra/odbc/dialect.h"
#include "infra/odbc/handles.h"
#include "qdr/backend.h"

namespace qdr::odbc {

// Seconds a connection attempt may take before it fails.
inline constexpr int kLoginTimeoutSeconds = 15;

class OdbcSession final : public Session {
 public:
  // Connects with the ODBC connection string ("Driver=..." or "DSN=...")
  // through the shared, pooled environment, and asks the driver once which
  // database it reached (SQL_DBMS_NAME). Raises DatabaseError when the data
  // source cannot be reached within kLoginTimeoutSeconds.
  explicit OdbcSession(std::string connection_string);

  // Hands the connection back clean before disconnecting (which, with
  // pooling on, returns it to the pool): any open transaction is rolled
  // back, autocommit is switched on, and on PostgreSQL the session's role
  // and settings are reset ("SET SESSION AUTHORIZATION DEFAULT; RESET ALL",
  // then the date style and float digits psqlODBC sets when it connects).
  // Errors along the way are ignored.
  ~OdbcSession() override;

  OdbcSession(const OdbcSession&) = delete;
  OdbcSession& operator=(const OdbcSession&) = delete;

  // Runs one statement made by the statement parser: a procedure call
  // rendered in this database's dialect, or a plain statement's SQL, with
  // its parameters bound, under the statement's timeout. Returns the first
  // result set (result-less results such as row counts are skipped), or
  // nothing when there is none. On PostgreSQL, whether a name is a
  // function, a void function or a PROCEDURE is asked of the catalog once
  // per connection string and name and remembered for the process.
  std::optional<ResultSet> execute(const Statement& statement) override;

  Dialect dialect() const noexcept { return dialect_; }

 private:
  std::optional<ResultSet> run(const std::string& sql, const Statement& statement,
                               bool discard_result);
  RoutineKind routine_kind(const std::string& procedure);
  void reset() noexcept;
  void release() noexcept;

  std::string connection_string_;
  ConnectionHandle connection_;
  bool connected_ = false;
  Dialect dialect_ = Dialect::Generic;
};

}  // namespace qdr::odbc
