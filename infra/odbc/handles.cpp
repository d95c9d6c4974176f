#include "infra/odbc/handles.h"

#include <algorithm>
#include <string>

#include "qdr/error.h"

namespace qdr::odbc {

namespace {

constexpr int32_t kUnspecifiedError = -2147467259;

// One line: drivers break their messages over lines ("...;\nError while
// executing the query"), which would split a log row or a message box.
std::string one_line(const char* text, std::size_t length) {
  std::string out;
  bool blank = false;
  for (std::size_t i = 0; i < length; ++i) {
    const char c = text[i];
    if (c == '\n' || c == '\r' || c == '\t' || c == ' ') {
      blank = true;
      continue;
    }
    if (blank && !out.empty()) out += ' ';
    blank = false;
    out += c;
  }
  return out;
}

}  // namespace

SQLRETURN check(SQLRETURN rc, SQLSMALLINT handle_type, SQLHANDLE handle, std::string_view call) {
  if (rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO || rc == SQL_NO_DATA) return rc;

  std::string message;
  std::string state;
  SQLINTEGER first_native = 0;
  if (handle != SQL_NULL_HANDLE && rc != SQL_INVALID_HANDLE) {
    for (SQLSMALLINT record = 1; record < 20; ++record) {
      SQLCHAR sqlstate[6] = {};
      SQLINTEGER native = 0;
      SQLCHAR text[SQL_MAX_MESSAGE_LENGTH + 1] = {};
      SQLSMALLINT length = 0;
      const SQLRETURN diag =
          SQLGetDiagRec(handle_type, handle, record, sqlstate, &native, text, sizeof text, &length);
      if (diag != SQL_SUCCESS && diag != SQL_SUCCESS_WITH_INFO) break;
      const std::size_t used =
          length < 0 ? 0 : std::min<std::size_t>(static_cast<std::size_t>(length), sizeof text - 1);
      // The first error names the failure; warnings (class 01) that the
      // driver manager stacks before it only add to the message.
      const std::string this_state = reinterpret_cast<const char*>(sqlstate);
      if (state.empty() || (state.rfind("01", 0) == 0 && this_state.rfind("01", 0) != 0)) {
        state = this_state;
        first_native = native;
      }
      const std::string piece = one_line(reinterpret_cast<const char*>(text), used);
      if (!piece.empty()) message += (message.empty() ? "" : "; ") + piece;
    }
  }
  if (message.empty()) {
    message = std::string(call) + " failed";
    if (rc == SQL_INVALID_HANDLE) message += " (invalid handle)";
    if (rc == SQL_NEED_DATA) message += " (the driver asked for data at execution)";
    if (rc == SQL_STILL_EXECUTING) message += " (still executing)";
  }
  throw DatabaseError(first_native != 0 ? first_native : kUnspecifiedError, message, state);
}

}  // namespace qdr::odbc
