#pragma once

#include "qdr/variant.h"

namespace qdr::closing {

// The operation point and the ports of the user's branch.
// Returns false with outvntMsg_Ret set on failure.
bool gConsulta_Porto_Ponto(
    Variant& invntUsuario_internet_id,
    Variant& invntConecta_db,
    Variant& invntBase_dados,
    Variant& outvntPONTO_OPERACAO_ID,
    Variant& outvntTam_arr,
    Variant& outarrvntPORTO_ID,
    Variant& outvntMsg_Ret,
    Variant& outarrvntnome_porto);

}  // namespace qdr::closing
