// Loading an order for closing, and the order-level routines of the closing,
// driven through the replay data source.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "closing/order_fields.h"
#include "infra/json_variant.h"
#include "tests/support/order_args.h"
#include "tests/support/replay_fixture.h"
#include "tests/support/test_env.h"
#include "tests/support/variant_json.h"

namespace qdr {
namespace {

using nlohmann::json;
using test::CommonArgs;
using test::db_error;
using test::elements;
using test::no_result_set;
using test::OrderLoad;
using test::ReplayFixture;
using test::rows;
using test::shown;
using test::values;

constexpr const char* kUnavailable =
    "Acesso ao Fechamento da OS não disponível. Favor tentar mais tarde.";

const Variant kOk = Variant::integer(0);
const Variant kFailed = Variant::integer(10);

std::vector<std::string> words(const std::string& list) {
  std::istringstream in(list);
  std::vector<std::string> out;
  for (std::string word; in >> word;) out.push_back(word);
  return out;
}

const std::vector<std::string> kHeaderColumns = words(
    "TAB_TIPO_ORDEM_SERVICO_ID ORDEM_SERVICO_ID DESCR_TIPO_SERVICO FORNECEDOR DATA_SERVICO NUM_OS "
    "DATA_INI_EXECUCAO HORA_INI_EXECUCAO DATA_FIM_EXECUCAO HORA_FIM_EXECUCAO "
    "DESC_TAB_STATUS_PAGTO_OS INDIC_OS_EM_PAGAMENTO TAB_TIPO_SERVICO_ID DATA_RETIRADA_TERMINAL "
    "HORA_RETIRADA_TERMINAL DATA_ENTREGA_TERMINAL HORA_ENTREGA_TERMINAL FORNECEDOR_ID "
    "TERMINAL_VAZIO_ID TERMINAL_CHEIO_ID PLACA FLAG_CONTR_CANHOTO TAB_TIPO_DOCTO_ID "
    "ID_SISTEMA_EXTERNO FLAG_NUM_DOCTO");

json header(json type = 1, json service = 1) {
  auto row = json::parse(R"([null, 1001, "Transporte com retirada e entrega em terminal",
      "Transportadora Rápida Santos Ltda.", "10/11/2026", "OS-2026-01001", "10/11/2026", "08:00",
      "10/11/2026", "17:30", "Aguardando fechamento", "N", null, null, null, "10/11/2026",
      "18:40", 10, null, "21", "ABC1D23", "N", null, "NF-5001", "S"])")
                 .get<std::vector<json>>();
  row[0] = std::move(type);
  row[12] = std::move(service);
  return rows(kHeaderColumns, {row});
}

const std::vector<std::string> kContainerColumns = words(
    "SOLICIT_EMBARQUE_CONTAINER_ID NUM_CONTAINER NUM_LACRE_CIA_MARITIMA NUM_LACRE_RECEITA_FEDERAL "
    "NUM_LACRE_MIN_SAUDE TARA AGEND_CONTAINER_ID TAB_TIPO_CONTAINER_ID PESO_CARGA VALOR CAVALO "
    "CAVALO_ID MOTORISTA_VEICULO_ID MOTORISTA_VEICULO CARRETA1_ID CARRETA1 CARRETA2_ID CARRETA2 "
    "CARRETA_ID CARRETA OBSERV");

json containers() {
  return rows(kContainerColumns, json::parse(R"([
      [7001, "MSCU1234565", "MSC123456", "RF0001", "MS0001", 2200.5, 8001, 1, 18500.5,
       "125000,00", "ABC1D23", 1, 1, "José - ABC1D23", 3, "CRT1A11", 4, "CRT2B22", 3, "CRT1A11",
       "Primeira observação"],
      [7002, null, null, null, null, null, 8002, 3, null, null, null, null, null, null, null, null,
       null, null, null, null, "Segunda observação"],
      [7003, "HLXU2002001", "S3", "", "", "3750,25", null, 2, 1, 2, "DEF2G34", 2, 2,
       "Maria - DEF2G34", null, null, null, null, 5, "CRT3C33", null]])")
                                     .get<std::vector<std::vector<json>>>());
}

json empty_containers() { return rows(kContainerColumns, {}); }
json ctac() { return rows({"FLAG_CTAC_OS", "NUM_DOCTO_TRANSPORTE"}, {{"S", "CTAC-2026-0001"}}); }
json no_ctac() { return rows({"FLAG_CTAC_OS", "NUM_DOCTO_TRANSPORTE"}, {}); }

// Compares the outputs named in `expected` (variants' JSON form) exactly.
void expect_outputs(OrderLoad& load, const char* expected) {
  const auto outputs = ::qdr::json::Json::parse(expected);
  for (const auto& [name, value] : outputs.items())
    EXPECT_EQ(shown(load[name]), shown(::qdr::json::from_json(value))) << name;
}

// The three statements, the typed command's parameter, and the outputs whose
// conversions differ (the database suite checks every output).
TEST(OrderLoad, LoadsHeaderContainersAndCtac) {
  ReplayFixture replay(json::array({header(), containers(), ctac()}));
  OrderLoad load(replay.connection(), 2, Variant(101));
  load["outvntMsg_Ret"] = Variant("antes");
  ASSERT_EQ(load.call(), kOk);
  EXPECT_EQ(load["outvntMsg_Ret"], Variant("antes"));

  const auto journal = replay.journal();
  ASSERT_EQ(journal.size(), 3u);
  EXPECT_EQ(journal[0].at("kind"), "command");
  EXPECT_EQ(journal[0].at("text"), "{ call SP_050_CON_OS_FECHAMENTO03(?) }");
  EXPECT_EQ(journal[0].at("procedure"), "SP_050_CON_OS_FECHAMENTO03");
  EXPECT_EQ(journal[0].at("parameters"),
            json::parse(R"([{"name":"Ordem_Servico_Tipo_ID","type":3,"size":10,"value":101}])"));
  EXPECT_EQ(journal[1].at("kind"), "text");
  EXPECT_EQ(journal[1].at("text"), "EXEC SP_050_CON_SOL_CONT_OS_FECHA03 1001 , 101  ");
  EXPECT_EQ(journal[2].at("text"), "EXEC SP_050_CON_OS_CTAC02 1001");

  // Text columns keep their subtype, null reads as ""; number columns are 0
  // for null and numbers for numeric texts; the tare has two decimals and a
  // comma, and a null tare gives the empty default.
  expect_outputs(load, R"({
    "outvntordem_servico_id": 1001, "outvntFORNECEDOR": "Transportadora Rápida Santos Ltda.",
    "OUTvntData_Retirada_Terminal": "", "outvntterminal_vazio_id": 0,
    "outvntterminal_cheio_id": 21, "outvntQtde_Sol_Cont": 3, "ouvntObserv": "Primeira observação",
    "outvntflag_ctac_os": "S", "outvntNum_docto_Transp": "CTAC-2026-0001",
    "outvntIndic_Mostra_Campo_Terminal": "S",
    "outarrvntSOLICIT_EMBARQUE_CONTAINER_ID": [7001, 7002, 7003],
    "outarrvntNUM_CONTAINER": ["MSCU1234565", "", "HLXU2002001"],
    "outarrvntTara": ["2200,50", "", "3750,25"], "outarrvntAGEND_CONTAINER_ID": [8001, 8002, ""],
    "OUTarrPeso_Carga": [18500.5, "", 1], "OUTarrValor_NF": ["125000,00", "", 2],
    "outvntMotoristaVeiculo": ["José - ABC1D23", "", "Maria - DEF2G34"],
    "CarretaID": [3, "", 5]})");
}

// Without a header row the header outputs keep the caller's values and the
// container list runs with the order id the caller left (0 goes as null).
TEST(OrderLoad, RecordWithoutHeaderRowStillLoads) {
  ReplayFixture replay(json::array({rows(kHeaderColumns, {}), empty_containers(), no_ctac()}));
  OrderLoad load(replay.connection(), 2, Variant("150"));
  load["outvntordem_servico_id"] = Variant(0);
  load["outvntFORNECEDOR"] = Variant("do chamador");
  load["ouvntObserv"] = Variant("do chamador");
  load["outvntNum_docto_Transp"] = Variant("do chamador");
  load["outarrvntNUM_CONTAINER"] = Variant::array(0, 4);
  ASSERT_EQ(load.call(), kOk);
  EXPECT_EQ(replay.texts(),
            (std::vector<std::string>{"{ call SP_050_CON_OS_FECHAMENTO03(?) }",
                                      "EXEC SP_050_CON_SOL_CONT_OS_FECHA03 null , 150  ",
                                      "EXEC SP_050_CON_OS_CTAC02 null"}));
  // An empty container list: a count of 1 and one Empty row in every array.
  // No CTAC row: flag "N", document number untouched.
  expect_outputs(load, R"({
    "outvntFORNECEDOR": "do chamador", "outvntQtde_Sol_Cont": 1, "ouvntObserv": "do chamador",
    "outarrvntSOLICIT_EMBARQUE_CONTAINER_ID": [{"$type": "Empty"}],
    "outarrvntNUM_CONTAINER": [{"$type": "Empty"}], "outarrvntTara": [{"$type": "Empty"}],
    "OUTarrPeso_Carga": [{"$type": "Empty"}], "Carreta": [{"$type": "Empty"}],
    "outvntflag_ctac_os": "N", "outvntNum_docto_Transp": "do chamador",
    "outvntIndic_Mostra_Campo_Terminal": "N"})");
}

TEST(OrderLoad, MissingKeyRunsNothing) {
  for (const Variant& key : {Variant(), Variant::null(), Variant(""), Variant(0), Variant("0"),
                             Variant::error(Variant::kParamNotFound)}) {
    ReplayFixture replay(json::array());
    OrderLoad load(replay.connection(), 1, key);
    EXPECT_EQ(load.call(), kFailed);
    EXPECT_EQ(load["outvntMsg_Ret"],
              Variant("Ordem Serviço Tipo não Informado. Contacte o Administrador."));
    EXPECT_TRUE(replay.texts().empty());
  }
}

// Each way the load can fail, for user 2 and for user 1 (who also sees the
// technical detail).
TEST(OrderLoad, FailureMessages) {
  const std::string header_text = "strsq: EXEC SP_050_CON_OS_FECHAMENTO03 101";
  const struct {
    const char* what;
    json script;
    std::string message;
    std::string detail;
    std::size_t statements;
  } cases[] = {
      {"header procedure fails", json::array({db_error("Falha no servidor", -2147217900)}),
       kUnavailable,
       " - T318QDR.mConsulta_Campos_ORDEM_SERVICO_TIPO (Falha no servidor : -2147217900)   No "
       "Nº 6" +
           header_text,
       1},
      {"header without a column", json::array({rows({"TAB_TIPO_ORDEM_SERVICO_ID"}, {{1}})}),
       kUnavailable,
       " - T318QDR.mConsulta_Campos_ORDEM_SERVICO_TIPO (Item cannot be found in the collection "
       "corresponding to the requested name or ordinal. : 3265)   No Nº 8" +
           header_text,
       1},
      {"container list fails", json::array({header(), db_error("Tempo esgotado", 1205)}),
       kUnavailable, " - T318QDR.gConsulta_Ordem_Servico_Tipo (Tempo esgotado : 1205)   No Nº 5",
       2},
      {"container list answers no result set", json::array({header(), no_result_set()}),
       "Não foi encontrado nenhum container para fechamento desta OS. Favor contactar o "
       "Administrador do Sistema.",
       "", 2},
      {"CTAC fails", json::array({header(), containers(), db_error("Sem permissão", 229)}),
       kUnavailable, " - T318QDR.gConsulta_Ordem_Servico_Tipo (Sem permissão : 229)   No Nº 6", 3},
  };
  for (const auto& c : cases) {
    for (int user : {2, 1}) {
      SCOPED_TRACE(std::string(c.what) + ", user " + std::to_string(user));
      ReplayFixture replay(c.script);
      OrderLoad load(replay.connection(), user, Variant(101));
      EXPECT_EQ(load.call(), kFailed);
      EXPECT_EQ(load["outvntMsg_Ret"], Variant(user == 1 ? c.message + c.detail : c.message));
      // A failed header step leaves nothing half-filled; a later failure
      // keeps the outputs of the steps before it.
      EXPECT_EQ(load["outvntnum_os"].is_empty(), c.statements == 1);
      EXPECT_EQ(load["outvntQtde_Sol_Cont"].is_empty(), c.statements < 3);
      // The load's own statements, then the error log's row for a trapped
      // error (the replay has no answer left for it, which the writer
      // ignores).
      auto texts = replay.texts();
      const bool logged = !c.detail.empty();
      ASSERT_EQ(texts.size(), c.statements + (logged ? 1 : 0));
      EXPECT_TRUE(!logged || texts.back().rfind("INSERT INTO LOG_MSG", 0) == 0) << texts.back();
    }
  }
}

// The tare is shown with two decimals and a comma whatever the machine's
// separator and however the data source gives the number.
TEST(OrderLoad, TareFormatting) {
  std::vector<std::vector<json>> tare_rows;
  for (const json& tare :
       {json(2200.5), json("3750.25"), json("3750,25"), json(4800),
        json({{"$type", "Currency"}, {"value", 12.34}}), json(0), json(nullptr)}) {
    std::vector<json> row(kContainerColumns.size(), nullptr);
    row[5] = tare;
    tare_rows.push_back(row);
  }
  const std::string expected =
      values({Variant("2200,50"), Variant("3750,25"), Variant("3750,25"), Variant("4800,00"),
              Variant("12,34"), Variant(""), Variant("")});
  for (const char* locale_name : {"C", "pt_BR.UTF-8"}) {
    test::ScopedLocale locale(locale_name);
    if (!locale.ok()) continue;
    SCOPED_TRACE(locale_name);
    ReplayFixture replay(json::array({header(), rows(kContainerColumns, tare_rows), no_ctac()}));
    OrderLoad load(replay.connection(), 2, Variant(101));
    ASSERT_EQ(load.call(), kOk);
    EXPECT_EQ(elements(load["outarrvntTara"]), expected);
  }
}

// Order types 1 and 2 with service type 1 show the terminal fields; the
// comparison is numeric, so texts that hold the numbers count.
TEST(OrderLoad, TerminalFieldsFlag) {
  const struct {
    json type, service;
    const char* flag;
  } cases[] = {
      {1, 1, "S"}, {2, 1, "S"}, {"1", "1", "S"},   {"2", 1.0, "S"},   {3, 1, "N"},
      {1, 2, "N"}, {9, 1, "N"}, {nullptr, 1, "N"}, {1, nullptr, "N"}, {"um", 1, "N"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.type.dump() + " / " + c.service.dump());
    ReplayFixture replay(json::array({header(c.type, c.service), empty_containers(), no_ctac()}));
    OrderLoad load(replay.connection(), 2, Variant(101));
    ASSERT_EQ(load.call(), kOk);
    EXPECT_EQ(load["outvntIndic_Mostra_Campo_Terminal"], Variant(c.flag));
  }
}

// --- Order fields, fractional schedules, parameters, VAS terminal ---------

bool write_fields(CommonArgs& c, Variant withdrawal, Variant delivery) {
  Variant record(155), start("2026/11/20 08:00"), end("2026/11/20 17:30"), status(2);
  Variant plate("ABC1D23"), doc_type(1), doc_number("NF-777");
  return closing::mAltera_Campos_ORDEM_SERVICO_TIPO(
      c.connection, c.user, c.company, c.kind, c.product, record, start, end, status, c.message,
      withdrawal, delivery, plate, doc_type, doc_number);
}

TEST(OrderFields, WriteCommandTextAndAnswers) {
  const json ok = rows({"retorno", "Msg_Ret"}, {{0, nullptr}});
  {
    ReplayFixture replay(json::array({ok, ok}));
    CommonArgs c(replay.connection(), 2);
    EXPECT_TRUE(write_fields(c, Variant("2026/11/20 07:10"), Variant("2026/11/20 18:05")));
    EXPECT_TRUE(write_fields(c, Variant(""), Variant::null()));
    EXPECT_EQ(replay.texts(),
              (std::vector<std::string>{
                  "EXEC SP_050_GRA_FECHA_OS_TIPO03 155, '2026/11/20 08:00', '2026/11/20 17:30', "
                  "'2026/11/20 07:10', '2026/11/20 18:05', 2, 'ABC1D23', 2, 1, 'NF-777'",
                  // Empty terminal times: the literal "null, " twice, status right after.
                  "EXEC SP_050_GRA_FECHA_OS_TIPO03 155, '2026/11/20 08:00', '2026/11/20 17:30', "
                  "null, null, 2, 'ABC1D23', 2, 1, 'NF-777'"}));
  }
  // Only a "retorno" that reads as 0 is success; none of the refusals
  // writes a message, a database error does (with the detail for user 1).
  const std::string trap_detail =
      " - T318QDR.mAltera_Campos_ORDEM_SERVICO_TIPO (Conversão falhou : 8114)   No Nº "
      "2strsq: EXEC SP_050_GRA_FECHA_OS_TIPO03 155, '2026/11/20 08:00', '2026/11/20 17:30', "
      "null, null, 2, 'ABC1D23', 1, 1, 'NF-777'";
  const struct {
    json answer;
    bool written;
    std::string message;
  } answers[] = {
      {rows({"retorno"}, {{"0"}}), true, "antes"},
      {rows({"retorno"}, {{0.0}}), true, "antes"},
      {rows({"retorno", "Msg_Ret"}, {{1, "Ordem Serviço Tipo não encontrada."}}), false, "antes"},
      {rows({"retorno"}, {{"abc"}}), false, "antes"},
      {rows({"retorno"}, {}), false, "antes"},
      {no_result_set(), false, "antes"},
      {db_error("Conversão falhou", 8114), false, kUnavailable + trap_detail},
  };
  for (const auto& a : answers) {
    SCOPED_TRACE(a.answer.dump());
    ReplayFixture replay(json::array({a.answer}));
    CommonArgs c(replay.connection(), 1);
    EXPECT_EQ(write_fields(c, Variant(""), Variant("")), a.written);
    EXPECT_EQ(c.message, Variant(a.message));
  }
  // User 2 sees the trapped error without the detail.
  ReplayFixture replay(json::array({db_error("Conversão falhou", 8114)}));
  CommonArgs c(replay.connection(), 2);
  EXPECT_FALSE(write_fields(c, Variant(""), Variant("")));
  EXPECT_EQ(c.message, Variant(kUnavailable));
}

TEST(OrderFields, FractionalSchedules) {
  ReplayFixture replay(
      json::array({rows({"AGENDAMENTO_FRAC_ID", "indic_coleta_entrega", "NOTA_FISCAL_ID"},
                        {{6091, "C", nullptr}, {"6092", "E", 6591.0}, {6093, nullptr, 6593}}),
                   rows({"AGENDAMENTO_FRAC_ID", "indic_coleta_entrega", "NOTA_FISCAL_ID"}, {}),
                   no_result_set()}));
  CommonArgs c(replay.connection(), 2);
  Variant order(1009), schedules, indicators, invoices, count;
  const auto run = [&] {
    return closing::mConsulta_Tipo_OS_Frac(order, schedules, indicators, invoices, count, c.user,
                                           c.connection, c.message, c.kind);
  };
  ASSERT_TRUE(run());
  EXPECT_EQ(count, Variant(3));
  EXPECT_EQ(elements(schedules), values({Variant(6091), Variant(6092), Variant(6093)}));
  EXPECT_EQ(elements(indicators), values({Variant("C"), Variant("E"), Variant("")}));
  EXPECT_EQ(elements(invoices), values({Variant(0), Variant(6591), Variant(6593)}));

  ASSERT_TRUE(run());
  EXPECT_EQ(count, Variant(0));
  EXPECT_EQ(schedules.size(), 0u);

  // No result set at all is a trapped error: false, no message, but the
  // error log has its row.
  EXPECT_FALSE(run());
  EXPECT_EQ(c.message, Variant("antes"));
  const auto texts = replay.texts();
  ASSERT_EQ(texts.size(), 4u);
  EXPECT_EQ(texts[0], "EXEC SP_050_CONS_TIPO_OS_FRAC01   1009");
  EXPECT_EQ(texts[3].rfind("INSERT INTO LOG_MSG", 0), 0u);
}

// The two single-value lookups: what each answer gives back, and the
// message for user 2 and (with the detail) for user 1.
TEST(OrderFields, ParameterAndVasTerminal) {
  using Lookup = bool (*)(CommonArgs&, Variant&);
  const Lookup parameter = [](CommonArgs& c, Variant& out) {
    Variant number(1334);
    return closing::mVerifica_Tab_Parametro_Sistema(c.connection, c.user, c.company, c.kind,
                                                    c.product, number, out, c.message);
  };
  const Lookup vas = [](CommonArgs& c, Variant& out) {
    Variant order(1009);
    return closing::mBusca_Terminal_VAS(c.connection, c.user, c.company, c.kind, c.product, order,
                                        out, c.message);
  };
  const std::string none =
      "Problemas na determinação do Parâmetros do sistema. Contacte o Administrador do Sistema.";
  const std::string psql = "EXEC SP_NVT_CON_PARAMETRO_SISTEMA 1334";
  const std::string vsql = "EXEC SP_050_CONS_TERMINAL_VAS_OS01 1009";
  const struct {
    const char* what;
    Lookup lookup;
    json answer;
    bool found;
    Variant out;
    std::string message;
    std::string detail;
  } cases[] = {
      {"parameter", parameter, rows({"PARAMETRO"}, {{"24"}}), true, Variant("24"), "antes", ""},
      {"numeric parameter", parameter, rows({"PARAMETRO"}, {{24}}), true, Variant("24"), "antes",
       ""},
      {"null parameter", parameter, rows({"PARAMETRO"}, {{nullptr}}), true, Variant(""), "antes",
       ""},
      {"no parameter row", parameter, rows({"PARAMETRO"}, {}), false, Variant("antes"), none,
       " - ORS.EOF na rotina mVerifica_Tab_Parametro_Sistema, sql: " + psql},
      {"no parameter result set", parameter, no_result_set(), false, Variant("antes"), none,
       " - oRS.State = 0 na mVerifica_Tab_Parametro_Sistema mConsulta_Campos_Tipo_OS, sql: " +
           psql},
      {"parameter error", parameter, db_error("Falhou", 50000), false, Variant("antes"),
       kUnavailable,
       " - T318QDR.mVerifica_Tab_Parametro_Sistema (Falhou : 50000)   No Nº 2strsq: " + psql},
      {"terminal", vas, rows({"FORNECEDOR_ID"}, {{30}}), true, Variant(30), "antes", ""},
      {"null terminal", vas, rows({"FORNECEDOR_ID"}, {{nullptr}}), true, Variant(0), "antes", ""},
      // No result set at all is accepted as "no terminal".
      {"no terminal result set", vas, no_result_set(), true, Variant(0), "antes", ""},
      {"no terminal row", vas, rows({"FORNECEDOR_ID"}, {}), false, Variant(-1),
       "Acesso aos dados do terminal VAS não disponível. Contacte o Administrador do Sistema.",
       " - ORS.EOF na rotina mBusca_Terminal_VAS, sql: " + vsql},
      {"terminal error", vas, db_error("Caiu", 10054), false, Variant(-1),
       "Acesso aos dados do terminal VAS não disponível. Favor tentar mais tarde.",
       " - T318QDR.mBusca_Terminal_VAS (Caiu : 10054)   No Nº 2strsq: " + vsql},
  };
  for (const auto& k : cases) {
    for (int user : {2, 1}) {
      SCOPED_TRACE(std::string(k.what) + ", user " + std::to_string(user));
      ReplayFixture replay(json::array({k.answer}));
      CommonArgs c(replay.connection(), user);
      Variant out = k.lookup == parameter ? Variant("antes") : Variant(-1);
      EXPECT_EQ(k.lookup(c, out), k.found);
      EXPECT_EQ(out, k.out);
      EXPECT_EQ(c.message, Variant(user == 1 ? k.message + k.detail : k.message));
    }
  }
}

}  // namespace
}  // namespace qdr
