#pragma once

// The frame that every public method runs around its private work.

#include <functional>
#include <string>

#include "infra/trap.h"
#include "qdr/variant.h"

namespace qdr {

struct CallFrame {
  const char* method;
  // Shown to the user when the work raises an error that it did not trap.
  const char* failure_text;
  // The technical detail of such an error, in the method's own layout.
  std::string (*detail)(const ErrInfo& error);
};

// The five methods in slot order.
extern const CallFrame kFrames[5];

// Status 10, run `work`, status 0 when it returned true. An error escaping
// `work` is trapped: outvntMsg_Ret gets the frame's failure text, the text
// and its detail are logged, and the detail reaches user id 1 only. Never
// throws.
Variant run_call_frame(const CallFrame& frame, const Variant& connection,
                       const Variant& database_kind, const Variant& user_id, Variant& outvntMsg_Ret,
                       const std::function<bool()>& work) noexcept;

}  // namespace qdr
