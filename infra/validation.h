#pragma once

// Checks of one user-entered value each, with the fixed Portuguese messages
// the operators see. Each routine first cleans the caller's value in place
// when it is not empty (the characters ' < > ( ) ; % & + and the double
// quote are removed; the value becomes text), then checks it; on failure it
// writes its message into `message` and returns false, and on success it
// leaves `message` alone. `mandatory` is "N" for an optional field, anything
// else for a mandatory one; an optional field left empty is accepted, a
// mandatory one gets "Preencha " + caption. Limits may be empty (no limit);
// a limit that is given is quoted in the message as the caller gave it.
//
// A run-time error inside a routine (a value that cannot be read as text,
// such as an array) gives false with the routine's fixed text, e.g.
// "Acesso a consistência de datas não disponível. Favor tentar mais tarde. ";
// for user id 1 the detail " - KRNCCA.gConsiste_Data (" number " : "
// description ")  " " No Nº " step follows, where step counts the three
// common steps (cleaning, optional, empty) as 1 to 3 and the routine's own
// rules from 4 in the order below. Nothing is logged. User id has no other
// use.
//
// Each routine follows the regional settings of the process (date order,
// decimal and thousands separators) the way the rest of the library does.

#include "qdr/variant.h"

namespace qdr {

// A date "dd/mm/aaaa": exactly 10 characters, a date to the regional date
// parsing (so "10/13/2001" passes the parsing and is then refused for its
// month), characters 4-5 at most 12. On success `as_ymd` receives it as
// "yyyy/mm/dd"; limits "dd/mm/aaaa" are turned the same way and compared as
// those texts.
bool gConsiste_Data(const Variant& caption, Variant& value, const Variant& minimum,
                    const Variant& maximum, const Variant& user_id, Variant& message,
                    Variant& as_ymd, const Variant& mandatory);

// A time "hh:mm": 5 characters, ":" third, hours 0-23 and minutes 0-59 as
// numbers, a time to the regional parsing. The limits are compared, as
// texts, with `comparison` when its text is not empty and with the value
// otherwise: a caller that checks a time on a given day passes "yyyy/mm/dd
// hh:mm" here and limits in the same layout; with "hh:mm" limits it passes
// Empty.
bool gConsiste_Hora(const Variant& caption, Variant& value, const Variant& minimum,
                    const Variant& maximum, const Variant& user_id, Variant& message,
                    const Variant& comparison, const Variant& mandatory);

// An integer: no "." (thousands separator) and no "," (decimal comma), a
// number to the regional parsing, within the limits as numbers (value and
// limits read through gTrata_Separador_Decimal).
bool gConsiste_Inteiro(const Variant& caption, Variant& value, const Variant& minimum,
                       const Variant& maximum, const Variant& user_id, Variant& message,
                       const Variant& mandatory);

// As gConsiste_Inteiro, but the decimal comma is allowed.
bool gConsiste_Numero(const Variant& caption, Variant& value, const Variant& minimum,
                      const Variant& maximum, const Variant& user_id, Variant& message,
                      const Variant& mandatory);

// A text of at most `maximum_length` characters (no limit when that is not
// a number above 0).
bool gConsiste_String(const Variant& caption, Variant& value, const Variant& maximum_length,
                      const Variant& user_id, Variant& message, const Variant& mandatory);

}  // namespace qdr
