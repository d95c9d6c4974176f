#include "infra/logging.h"

#include "infra/numbers.h"
#include "infra/vb.h"

namespace qdr {

void gGrava_Log_Msg(const Variant&, const Variant&, const Variant&, const Variant&,
                    const Variant&) noexcept {
  // The LOG_MSG writer arrives with the logging work; until then rows are
  // dropped, which is what a failing writer does anyway.
}

bool is_technical_user(const Variant& user_id) noexcept {
  try {
    return vb::eq(user_id, Variant(1));
  } catch (...) {
    return false;
  }
}

void report_failure(Variant& outvntMsg_Ret, const std::string& user_text,
                    const std::string& detail, const Variant& database_kind,
                    const Variant& connection, const Variant& user_id) noexcept {
  try {
    outvntMsg_Ret = Variant(user_text);
    gGrava_Log_Msg(database_kind, connection, user_id, Variant(1), Variant(user_text + detail));
    if (is_technical_user(user_id)) outvntMsg_Ret = Variant(user_text + detail);
  } catch (...) {
    // Only allocation can fail here; the message already holds what it can.
  }
}

}  // namespace qdr
