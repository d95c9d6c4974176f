#include "closing/ports.h"

#include <string>

#include "closing/routine_support.h"
#include "infra/ado.h"
#include "infra/logging.h"
#include "infra/numbers.h"
#include "infra/trap.h"
#include "infra/vb.h"

namespace qdr::closing {

namespace {

constexpr const char* kSemPortos =
    "Problemas ao identificar os Portos relacionado à Filial do Usuário.Contacte o "
    "Administrador do Sistema.";
constexpr const char* kFalhaConsulta =
    "Problema na Consulta do Porto e Agente relacionados ao Usuário. Contacte o Administrador "
    "do Sistema.";

}  // namespace

bool gConsulta_Porto_Ponto(Variant& invntUsuario_internet_id, Variant& invntConecta_db,
                           Variant& invntBase_dados, Variant& outvntPONTO_OPERACAO_ID,
                           Variant& outvntTam_arr, Variant& outarrvntPORTO_ID,
                           Variant& outvntMsg_Ret, Variant& outarrvntnome_porto) {
  int erl = 0;
  std::string strSql;
  try {
    erl = 10;
    strSql = "EXEC SP_050_CON_PORTO_PONTO01   " + number_literal(invntUsuario_internet_id);

    erl = 20;
    ado::Recordset rs =
        open_client_side(strSql, vb::cstr(invntConecta_db), ado::adOpenStatic, ado::adLockReadOnly);

    erl = 30;
    if (rs.Eof()) {
      // The detail names another component's routine and a State test for
      // what is an empty result: kept word for word, deliberately. No error
      // occurred, hence line 0.
      report_failure(outvntMsg_Ret, kSemPortos,
                     std::string(" - T529LW.mConsulta_Porto_Ponto -( State = 0: ") + " No Nº " +
                         "0" + ")" + strSql,
                     invntBase_dados, invntConecta_db, invntUsuario_internet_id);
      return false;
    }

    erl = 40;
    rs.MoveLast();
    rs.MoveFirst();
    const int32_t count = rs.RecordCount();
    outvntTam_arr = Variant::long_integer(count);

    erl = 50;
    outvntPONTO_OPERACAO_ID = gTrata_Separador_Decimal(rs.Fields("PONTO_OPERACAO_ID"));

    erl = 60;
    outarrvntPORTO_ID.redim(0, count - 1);
    outarrvntnome_porto.redim(0, count - 1);

    erl = 70;
    for (int32_t i = 0; i < count; ++i) {
      outarrvntPORTO_ID.at(i) = gTrata_Separador_Decimal(rs.Fields("PORTO_ID"));
      // The name goes through the number normalisation too, deliberately:
      // callers have always received it that way (a Null name reads 0).
      outarrvntnome_porto.at(i) = gTrata_Separador_Decimal(rs.Fields("nome_porto"));
      rs.MoveNext();
    }

    erl = 80;
    rs.Close();
    return true;
  } catch (...) {
    const ErrInfo error = current_error();
    report_failure(outvntMsg_Ret, kFalhaConsulta,
                   " - T318QDR.gConsulta_Porto_Ponto -(" + error.description + " : " + " No Nº " +
                       std::to_string(erl) + ")" + strSql,
                   invntBase_dados, invntConecta_db, invntUsuario_internet_id);
    return false;
  }
}

}  // namespace qdr::closing
