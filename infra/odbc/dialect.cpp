#include "infra/odbc/dialect.h"

#include "infra/ascii.h"

namespace qdr::odbc {

namespace {

bool by_name(const Statement& statement, const Parameter& parameter) {
  return statement.kind == Statement::Kind::Text && !parameter.name.empty();
}

// "?, ?" with each named parameter written as `prefix` + name + `arrow`.
std::string markers(const Statement& statement, bool keep_at, std::string_view arrow) {
  std::string out;
  for (const auto& parameter : statement.parameters) {
    if (!out.empty()) out += ", ";
    if (by_name(statement, parameter)) {
      std::string_view name = parameter.name;
      if (!keep_at && !name.empty() && name.front() == '@') name.remove_prefix(1);
      out += std::string(name) + std::string(arrow);
    }
    out += "?";
  }
  return out;
}

bool any_named(const Statement& statement) {
  for (const auto& parameter : statement.parameters)
    if (by_name(statement, parameter)) return true;
  return false;
}

std::string escape_call(const Statement& statement) {
  if (statement.parameters.empty()) return "{call " + statement.procedure + "}";
  std::string out = "{call " + statement.procedure + "(";
  for (std::size_t i = 0; i < statement.parameters.size(); ++i) out += i ? ", ?" : "?";
  return out + ")}";
}

}  // namespace

Dialect dialect_for(std::string_view dbms_name) {
  if (ascii::iequals(dbms_name, "Microsoft SQL Server")) return Dialect::SqlServer;
  if (ascii::iequals(dbms_name, "PostgreSQL")) return Dialect::PostgreSql;
  return Dialect::Generic;
}

Call render_call(Dialect dialect, const Statement& statement, RoutineKind kind) {
  switch (dialect) {
    case Dialect::SqlServer:
      if (!any_named(statement)) return {escape_call(statement), false};
      return {"EXEC " + statement.procedure + " " + markers(statement, true, " = "), false};
    case Dialect::PostgreSql: {
      const std::string arguments = "(" + markers(statement, false, " => ") + ")";
      switch (kind) {
        case RoutineKind::Procedure:
          return {"CALL " + statement.procedure + arguments, false};
        case RoutineKind::VoidFunction:
          return {"SELECT " + statement.procedure + arguments, true};
        case RoutineKind::Function:
          break;
      }
      return {"SELECT * FROM " + statement.procedure + arguments, false};
    }
    case Dialect::Generic:
      break;
  }
  return {escape_call(statement), false};
}

}  // namespace qdr::odbc
