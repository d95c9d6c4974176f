#pragma once

// Numbers whose decimal separator may differ between the caller's text, the
// database and the machine's regional settings.

#include "qdr/variant.h"

namespace qdr {

// The machine separator, found as the legacy code found it: 0.5 made text
// with the regional settings, then a look for ".". Probed on every call.
struct Separators {
  char machine;
  char foreign;
};
Separators probe_separators();

// Null or "" give Integer 0. A value holding the foreign separator exactly
// once comes back as text with it replaced by the machine separator; any
// other value comes back unchanged (so "1.234.567" on a comma machine stays
// as it is: only a single foreign separator is taken for a decimal point).
// Never raises: a failure gives Empty.
Variant gTrata_Separador_Decimal(const Variant& value);

// The trimmed text's characters before the first `separator` are the integer
// part, all other characters the fraction; later separators are dropped
// ("1,2,3" with "," gives 1.23). Each part is read with the regional
// conversion (vb::cdbl, so it raises 13 when a part is not a number); the
// fraction takes the sign of the integer part ("-12,5" gives -12.5).
double gConverte_Numero_Separador(const Variant& text, const Variant& separator);

// `value` with exactly `places` decimals and a decimal comma (fixed: the text
// is for display in the Brazilian format), no thousands grouping. Values
// between -1 and 1 are rounded half to even; larger ones have their extra
// decimals cut. Zero places give the integer part alone. Null, empty or zero
// give `default_value` as it is. Never raises: a non-numeric value, or places
// outside 0..255, give Empty.
Variant gFormata_Numero(const Variant& value, const Variant& default_value, Variant& places);

// The null-safe numeric value used across the routines: the number that
// gTrata_Separador_Decimal's result converts to regionally (Null, "" and
// non-numeric texts give 0).
double numeric_value(const Variant& value);

}  // namespace qdr
