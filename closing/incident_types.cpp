#include "closing/incident_types.h"

namespace qdr::closing {

// Not built yet: fails without touching the database.
bool mMonta_Lista_Tab_Tipo_Incidente(
    Variant& /*invntConecta_db*/,
    Variant& /*invntBase_dados*/,
    Variant& /*invntUsuario_internet_id*/,
    Variant& /*outvntTam_arr*/,
    Variant& /*outarrvntTab_Tipo_Incidente_id*/,
    Variant& /*outarrvntDesc_Tipo_Incidente*/,
    Variant& /*outarrvntFlag_Selecionado*/,
    Variant& /*invntOrdem_Servico_Tipo_Ident*/,
    Variant& /*OUTarrJustificativa*/,
    Variant& /*OUTarrFlag_contr_canhoto*/,
    Variant& outvntMsg_Ret,
    Variant& /*outarrflag_tipo_cadastro*/) {
  outvntMsg_Ret = Variant("Problemas na Montagem da Lista de Indicadores. Contacte o Administrador do Sistema.");
  return false;
}

}  // namespace qdr::closing
