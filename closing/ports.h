#pragma once

#include "qdr/variant.h"

namespace qdr::closing {

// The operation point and the ports of the user's branch (procedure
// SP_050_CON_PORTO_PONTO01): outvntPONTO_OPERACAO_ID from the first row,
// outvntTam_arr the number of ports (Long), and the parallel arrays
// outarrvntPORTO_ID and outarrvntnome_porto indexed 0..count-1. Every value
// read passes through the decimal-separator normalisation, the port name
// included (a Null name gives 0).
//
// Returns false, with outvntMsg_Ret set (plus the technical detail for user
// id 1) and one row in the error log, when the user has no ports (count and
// arrays untouched) or on any error.
bool gConsulta_Porto_Ponto(Variant& invntUsuario_internet_id, Variant& invntConecta_db,
                           Variant& invntBase_dados, Variant& outvntPONTO_OPERACAO_ID,
                           Variant& outvntTam_arr, Variant& outarrvntPORTO_ID,
                           Variant& outvntMsg_Ret, Variant& outarrvntnome_porto);

}  // namespace qdr::closing
