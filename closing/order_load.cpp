#include "closing/order_load.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "closing/routine_support.h"
#include "infra/ado.h"
#include "infra/command_text.h"
#include "infra/literals.h"
#include "infra/logging.h"
#include "infra/numbers.h"
#include "infra/trap.h"
#include "infra/vb.h"

namespace qdr::closing {

namespace {

constexpr const char* kHeaderProcedure = "SP_050_CON_OS_FECHAMENTO03";

Variant text_field(const ado::Recordset& rs, std::string_view column) {
  return gTrata_Nulo(rs.Fields(column));
}

Variant number_field(const ado::Recordset& rs, std::string_view column) {
  const double value = numeric_value(rs.Fields(column));
  if (std::nearbyint(value) == value && value >= std::numeric_limits<int32_t>::min() &&
      value <= std::numeric_limits<int32_t>::max()) {
    return Variant(static_cast<int32_t>(value));
  }
  return Variant(value);
}

Variant tare_field(const ado::Recordset& rs, std::string_view column) {
  Variant places(2);
  return gFormata_Numero(Variant(numeric_value(rs.Fields(column))), Variant(""), places);
}

}  // namespace

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
    Variant& outvntVeiculo) {
  int erl = 0;
  try {
    erl = 2;
    const std::string connection = vb::text_of(invntConecta_db);

    erl = 3;
    if (numeric_value(invntOrdem_Servico_Tipo_ID) == 0) {
      outvntMsg_Ret = Variant("Ordem Serviço Tipo não Informado. Contacte o Administrador.");
      return false;
    }

    erl = 4;
    if (!mConsulta_Campos_ORDEM_SERVICO_TIPO(
            connection, invntUsuario_internet_id, invntEmpresa_id, invntBanco_Dados,
            invntNome_Produto, invntOrdem_Servico_Tipo_ID, outvntordem_servico_id,
            outvntDESCR_TIPO_SERVICO, outvntFORNECEDOR, outvntdata_servico, outvntnum_os,
            OUTvntData_Ini_Execucao, outvntHORA_INI_EXECUCAO, OUTvntData_Fim_Execucao,
            outvntHORA_FIM_EXECUCAO, outvntDESC_TAB_STATUS_PAGTO_OS,
            outvntTAB_TIPO_ORDEM_SERVICO_iD, outvntIndic_OS_Em_Pagamento, outvntTAB_TIPO_SERVICO_ID,
            OUTvntData_Retirada_Terminal, outvntHora_Retirada_Terminal, OUTvntData_Entrega_Terminal,
            outvntHora_Entrega_Terminal, outvntfornecedor_id, outvntterminal_vazio_id,
            outvntterminal_cheio_id, OUTvntPlaca_Cavalo, outvntflag_contr_canhoto,
            outvnttab_tipo_docto_id, outvntnum_documento, outvntflag_num_docto, outvntMsg_Ret)) {
      return false;
    }

    erl = 5;
    if (!mConsulta_Sol_Cont_OS_Fecha(
            connection, invntUsuario_internet_id, invntEmpresa_id, invntBanco_Dados,
            invntNome_Produto, outvntordem_servico_id, outarrvntSOLICIT_EMBARQUE_CONTAINER_ID,
            outarrvntNUM_CONTAINER, outarrvntnum_lacre_cia_maritima,
            outarrvntnum_lacre_receita_federal, outarrvntnum_lacre_min_saude, outarrvntTara,
            outarrvntAGEND_CONTAINER_ID, outvntQtde_Sol_Cont, ouvntObserv, arrTab_Tipo_Container_ID,
            OUTarrPeso_Carga, OUTarrValor_NF, outvntMsg_Ret, invntOrdem_Servico_Tipo_ID,
            outvntVeiculoID, outvntMotoristaID, outvntMotoristaVeiculo, outvntCarreta1ID,
            outvntCarreta1, outvntCarreta2ID, outvntCarreta2, CarretaID, Carreta, outvntVeiculo)) {
      return false;
    }

    erl = 6;
    if (!mConsulta_OS_Ctac(connection, invntUsuario_internet_id, invntEmpresa_id, invntBanco_Dados,
                           invntNome_Produto, outvntordem_servico_id, outvntflag_ctac_os,
                           outvntNum_docto_Transp, outvntMsg_Ret)) {
      return false;
    }

    erl = 7;
    outvntIndic_Mostra_Campo_Terminal = Variant("N");
    if ((vb::eq(outvntTAB_TIPO_ORDEM_SERVICO_iD, Variant(1)) ||
         vb::eq(outvntTAB_TIPO_ORDEM_SERVICO_iD, Variant(2))) &&
        vb::eq(outvntTAB_TIPO_SERVICO_ID, Variant(1))) {
      outvntIndic_Mostra_Campo_Terminal = Variant("S");
    }
    return true;
  } catch (...) {
    const ErrInfo error = current_error();
    report_failure(outvntMsg_Ret, kClosingUnavailable,
                   trap_detail(" - T318QDR.gConsulta_Ordem_Servico_Tipo (", error, erl),
                   invntBanco_Dados, invntConecta_db, invntUsuario_internet_id);
    return false;
  }
}

bool mConsulta_Campos_ORDEM_SERVICO_TIPO(
    const std::string& invntConecta_db, Variant& invntUsuario_internet_id,
    Variant& /*invntEmpresa_id*/, Variant& invntBanco_Dados, Variant& /*invntNome_Produto*/,
    Variant& invntOrdem_Servico_Tipo_ID, Variant& outvntordem_servico_id,
    Variant& outvntDESCR_TIPO_SERVICO, Variant& outvntFORNECEDOR, Variant& outvntdata_servico,
    Variant& outvntnum_os, Variant& OUTvntData_Ini_Execucao, Variant& outvntHORA_INI_EXECUCAO,
    Variant& OUTvntData_Fim_Execucao, Variant& outvntHORA_FIM_EXECUCAO,
    Variant& outvntDESC_TAB_STATUS_PAGTO_OS, Variant& outvntTAB_TIPO_ORDEM_SERVICO_iD,
    Variant& outvntIndic_OS_Em_Pagamento, Variant& outvntTAB_TIPO_SERVICO_ID,
    Variant& OUTvntData_Retirada_Terminal, Variant& outvntHora_Retirada_Terminal,
    Variant& OUTvntData_Entrega_Terminal, Variant& outvntHora_Entrega_Terminal,
    Variant& outvntfornecedor_id, Variant& outvntterminal_vazio_id,
    Variant& outvntterminal_cheio_id, Variant& OUTvntPlaca_Cavalo,
    Variant& outvntflag_contr_canhoto, Variant& outvnttab_tipo_docto_id,
    Variant& outvntnum_documento, Variant& outvntflag_num_docto, Variant& outvntMsg_Ret) {
  int erl = 0;
  std::string command_text;
  try {
    erl = 2;
    ado::Connection connection;
    connection.ConnectionString = invntConecta_db;
    connection.CursorLocation = ado::adUseClient;
    connection.Open("", "", "", -1);

    erl = 3;
    ado::Command command;
    command.ActiveConnection(connection);
    command.CommandTimeout = 120;
    command.CommandType = ado::adCmdStoredProc;
    command.CommandText(kHeaderProcedure);

    erl = 4;
    command.Parameters().Append(command.CreateParameter("Ordem_Servico_Tipo_ID", ado::adInteger,
                                                        ado::adParamInput, 10,
                                                        gValor_Padrao(invntOrdem_Servico_Tipo_ID)));

    erl = 5;
    Variant printable;
    if (!gMonta_Texto_Exec(command, kHeaderProcedure, printable)) return false;
    command_text = vb::text_of(printable);

    erl = 6;
    ado::Recordset rs = command.Execute();

    erl = 7;
    // Deliberate: a record without a header row passes, outputs untouched.
    if (rs.Eof()) return true;

    erl = 8;
    outvntTAB_TIPO_ORDEM_SERVICO_iD = text_field(rs, "TAB_TIPO_ORDEM_SERVICO_ID");
    outvntordem_servico_id = text_field(rs, "Ordem_Servico_id");
    outvntDESCR_TIPO_SERVICO = text_field(rs, "DESCR_TIPO_SERVICO");
    outvntFORNECEDOR = text_field(rs, "FORNECEDOR");
    outvntdata_servico = text_field(rs, "data_servico");
    outvntnum_os = text_field(rs, "num_os");
    OUTvntData_Ini_Execucao = text_field(rs, "DATA_INI_EXECUCAO");
    outvntHORA_INI_EXECUCAO = text_field(rs, "HORA_INI_EXECUCAO");
    OUTvntData_Fim_Execucao = text_field(rs, "DATA_FIM_EXECUCAO");
    outvntHORA_FIM_EXECUCAO = text_field(rs, "HORA_FIM_EXECUCAO");
    outvntDESC_TAB_STATUS_PAGTO_OS = text_field(rs, "DESC_TAB_STATUS_PAGTO_OS");
    outvntIndic_OS_Em_Pagamento = text_field(rs, "indic_os_em_pagamento");
    outvntTAB_TIPO_SERVICO_ID = text_field(rs, "TAB_TIPO_SERVICO_ID");
    OUTvntData_Retirada_Terminal = text_field(rs, "data_retirada_terminal");
    outvntHora_Retirada_Terminal = text_field(rs, "HORA_retirada_terminal");
    OUTvntData_Entrega_Terminal = text_field(rs, "data_entrega_terminal");
    outvntHora_Entrega_Terminal = text_field(rs, "HORA_ENTREGA_TERMINAL");
    outvntfornecedor_id = number_field(rs, "FORNECEDOR_ID");
    outvntterminal_vazio_id = number_field(rs, "terminal_vazio_id");
    outvntterminal_cheio_id = number_field(rs, "terminal_cheio_id");
    OUTvntPlaca_Cavalo = text_field(rs, "placa");
    outvntflag_contr_canhoto = text_field(rs, "flag_contr_canhoto");
    outvnttab_tipo_docto_id = number_field(rs, "tab_tipo_docto_id");
    // Deliberate: the document number is the record's external-system id.
    outvntnum_documento = text_field(rs, "ID_SISTEMA_EXTERNO");
    outvntflag_num_docto = text_field(rs, "flag_num_docto");
    rs.Close();
    return true;
  } catch (...) {
    const ErrInfo error = current_error();
    report_failure(outvntMsg_Ret, kClosingUnavailable,
                   trap_detail(" - T318QDR.mConsulta_Campos_ORDEM_SERVICO_TIPO (", error, erl) +
                       "strsq: " + command_text,
                   invntBanco_Dados, Variant(invntConecta_db), invntUsuario_internet_id);
    return false;
  }
}

bool mConsulta_Sol_Cont_OS_Fecha(
    const std::string& invntConecta_db, Variant& /*invntUsuario_internet_id*/,
    Variant& /*invntEmpresa_id*/, Variant& /*invntBanco_Dados*/, Variant& /*invntNome_Produto*/,
    Variant& invntOrdem_Servico_ID, Variant& outarrvntSOLICIT_EMBARQUE_CONTAINER_ID,
    Variant& outarrvntNUM_CONTAINER, Variant& outarrvntnum_lacre_cia_maritima,
    Variant& outarrvntnum_lacre_receita_federal, Variant& outarrvntnum_lacre_min_saude,
    Variant& outarrvntTara, Variant& outarrvntAGEND_CONTAINER_ID, Variant& outvntQtde_Sol_Cont,
    Variant& ouvntObserv, Variant& arrTab_Tipo_Container_ID, Variant& OUTarrPeso_Carga,
    Variant& OUTarrValor_NF, Variant& outvntMsg_Ret, Variant& invntOrdem_Servico_Tipo_ID,
    Variant& outvntVeiculoID, Variant& outvntMotoristaID, Variant& outvntMotoristaVeiculo,
    Variant& outvntCarreta1ID, Variant& outvntCarreta1, Variant& outvntCarreta2ID,
    Variant& outvntCarreta2, Variant& CarretaID, Variant& Carreta, Variant& outvntVeiculo) {
  struct Column {
    const char* name;
    Variant* array;
    bool tare;
  };
  const Column columns[] = {
      {"SOLICIT_EMBARQUE_CONTAINER_ID", &outarrvntSOLICIT_EMBARQUE_CONTAINER_ID, false},
      {"NUM_CONTAINER", &outarrvntNUM_CONTAINER, false},
      {"num_lacre_cia_maritima", &outarrvntnum_lacre_cia_maritima, false},
      {"num_lacre_receita_federal", &outarrvntnum_lacre_receita_federal, false},
      {"num_lacre_min_saude", &outarrvntnum_lacre_min_saude, false},
      {"tara", &outarrvntTara, true},
      {"AGEND_CONTAINER_iD", &outarrvntAGEND_CONTAINER_ID, false},
      {"TAB_TIPO_CONTAINER_ID", &arrTab_Tipo_Container_ID, false},
      {"peso_carga", &OUTarrPeso_Carga, false},
      {"valor", &OUTarrValor_NF, false},
      {"cavalo", &outvntVeiculo, false},
      {"cavalo_id", &outvntVeiculoID, false},
      {"motorista_veiculo_id", &outvntMotoristaID, false},
      {"motorista_veiculo", &outvntMotoristaVeiculo, false},
      {"carreta1_id", &outvntCarreta1ID, false},
      {"carreta1", &outvntCarreta1, false},
      {"carreta2_id", &outvntCarreta2ID, false},
      {"carreta2", &outvntCarreta2, false},
      {"carreta_id", &CarretaID, false},
      {"Carreta", &Carreta, false},
  };

  const std::string sql = "EXEC SP_050_CON_SOL_CONT_OS_FECHA03 " +
                          number_literal(invntOrdem_Servico_ID) + " , " +
                          number_literal(invntOrdem_Servico_Tipo_ID) + "  ";
  ado::Recordset rs =
      open_client_side(sql, invntConecta_db, ado::adOpenStatic, ado::adLockReadOnly);

  if (!(rs.State() > ado::adStateClosed)) {
    outvntMsg_Ret = Variant(
        "Não foi encontrado nenhum container para fechamento desta OS. Favor contactar o "
        "Administrador do Sistema.");
    return false;
  }

  if (rs.Eof()) {
    // Deliberate: no containers still shows one blank row to fill in.
    outvntQtde_Sol_Cont = Variant(1);
    for (const Column& column : columns) column.array->redim(0, 0);
    return true;
  }

  rs.MoveLast();
  rs.MoveFirst();
  const int32_t count = rs.RecordCount();
  outvntQtde_Sol_Cont = Variant(count);
  for (const Column& column : columns) column.array->redim(0, count - 1);

  ouvntObserv = text_field(rs, "Observ");
  for (int32_t i = 0; i < count; ++i) {
    for (const Column& column : columns) {
      column.array->at(i) = column.tare ? tare_field(rs, column.name) : text_field(rs, column.name);
    }
    rs.MoveNext();
  }
  rs.Close();
  return true;
}

bool mConsulta_OS_Ctac(const std::string& invntConecta_db, Variant& /*invntUsuario_internet_id*/,
                       Variant& /*invntEmpresa_id*/, Variant& /*invntBanco_Dados*/,
                       Variant& /*invntNome_Produto*/, Variant& invntOrdem_Servico_ID,
                       Variant& outvntflag_ctac_os, Variant& outvntNum_docto_Transp,
                       Variant& /*outvntMsg_Ret*/) {
  const std::string sql = "EXEC SP_050_CON_OS_CTAC02 " + number_literal(invntOrdem_Servico_ID);
  ado::Recordset rs =
      open_client_side(sql, invntConecta_db, ado::adOpenStatic, ado::adLockReadOnly);

  if (rs.Eof()) {
    outvntflag_ctac_os = Variant("N");
    return true;
  }
  outvntflag_ctac_os = text_field(rs, "flag_ctac_os");
  outvntNum_docto_Transp = text_field(rs, "num_docto_transporte");
  rs.Close();
  return true;
}

}  // namespace qdr::closing
