#include "closing/incidents.h"

#include <cstdint>
#include <limits>
#include <string>

#include "closing/routine_support.h"
#include "infra/ado.h"
#include "infra/logging.h"
#include "infra/numbers.h"
#include "infra/trap.h"
#include "infra/validation.h"
#include "infra/vb.h"

namespace qdr::closing {

namespace {

constexpr const char* kFalhaGravacao =
    "Problemas na Gravação do Incidente. Contacte o Administrador do Sistema.";
constexpr const char* kFalhaInclusao =
    "Problemas na inclusão do Incidente. Contacte o Administrador do Sistema.";

void drop_last_separator(std::string& list) {
  if (!list.empty()) list.pop_back();
}

}  // namespace

bool gGrava_Incidente(Variant& invntConecta_db, Variant& invntBase_dados,
                      Variant& invntUsuario_internet_id, Variant& invntOrdem_Servico_Tipo_Ident,
                      Variant& InarrvntTab_Tipo_Incidente_id, Variant& inarrvntFlag_Selecionado,
                      Variant& invntFlag_Grava_Observacao, Variant& invntTam_Arr,
                      Variant& invntObservacao, Variant& INarrJustificativa, Variant& outvntMsg_Ret,
                      Variant& inTAB_TIPO_ORDEM_SERVICO_iD, Variant& INarrflag_tipo_cadastro) {
  int erl = 0;
  try {
    erl = 10;
    std::string lista_incidente;
    std::string lista_justificativa;
    std::string lista_selecionado;
    std::string lista_tipo_cadastro;

    const double tam_arr = numeric_value(invntTam_Arr);
    if (tam_arr > 0) {
      for (int64_t i = 0; static_cast<double>(i) <= tam_arr - 1; ++i) {
        erl = 20;
        if (i > std::numeric_limits<int32_t>::max()) vb::raise(vb::kOverflow);
        const auto linha = static_cast<int32_t>(i);
        // Copies, so that the message written by the checks below cannot
        // disturb the line even when the caller passed one variable twice.
        const Variant flag = inarrvntFlag_Selecionado.at(linha);
        const Variant justificativa = INarrJustificativa.at(linha);
        if (vb::trim(vb::text_of(flag)) != "S" && vb::len(vb::text_of(justificativa)) == 0)
          continue;

        erl = 30;
        const Variant tipo_incidente = InarrvntTab_Tipo_Incidente_id.at(linha);
        lista_incidente += vb::trim(vb::text_of(tipo_incidente)) + ",";

        erl = 40;
        const Variant tipo_cadastro = INarrflag_tipo_cadastro.at(linha);
        const bool obrigatorio = numeric_value(inTAB_TIPO_ORDEM_SERVICO_iD) == 2 &&
                                 numeric_value(tipo_incidente) == 18 &&
                                 vb::text_of(tipo_cadastro) == "M";

        erl = 50;
        lista_tipo_cadastro += vb::trim(vb::text_of(tipo_cadastro)) + ",";

        erl = 60;
        // The check cleans a copy: the justification is sent as typed,
        // deliberately.
        Variant texto = justificativa;
        if (!gConsiste_String(Variant("Observação Indicador (Linha " + std::to_string(i + 1) + ")"),
                              texto, Variant(255), invntUsuario_internet_id, outvntMsg_Ret,
                              Variant(obrigatorio ? "S" : "N")))
          return false;

        erl = 70;
        lista_justificativa += vb::text_of(justificativa) + "|";
        // A line counted for its justification alone goes as "S" as soon as
        // its flag holds anything, "N" included: deliberate.
        lista_selecionado += vb::text_of(flag).empty() ? "N," : "S,";
      }
    }

    erl = 80;
    drop_last_separator(lista_incidente);
    drop_last_separator(lista_justificativa);
    drop_last_separator(lista_selecionado);
    drop_last_separator(lista_tipo_cadastro);

    erl = 90;
    if (!gConsiste_String(Variant("Observação"), invntObservacao, Variant(300),
                          invntUsuario_internet_id, outvntMsg_Ret, Variant("N")))
      return false;

    erl = 100;
    Variant incidentes(lista_incidente);
    Variant justificativas(lista_justificativa);
    Variant selecionados(lista_selecionado);
    Variant tipos_cadastro(lista_tipo_cadastro);
    return mInclui_Incidente(invntConecta_db, invntBase_dados, invntUsuario_internet_id,
                             invntOrdem_Servico_Tipo_Ident, invntFlag_Grava_Observacao, incidentes,
                             invntObservacao, justificativas, selecionados, outvntMsg_Ret,
                             tipos_cadastro);
  } catch (...) {
    const ErrInfo error = current_error();
    report_failure(outvntMsg_Ret, kFalhaGravacao,
                   " - T318QDR.gGrava_Incidente( " + error.description + " : " + " No Nº " +
                       std::to_string(erl) + ")" + "SQL: ",
                   invntBase_dados, invntConecta_db, invntUsuario_internet_id);
    return false;
  }
}

bool mInclui_Incidente(Variant& invntConecta_db, Variant& invntBase_dados,
                       Variant& invntUsuario_internet_id, Variant& invntOrdem_Servico_Tipo_Ident,
                       Variant& invntFlag_Grava_Observacao, Variant& lista_incidente,
                       Variant& invntObservacao, Variant& lista_justificativa,
                       Variant& lista_selecionado, Variant& outvntMsg_Ret,
                       Variant& lista_tipo_cadastro) {
  int erl = 0;
  std::string strSql;
  // `line` is the failing line of a trapped error; the answers that are not
  // errors carry 0.
  const auto falha = [&](const std::string& opening, int line) {
    report_failure(outvntMsg_Ret, kFalhaInclusao,
                   opening + " No Nº " + std::to_string(line) + ")" + "SQL: " + strSql,
                   invntBase_dados, invntConecta_db, invntUsuario_internet_id);
    return false;
  };
  try {
    erl = 10;
    strSql = "EXECUTE SP_050_INC_INCIDENTE01 " + number_literal(invntOrdem_Servico_Tipo_Ident) +
             ", " + text_literal(invntFlag_Grava_Observacao) + ", " +
             text_literal(lista_incidente) + ", " + text_literal(invntObservacao) + ", " +
             text_literal(lista_justificativa) + ", " + text_literal(lista_selecionado) + ", " +
             number_literal(invntUsuario_internet_id) + ", " + text_literal(lista_tipo_cadastro) +
             " ";

    erl = 20;
    ado::Recordset rs = open_client_side(strSql, vb::cstr(invntConecta_db));

    erl = 30;
    if (rs.State() == ado::adStateClosed)
      return falha(" - T318QDR.mInclui_Incidente( State = 0 : ", 0);

    erl = 40;
    if (rs.Eof()) return falha(" - T318QDR.mInclui_Incidente( Fim de Arquivo : ", 0);

    erl = 50;
    // Any value but 0 fails, negative ones included, although the detail
    // says "> 0": deliberate.
    if (numeric_value(rs.Fields("retorno")) != 0)
      return falha(" - T318QDR.mInclui_Incidente( Retorno > 0  : ", 0);

    erl = 60;
    rs.Close();
    return true;
  } catch (...) {
    const ErrInfo error = current_error();
    return falha(" - T318QDR.mInclui_Incidente( " + error.description + " : ", erl);
  }
}

}  // namespace qdr::closing
