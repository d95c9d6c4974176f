#include "closing/order_fields.h"

#include <cstdint>
#include <string>

#include "closing/routine_support.h"
#include "infra/ado.h"
#include "infra/logging.h"
#include "infra/numbers.h"
#include "infra/trap.h"
#include "infra/vb.h"

namespace qdr::closing {

bool mAltera_Campos_ORDEM_SERVICO_TIPO(
    Variant& invntConecta_db, Variant& invntUsuario_internet_id, Variant& /*invntEmpresa_id*/,
    Variant& invntBanco_Dados, Variant& /*invntNome_Produto*/, Variant& invntOrdem_Servico_Tipo_ID,
    Variant& invntData_Hora_Ini_Execucao, Variant& invntData_Hora_Fim_Execucao,
    Variant& invntStatus, Variant& outvntMsg_Ret, Variant& invntData_Hora_Retirada,
    Variant& invntData_Hora_Entrega, Variant& INvntPlaca_Cavalo, Variant& invnttab_tipo_docto_id,
    Variant& invntnum_documento) {
  int erl = 0;
  std::string sql;
  try {
    erl = 1;
    // The optional pieces carry their own separator: "null, " stands alone.
    const auto optional_date_time = [](const Variant& value) {
      return vb::text_of(value).empty() ? std::string("null, ") : date_time_literal(value) + ", ";
    };
    sql = "EXEC SP_050_GRA_FECHA_OS_TIPO03 " + number_literal(invntOrdem_Servico_Tipo_ID) + ", " +
          date_time_literal(invntData_Hora_Ini_Execucao) + ", " +
          date_time_literal(invntData_Hora_Fim_Execucao) + ", " +
          optional_date_time(invntData_Hora_Retirada) + optional_date_time(invntData_Hora_Entrega) +
          number_literal(invntStatus) + ", " + text_literal(INvntPlaca_Cavalo) + ", " +
          number_literal(invntUsuario_internet_id) + ", " + number_literal(invnttab_tipo_docto_id) +
          ", " + text_literal(invntnum_documento);

    erl = 2;
    ado::Recordset rs = open_client_side(sql, vb::text_of(invntConecta_db));

    erl = 3;
    if (rs.State() == ado::adStateClosed || rs.Eof()) return false;
    const bool written = !vb::ne(gTrata_Separador_Decimal(rs.Fields("retorno")), Variant(0));
    rs.Close();
    return written;
  } catch (...) {
    const ErrInfo error = current_error();
    report_failure(
        outvntMsg_Ret, kClosingUnavailable,
        trap_detail(" - T318QDR.mAltera_Campos_ORDEM_SERVICO_TIPO (", error, erl) + "strsq: " + sql,
        invntBanco_Dados, invntConecta_db, invntUsuario_internet_id);
    return false;
  }
}

bool mConsulta_Tipo_OS_Frac(Variant& INvntOrdem_Servico_ID, Variant& outarrAGENDAMENTO_FRAC_ID,
                            Variant& outarrindic_coleta_entrega, Variant& outarrNOTA_FISCAL_ID,
                            Variant& outvntQtde, Variant& invntUsuario_internet_id,
                            Variant& invntConecta_db, Variant& /*outvntMsg_Ret*/,
                            Variant& invntBanco_Dados) {
  int erl = 0;
  std::string sql;
  try {
    erl = 1;
    sql = "EXEC SP_050_CONS_TIPO_OS_FRAC01   " + number_literal(INvntOrdem_Servico_ID);

    erl = 2;
    ado::Recordset rs =
        open_client_side(sql, vb::text_of(invntConecta_db), ado::adOpenStatic, ado::adLockReadOnly);

    erl = 3;
    int32_t count = 0;
    if (!rs.Eof()) count = rs.RecordCount();
    outvntQtde = Variant(count);
    outarrAGENDAMENTO_FRAC_ID.redim(0, count - 1);
    outarrindic_coleta_entrega.redim(0, count - 1);
    outarrNOTA_FISCAL_ID.redim(0, count - 1);
    for (int32_t k = 0; k < count; ++k) {
      outarrAGENDAMENTO_FRAC_ID.at(k) =
          Variant(vb::clng(gTrata_Separador_Decimal(rs.Fields("AGENDAMENTO_FRAC_ID"))));
      outarrindic_coleta_entrega.at(k) = Variant(vb::text_of(rs.Fields("indic_coleta_entrega")));
      outarrNOTA_FISCAL_ID.at(k) =
          Variant(vb::clng(gTrata_Separador_Decimal(rs.Fields("NOTA_FISCAL_ID"))));
      rs.MoveNext();
    }

    erl = 4;
    rs.Close();
    return true;
  } catch (...) {
    // No message of its own: the failure reaches only the error log.
    const ErrInfo error = current_error();
    gGrava_Log_Msg(
        invntBanco_Dados, invntConecta_db, invntUsuario_internet_id, Variant(1),
        Variant(kClosingUnavailable +
                trap_detail(" - T318QDR.mConsulta_Tipo_OS_Frac (", error, erl) + "strsq: " + sql));
    return false;
  }
}

bool mVerifica_Tab_Parametro_Sistema(Variant& invntConecta_db, Variant& invntUsuario_internet_id,
                                     Variant& /*invntEmpresa_id*/, Variant& invntBanco_Dados,
                                     Variant& /*invntNome_Produto*/,
                                     Variant& invntParametro_Sistema_ID,
                                     Variant& outvntValor_Parametro, Variant& outvntMsg_Ret) {
  constexpr const char* kNoParameter =
      "Problemas na determinação do Parâmetros do sistema. Contacte o Administrador do Sistema.";
  int erl = 0;
  std::string sql;
  try {
    erl = 1;
    sql = "EXEC SP_NVT_CON_PARAMETRO_SISTEMA " + number_literal(invntParametro_Sistema_ID);

    erl = 2;
    ado::Recordset rs = open_client_side(sql, vb::text_of(invntConecta_db));

    erl = 4;
    if (rs.State() == ado::adStateClosed) {
      outvntMsg_Ret = Variant(kNoParameter);
      // Deliberate: this suffix names another routine, as it always has.
      if (is_technical_user(invntUsuario_internet_id)) {
        outvntMsg_Ret = Variant(kNoParameter +
                                std::string(" - oRS.State = 0 na mVerifica_Tab_Parametro_Sistema "
                                            "mConsulta_Campos_Tipo_OS, sql: ") +
                                sql);
      }
      return false;
    }

    erl = 3;
    if (rs.Eof()) {
      outvntMsg_Ret = Variant(kNoParameter);
      if (is_technical_user(invntUsuario_internet_id)) {
        outvntMsg_Ret = Variant(
            kNoParameter +
            std::string(" - ORS.EOF na rotina mVerifica_Tab_Parametro_Sistema, sql: ") + sql);
      }
      return false;
    }

    erl = 2;
    outvntValor_Parametro = Variant(vb::text_of(rs.Fields("PARAMETRO")));
    rs.Close();
    return true;
  } catch (...) {
    const ErrInfo error = current_error();
    report_failure(
        outvntMsg_Ret, kClosingUnavailable,
        trap_detail(" - T318QDR.mVerifica_Tab_Parametro_Sistema (", error, erl) + "strsq: " + sql,
        invntBanco_Dados, invntConecta_db, invntUsuario_internet_id);
    return false;
  }
}

bool mBusca_Terminal_VAS(Variant& invntConecta_db, Variant& invntUsuario_internet_id,
                         Variant& /*invntEmpresa_id*/, Variant& invntBanco_Dados,
                         Variant& /*invntNome_Produto*/, Variant& INvntOrdem_Servico_ID,
                         Variant& outvntTerminal_ID, Variant& outvntMsg_Ret) {
  int erl = 0;
  std::string sql;
  try {
    erl = 1;
    sql = "EXEC SP_050_CONS_TERMINAL_VAS_OS01 " + number_literal(INvntOrdem_Servico_ID);

    erl = 2;
    ado::Recordset rs = open_client_side(sql, vb::text_of(invntConecta_db));

    erl = 5;
    // Deliberate: no result set at all is more lenient than an empty one.
    if (rs.State() == ado::adStateClosed) {
      outvntTerminal_ID = Variant(0);
      return true;
    }

    erl = 4;
    if (rs.Eof()) {
      constexpr const char* kNoTerminal =
          "Acesso aos dados do terminal VAS não disponível. Contacte o Administrador do Sistema.";
      outvntMsg_Ret = Variant(kNoTerminal);
      if (is_technical_user(invntUsuario_internet_id)) {
        outvntMsg_Ret = Variant(
            kNoTerminal + std::string(" - ORS.EOF na rotina mBusca_Terminal_VAS, sql: ") + sql);
      }
      return false;
    }

    erl = 3;
    outvntTerminal_ID = Variant(vb::clng(gTrata_Separador_Decimal(rs.Fields("FORNECEDOR_ID"))));
    rs.Close();
    return true;
  } catch (...) {
    const ErrInfo error = current_error();
    report_failure(outvntMsg_Ret,
                   "Acesso aos dados do terminal VAS não disponível. Favor tentar mais tarde.",
                   trap_detail(" - T318QDR.mBusca_Terminal_VAS (", error, erl) + "strsq: " + sql,
                   invntBanco_Dados, invntConecta_db, invntUsuario_internet_id);
    return false;
  }
}

}  // namespace qdr::closing
