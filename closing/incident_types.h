#pragma once

#include "qdr/variant.h"

namespace qdr::closing {

// Reads the incident types allowed for a service-order type record into the
// parallel output arrays. Has its own error trap: returns false with
// outvntMsg_Ret set and the failure logged.
bool mMonta_Lista_Tab_Tipo_Incidente(
    Variant& invntConecta_db,
    Variant& invntBase_dados,
    Variant& invntUsuario_internet_id,
    Variant& outvntTam_arr,
    Variant& outarrvntTab_Tipo_Incidente_id,
    Variant& outarrvntDesc_Tipo_Incidente,
    Variant& outarrvntFlag_Selecionado,
    Variant& invntOrdem_Servico_Tipo_Ident,
    Variant& OUTarrJustificativa,
    Variant& OUTarrFlag_contr_canhoto,
    Variant& outvntMsg_Ret,
    Variant& outarrflag_tipo_cadastro);

}  // namespace qdr::closing
