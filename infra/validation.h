#pragma once

// Checks of one user-entered value each, with the fixed Portuguese messages
// the operators see. Each routine first cleans the caller's value in place
// (the characters ' < > ( ) ; % & + and the double quote are removed), then
// checks it; on failure it writes its message into `message` and returns
// false. `mandatory` is "N" for an optional field, anything else for a
// mandatory one; limits may be empty (no limit). A run-time error inside a
// routine gives false with the routine's fixed text (plus the technical
// detail for user id 1); nothing is logged.

#include "qdr/variant.h"

namespace qdr {

// A date "dd/mm/aaaa"; on success `as_ymd` receives it as "yyyy/mm/dd".
bool gConsiste_Data(const Variant& caption, Variant& value, const Variant& minimum,
                    const Variant& maximum, const Variant& user_id, Variant& message,
                    Variant& as_ymd, const Variant& mandatory);

// A time "hh:mm". `comparison` is the time compared with the limits in its
// place when the caller gives one (Empty: the value itself).
bool gConsiste_Hora(const Variant& caption, Variant& value, const Variant& minimum,
                    const Variant& maximum, const Variant& user_id, Variant& message,
                    const Variant& comparison, const Variant& mandatory);

bool gConsiste_Inteiro(const Variant& caption, Variant& value, const Variant& minimum,
                       const Variant& maximum, const Variant& user_id, Variant& message,
                       const Variant& mandatory);

bool gConsiste_Numero(const Variant& caption, Variant& value, const Variant& minimum,
                      const Variant& maximum, const Variant& user_id, Variant& message,
                      const Variant& mandatory);

bool gConsiste_String(const Variant& caption, Variant& value, const Variant& maximum_length,
                      const Variant& user_id, Variant& message, const Variant& mandatory);

}  // namespace qdr
