#pragma once

// The OLE DB connection strings that legacy callers pass, rewritten for
// ODBC drivers (odbc_string_for_provider, declared in
// infra/backend_registry.h, is defined beside these).

#include <string>
#include <string_view>

namespace qdr::odbc {

// Environment variables naming the ODBC driver to use; when unset or empty
// the defaults below apply.
inline constexpr const char* kSqlServerDriverVariable = "QDR_SQLSERVER_ODBC_DRIVER";
inline constexpr const char* kSqlServerDefaultDriver = "ODBC Driver 18 for SQL Server";
inline constexpr const char* kPostgreSqlDriverVariable = "QDR_POSTGRESQL_ODBC_DRIVER";
inline constexpr const char* kPostgreSqlDefaultDriver = "PostgreSQL Unicode";

// A value as an ODBC connection string carries it: as it is when it is
// plain, in braces (with "}" doubled) when it holds ";", "{", "}", "=" or
// leading or trailing blanks.
std::string odbc_value(std::string_view value);

}  // namespace qdr::odbc
