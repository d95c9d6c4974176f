#pragma once

#include "qdr/variant.h"

namespace qdr::closing {

// Validates the ticked incident lines and records them in one call.
// Returns false with outvntMsg_Ret set on a validation or database failure.
bool gGrava_Incidente(
    Variant& invntConecta_db,
    Variant& invntBase_dados,
    Variant& invntUsuario_internet_id,
    Variant& invntOrdem_Servico_Tipo_Ident,
    Variant& InarrvntTab_Tipo_Incidente_id,
    Variant& inarrvntFlag_Selecionado,
    Variant& invntFlag_Grava_Observacao,
    Variant& invntTam_Arr,
    Variant& invntObservacao,
    Variant& INarrJustificativa,
    Variant& outvntMsg_Ret,
    Variant& inTAB_TIPO_ORDEM_SERVICO_iD,
    Variant& INarrflag_tipo_cadastro);

}  // namespace qdr::closing
