#pragma once

// Where a connection string leads: to a registered backend by its
// "Provider=" name, or to ODBC for a plain ODBC string.

#include <map>
#include <memory>
#include <string>

#include "qdr/backend.h"

namespace qdr {

// key=value pairs separated by ";"; keys trimmed and lower-cased, values
// trimmed, a value in braces or quotes taken whole (it may hold ";").
std::map<std::string, std::string> parse_connection_string(const std::string& text);

// Opens a session for the connection string. Raises DatabaseError for an
// empty string or an unknown provider, and whatever the backend raises.
std::unique_ptr<Session> open_session(const std::string& connection_string);

// Built-in backends (defined beside their implementations).
// An ODBC connection string ("Driver=..." or "DSN=...") as given.
std::unique_ptr<Session> open_odbc_session(const std::string& odbc_connection_string);
// The OLE DB forms that legacy callers pass (SQLOLEDB, MSOLEDBSQL, SQLNCLI*,
// PostgreSQL) rewritten as an ODBC connection string.
std::string odbc_string_for_provider(const std::map<std::string, std::string>& attributes);
// Provider=Replay;Script=FILE;Journal=FILE
std::unique_ptr<Session> open_replay_session(const std::map<std::string, std::string>& attributes);

}  // namespace qdr
