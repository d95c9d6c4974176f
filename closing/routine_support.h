#pragma once

// Pieces the closing routines share: the literals of their "EXEC" texts, the
// client-side recordset those texts run on, and the technical detail of a
// trapped error. Each routine still spells out its own steps, line numbers
// and messages.

#include <string>

#include "infra/ado.h"
#include "infra/trap.h"
#include "qdr/variant.h"

namespace qdr::closing {

// The message of a routine of the order's closing that trapped an error.
inline constexpr const char* kClosingUnavailable =
    "Acesso ao Fechamento da OS não disponível. Favor tentar mais tarde.";

// The value as a number in an "EXEC" text: "null" when it reads as 0 (empty
// and null included), else its text (gFormata_Numero_SQL).
std::string number_literal(const Variant& value);
// The value quoted ("'value'", quotes not doubled), or "null" when empty
// (gFormata_Texto_SQL).
std::string text_literal(const Variant& value);
// The value as "'yyyy/mm/dd hh:mm'", or "null" when empty
// (gFormata_Data_SQL).
std::string date_time_literal(const Variant& value);

// Runs `sql` on a client-side recordset over a connection opened for the
// purpose from `connection` (a connection string). Cursor and lock types are
// passed on as the routine gives them (-1: not given). Raises what
// ado::Recordset::Open raises; a statement without a result set leaves the
// recordset closed.
ado::Recordset open_client_side(const std::string& sql, const std::string& connection,
                                int cursor_type = -1, int lock_type = -1);

// The technical detail of a trapped error: `opening` (" - T318QDR." +
// routine + " ("), then "description : number)  " and " No Nº " + line.
std::string trap_detail(const std::string& opening, const ErrInfo& error, int erl);

}  // namespace qdr::closing
