#pragma once

#include "qdr/variant.h"

namespace qdr::closing {

// Records the incidents an operator ticked for the service-order type record
// invntOrdem_Servico_Tipo_Ident. Lines 0..invntTam_Arr-1 of the arrays are
// read; a line counts when its flag is "S" or it has a justification. Each
// counted line's justification is checked (at most 255 characters; required
// for incident type 18 with registration kind "M" on order type 2), then the
// observation (at most 300 characters, cleaned in place); the counted lines
// go to mInclui_Incidente as delimited lists. Nothing is written unless every
// check passed.
//
// Returns true when the procedure accepted the lines. A check that fails
// gives false with the validation message; a database failure gives false
// with mInclui_Incidente's message; any other error is trapped here: false,
// the recording's failure text (plus the technical detail for user id 1) and
// one row in the error log.
bool gGrava_Incidente(Variant& invntConecta_db, Variant& invntBase_dados,
                      Variant& invntUsuario_internet_id, Variant& invntOrdem_Servico_Tipo_Ident,
                      Variant& InarrvntTab_Tipo_Incidente_id, Variant& inarrvntFlag_Selecionado,
                      Variant& invntFlag_Grava_Observacao, Variant& invntTam_Arr,
                      Variant& invntObservacao, Variant& INarrJustificativa, Variant& outvntMsg_Ret,
                      Variant& inTAB_TIPO_ORDEM_SERVICO_iD, Variant& INarrflag_tipo_cadastro);

// Sends the lists to SP_050_INC_INCIDENTE01 in one call: incident type ids
// and selection flags ("S"/"N") and registration kinds separated by ",",
// justifications by "|"; an empty list goes as null. True when the
// procedure answered retorno 0. A closed result, no row, a non-zero retorno
// or a trapped error give false with the inclusion's failure text (plus the
// technical detail for user id 1) and one row in the error log.
bool mInclui_Incidente(Variant& invntConecta_db, Variant& invntBase_dados,
                       Variant& invntUsuario_internet_id, Variant& invntOrdem_Servico_Tipo_Ident,
                       Variant& invntFlag_Grava_Observacao, Variant& lista_incidente,
                       Variant& invntObservacao, Variant& lista_justificativa,
                       Variant& lista_selecionado, Variant& outvntMsg_Ret,
                       Variant& lista_tipo_cadastro);

}  // namespace qdr::closing
