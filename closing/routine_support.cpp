#include "closing/routine_support.h"

#include "infra/literals.h"
#include "infra/vb.h"

namespace qdr::closing {

std::string number_literal(const Variant& value) { return vb::cstr(gFormata_Numero_SQL(value)); }

std::string text_literal(const Variant& value) { return vb::cstr(gFormata_Texto_SQL(value)); }

std::string date_time_literal(const Variant& value) { return vb::cstr(gFormata_Data_SQL(value)); }

ado::Recordset open_client_side(const std::string& sql, const std::string& connection,
                                int cursor_type, int lock_type) {
  ado::Recordset rs;
  rs.CursorLocation = ado::adUseClient;
  rs.Open(sql, connection, cursor_type, lock_type, -1);
  return rs;
}

std::string trap_detail(const std::string& opening, const ErrInfo& error, int erl) {
  return opening + error.description + " : " + std::to_string(error.number) + ")  " + " No Nº " +
         std::to_string(erl);
}

}  // namespace qdr::closing
