// Loading seeded orders for closing, writing the order fields and the
// closing's lookups, against the reference database.

#include <gtest/gtest.h>

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "closing/order_fields.h"
#include "infra/backend_registry.h"
#include "infra/json_variant.h"
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

// Every output of record 101 as the seed holds it, in the variants' JSON
// form: arrays list their rows in the procedure's order (the third has no
// container number yet); weight and invoice value are numeric columns, which
// arrive as Doubles.
const json::Json& order_101() {
  static const auto outputs = json::Json::parse(R"({
    "outvntTAB_TIPO_ORDEM_SERVICO_iD": 1, "outvntordem_servico_id": 1001,
    "outvntDESCR_TIPO_SERVICO": "Transporte com retirada e entrega em terminal",
    "outvntFORNECEDOR": "Transportadora Rápida Santos Ltda.", "outvntdata_servico": "10/11/2026",
    "outvntnum_os": "OS-2026-01001", "OUTvntData_Ini_Execucao": "10/11/2026",
    "outvntHORA_INI_EXECUCAO": "08:00", "OUTvntData_Fim_Execucao": "10/11/2026",
    "outvntHORA_FIM_EXECUCAO": "17:30", "outvntDESC_TAB_STATUS_PAGTO_OS": "Aguardando fechamento",
    "outvntIndic_OS_Em_Pagamento": "N", "outvntTAB_TIPO_SERVICO_ID": 1,
    "OUTvntData_Retirada_Terminal": "10/11/2026", "outvntHora_Retirada_Terminal": "07:15",
    "OUTvntData_Entrega_Terminal": "10/11/2026", "outvntHora_Entrega_Terminal": "18:40",
    "outvntfornecedor_id": 10, "outvntterminal_vazio_id": 20, "outvntterminal_cheio_id": 21,
    "OUTvntPlaca_Cavalo": "ABC1D23", "outvntflag_contr_canhoto": "N",
    "outvnttab_tipo_docto_id": 1, "outvntnum_documento": "NF-5001", "outvntflag_num_docto": "S",
    "outvntQtde_Sol_Cont": 3, "ouvntObserv": "Ordem de serviço de exemplo do tipo 1",
    "outvntflag_ctac_os": "S", "outvntNum_docto_Transp": "CTAC-2026-0001",
    "outvntIndic_Mostra_Campo_Terminal": "S"})");
  return outputs;
}
const json::Json& arrays_of_101() {
  static const auto arrays = json::Json::parse(R"({
    "outarrvntSOLICIT_EMBARQUE_CONTAINER_ID": [7001, 7002, 7003],
    "outarrvntNUM_CONTAINER": ["MSCU1234565", "MAEU7654321", ""],
    "outarrvntnum_lacre_cia_maritima": ["MSC123456", "MSC123457", ""],
    "outarrvntnum_lacre_receita_federal": ["RF0001", "", ""],
    "outarrvntnum_lacre_min_saude": ["MS0001", "", ""],
    "outarrvntTara": ["2200,00", "3900,50", ""],
    "outarrvntAGEND_CONTAINER_ID": [8001, 8002, 8003],
    "arrTab_Tipo_Container_ID": [1, 3, 2],
    "outvntVeiculo": ["ABC1D23", "ABC1D23", ""], "outvntVeiculoID": [1, 1, ""],
    "outvntMotoristaID": [1, 1, ""],
    "outvntMotoristaVeiculo": ["José Carlos da Silva - ABC1D23",
                               "José Carlos da Silva - ABC1D23", ""],
    "outvntCarreta1ID": [3, 3, ""], "outvntCarreta1": ["CRT1A11", "CRT1A11", ""],
    "outvntCarreta2ID": [4, "", ""], "outvntCarreta2": ["CRT2B22", "", ""],
    "CarretaID": [3, "", ""], "Carreta": ["CRT1A11", "", ""],
    "OUTarrPeso_Carga": [18500.5, 21000.0, ""], "OUTarrValor_NF": [125000.0, 98000.75, ""]})");
  return arrays;
}

// Loads `record` and compares the outputs named in `expected` (variants'
// JSON form) exactly.
void expect_load(const std::string& connection, Variant record,
                 std::initializer_list<const json::Json*> expected) {
  OrderLoad load(connection, 2, record);
  ASSERT_EQ(load.call(), kOk) << load["outvntMsg_Ret"].as_string();
  for (const auto* outputs : expected)
    for (const auto& [name, value] : outputs->items())
      EXPECT_EQ(shown(load[name]), shown(json::from_json(value))) << name;
}
void expect_load(const std::string& connection, Variant record, const char* expected) {
  const auto outputs = json::Json::parse(expected);
  expect_load(connection, std::move(record), {&outputs});
}

// Every output as the seed holds it; on a machine with a decimal comma the
// numbers read from the database keep their decimals too.
TEST_F(Orders, LoadsAnOrderWithContainersAndCtac) {
  test::under_both([&](int) {
    expect_load(connection_, Variant(101), {&order_101(), &arrays_of_101()});
  });
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
  for (const auto& [name, unused] : arrays_of_101().items())
    EXPECT_EQ(elements(load[name]), values({Variant()})) << name;
  EXPECT_EQ(load["ouvntObserv"], Variant("do chamador"));
  EXPECT_EQ(load["outvntflag_ctac_os"], Variant("N"));
  EXPECT_EQ(load["outvntNum_docto_Transp"], Variant("do chamador"));
  EXPECT_EQ(load["outvntIndic_Mostra_Campo_Terminal"], Variant("N"));
}

// Null header columns: numbers read 0, texts "".
TEST_F(Orders, NullHeaderColumns) {
  expect_load(connection_, Variant(153), R"({
    "outvntterminal_vazio_id": 0, "outvntterminal_cheio_id": 0, "outvnttab_tipo_docto_id": 0,
    "OUTvntData_Ini_Execucao": "", "outvntHORA_INI_EXECUCAO": "",
    "OUTvntData_Retirada_Terminal": "", "OUTvntPlaca_Cavalo": "", "outvntnum_documento": ""})");
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
  expect_load(connection_, Variant(155), R"({
    "OUTvntData_Ini_Execucao": "20/11/2026", "outvntHORA_INI_EXECUCAO": "08:05",
    "OUTvntData_Fim_Execucao": "20/11/2026", "outvntHORA_FIM_EXECUCAO": "17:35",
    "OUTvntData_Retirada_Terminal": "20/11/2026", "outvntHora_Retirada_Terminal": "07:10",
    "OUTvntData_Entrega_Terminal": "20/11/2026", "outvntHora_Entrega_Terminal": "18:05",
    "OUTvntPlaca_Cavalo": "XYZ9K88", "outvnttab_tipo_docto_id": 2,
    "outvntnum_documento": "CT-777"})");
  EXPECT_EQ(scalar("SELECT tab_status_os_tipo_id || '/' || usuario_fechamento_id FROM "
                   "ordem_servico_tipo WHERE ordem_servico_tipo_id = 155"),
            "2/7");

  // Empty terminal times and a zero document type are written as nulls.
  ASSERT_TRUE(write(155, Variant(""), Variant(""), Variant(0)));
  expect_load(connection_, Variant(155), R"({
    "OUTvntData_Retirada_Terminal": "", "outvntHora_Entrega_Terminal": "",
    "outvnttab_tipo_docto_id": 0})");

  // An unknown record is refused by the procedure: false, no message.
  EXPECT_FALSE(write(99999, Variant(""), Variant(""), Variant(1)));
  EXPECT_EQ(c.message, Variant("antes"));
}

TEST_F(Orders, SystemParametersAndVasTerminal) {
  const std::pair<int, const char*> seeded[] = {
      {1328, "21"}, {1329, "22"}, {1330, "23"}, {1332, "25"}, {1334, "24"}, {6247, "N"}, {9000, ""},
  };
  CommonArgs c(connection_, 2);
  for (const auto& [number, value] : seeded) {
    Variant id(number), out;
    EXPECT_TRUE(closing::mVerifica_Tab_Parametro_Sistema(c.connection, c.user, c.company, c.kind,
                                                         c.product, id, out, c.message));
    EXPECT_EQ(out, Variant(value)) << number;
  }
  Variant order(1009), terminal;
  ASSERT_TRUE(closing::mBusca_Terminal_VAS(c.connection, c.user, c.company, c.kind, c.product,
                                           order, terminal, c.message));
  EXPECT_EQ(terminal, Variant(30));
}

// A missing parameter and an order without a VAS terminal: false, the
// output left alone, and the message (with the query for user 1).
TEST_F(Orders, MissingParameterAndVasTerminal) {
  const std::string parameter =
      "Problemas na determinação do Parâmetros do sistema. Contacte o Administrador do Sistema.";
  const std::string vas =
      "Acesso aos dados do terminal VAS não disponível. Contacte o Administrador do Sistema.";
  for (int user : {2, 1}) {
    CommonArgs c(connection_, user), u(connection_, user);
    Variant id(4242), out("antes"), order(1050), none(-1);
    EXPECT_FALSE(closing::mVerifica_Tab_Parametro_Sistema(c.connection, c.user, c.company, c.kind,
                                                          c.product, id, out, c.message));
    EXPECT_EQ(
        c.message,
        Variant(user == 1 ? parameter + " - ORS.EOF na rotina mVerifica_Tab_Parametro_Sistema, "
                                        "sql: EXEC SP_NVT_CON_PARAMETRO_SISTEMA 4242"
                          : parameter));
    EXPECT_EQ(out, Variant("antes"));
    EXPECT_FALSE(closing::mBusca_Terminal_VAS(u.connection, u.user, u.company, u.kind, u.product,
                                              order, none, u.message));
    EXPECT_EQ(u.message, Variant(user == 1 ? vas + " - ORS.EOF na rotina mBusca_Terminal_VAS, sql: "
                                                   "EXEC SP_050_CONS_TERMINAL_VAS_OS01 1050"
                                           : vas));
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
