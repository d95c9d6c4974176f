#pragma once

// How a procedure call is written for each kind of database.

#include <string>
#include <string_view>

#include "qdr/backend.h"

namespace qdr::odbc {

enum class Dialect { SqlServer, PostgreSql, Generic };

// The dialect of a database from the driver's SQL_DBMS_NAME: "Microsoft SQL
// Server" and "PostgreSQL" (letter case ignored); anything else is Generic.
Dialect dialect_for(std::string_view dbms_name);

// What a name is on PostgreSQL, which calls each differently: a function
// returning rows or a value, a function returning void, or a PROCEDURE.
enum class RoutineKind { Function, VoidFunction, Procedure };

struct Call {
  std::string sql;
  // True when the statement produces a result that means nothing to the
  // caller (a void function's empty row) and is to be dropped.
  bool discard_result = false;
};

// The SQL that calls `statement.procedure` with one "?" per parameter.
// Parameters of a text statement with a name ("@Name") are passed by name;
// a command's parameters always by position.
//   SqlServer:  {call NAME(?, ?)}, or EXEC NAME ?, @b = ? with names
//   PostgreSql: SELECT * FROM NAME(?, b => ?) for a function,
//               SELECT NAME(?) for a void function (result dropped),
//               CALL NAME(?) for a procedure
//   Generic:    {call NAME(?, ?)}
// `kind` matters only for PostgreSql. The name must already be known to be
// a plain name.
Call render_call(Dialect dialect, const Statement& statement, RoutineKind kind);

}  // namespace qdr::odbc
