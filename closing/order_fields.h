#pragma once

// What the closing does outside its container rows: write the order-type
// record's own fields, list the fractional schedules of an order, read a
// system parameter, find the order's VAS terminal. Each runs one "EXEC" text
// on a client-side recordset opened from the connection string, returns true
// to go on, and traps its own errors: the trap logs the failure (message
// kind 1) and, where a routine has a message, sets it with the technical
// detail appended for user id 1 only.

#include "qdr/variant.h"

namespace qdr::closing {

// Writes the closing fields through "SP_050_GRA_FECHA_OS_TIPO03": execution
// start and end and the terminal withdrawal and delivery ("yyyy/mm/dd hh:mm"
// texts; an empty withdrawal or delivery is written as null), the status
// (the closing passes 2), the tractor plate, the user, the document type and
// number. Fails without a message when the answer is missing or its
// "retorno" is not 0; a trapped error gives "Acesso ao Fechamento da OS não
// disponível. Favor tentar mais tarde.".
bool mAltera_Campos_ORDEM_SERVICO_TIPO(
    Variant& invntConecta_db, Variant& invntUsuario_internet_id, Variant& invntEmpresa_id,
    Variant& invntBanco_Dados, Variant& invntNome_Produto, Variant& invntOrdem_Servico_Tipo_ID,
    Variant& invntData_Hora_Ini_Execucao, Variant& invntData_Hora_Fim_Execucao,
    Variant& invntStatus, Variant& outvntMsg_Ret, Variant& invntData_Hora_Retirada,
    Variant& invntData_Hora_Entrega, Variant& INvntPlaca_Cavalo, Variant& invnttab_tipo_docto_id,
    Variant& invntnum_documento);

// The fractional schedules of an order ("SP_050_CONS_TIPO_OS_FRAC01"): per
// row, the schedule id and invoice id (Long, null read as 0) and the
// collection ("C") or delivery indicator (text). The arrays are indexed
// 0..count-1; no schedules give a count of 0 and empty arrays. Writes no
// message: a trapped error is logged and returns false.
bool mConsulta_Tipo_OS_Frac(Variant& INvntOrdem_Servico_ID, Variant& outarrAGENDAMENTO_FRAC_ID,
                            Variant& outarrindic_coleta_entrega, Variant& outarrNOTA_FISCAL_ID,
                            Variant& outvntQtde, Variant& invntUsuario_internet_id,
                            Variant& invntConecta_db, Variant& outvntMsg_Ret,
                            Variant& invntBanco_Dados);

// One system parameter by number ("SP_NVT_CON_PARAMETRO_SISTEMA"): its value
// as text (null read as ""). A parameter that is not defined fails with
// "Problemas na determinação do Parâmetros do sistema. Contacte o
// Administrador do Sistema.".
bool mVerifica_Tab_Parametro_Sistema(Variant& invntConecta_db, Variant& invntUsuario_internet_id,
                                     Variant& invntEmpresa_id, Variant& invntBanco_Dados,
                                     Variant& invntNome_Produto, Variant& invntParametro_Sistema_ID,
                                     Variant& outvntValor_Parametro, Variant& outvntMsg_Ret);

// The VAS terminal (supplier id, Long) of an order
// ("SP_050_CONS_TERMINAL_VAS_OS01"). No row fails with "Acesso aos dados do
// terminal VAS não disponível. Contacte o Administrador do Sistema."; a
// procedure that answers no result set at all gives terminal 0 and succeeds.
bool mBusca_Terminal_VAS(Variant& invntConecta_db, Variant& invntUsuario_internet_id,
                         Variant& invntEmpresa_id, Variant& invntBanco_Dados,
                         Variant& invntNome_Produto, Variant& INvntOrdem_Servico_ID,
                         Variant& outvntTerminal_ID, Variant& outvntMsg_Ret);

}  // namespace qdr::closing
