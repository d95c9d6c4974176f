#include "closing/ports.h"

namespace qdr::closing {

// Not built yet: fails without touching the database.
bool gConsulta_Porto_Ponto(
    Variant& /*invntUsuario_internet_id*/,
    Variant& /*invntConecta_db*/,
    Variant& /*invntBase_dados*/,
    Variant& /*outvntPONTO_OPERACAO_ID*/,
    Variant& /*outvntTam_arr*/,
    Variant& /*outarrvntPORTO_ID*/,
    Variant& outvntMsg_Ret,
    Variant& /*outarrvntnome_porto*/) {
  outvntMsg_Ret = Variant("Problema na Consulta do Porto e Agente relacionados ao Usuário. Contacte o Administrador do Sistema.");
  return false;
}

}  // namespace qdr::closing
