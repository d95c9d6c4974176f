#include "qdr/qdr.h"

#include "closing/closing.h"
#include "closing/incident_types.h"
#include "closing/incidents.h"
#include "closing/order_load.h"
#include "closing/ports.h"
#include "component/call_frame.h"

namespace qdr {

QDR::QDR() noexcept = default;
QDR::~QDR() = default;

Variant QDR::gMonta_Lista_Tab_Tipo_Incidente(
    Variant& invntConecta_db, Variant& invntBase_dados, Variant& invntUsuario_internet_id,
    Variant& outvntTam_arr, Variant& outarrvntTab_Tipo_Incidente_id,
    Variant& outarrvntDesc_Tipo_Incidente, Variant& outarrvntFlag_Selecionado,
    Variant& invntOrdem_Servico_Tipo_Ident, Variant& OUTarrJustificativa,
    Variant& OUTarrFlag_contr_canhoto, Variant& outvntMsg_Ret,
    Variant& outarrflag_tipo_cadastro) noexcept {
  return run_call_frame(
      kFrames[0], invntConecta_db, invntBase_dados, invntUsuario_internet_id, outvntMsg_Ret, [&] {
        return closing::mMonta_Lista_Tab_Tipo_Incidente(
            invntConecta_db, invntBase_dados, invntUsuario_internet_id, outvntTam_arr,
            outarrvntTab_Tipo_Incidente_id, outarrvntDesc_Tipo_Incidente, outarrvntFlag_Selecionado,
            invntOrdem_Servico_Tipo_Ident, OUTarrJustificativa, OUTarrFlag_contr_canhoto,
            outvntMsg_Ret, outarrflag_tipo_cadastro);
      });
}

Variant QDR::gGrava_Incidente(
    Variant& invntConecta_db, Variant& invntBase_dados, Variant& invntUsuario_internet_id,
    Variant& invntOrdem_Servico_Tipo_Ident, Variant& InarrvntTab_Tipo_Incidente_id,
    Variant& inarrvntFlag_Selecionado, Variant& invntFlag_Grava_Observacao, Variant& invntTam_Arr,
    Variant& invntObservacao, Variant& INarrJustificativa, Variant& outvntMsg_Ret,
    Variant& inTAB_TIPO_ORDEM_SERVICO_iD, Variant& INarrflag_tipo_cadastro) noexcept {
  return run_call_frame(
      kFrames[1], invntConecta_db, invntBase_dados, invntUsuario_internet_id, outvntMsg_Ret, [&] {
        return closing::gGrava_Incidente(
            invntConecta_db, invntBase_dados, invntUsuario_internet_id,
            invntOrdem_Servico_Tipo_Ident, InarrvntTab_Tipo_Incidente_id, inarrvntFlag_Selecionado,
            invntFlag_Grava_Observacao, invntTam_Arr, invntObservacao, INarrJustificativa,
            outvntMsg_Ret, inTAB_TIPO_ORDEM_SERVICO_iD, INarrflag_tipo_cadastro);
      });
}

Variant QDR::gConsulta_Porto_Ponto(Variant& invntUsuario_internet_id, Variant& invntConecta_db,
                                   Variant& invntBase_dados, Variant& outvntPONTO_OPERACAO_ID,
                                   Variant& outvntTam_arr, Variant& outarrvntPORTO_ID,
                                   Variant& outvntMsg_Ret, Variant& outarrvntnome_porto) noexcept {
  return run_call_frame(
      kFrames[2], invntConecta_db, invntBase_dados, invntUsuario_internet_id, outvntMsg_Ret, [&] {
        return closing::gConsulta_Porto_Ponto(
            invntUsuario_internet_id, invntConecta_db, invntBase_dados, outvntPONTO_OPERACAO_ID,
            outvntTam_arr, outarrvntPORTO_ID, outvntMsg_Ret, outarrvntnome_porto);
      });
}

Variant QDR::gConsulta_Ordem_Servico_Tipo(
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
    Variant& outvntVeiculo) noexcept {
  return run_call_frame(
      kFrames[3], invntConecta_db, invntBanco_Dados, invntUsuario_internet_id, outvntMsg_Ret, [&] {
        return closing::gConsulta_Ordem_Servico_Tipo(
            invntConecta_db, invntUsuario_internet_id, invntEmpresa_id, invntBanco_Dados,
            invntNome_Produto, invntOrdem_Servico_Tipo_ID, outvntordem_servico_id,
            outvntDESCR_TIPO_SERVICO, outvntFORNECEDOR, outvntdata_servico, outvntnum_os,
            OUTvntData_Ini_Execucao, outvntHORA_INI_EXECUCAO, OUTvntData_Fim_Execucao,
            outvntHORA_FIM_EXECUCAO, outvntDESC_TAB_STATUS_PAGTO_OS,
            outarrvntSOLICIT_EMBARQUE_CONTAINER_ID, outarrvntNUM_CONTAINER,
            outarrvntnum_lacre_cia_maritima, outarrvntnum_lacre_receita_federal,
            outarrvntnum_lacre_min_saude, outarrvntTara, outarrvntAGEND_CONTAINER_ID,
            outvntQtde_Sol_Cont, ouvntObserv, outvntTAB_TIPO_ORDEM_SERVICO_iD,
            arrTab_Tipo_Container_ID, outvntMsg_Ret, outvntIndic_OS_Em_Pagamento,
            outvntIndic_Mostra_Campo_Terminal, outvntTAB_TIPO_SERVICO_ID,
            OUTvntData_Retirada_Terminal, outvntHora_Retirada_Terminal, OUTvntData_Entrega_Terminal,
            outvntHora_Entrega_Terminal, outvntfornecedor_id, outvntterminal_vazio_id,
            outvntterminal_cheio_id, outvntflag_ctac_os, OUTarrPeso_Carga, OUTarrValor_NF,
            OUTvntPlaca_Cavalo, outvntflag_contr_canhoto, outvnttab_tipo_docto_id,
            outvntnum_documento, outvntflag_num_docto, outvntNum_docto_Transp, outvntVeiculoID,
            outvntMotoristaID, outvntMotoristaVeiculo, outvntCarreta1ID, outvntCarreta1,
            outvntCarreta2ID, outvntCarreta2, CarretaID, Carreta, outvntVeiculo);
      });
}

Variant QDR::gGrava_Fechamento(
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
    Variant& invntflag_parametro_Cavalo_carreta_Moto) noexcept {
  return run_call_frame(
      kFrames[4], invntConecta_db, invntBanco_Dados, invntUsuario_internet_id, outvntMsg_Ret, [&] {
        return closing::gGrava_Fechamento(
            invntConecta_db, invntUsuario_internet_id, invntEmpresa_id, invntBanco_Dados,
            invntNome_Produto, invntOrdem_Servico_Tipo_ID, invntData_Ini_Execucao,
            invntHora_Ini_Execucao, invntData_Fim_Execucao, invntHora_Fim_Execucao,
            INvntOrdem_Servico_ID, inarrvntSolicit_Embarque_Container_ID, inarrvntNum_Container,
            inarrvntNum_Lacre_Cia_Maritima, inarrvntNum_Lacre_Receita_Federal,
            inarrvntNum_Lacre_Min_Saude, inarrvntTara, inarrvntAgend_Container_ID,
            invntvntQtde_Sol_Cont, invntObserv, INvntTab_Tipo_Ordem_Servico_ID,
            arrTab_Tipo_Container_ID, outvntMsg_Ret, invntData_Retirada, invntHora_Retirada,
            invntData_Entrega, invntHora_Entrega, invntTab_Tipo_Servico_ID,
            invntIndic_Mostra_Campo_Terminal, invntFornecedor_ID, invntterminal_vazio_id,
            invntterminal_cheio_id, arrPeso, arrValorNF, INvntPlaca_Cavalo, invnttab_tipo_docto_id,
            invntnum_documento, invntflag_num_docto, invntVeiculoID, invntMotoristaID,
            invntCarreta1ID, invntCarreta2ID, invntCarretaID,
            invntflag_parametro_Cavalo_carreta_Moto);
      });
}

}  // namespace qdr
