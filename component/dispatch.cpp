#include "qdr/dispatch.h"

#include <stdexcept>

namespace qdr {

const std::vector<MethodInfo>& methods() {
  static const std::vector<MethodInfo> table = {
      {"gMonta_Lista_Tab_Tipo_Incidente",
       0x60030000,
       {"invntConecta_db", "invntBase_dados", "invntUsuario_internet_id", "outvntTam_arr",
        "outarrvntTab_Tipo_Incidente_id", "outarrvntDesc_Tipo_Incidente",
        "outarrvntFlag_Selecionado", "invntOrdem_Servico_Tipo_Ident", "OUTarrJustificativa",
        "OUTarrFlag_contr_canhoto", "outvntMsg_Ret", "outarrflag_tipo_cadastro"}},
      {"gGrava_Incidente",
       0x60030001,
       {"invntConecta_db", "invntBase_dados", "invntUsuario_internet_id",
        "invntOrdem_Servico_Tipo_Ident", "InarrvntTab_Tipo_Incidente_id",
        "inarrvntFlag_Selecionado", "invntFlag_Grava_Observacao", "invntTam_Arr", "invntObservacao",
        "INarrJustificativa", "outvntMsg_Ret", "inTAB_TIPO_ORDEM_SERVICO_iD",
        "INarrflag_tipo_cadastro"}},
      {"gConsulta_Porto_Ponto",
       0x60030002,
       {"invntUsuario_internet_id", "invntConecta_db", "invntBase_dados", "outvntPONTO_OPERACAO_ID",
        "outvntTam_arr", "outarrvntPORTO_ID", "outvntMsg_Ret", "outarrvntnome_porto"}},
      {"gConsulta_Ordem_Servico_Tipo",
       0x60030003,
       {"invntConecta_db",
        "invntUsuario_internet_id",
        "invntEmpresa_id",
        "invntBanco_Dados",
        "invntNome_Produto",
        "invntOrdem_Servico_Tipo_ID",
        "outvntordem_servico_id",
        "outvntDESCR_TIPO_SERVICO",
        "outvntFORNECEDOR",
        "outvntdata_servico",
        "outvntnum_os",
        "OUTvntData_Ini_Execucao",
        "outvntHORA_INI_EXECUCAO",
        "OUTvntData_Fim_Execucao",
        "outvntHORA_FIM_EXECUCAO",
        "outvntDESC_TAB_STATUS_PAGTO_OS",
        "outarrvntSOLICIT_EMBARQUE_CONTAINER_ID",
        "outarrvntNUM_CONTAINER",
        "outarrvntnum_lacre_cia_maritima",
        "outarrvntnum_lacre_receita_federal",
        "outarrvntnum_lacre_min_saude",
        "outarrvntTara",
        "outarrvntAGEND_CONTAINER_ID",
        "outvntQtde_Sol_Cont",
        "ouvntObserv",
        "outvntTAB_TIPO_ORDEM_SERVICO_iD",
        "arrTab_Tipo_Container_ID",
        "outvntMsg_Ret",
        "outvntIndic_OS_Em_Pagamento",
        "outvntIndic_Mostra_Campo_Terminal",
        "outvntTAB_TIPO_SERVICO_ID",
        "OUTvntData_Retirada_Terminal",
        "outvntHora_Retirada_Terminal",
        "OUTvntData_Entrega_Terminal",
        "outvntHora_Entrega_Terminal",
        "outvntfornecedor_id",
        "outvntterminal_vazio_id",
        "outvntterminal_cheio_id",
        "outvntflag_ctac_os",
        "OUTarrPeso_Carga",
        "OUTarrValor_NF",
        "OUTvntPlaca_Cavalo",
        "outvntflag_contr_canhoto",
        "outvnttab_tipo_docto_id",
        "outvntnum_documento",
        "outvntflag_num_docto",
        "outvntNum_docto_Transp",
        "outvntVeiculoID",
        "outvntMotoristaID",
        "outvntMotoristaVeiculo",
        "outvntCarreta1ID",
        "outvntCarreta1",
        "outvntCarreta2ID",
        "outvntCarreta2",
        "CarretaID",
        "Carreta",
        "outvntVeiculo"}},
      {"gGrava_Fechamento",
       0x60030004,
       {"invntConecta_db",
        "invntUsuario_internet_id",
        "invntEmpresa_id",
        "invntBanco_Dados",
        "invntNome_Produto",
        "invntOrdem_Servico_Tipo_ID",
        "invntData_Ini_Execucao",
        "invntHora_Ini_Execucao",
        "invntData_Fim_Execucao",
        "invntHora_Fim_Execucao",
        "INvntOrdem_Servico_ID",
        "inarrvntSolicit_Embarque_Container_ID",
        "inarrvntNum_Container",
        "inarrvntNum_Lacre_Cia_Maritima",
        "inarrvntNum_Lacre_Receita_Federal",
        "inarrvntNum_Lacre_Min_Saude",
        "inarrvntTara",
        "inarrvntAgend_Container_ID",
        "invntvntQtde_Sol_Cont",
        "invntObserv",
        "INvntTab_Tipo_Ordem_Servico_ID",
        "arrTab_Tipo_Container_ID",
        "outvntMsg_Ret",
        "invntData_Retirada",
        "invntHora_Retirada",
        "invntData_Entrega",
        "invntHora_Entrega",
        "invntTab_Tipo_Servico_ID",
        "invntIndic_Mostra_Campo_Terminal",
        "invntFornecedor_ID",
        "invntterminal_vazio_id",
        "invntterminal_cheio_id",
        "arrPeso",
        "arrValorNF",
        "INvntPlaca_Cavalo",
        "invnttab_tipo_docto_id",
        "invntnum_documento",
        "invntflag_num_docto",
        "invntVeiculoID",
        "invntMotoristaID",
        "invntCarreta1ID",
        "invntCarreta2ID",
        "invntCarretaID",
        "invntflag_parametro_Cavalo_carreta_Moto"}},
  };
  return table;
}

const MethodInfo* find_method(std::string_view name) {
  for (const auto& m : methods())
    if (m.name == name) return &m;
  return nullptr;
}

Variant invoke(QDR& object, std::string_view method, std::span<Variant> args) {
  const MethodInfo* info = find_method(method);
  if (info == nullptr) throw std::invalid_argument("unknown method: " + std::string(method));
  if (args.size() != info->parameters.size())
    throw std::invalid_argument(std::string(method) + " takes " +
                                std::to_string(info->parameters.size()) + " arguments, not " +
                                std::to_string(args.size()));
  Variant* a = args.data();
  if (info->dispid == 0x60030000)
    return object.gMonta_Lista_Tab_Tipo_Incidente(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7],
                                                  a[8], a[9], a[10], a[11]);
  if (info->dispid == 0x60030001)
    return object.gGrava_Incidente(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9],
                                   a[10], a[11], a[12]);
  if (info->dispid == 0x60030002)
    return object.gConsulta_Porto_Ponto(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7]);
  if (info->dispid == 0x60030003)
    return object.gConsulta_Ordem_Servico_Tipo(
        a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9], a[10], a[11], a[12], a[13],
        a[14], a[15], a[16], a[17], a[18], a[19], a[20], a[21], a[22], a[23], a[24], a[25], a[26],
        a[27], a[28], a[29], a[30], a[31], a[32], a[33], a[34], a[35], a[36], a[37], a[38], a[39],
        a[40], a[41], a[42], a[43], a[44], a[45], a[46], a[47], a[48], a[49], a[50], a[51], a[52],
        a[53], a[54], a[55], a[56]);
  if (info->dispid == 0x60030004)
    return object.gGrava_Fechamento(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9],
                                    a[10], a[11], a[12], a[13], a[14], a[15], a[16], a[17], a[18],
                                    a[19], a[20], a[21], a[22], a[23], a[24], a[25], a[26], a[27],
                                    a[28], a[29], a[30], a[31], a[32], a[33], a[34], a[35], a[36],
                                    a[37], a[38], a[39], a[40], a[41], a[42], a[43]);
  throw std::invalid_argument("unknown method: " + std::string(method));
}

}  // namespace qdr
