#include "closing/incident_types.h"

#include <string>

#include "closing/routine_support.h"
#include "infra/ado.h"
#include "infra/literals.h"
#include "infra/logging.h"
#include "infra/numbers.h"
#include "infra/trap.h"
#include "infra/vb.h"

namespace qdr::closing {

namespace {

constexpr const char* kFalhaLista =
    "Problemas na Montagem da Lista de Indicadores. Contacte o Administrador do Sistema.";

}  // namespace

bool mMonta_Lista_Tab_Tipo_Incidente(
    Variant& invntConecta_db, Variant& invntBase_dados, Variant& invntUsuario_internet_id,
    Variant& outvntTam_arr, Variant& outarrvntTab_Tipo_Incidente_id,
    Variant& outarrvntDesc_Tipo_Incidente, Variant& outarrvntFlag_Selecionado,
    Variant& invntOrdem_Servico_Tipo_Ident, Variant& OUTarrJustificativa,
    Variant& OUTarrFlag_contr_canhoto, Variant& outvntMsg_Ret, Variant& outarrflag_tipo_cadastro) {
  int erl = 0;
  std::string strSql;
  try {
    erl = 10;
    strSql = "EXECUTE SP_050_CON_LISTA_TIPO_INCIDENTE_OS01 " +
             number_literal(invntOrdem_Servico_Tipo_Ident) + " ";

    erl = 20;
    ado::Recordset rs =
        open_client_side(strSql, vb::cstr(invntConecta_db), ado::adOpenStatic, ado::adLockReadOnly);

    erl = 30;
    // An empty list is a success that leaves the caller's count and arrays
    // as they were: deliberate.
    if (rs.Eof()) {
      rs.Close();
      return true;
    }

    erl = 40;
    rs.MoveLast();
    rs.MoveFirst();
    const int32_t count = rs.RecordCount();
    outvntTam_arr = Variant::long_integer(count);

    erl = 50;
    outarrvntTab_Tipo_Incidente_id.redim(0, count - 1);
    outarrvntDesc_Tipo_Incidente.redim(0, count - 1);
    outarrvntFlag_Selecionado.redim(0, count - 1);
    OUTarrJustificativa.redim(0, count - 1);
    OUTarrFlag_contr_canhoto.redim(0, count - 1);
    outarrflag_tipo_cadastro.redim(0, count - 1);

    erl = 60;
    for (int32_t i = 0; i < count; ++i) {
      outarrvntTab_Tipo_Incidente_id.at(i) =
          gTrata_Separador_Decimal(rs.Fields("tab_tipo_incidente_id"));
      outarrvntDesc_Tipo_Incidente.at(i) = gTrata_Nulo(rs.Fields("descricao"));
      outarrvntFlag_Selecionado.at(i) = gTrata_Nulo(rs.Fields("Flag_Selecionado"));
      OUTarrJustificativa.at(i) = gTrata_Nulo(rs.Fields("justificativa"));
      OUTarrFlag_contr_canhoto.at(i) = gTrata_Nulo(rs.Fields("flag_contr_canhoto"));
      outarrflag_tipo_cadastro.at(i) = gTrata_Nulo(rs.Fields("flag_tipo_cadastro"));
      rs.MoveNext();
    }

    erl = 70;
    rs.Close();
    return true;
  } catch (...) {
    const ErrInfo error = current_error();
    report_failure(outvntMsg_Ret, kFalhaLista,
                   " - T318QDR.mMonta_Lista_Tab_Tipo_Incidente( " + error.description + " : " +
                       " No Nº " + std::to_string(erl) + ")" + "SQL: " + strSql,
                   invntBase_dados, invntConecta_db, invntUsuario_internet_id);
    return false;
  }
}

}  // namespace qdr::closing
