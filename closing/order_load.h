#pragma once

// Loading a service-order type record for the closing screen. Reads only.
//
// Output conventions of the three steps:
// - "text" columns are copied as the data source gives them, with a database
//   null read as "" (so an id column stays a number, a date column is the
//   "dd/mm/yyyy" text the procedure returns);
// - "number" columns come back as a Long when whole, a Double otherwise,
//   with null and "" read as 0;
// - the tare is formatted with two decimals and a decimal comma ("2200,00");
//   a null or zero tare gives "".

#include <string>

#include "qdr/variant.h"

namespace qdr::closing {

// Loads a service-order type record for closing: header, container rows,
// CTAC flag and the terminal-fields flag. Returns false with outvntMsg_Ret
// set on failure; raises nothing (its own error trap logs and answers).
//
// A zero, empty or null invntOrdem_Servico_Tipo_ID fails with "Ordem Serviço
// Tipo não Informado. Contacte o Administrador." before any database work.
// Outputs filled by a step that succeeded stay filled when a later one fails.
bool gConsulta_Ordem_Servico_Tipo(
    Variant& invntConecta_db, Variant& invntUsuario_internet_id, Variant& invntEmpresa_id,
    Variant& invntBanco_Dados, Variant& invntNome_Produto, Variant& invntOrdem_Servico_Tipo_ID,
    Variant& outvntordem_servico_id, Variant& outvntDESCR_TIPO_SERVICO, Variant& outvntFORNECEDOR,
    Variant& outvntdata_servico, Variant& outvntnum_os, Variant& OUTvntData_Ini_Execucao,
    Variant& outvntHORA_INI_EXECUCAO, Variant& OUTvntData_Fim_Execucao,
    Variant& outvntHORA_FIM_EXECUCAO, Variant& outvntDESC_TAB_STATUS_PAGTO_OS,
    Variant& outarrvntSOLICIT_EMBARQUE_CONTAINER_ID, Variant& outarrvntNUM_CONTAINER,
    Variant& outarrvntnum_lacre_cia_maritima, Variant& outarrvntnum_lacre_receita_federal,
    Variant& outarrvntnum_lacre_min_saude, Variant& outarrvntTara,
    Variant& outarrvntAGEND_CONTAINER_ID, Variant& outvntQtde_Sol_Cont, Variant& ouvntObserv,
    Variant& outvntTAB_TIPO_ORDEM_SERVICO_iD, Variant& arrTab_Tipo_Container_ID,
    Variant& outvntMsg_Ret, Variant& outvntIndic_OS_Em_Pagamento,
    Variant& outvntIndic_Mostra_Campo_Terminal, Variant& outvntTAB_TIPO_SERVICO_ID,
    Variant& OUTvntData_Retirada_Terminal, Variant& outvntHora_Retirada_Terminal,
    Variant& OUTvntData_Entrega_Terminal, Variant& outvntHora_Entrega_Terminal,
    Variant& outvntfornecedor_id, Variant& outvntterminal_vazio_id,
    Variant& outvntterminal_cheio_id, Variant& outvntflag_ctac_os, Variant& OUTarrPeso_Carga,
    Variant& OUTarrValor_NF, Variant& OUTvntPlaca_Cavalo, Variant& outvntflag_contr_canhoto,
    Variant& outvnttab_tipo_docto_id, Variant& outvntnum_documento, Variant& outvntflag_num_docto,
    Variant& outvntNum_docto_Transp, Variant& outvntVeiculoID, Variant& outvntMotoristaID,
    Variant& outvntMotoristaVeiculo, Variant& outvntCarreta1ID, Variant& outvntCarreta1,
    Variant& outvntCarreta2ID, Variant& outvntCarreta2, Variant& CarretaID, Variant& Carreta,
    Variant& outvntVeiculo);

// Header step: "SP_050_CON_OS_FECHAMENTO03" as a stored-procedure command on
// a connection of its own. Fills the 25 header outputs from the first row;
// no row leaves them untouched and still succeeds. A trapped error sets the
// closing's "not available" message (detail for user 1, always logged) and
// returns false.
bool mConsulta_Campos_ORDEM_SERVICO_TIPO(
    const std::string& invntConecta_db, Variant& invntUsuario_internet_id, Variant& invntEmpresa_id,
    Variant& invntBanco_Dados, Variant& invntNome_Produto, Variant& invntOrdem_Servico_Tipo_ID,
    Variant& outvntordem_servico_id, Variant& outvntDESCR_TIPO_SERVICO, Variant& outvntFORNECEDOR,
    Variant& outvntdata_servico, Variant& outvntnum_os, Variant& OUTvntData_Ini_Execucao,
    Variant& outvntHORA_INI_EXECUCAO, Variant& OUTvntData_Fim_Execucao,
    Variant& outvntHORA_FIM_EXECUCAO, Variant& outvntDESC_TAB_STATUS_PAGTO_OS,
    Variant& outvntTAB_TIPO_ORDEM_SERVICO_iD, Variant& outvntIndic_OS_Em_Pagamento,
    Variant& outvntTAB_TIPO_SERVICO_ID, Variant& OUTvntData_Retirada_Terminal,
    Variant& outvntHora_Retirada_Terminal, Variant& OUTvntData_Entrega_Terminal,
    Variant& outvntHora_Entrega_Terminal, Variant& outvntfornecedor_id,
    Variant& outvntterminal_vazio_id, Variant& outvntterminal_cheio_id, Variant& OUTvntPlaca_Cavalo,
    Variant& outvntflag_contr_canhoto, Variant& outvnttab_tipo_docto_id,
    Variant& outvntnum_documento, Variant& outvntflag_num_docto, Variant& outvntMsg_Ret);

// Container-list step: "EXEC SP_050_CON_SOL_CONT_OS_FECHA03 " on a
// recordset. Fills the twenty arrays (bounds 0..count-1, in the procedure's
// row order), the count and the observation of the first row. An empty
// answer gives a count of 1 and one Empty element per array (observation
// untouched); no result set at all fails with "Não foi encontrado nenhum
// container para fechamento desta OS. Favor contactar o Administrador do
// Sistema.". Has no error trap: errors raise to the caller.
bool mConsulta_Sol_Cont_OS_Fecha(
    const std::string& invntConecta_db, Variant& invntUsuario_internet_id, Variant& invntEmpresa_id,
    Variant& invntBanco_Dados, Variant& invntNome_Produto, Variant& invntOrdem_Servico_ID,
    Variant& outarrvntSOLICIT_EMBARQUE_CONTAINER_ID, Variant& outarrvntNUM_CONTAINER,
    Variant& outarrvntnum_lacre_cia_maritima, Variant& outarrvntnum_lacre_receita_federal,
    Variant& outarrvntnum_lacre_min_saude, Variant& outarrvntTara,
    Variant& outarrvntAGEND_CONTAINER_ID, Variant& outvntQtde_Sol_Cont, Variant& ouvntObserv,
    Variant& arrTab_Tipo_Container_ID, Variant& OUTarrPeso_Carga, Variant& OUTarrValor_NF,
    Variant& outvntMsg_Ret, Variant& invntOrdem_Servico_Tipo_ID, Variant& outvntVeiculoID,
    Variant& outvntMotoristaID, Variant& outvntMotoristaVeiculo, Variant& outvntCarreta1ID,
    Variant& outvntCarreta1, Variant& outvntCarreta2ID, Variant& outvntCarreta2, Variant& CarretaID,
    Variant& Carreta, Variant& outvntVeiculo);

// CTAC step: "EXEC SP_050_CON_OS_CTAC02 " on a recordset. The first row
// gives the flag and the transport document number; no row gives the flag
// "N" and leaves the number untouched. Has no error trap.
bool mConsulta_OS_Ctac(const std::string& invntConecta_db, Variant& invntUsuario_internet_id,
                       Variant& invntEmpresa_id, Variant& invntBanco_Dados,
                       Variant& invntNome_Produto, Variant& invntOrdem_Servico_ID,
                       Variant& outvntflag_ctac_os, Variant& outvntNum_docto_Transp,
                       Variant& outvntMsg_Ret);

}  // namespace qdr::closing
