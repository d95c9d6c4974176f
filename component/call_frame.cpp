#include "component/call_frame.h"

#include "infra/logging.h"

namespace qdr {

namespace {

// Errors that reach the frame were not trapped by a numbered step, so the
// line after " No Nº " is 0.
std::string sql_layout(const char* opening, const ErrInfo& e) {
  return opening + e.description + " : " + " No Nº " + "0" + ")" + "SQL: ";
}

std::string numbered_layout(const char* opening, const ErrInfo& e) {
  return opening + e.description + " : " + std::to_string(e.number) + ")  " + " No Nº " + "0";
}

}  // namespace

const CallFrame kFrames[5] = {
    {"gMonta_Lista_Tab_Tipo_Incidente",
     "Problemas na Montagem da Lista de Indicadores. Contacte o Administrador do Sistema.",
     [](const ErrInfo& e) {
       return sql_layout(" - T318QDR.gMonta_Lista_Tab_Tipo_Incidente( ", e);
     }},
    {"gGrava_Incidente", "Problemas na Gravação do Incidente. Contacte o Administrador do Sistema.",
     [](const ErrInfo& e) { return sql_layout(" - T318QDR.gGrava_Incidente( ", e); }},
    {"gConsulta_Porto_Ponto",
     "Problema na Consulta do Porto e Agente relacionados ao Usuário. Contacte o Administrador "
     "do Sistema.",
     [](const ErrInfo& e) {
       return std::string(" - T318QDR.gConsulta_Porto_Ponto -(") + e.description + " : " +
              " No Nº " + "0" + ")";
     }},
    {"gConsulta_Ordem_Servico_Tipo",
     "Acesso ao Fechamento da OS não disponível. Favor tentar mais tarde.",
     [](const ErrInfo& e) {
       return numbered_layout(" - T318QDR.gConsulta_Ordem_Servico_Tipo (", e);
     }},
    {"gGrava_Fechamento", "Acesso ao Fechamento da OS não disponível. Favor tentar mais tarde.",
     [](const ErrInfo& e) { return numbered_layout(" - T318QDR.gGrava_Fechamento (", e); }},
};

Variant run_call_frame(const CallFrame& frame, const Variant& connection,
                       const Variant& database_kind, const Variant& user_id, Variant& outvntMsg_Ret,
                       const std::function<bool()>& work) noexcept {
  Variant result = Variant::integer(10);
  try {
    if (work()) result = Variant::integer(0);
  } catch (...) {
    const ErrInfo error = current_error();
    try {
      report_failure(outvntMsg_Ret, frame.failure_text, frame.detail(error), database_kind,
                     connection, user_id);
    } catch (...) {
      // report_failure does not throw; building the detail can only fail
      // for want of memory, and the status already says 10.
    }
  }
  return result;
}

}  // namespace qdr
