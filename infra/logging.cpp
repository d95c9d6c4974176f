#include "infra/logging.h"

#include <limits>

#include "infra/ado.h"
#include "infra/literals.h"
#include "infra/numbers.h"
#include "infra/trap.h"
#include "infra/vb.h"

namespace qdr {

namespace {

constexpr int32_t kPieceLength = 255;
constexpr int32_t kPieces = 5;

// Numeric ids go in as their leading number; anything that fails to convert
// stays 0 and is written as null.
int32_t id_or_zero(const Variant& value) noexcept {
  try {
    if (vb::is_numeric(value)) return vb::clng(Variant(vb::val(vb::text_of(value))));
  } catch (...) {
  }
  return 0;
}

std::string date_expression(const std::string& kind) {
  if (kind == "SQLSERVER") return " GETDATE() , ";
  if (kind == "ORACLE") {
    return " TO_DATE('" + vb::format_date(Variant::date(vb::now()), "yyyy/mm/dd hh:mm:ss") +
           "' , 'YYYY/MM/DD hh24:mi:ss') , ";
  }
  // Deliberate: an unknown database gets a placeholder date, not a failure.
  return " '2002/01/01' , ";
}

std::string text_literal(const std::string& piece) {
  return vb::text_of(gFormata_Texto_SQL(Variant(piece)));
}

std::string numeric_literal(int32_t value) {
  return vb::text_of(gFormata_Numero_SQL(Variant(value)));
}

// Runs a statement on its own connection from the connection string; a
// statement without a result set leaves the recordset closed.
void execute(const std::string& text, const std::string& connection) {
  ado::Recordset rs;
  rs.CursorLocation = ado::adUseClient;
  rs.Open(text, connection, -1, -1, -1);
}

}  // namespace

void gGrava_Log_Msg(const Variant& database_kind, const Variant& connection, const Variant& user_id,
                    const Variant& message_kind, const Variant& message_text) noexcept {
  try {
    const std::string kind = vb::text_of(database_kind);
    const std::string connection_string = vb::text_of(connection);
    if (vb::trim(kind).empty() || vb::trim(connection_string).empty()) return;

    const int32_t user = id_or_zero(user_id);
    const int32_t message_kind_id = id_or_zero(message_kind);

    std::string text;
    try {
      text = vb::text_of(gRetira_Caracteres_Especiais(Variant(vb::text_of(message_text))));
    } catch (...) {
      // A message that cannot be read is logged empty: the row still tells
      // when and for whom something failed.
      text.clear();
    }

    std::string pieces[kPieces];
    if (!text.empty()) {
      for (int32_t i = 0; i < kPieces; ++i)
        pieces[i] = vb::mid(text, 1 + kPieceLength * i, kPieceLength);
    }

    std::string sql = std::string("INSERT INTO LOG_MSG ") + "( TAB_TIPO_MSG_ID," +
                      " USUARIO_INTERNET_ID , " + " DATA_LOG    , " + " MSG01       , " +
                      " MSG02       , " + " MSG03       , " + " MSG04       , " +
                      " MSG05       ) " + " VALUES ( ";
    sql += numeric_literal(message_kind_id) + " , ";
    sql += numeric_literal(user) + " , ";
    sql += date_expression(kind);
    sql += text_literal(pieces[0]) + " , " + text_literal(pieces[1]) + " , " +
           text_literal(pieces[2]) + " , " + text_literal(pieces[3]) + " , " +
           text_literal(pieces[4]) + " ) ";

    execute(sql, connection_string);
  } catch (...) {
    // The error log has nowhere to report its own failure; the row is lost.
  }
}

bool is_technical_user(const Variant& user_id) noexcept {
  try {
    return vb::eq(user_id, Variant(1));
  } catch (...) {
    return false;
  }
}

void report_failure(Variant& outvntMsg_Ret, const std::string& user_text, const std::string& detail,
                    const Variant& database_kind, const Variant& connection,
                    const Variant& user_id) noexcept {
  try {
    outvntMsg_Ret = Variant(user_text);
    gGrava_Log_Msg(database_kind, connection, user_id, Variant(1), Variant(user_text + detail));
    if (is_technical_user(user_id)) outvntMsg_Ret = Variant(user_text + detail);
  } catch (...) {
    // Only allocation can fail here; the message already holds what it can.
  }
}

bool gAtualiza_infra_ids(const Variant& connection, const std::string& column, Variant& new_value,
                         Variant& message) noexcept {
  int erl = 0;
  std::string sql;
  try {
    const std::string connection_string = vb::text_of(connection);

    erl = 1;
    sql = "SELECT  " + column + " FROM infra_ids ";
    ado::Recordset rs;
    rs.CursorLocation = ado::adUseClient;
    rs.Open(sql, connection_string, ado::adOpenStatic, ado::adLockReadOnly);

    erl = 2;
    if (rs.State() != ado::adStateOpen || rs.Eof()) {
      message = Variant("Não há registro no banco de dados na tabela Infra_ids. ");
      return false;
    }

    erl = 3;
    const Variant current =
        gTrata_Separador_Decimal(Variant(vb::trim(vb::text_of(rs.Fields(column)))));
    const int64_t next = static_cast<int64_t>(vb::clng(current)) + 1;
    if (next > std::numeric_limits<int32_t>::max()) vb::raise(vb::kOverflow);
    rs.Close();

    erl = 4;
    const auto value = static_cast<int32_t>(next);
    sql = "UPDATE infra_ids SET " + column + " = " + numeric_literal(value);
    execute(sql, connection_string);

    new_value = Variant(value);
    return true;
  } catch (...) {
    const ErrInfo error = current_error();
    try {
      message = Variant("Acesso aos SQL não disponível. Favor tentar mais tarde." +
                        std::string(" KRN_SQL1.gAtualiza_infra_ids ( ") +
                        std::to_string(error.number) + " : " + error.description + ")  " +
                        " no nº " + std::to_string(erl) + " strsq: " + sql);
    } catch (...) {
    }
    return false;
  }
}

bool gInclui_Log_Sistema(const Variant& connection, int32_t& tabela_sistema_id,
                         int32_t& tab_tipo_acao_id, int32_t& usuario_id, int32_t& registro_id,
                         int32_t& retorno) noexcept {
  try {
    const std::string sql =
        "EXEC SP_KRN_INC_LOG_SISTEMA2 " + std::string(" @Tabela_Sistema_Id = ") +
        std::to_string(tabela_sistema_id) + "," + " @Usuario_Id = " + std::to_string(usuario_id) +
        "," + " @Registro_Id = " + std::to_string(registro_id) + "," +
        " @Tab_Tipo_Acao_Id = " + std::to_string(tab_tipo_acao_id) + "," +
        " @Retorno = " + std::to_string(retorno);
    ado::Recordset rs;
    rs.CursorLocation = ado::adUseClient;
    rs.Open(sql, vb::text_of(connection), ado::adOpenStatic, ado::adLockReadOnly);
    if (rs.State() != ado::adStateOpen || rs.Eof()) return false;
    const int32_t answer = vb::clng(rs.Fields("retorno"));
    rs.Close();
    retorno = answer;
    return true;
  } catch (...) {
    // Activity rows are best effort: a failure leaves no trace.
    return false;
  }
}

}  // namespace qdr
