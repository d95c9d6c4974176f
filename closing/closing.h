#pragma once

#include "qdr/variant.h"

namespace qdr::closing {

// Closes a service order. Returns false with outvntMsg_Ret set on failure.
bool gGrava_Fechamento(
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
    Variant& invntflag_parametro_Cavalo_carreta_Moto);

}  // namespace qdr::closing
