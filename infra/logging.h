#pragma once

// Error log, identifier counter and activity log. All three run on the
// caller's connection string.

#include <cstdint>
#include <string>

#include "qdr/variant.h"

namespace qdr {

// Writes one LOG_MSG row for a trapped failure. Never raises and never
// reports: any failure along the way (a database that is down or
// unreachable, a rejected statement) is skipped and the row is silently lost.
//
// - Nothing is written when the database kind or the connection string,
//   trimmed, is empty (Null counts as empty).
// - User id and message kind go in as 32-bit integers when they are numeric
//   (their leading number), otherwise as 0; 0 is stored as null.
// - The text loses every ' < > ( ) ; % & + and double quote, then is cut into
//   MSG01..MSG05 of at most 255 characters (characters, not bytes); pieces
//   past the end are stored as null and characters past 1,275 are dropped.
//   A text that cannot be read (an array) is logged as an empty one.
// - DATA_LOG is GETDATE() for "SQLSERVER", TO_DATE of the local time for
//   "ORACLE" and the fixed placeholder '2002/01/01' for any other kind (the
//   comparison is exact: "sqlserver" is another kind).
//
// The statement, for kind 1, user 2, "abc" and "SQLSERVER":
//   INSERT INTO LOG_MSG ( TAB_TIPO_MSG_ID, USUARIO_INTERNET_ID ,  DATA_LOG    ,
//   MSG01 ... MSG05       )  VALUES ( 1 , 2 ,  GETDATE() , 'abc' , null ,
//   null , null , null )
// (one line, with the blanks of the legacy text kept as they are).
void gGrava_Log_Msg(const Variant& database_kind, const Variant& connection, const Variant& user_id,
                    const Variant& message_kind, const Variant& message_text) noexcept;

// The failure layout of every error trap: outvntMsg_Ret becomes user_text;
// user_text + detail goes to the error log with message kind 1; the detail
// is appended to outvntMsg_Ret only when the user id is 1.
void report_failure(Variant& outvntMsg_Ret, const std::string& user_text, const std::string& detail,
                    const Variant& database_kind, const Variant& connection,
                    const Variant& user_id) noexcept;

// True when the user id is 1, the user who sees technical details.
bool is_technical_user(const Variant& user_id) noexcept;

// Takes the next value of the counter kept in column `column` of the
// one-row table infra_ids: reads it ("SELECT  column FROM infra_ids "),
// adds 1 and writes it back ("UPDATE infra_ids SET column = n"). On success
// returns true with the new value in `new_value` (Long) and leaves `message`
// alone.
//
// Returns false with `message` set when
// - the table has no row: "Não há registro no banco de dados na tabela
//   Infra_ids. " (nothing is updated);
// - anything else fails (database error, a column that does not exist, a
//   counter that would pass 2,147,483,647): "Acesso aos SQL não disponível.
//   Favor tentar mais tarde." followed by the technical detail
//   " KRN_SQL1.gAtualiza_infra_ids ( " number " : " description ")  "
//   " no nº " step " strsq: " statement, where step is 1 for the read, 2 for
//   the end-of-table check, 3 for the new value and 4 for the update, and
//   statement is the last text built. The detail is always given: the
//   counter serves background jobs, not the operator's screen.
// A failed update leaves the counter where it was; the two statements are
// not one transaction, so two callers may draw the same value.
bool gAtualiza_infra_ids(const Variant& connection, const std::string& column, Variant& new_value,
                         Variant& message) noexcept;

// Records one activity row: runs
//   "EXEC SP_KRN_INC_LOG_SISTEMA2  @Tabela_Sistema_Id = t, @Usuario_Id = u,
//   @Registro_Id = r, @Tab_Tipo_Acao_Id = a, @Retorno = n"
// (one line; every value in decimal, 0 included) on the connection string.
// Errors are ignored: it never raises and never reports. When the procedure
// answers with its row, `retorno` receives that row's "retorno" and the
// result is true; when it does not (a database error, no row, no column,
// an empty connection string) `retorno` is left as it was and the result is
// false. The arguments are by reference only to keep the legacy signature.
bool gInclui_Log_Sistema(const Variant& connection, int32_t& tabela_sistema_id,
                         int32_t& tab_tipo_acao_id, int32_t& usuario_id, int32_t& registro_id,
                         int32_t& retorno) noexcept;

}  // namespace qdr
