#include "closing/incidents.h"

namespace qdr::closing {

// Not built yet: fails without touching the database.
bool gGrava_Incidente(
    Variant& /*invntConecta_db*/,
    Variant& /*invntBase_dados*/,
    Variant& /*invntUsuario_internet_id*/,
    Variant& /*invntOrdem_Servico_Tipo_Ident*/,
    Variant& /*InarrvntTab_Tipo_Incidente_id*/,
    Variant& /*inarrvntFlag_Selecionado*/,
    Variant& /*invntFlag_Grava_Observacao*/,
    Variant& /*invntTam_Arr*/,
    Variant& /*invntObservacao*/,
    Variant& /*INarrJustificativa*/,
    Variant& outvntMsg_Ret,
    Variant& /*inTAB_TIPO_ORDEM_SERVICO_iD*/,
    Variant& /*INarrflag_tipo_cadastro*/) {
  outvntMsg_Ret = Variant("Problemas na Gravação do Incidente. Contacte o Administrador do Sistema.");
  return false;
}

}  // namespace qdr::closing
