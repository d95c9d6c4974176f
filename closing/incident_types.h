#pragma once

#include "qdr/variant.h"

namespace qdr::closing {

// Reads the incident types allowed for the service-order type record
// invntOrdem_Servico_Tipo_Ident (procedure SP_050_CON_LISTA_TIPO_INCIDENTE_OS01)
// into outvntTam_arr (the row count, Long) and six parallel arrays indexed
// 0..count-1: the type id (separator-normalised; Null gives 0), and the
// description, selection flag, justification, receipt-control flag and
// registration kind (Null gives ""). An empty list is a success that leaves
// the count and the arrays as the caller passed them.
//
// Has its own error trap: any failure gives false with outvntMsg_Ret set to
// the list's failure text (plus the technical detail for user id 1) and one
// row in the error log; arrays already filled stay as they are.
bool mMonta_Lista_Tab_Tipo_Incidente(
    Variant& invntConecta_db, Variant& invntBase_dados, Variant& invntUsuario_internet_id,
    Variant& outvntTam_arr, Variant& outarrvntTab_Tipo_Incidente_id,
    Variant& outarrvntDesc_Tipo_Incidente, Variant& outarrvntFlag_Selecionado,
    Variant& invntOrdem_Servico_Tipo_Ident, Variant& OUTarrJustificativa,
    Variant& OUTarrFlag_contr_canhoto, Variant& outvntMsg_Ret, Variant& outarrflag_tipo_cadastro);

}  // namespace qdr::closing
