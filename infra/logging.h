#pragma once

// Error log, identifier counter and activity log. All three run on the
// caller's connection string.

#include <string>

#include "qdr/variant.h"

namespace qdr {

// Writes one LOG_MSG row. Never raises and never reports: any failure along
// the way (no database kind, no connection, a database that is down) is
// skipped and the row is silently lost.
void gGrava_Log_Msg(const Variant& database_kind, const Variant& connection,
                    const Variant& user_id, const Variant& message_kind,
                    const Variant& message_text) noexcept;

// The failure layout of every error trap: outvntMsg_Ret becomes user_text;
// user_text + detail goes to the error log with message kind 1; the detail
// is appended to outvntMsg_Ret only when the user id is 1.
void report_failure(Variant& outvntMsg_Ret, const std::string& user_text,
                    const std::string& detail, const Variant& database_kind,
                    const Variant& connection, const Variant& user_id) noexcept;

// True when the user id is 1, the user who sees technical details.
bool is_technical_user(const Variant& user_id) noexcept;

}  // namespace qdr
