// Loading seeded orders for closing, writing the order fields and the
// closing's lookups, against the reference database.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "closing/order_fields.h"
#include "infra/backend_registry.h"
#include "infra/vb.h"
#include "tests/support/order_args.h"
#include "tests/support/test_env.h"
#include "tests/support/variant_json.h"

namespace qdr {
namespace {

using test::CommonArgs;
using test::elements;
using test::OrderLoad;
using test::shown;
using test::values;

const Variant kOk = Variant::integer(0);
const Variant kFailed = Variant::integer(10);

// One value read through a plain session on the database, outside the
// routines under test.
std::string scalar(const std::string& sql) {
  Statement statement;
  statement.text = sql;
  statement.sql = sql;
  const auto result = open_session(test::db_connection())->execute(statement);
  if (!result || result->rows.empty()) throw std::runtime_error("no row: " + sql);
  return vb::text_of(result->rows.at(0).at(0));
}

class Orders : public test::DbTest {};

TEST_F(Orders, LoadsAnOrderWithContainersAndCtac) {
  OrderLoad load(connection_, 2, Variant(101));
  ASSERT_EQ(load.call(), kOk) << load["outvntMsg_Ret"].as_string();

  const std::pair<const char*, Variant> outputs[] = {
      {"outvntTAB_TIPO_ORDEM_SERVICO_iD", Variant(1)},
      {"outvntordem_servico_id", Variant(1001)},
      {"outvntDESCR_TIPO_SERVICO", Variant("Transporte com retirada e entrega em terminal")},
      {"outvntFORNECEDOR", Variant("Transportadora Rápida Santos Ltda.")},
      {"outvntdata_servico", Variant("10/11/2026")},
      {"outvntnum_os", Variant("OS-2026-01001")},
      {"OUTvntData_Ini_Execucao", Variant("10/11/2026")},
      {"outvntHORA_INI_EXECUCAO", Variant("08:00")},
      {"OUTvntData_Fim_Execucao", Variant("10/11/2026")},
      {"outvntHORA_FIM_EXECUCAO", Variant("17:30")},
      {"outvntDESC_TAB_STATUS_PAGTO_OS", Variant("Aguardando fechamento")},
      {"outvntIndic_OS_Em_Pagamento", Variant("N")},
      {"outvntTAB_TIPO_SERVICO_ID", Variant(1)},
      {"OUTvntData_Retirada_Terminal", Variant("10/11/2026")},
      {"outvntHora_Retirada_Terminal", Variant("07:15")},
      {"OUTvntData_Entrega_Terminal", Variant("10/11/2026")},
      {"outvntHora_Entrega_Terminal", Variant("18:40")},
      {"outvntfornecedor_id", Variant(10)},
      {"outvntterminal_vazio_id", Variant(20)},
      {"outvntterminal_cheio_id", Variant(21)},
      {"OUTvntPlaca_Cavalo", Variant("ABC1D23")},
      {"outvntflag_contr_canhoto", Variant("N")},
      {"outvnttab_tipo_docto_id", Variant(1)},
      {"outvntnum_documento", Variant("NF-5001")},
      {"outvntflag_num_docto", Variant("S")},
      {"outvntQtde_Sol_Cont", Variant(3)},
      {"ouvntObserv", Variant("Ordem de serviço de exemplo do tipo 1")},
      {"outvntflag_ctac_os", Variant("S")},
      {"outvntNum_docto_Transp", Variant("CTAC-2026-0001")},
      {"outvntIndic_Mostra_Campo_Terminal", Variant("S")},
  };
  for (const auto& [name, expected] : outputs)
    EXPECT_EQ(shown(load[name]), shown(expected)) << name;

  // Rows in the procedure's order; the third has no container number yet.
  const Variant e("");
  const std::pair<const char*, std::string> arrays[] = {
      {"outarrvntSOLICIT_EMBARQUE_CONTAINER_ID",
       values({Variant(7001), Variant(7002), Variant(7003)})},
      {"outarrvntNUM_CONTAINER", values({Variant("MSCU1234565"), Variant("MAEU7654321"), e})},
      {"outarrvntnum_lacre_cia_maritima", values({Variant("MSC123456"), Variant("MSC123457"), e})},
      {"outarrvntnum_lacre_receita_federal", values({Variant("RF0001"), e, e})},
      {"outarrvntnum_lacre_min_saude", values({Variant("MS0001"), e, e})},
      {"outarrvntTara", values({Variant("2200,00"), Variant("3900,50"), e})},
      {"outarrvntAGEND_CONTAINER_ID", values({Variant(8001), Variant(8002), Variant(8003)})},
      {"arrTab_Tipo_Container_ID", values({Variant(1), Variant(3), Variant(2)})},
      {"outvntVeiculo", values({Variant("ABC1D23"), Variant("ABC1D23"), e})},
      {"outvntVeiculoID", values({Variant(1), Variant(1), e})},
      {"outvntMotoristaID", values({Variant(1), Variant(1), e})},
      {"outvntMotoristaVeiculo", values({Variant("José Carlos da Silva - ABC1D23"),
                                         Variant("José Carlos da Silva - ABC1D23"), e})},
      {"outvntCarreta1ID", values({Variant(3), Variant(3), e})},
      {"outvntCarreta1", values({Variant("CRT1A11"), Variant("CRT1A11"), e})},
      {"outvntCarreta2ID", values({Variant(4), e, e})},
      {"outvntCarreta2", values({Variant("CRT2B22"), e, e})},
      {"CarretaID", values({Variant(3), e, e})},
      {"Carreta", values({Variant("CRT1A11"), e, e})},
  };
  for (const auto& [name, expected] : arrays) EXPECT_EQ(elements(load[name]), expected) << name;

  // Weight and invoice value are numeric columns, which arrive as Doubles.
  EXPECT_EQ(elements(load["OUTarrPeso_Carga"]), values({Variant(18500.5), Variant(21000.0), e}));
  EXPECT_EQ(elements(load["OUTarrValor_NF"]), values({Variant(125000.0), Variant(98000.75), e}));
}

// On a machine with a decimal comma the numbers read from the database keep
// their decimals.
TEST_F(Orders, DecimalsSurviveADecimalCommaLocale) {
  test::ScopedLocale locale("pt_BR.UTF-8");
  if (!locale.ok()) GTEST_SKIP() << "pt_BR.UTF-8 is not installed";
  OrderLoad load(connection_, 2, Variant(101));
  ASSERT_EQ(load.call(), kOk);
  const Variant e("");
  EXPECT_EQ(elements(load["outarrvntTara"]), values({Variant("2200,00"), Variant("3900,50"), e}));
  EXPECT_EQ(elements(load["OUTarrPeso_Carga"]), values({Variant(18500.5), Variant(21000.0), e}));
  EXPECT_EQ(elements(load["OUTarrValor_NF"]), values({Variant(125000.0), Variant(98000.75), e}));
}

// Order 1001 has containers carried by two records; each record lists its
// own. Order 1008 had a CTAC cancelled before the one that counts.
TEST_F(Orders, ContainersOfTheRecordAndItsValidCtac) {
  OrderLoad second(connection_, 2, Variant(154));
  ASSERT_EQ(second.call(), kOk);
  EXPECT_EQ(second["outvntordem_servico_id"], Variant(1001));
  EXPECT_EQ(second["outvntQtde_Sol_Cont"], Variant(1));
  EXPECT_EQ(elements(second["outarrvntSOLICIT_EMBARQUE_CONTAINER_ID"]), values({Variant(7004)}));
  EXPECT_EQ(elements(second["outarrvntNUM_CONTAINER"]), values({Variant("SEGU1111111")}));

  OrderLoad type8(connection_, 2, Variant(108));
  ASSERT_EQ(type8.call(), kOk);
  EXPECT_EQ(type8["outvntQtde_Sol_Cont"], Variant(2));
  EXPECT_EQ(type8["outvntflag_ctac_os"], Variant("S"));
  EXPECT_EQ(type8["outvntNum_docto_Transp"], Variant("CTAC-2026-0008"));
}

TEST_F(Orders, OrderWithoutContainersOrCtac) {
  OrderLoad load(connection_, 2, Variant("109"));
  load["ouvntObserv"] = Variant("do chamador");
  load["outvntNum_docto_Transp"] = Variant("do chamador");
  ASSERT_EQ(load.call(), kOk);
  EXPECT_EQ(load["outvntQtde_Sol_Cont"], Variant(1));
  for (const char* name : {"outarrvntSOLICIT_EMBARQUE_CONTAINER_ID",
                           "outarrvntNUM_CONTAINER",
                           "outarrvntnum_lacre_cia_maritima",
                           "outarrvntnum_lacre_receita_federal",
                           "outarrvntnum_lacre_min_saude",
                           "outarrvntTara",
                           "outarrvntAGEND_CONTAINER_ID",
                           "arrTab_Tipo_Container_ID",
                           "OUTarrPeso_Carga",
                           "OUTarrValor_NF",
                           "outvntVeiculoID",
                           "outvntMotoristaID",
                           "outvntMotoristaVeiculo",
                           "outvntCarreta1ID",
                           "outvntCarreta1",
                           "outvntCarreta2ID",
                           "outvntCarreta2",
                           "CarretaID",
                           "Carreta",
                           "outvntVeiculo"}) {
    EXPECT_EQ(elements(load[name]), values({Variant()})) << name;
  }
  EXPECT_EQ(load["ouvntObserv"], Variant("do chamador"));
  EXPECT_EQ(load["outvntflag_ctac_os"], Variant("N"));
  EXPECT_EQ(load["outvntNum_docto_Transp"], Variant("do chamador"));
}

TEST_F(Orders, NullHeaderColumns) {
  OrderLoad load(connection_, 2, Variant(153));
  ASSERT_EQ(load.call(), kOk);
  for (const char* name :
       {"outvntterminal_vazio_id", "outvntterminal_cheio_id", "outvnttab_tipo_docto_id"}) {
    EXPECT_EQ(load[name], Variant(0)) << name;
  }
  for (const char* name :
       {"OUTvntData_Ini_Execucao", "outvntHORA_INI_EXECUCAO", "OUTvntData_Retirada_Terminal",
        "OUTvntPlaca_Cavalo", "outvntnum_documento"}) {
    EXPECT_EQ(load[name], Variant("")) << name;
  }
}

TEST_F(Orders, TerminalFieldsFlagOfSeededRecords) {
  const std::pair<int, const char*> cases[] = {
      {101, "S"}, {102, "S"}, {153, "S"},  // order type 1 or 2, service type 1
      {103, "N"}, {152, "N"},              // type 3 with service type 2 or 1
      {151, "N"},                          // type 1 with service type 2
      {109, "N"}, {122, "N"},
  };
  for (const auto& [record, flag] : cases) {
    OrderLoad load(connection_, 2, Variant(record));
    ASSERT_EQ(load.call(), kOk) << record;
    EXPECT_EQ(load["outvntIndic_Mostra_Campo_Terminal"], Variant(flag)) << record;
  }
}

// Nothing is asked of the database: a connection that leads nowhere would
// fail any query with another message.
TEST_F(Orders, MissingKeyNeedsNoDatabase) {
  OrderLoad load("Driver={PostgreSQL Unicode};Servername=127.0.0.1;Port=1;Database=x;UID=x;PWD=x;",
                 1, Variant(0));
  EXPECT_EQ(load.call(), kFailed);
  EXPECT_EQ(load["outvntMsg_Ret"],
            Variant("Ordem Serviço Tipo não Informado. Contacte o Administrador."));
}

TEST_F(Orders, WritesOrderFieldsAndLoadsThemBack) {
  CommonArgs c(connection_, 7);
  const auto write = [&](int record, Variant withdrawal, Variant delivery, Variant doc_type) {
    Variant id(record), start("2026/11/20 08:05"), end("2026/11/20 17:35"), status(2);
    Variant plate("XYZ9K88"), doc_number("CT-777");
    return closing::mAltera_Campos_ORDEM_SERVICO_TIPO(
        c.connection, c.user, c.company, c.kind, c.product, id, start, end, status, c.message,
        withdrawal, delivery, plate, doc_type, doc_number);
  };
  ASSERT_TRUE(write(155, Variant("2026/11/20 07:10"), Variant("2026/11/20 18:05"), Variant(2)));
  {
    OrderLoad load(connection_, 2, Variant(155));
    ASSERT_EQ(load.call(), kOk);
    EXPECT_EQ(load["OUTvntData_Ini_Execucao"], Variant("20/11/2026"));
    EXPECT_EQ(load["outvntHORA_INI_EXECUCAO"], Variant("08:05"));
    EXPECT_EQ(load["OUTvntData_Fim_Execucao"], Variant("20/11/2026"));
    EXPECT_EQ(load["outvntHORA_FIM_EXECUCAO"], Variant("17:35"));
    EXPECT_EQ(load["OUTvntData_Retirada_Terminal"], Variant("20/11/2026"));
    EXPECT_EQ(load["outvntHora_Retirada_Terminal"], Variant("07:10"));
    EXPECT_EQ(load["OUTvntData_Entrega_Terminal"], Variant("20/11/2026"));
    EXPECT_EQ(load["outvntHora_Entrega_Terminal"], Variant("18:05"));
    EXPECT_EQ(load["OUTvntPlaca_Cavalo"], Variant("XYZ9K88"));
    EXPECT_EQ(load["outvnttab_tipo_docto_id"], Variant(2));
    EXPECT_EQ(load["outvntnum_documento"], Variant("CT-777"));
  }
  EXPECT_EQ(scalar("SELECT tab_status_os_tipo_id || '/' || usuario_fechamento_id FROM "
                   "ordem_servico_tipo WHERE ordem_servico_tipo_id = 155"),
            "2/7");

  // Empty terminal times and a zero document type are written as nulls.
  ASSERT_TRUE(write(155, Variant(""), Variant(""), Variant(0)));
  {
    OrderLoad load(connection_, 2, Variant(155));
    ASSERT_EQ(load.call(), kOk);
    EXPECT_EQ(load["OUTvntData_Retirada_Terminal"], Variant(""));
    EXPECT_EQ(load["outvntHora_Entrega_Terminal"], Variant(""));
    EXPECT_EQ(load["outvnttab_tipo_docto_id"], Variant(0));
  }

  // An unknown record is refused by the procedure: false, no message.
  EXPECT_FALSE(write(99999, Variant(""), Variant(""), Variant(1)));
  EXPECT_EQ(c.message, Variant("antes"));
}

TEST_F(Orders, SystemParameters) {
  const std::pair<int, const char*> seeded[] = {
      {1328, "21"}, {1329, "22"}, {1330, "23"}, {1332, "25"}, {1334, "24"}, {6247, "N"}, {9000, ""},
  };
  for (const auto& [number, value] : seeded) {
    CommonArgs c(connection_, 2);
    Variant id(number), out;
    EXPECT_TRUE(closing::mVerifica_Tab_Parametro_Sistema(c.connection, c.user, c.company, c.kind,
                                                         c.product, id, out, c.message));
    EXPECT_EQ(out, Variant(value)) << number;
  }
  const std::string message =
      "Problemas na determinação do Parâmetros do sistema. Contacte o Administrador do Sistema.";
  for (int user : {2, 1}) {
    CommonArgs c(connection_, user);
    Variant id(4242), out("antes");
    EXPECT_FALSE(closing::mVerifica_Tab_Parametro_Sistema(c.connection, c.user, c.company, c.kind,
                                                          c.product, id, out, c.message));
    EXPECT_EQ(c.message,
              Variant(user == 1 ? message + " - ORS.EOF na rotina mVerifica_Tab_Parametro_Sistema, "
                                            "sql: EXEC SP_NVT_CON_PARAMETRO_SISTEMA 4242"
                                : message));
    EXPECT_EQ(out, Variant("antes"));
  }
}

TEST_F(Orders, VasTerminal) {
  CommonArgs c(connection_, 2);
  Variant order(1009), terminal;
  ASSERT_TRUE(closing::mBusca_Terminal_VAS(c.connection, c.user, c.company, c.kind, c.product,
                                           order, terminal, c.message));
  EXPECT_EQ(terminal, Variant(30));

  const std::string message =
      "Acesso aos dados do terminal VAS não disponível. Contacte o Administrador do Sistema.";
  for (int user : {2, 1}) {
    CommonArgs u(connection_, user);
    Variant without(1050), none(-1);
    EXPECT_FALSE(closing::mBusca_Terminal_VAS(u.connection, u.user, u.company, u.kind, u.product,
                                              without, none, u.message));
    EXPECT_EQ(u.message,
              Variant(user == 1 ? message + " - ORS.EOF na rotina mBusca_Terminal_VAS, sql: "
                                            "EXEC SP_050_CONS_TERMINAL_VAS_OS01 1050"
                                : message));
    EXPECT_EQ(none, Variant(-1));
  }
}

TEST_F(Orders, FractionalSchedules) {
  CommonArgs c(connection_, 2);
  Variant order(1009), schedules, indicators, invoices, count;
  ASSERT_TRUE(closing::mConsulta_Tipo_OS_Frac(order, schedules, indicators, invoices, count, c.user,
                                              c.connection, c.message, c.kind));
  EXPECT_EQ(count, Variant(4));
  EXPECT_EQ(elements(schedules),
            values({Variant(6091), Variant(6092), Variant(6092), Variant(6093)}));
  EXPECT_EQ(elements(indicators), values({Variant("C"), Variant("E"), Variant("E"), Variant("E")}));
  EXPECT_EQ(elements(invoices), values({Variant(0), Variant(6591), Variant(6592), Variant(6593)}));

  Variant other(1050);
  ASSERT_TRUE(closing::mConsulta_Tipo_OS_Frac(other, schedules, indicators, invoices, count, c.user,
                                              c.connection, c.message, c.kind));
  EXPECT_EQ(count, Variant(0));
  EXPECT_EQ(schedules.size(), 0u);
}

}  // namespace
}  // namespace qdr
