#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "qdr/error.h"
#include "qdr/export.h"
#include "qdr/variant.h"

namespace qdr {

// One bound value of a statement.
//
// For a stored-procedure command, name/type/size are those given to
// CreateParameter (type is the data-access type code: 3 integer, 6 currency,
// 7 date, 129 char, 130 wide char, 135 timestamp, 200-203 texts).
// For a statement text, the values are the literals parsed out of the text,
// in order: name is the "@Name" of a named argument (empty otherwise), type
// is 3 for an integral number, 5 for a decimal number, 200 for a quoted text
// and 0 for null; size is the text's length in bytes (0 for the others).
struct Parameter {
  std::string name;
  int type = 0;
  int size = 0;
  Variant value;
};

// What reaches a data source. Every statement is a single call or one of the
// few plain statements the component builds; batches never get this far.
struct Statement {
  enum class Kind { Text, Command };
  Kind kind = Kind::Text;
  // The exact text given by the routine; for a command, its call form
  // "{ call NAME(?, ?) }".
  std::string text;
  // The procedure called, as written; empty for a plain statement.
  std::string procedure;
  // For a plain statement: the same statement with a "?" in place of each
  // literal, in the common SQL that every supported database runs. Empty for
  // a procedure call, which each data source renders in its own dialect.
  std::string sql;
  std::vector<Parameter> parameters;
  // Seconds the data source may spend on the statement before giving up;
  // 0 waits without limit.
  int timeout = 0;
};

// The rows of one result set, all of them (the component reads through a
// client-side static cursor).
struct ResultSet {
  std::vector<std::string> columns;
  std::vector<std::vector<Variant>> rows;
};

// An open connection to a data source. execute() returns the first result
// set of the statement, or nothing when the statement produced none. It
// reports failures by throwing qdr::DatabaseError.
class QDR_EXPORT Session {
 public:
  virtual ~Session();
  virtual std::optional<ResultSet> execute(const Statement& statement) = 0;
};

// Opens a session. `attributes` holds the connection string's key=value
// pairs with keys in lower case; `connection_string` is the string as given.
using BackendFactory = std::function<std::unique_ptr<Session>(
    const std::map<std::string, std::string>& attributes, const std::string& connection_string)>;

// Makes connection strings "Provider=NAME;..." open sessions through
// `factory` (NAME compared without regard to case). Registering a name again
// replaces the earlier factory. The built-in names (SQLOLEDB, MSOLEDBSQL,
// SQLNCLI*, PostgreSQL, Replay) can be replaced the same way.
QDR_EXPORT void register_backend(const std::string& provider, BackendFactory factory);

// Removes a registration; returns false when the name was not registered.
QDR_EXPORT bool unregister_backend(const std::string& provider);

}  // namespace qdr
