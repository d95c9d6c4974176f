#pragma once

#include "qdr/export.h"
#include "qdr/variant.h"

namespace qdr {

// The service-order closing component. Create one and call its methods; it
// keeps no state between calls, and every call receives the connection
// string, the database kind and the user's id anew.
//
// Every method takes its arguments by reference, reads its inputs from them
// and writes its outputs into them, and returns a Variant of subtype Integer:
// 0 when the work succeeded, 10 when it did not, with the reason (Portuguese,
// for the user) in outvntMsg_Ret. The technical detail of a failure is
// appended to outvntMsg_Ret only for user id 1. The methods never throw.
class QDR_EXPORT QDR {
 public:
  QDR() noexcept;
  ~QDR();
  QDR(const QDR&) = delete;
  QDR& operator=(const QDR&) = delete;

  // Incident types that may be recorded for a service-order type record.
  Variant gMonta_Lista_Tab_Tipo_Incidente(Variant& invntConecta_db, Variant& invntBase_dados,
                                          Variant& invntUsuario_internet_id, Variant& outvntTam_arr,
                                          Variant& outarrvntTab_Tipo_Incidente_id,
                                          Variant& outarrvntDesc_Tipo_Incidente,
                                          Variant& outarrvntFlag_Selecionado,
                                          Variant& invntOrdem_Servico_Tipo_Ident,
                                          Variant& OUTarrJustificativa,
                                          Variant& OUTarrFlag_contr_canhoto, Variant& outvntMsg_Ret,
                                          Variant& outarrflag_tipo_cadastro) noexcept;

  // Records the ticked incidents of a service-order type record.
  Variant gGrava_Incidente(
      Variant& invntConecta_db, Variant& invntBase_dados, Variant& invntUsuario_internet_id,
      Variant& invntOrdem_Servico_Tipo_Ident, Variant& InarrvntTab_Tipo_Incidente_id,
      Variant& inarrvntFlag_Selecionado, Variant& invntFlag_Grava_Observacao, Variant& invntTam_Arr,
      Variant& invntObservacao, Variant& INarrJustificativa, Variant& outvntMsg_Ret,
      Variant& inTAB_TIPO_ORDEM_SERVICO_iD, Variant& INarrflag_tipo_cadastro) noexcept;

  // The operation point and the ports of the user's branch.
  Variant gConsulta_Porto_Ponto(Variant& invntUsuario_internet_id, Variant& invntConecta_db,
                                Variant& invntBase_dados, Variant& outvntPONTO_OPERACAO_ID,
                                Variant& outvntTam_arr, Variant& outarrvntPORTO_ID,
                                Variant& outvntMsg_Ret, Variant& outarrvntnome_porto) noexcept;

  // Loads a service-order type record for closing.
  Variant gConsulta_Ordem_Servico_Tipo(
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
      Variant& outvntVeiculo) noexcept;

  // Closes a service order: checks, container rows, order fields, tracking.
  Variant gGrava_Fechamento(
      Variant& invntConecta_db, Variant& invntUsuario_internet_id, Variant& invntEmpresa_id,
      Variant& invntBanco_Dados, Variant& invntNome_Produto, Variant& invntOrdem_Servico_Tipo_ID,
      Variant& invntData_Ini_Execucao, Variant& invntHora_Ini_Execucao,
      Variant& invntData_Fim_Execucao, Variant& invntHora_Fim_Execucao,
      Variant& INvntOrdem_Servico_ID, Variant& inarrvntSolicit_Embarque_Container_ID,
      Variant& inarrvntNum_Container, Variant& inarrvntNum_Lacre_Cia_Maritima,
      Variant& inarrvntNum_Lacre_Receita_Federal, Variant& inarrvntNum_Lacre_Min_Saude,
      Variant& inarrvntTara, Variant& inarrvntAgend_Container_ID, Variant& invntvntQtde_Sol_Cont,
      Variant& invntObserv, Variant& INvntTab_Tipo_Ordem_Servico_ID,
      Variant& arrTab_Tipo_Container_ID, Variant& outvntMsg_Ret, Variant& invntData_Retirada,
      Variant& invntHora_Retirada, Variant& invntData_Entrega, Variant& invntHora_Entrega,
      Variant& invntTab_Tipo_Servico_ID, Variant& invntIndic_Mostra_Campo_Terminal,
      Variant& invntFornecedor_ID, Variant& invntterminal_vazio_id, Variant& invntterminal_cheio_id,
      Variant& arrPeso, Variant& arrValorNF, Variant& INvntPlaca_Cavalo,
      Variant& invnttab_tipo_docto_id, Variant& invntnum_documento, Variant& invntflag_num_docto,
      Variant& invntVeiculoID, Variant& invntMotoristaID, Variant& invntCarreta1ID,
      Variant& invntCarreta2ID, Variant& invntCarretaID,
      Variant& invntflag_parametro_Cavalo_carreta_Moto) noexcept;
};

}  // namespace qdr
