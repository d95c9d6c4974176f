// Loading an order for closing, and the order-level routines of the closing,
// driven through the replay data source.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "closing/order_fields.h"
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

const std::vector<std::string> kHeaderColumns = {"TAB_TIPO_ORDEM_SERVICO_ID",
                                                 "ORDEM_SERVICO_ID",
                                                 "DESCR_TIPO_SERVICO",
                                                 "FORNECEDOR",
                                                 "DATA_SERVICO",
                                                 "NUM_OS",
                                                 "DATA_INI_EXECUCAO",
                                                 "HORA_INI_EXECUCAO",
                                                 "DATA_FIM_EXECUCAO",
                                                 "HORA_FIM_EXECUCAO",
                                                 "DESC_TAB_STATUS_PAGTO_OS",
                                                 "INDIC_OS_EM_PAGAMENTO",
                                                 "TAB_TIPO_SERVICO_ID",
                                                 "DATA_RETIRADA_TERMINAL",
                                                 "HORA_RETIRADA_TERMINAL",
                                                 "DATA_ENTREGA_TERMINAL",
                                                 "HORA_ENTREGA_TERMINAL",
                                                 "FORNECEDOR_ID",
                                                 "TERMINAL_VAZIO_ID",
                                                 "TERMINAL_CHEIO_ID",
                                                 "PLACA",
                                                 "FLAG_CONTR_CANHOTO",
                                                 "TAB_TIPO_DOCTO_ID",
                                                 "ID_SISTEMA_EXTERNO",
                                                 "FLAG_NUM_DOCTO"};

json header(json type = 1, json service = 1) {
  return rows(kHeaderColumns, {{type,
                                1001,
                                "Transporte com retirada e entrega em terminal",
                                "Transportadora Rápida Santos Ltda.",
                                "10/11/2026",
                                "OS-2026-01001",
                                "10/11/2026",
                                "08:00",
                                "10/11/2026",
                                "17:30",
                                "Aguardando fechamento",
                                "N",
                                service,
                                nullptr,
                                nullptr,
                                "10/11/2026",
                                "18:40",
                                10,
                                nullptr,
                                "21",
                                "ABC1D23",
                                "N",
                                nullptr,
                                "NF-5001",
                                "S"}});
}

const std::vector<std::string> kContainerColumns = {"SOLICIT_EMBARQUE_CONTAINER_ID",
                                                    "NUM_CONTAINER",
                                                    "NUM_LACRE_CIA_MARITIMA",
                                                    "NUM_LACRE_RECEITA_FEDERAL",
                                                    "NUM_LACRE_MIN_SAUDE",
                                                    "TARA",
                                                    "AGEND_CONTAINER_ID",
                                                    "TAB_TIPO_CONTAINER_ID",
                                                    "PESO_CARGA",
                                                    "VALOR",
                                                    "CAVALO",
                                                    "CAVALO_ID",
                                                    "MOTORISTA_VEICULO_ID",
                                                    "MOTORISTA_VEICULO",
                                                    "CARRETA1_ID",
                                                    "CARRETA1",
                                                    "CARRETA2_ID",
                                                    "CARRETA2",
                                                    "CARRETA_ID",
                                                    "CARRETA",
                                                    "OBSERV"};

json containers() {
  return rows(
      kContainerColumns,
      {{7001, "MSCU1234565", "MSC123456", "RF0001",  "MS0001", 2200.5,    8001,
        1,    18500.5,       "125000,00", "ABC1D23", 1,        1,         "José - ABC1D23",
        3,    "CRT1A11",     4,           "CRT2B22", 3,        "CRT1A11", "Primeira observação"},
       {7002,    nullptr, nullptr, nullptr, nullptr, nullptr, 8002,
        3,       nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, "Segunda observação"},
       {7003,      "HLXU2002001",
        "S3",      "",
        "",        "3750,25",
        nullptr,   2,
        1,         2,
        "DEF2G34", 2,
        2,         "Maria - DEF2G34",
        nullptr,   nullptr,
        nullptr,   nullptr,
        5,         "CRT3C33",
        nullptr}});
}

json empty_containers() { return rows(kContainerColumns, {}); }
json ctac() { return rows({"FLAG_CTAC_OS", "NUM_DOCTO_TRANSPORTE"}, {{"S", "CTAC-2026-0001"}}); }
json no_ctac() { return rows({"FLAG_CTAC_OS", "NUM_DOCTO_TRANSPORTE"}, {}); }

// The three statements, the typed command's parameter and every output.
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
  // for null and numbers for numeric texts.
  const std::pair<const char*, Variant> header_outputs[] = {
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
      {"OUTvntData_Retirada_Terminal", Variant("")},
      {"outvntHora_Retirada_Terminal", Variant("")},
      {"OUTvntData_Entrega_Terminal", Variant("10/11/2026")},
      {"outvntHora_Entrega_Terminal", Variant("18:40")},
      {"outvntfornecedor_id", Variant(10)},
      {"outvntterminal_vazio_id", Variant(0)},
      {"outvntterminal_cheio_id", Variant(21)},
      {"OUTvntPlaca_Cavalo", Variant("ABC1D23")},
      {"outvntflag_contr_canhoto", Variant("N")},
      {"outvnttab_tipo_docto_id", Variant(0)},
      {"outvntnum_documento", Variant("NF-5001")},
      {"outvntflag_num_docto", Variant("S")},
      {"outvntQtde_Sol_Cont", Variant(3)},
      {"ouvntObserv", Variant("Primeira observação")},
      {"outvntflag_ctac_os", Variant("S")},
      {"outvntNum_docto_Transp", Variant("CTAC-2026-0001")},
      {"outvntIndic_Mostra_Campo_Terminal", Variant("S")},
  };
  for (const auto& [name, expected] : header_outputs)
    EXPECT_EQ(shown(load[name]), shown(expected)) << name;

  const Variant e("");
  const std::pair<const char*, std::string> arrays[] = {
      {"outarrvntSOLICIT_EMBARQUE_CONTAINER_ID",
       values({Variant(7001), Variant(7002), Variant(7003)})},
      {"outarrvntNUM_CONTAINER", values({Variant("MSCU1234565"), e, Variant("HLXU2002001")})},
      {"outarrvntnum_lacre_cia_maritima", values({Variant("MSC123456"), e, Variant("S3")})},
      {"outarrvntnum_lacre_receita_federal", values({Variant("RF0001"), e, e})},
      {"outarrvntnum_lacre_min_saude", values({Variant("MS0001"), e, e})},
      // Two decimals with a comma; a null tare gives the empty default.
      {"outarrvntTara", values({Variant("2200,50"), e, Variant("3750,25")})},
      {"outarrvntAGEND_CONTAINER_ID", values({Variant(8001), Variant(8002), e})},
      {"arrTab_Tipo_Container_ID", values({Variant(1), Variant(3), Variant(2)})},
      {"OUTarrPeso_Carga", values({Variant(18500.5), e, Variant(1)})},
      {"OUTarrValor_NF", values({Variant("125000,00"), e, Variant(2)})},
      {"outvntVeiculo", values({Variant("ABC1D23"), e, Variant("DEF2G34")})},
      {"outvntVeiculoID", values({Variant(1), e, Variant(2)})},
      {"outvntMotoristaID", values({Variant(1), e, Variant(2)})},
      {"outvntMotoristaVeiculo",
       values({Variant("José - ABC1D23"), e, Variant("Maria - DEF2G34")})},
      {"outvntCarreta1ID", values({Variant(3), e, e})},
      {"outvntCarreta1", values({Variant("CRT1A11"), e, e})},
      {"outvntCarreta2ID", values({Variant(4), e, e})},
      {"outvntCarreta2", values({Variant("CRT2B22"), e, e})},
      {"CarretaID", values({Variant(3), e, Variant(5)})},
      {"Carreta", values({Variant("CRT1A11"), e, Variant("CRT3C33")})},
  };
  for (const auto& [name, expected] : arrays) EXPECT_EQ(elements(load[name]), expected) << name;
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
  EXPECT_EQ(load["outvntFORNECEDOR"], Variant("do chamador"));
  // An empty container list: a count of 1 and one Empty row in every array.
  EXPECT_EQ(load["outvntQtde_Sol_Cont"], Variant(1));
  for (const char* name : {"outarrvntSOLICIT_EMBARQUE_CONTAINER_ID", "outarrvntNUM_CONTAINER",
                           "outarrvntTara", "arrTab_Tipo_Container_ID", "OUTarrPeso_Carga",
                           "OUTarrValor_NF", "outvntVeiculo", "CarretaID", "Carreta"}) {
    EXPECT_EQ(elements(load[name]), values({Variant()})) << name;
  }
  EXPECT_EQ(load["ouvntObserv"], Variant("do chamador"));
  // No CTAC row: flag "N", document number untouched.
  EXPECT_EQ(load["outvntflag_ctac_os"], Variant("N"));
  EXPECT_EQ(load["outvntNum_docto_Transp"], Variant("do chamador"));
  EXPECT_EQ(load["outvntIndic_Mostra_Campo_Terminal"], Variant("N"));
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
      // The load's own statements, then the error log's row for a trapped
      // error (the replay has no answer left for it, which the writer
      // ignores).
      auto texts = replay.texts();
      const bool logged = !c.detail.empty();
      ASSERT_EQ(texts.size(), c.statements + (logged ? 1 : 0));
      if (logged) {
        EXPECT_EQ(texts.back().rfind("INSERT INTO LOG_MSG", 0), 0u);
      }
    }
  }
}

// A header step that fails leaves nothing half-filled: the container list
// is not even asked for. One that succeeds keeps its outputs when a later
// step fails.
TEST(OrderLoad, OutputsOfEarlierStepsStay) {
  ReplayFixture replay(json::array({header(), db_error("x", 1)}));
  OrderLoad load(replay.connection(), 2, Variant(101));
  EXPECT_EQ(load.call(), kFailed);
  EXPECT_EQ(load["outvntnum_os"], Variant("OS-2026-01001"));
  EXPECT_TRUE(load["outvntQtde_Sol_Cont"].is_empty());
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
  // Only a "retorno" that reads as 0 is success; none of the failures
  // writes a message.
  const struct {
    json answer;
    bool written;
  } answers[] = {
      {rows({"retorno"}, {{"0"}}), true},
      {rows({"retorno"}, {{0.0}}), true},
      {rows({"retorno", "Msg_Ret"}, {{1, "Ordem Serviço Tipo não encontrada."}}), false},
      {rows({"retorno"}, {{"abc"}}), false},
      {rows({"retorno"}, {}), false},
      {no_result_set(), false},
  };
  for (const auto& a : answers) {
    SCOPED_TRACE(a.answer.dump());
    ReplayFixture replay(json::array({a.answer}));
    CommonArgs c(replay.connection(), 1);
    c.message = Variant("antes");
    EXPECT_EQ(write_fields(c, Variant(""), Variant("")), a.written);
    EXPECT_EQ(c.message, Variant("antes"));
  }
}

TEST(OrderFields, WriteTrap) {
  for (int user : {2, 1}) {
    ReplayFixture replay(json::array({db_error("Conversão falhou", 8114)}));
    CommonArgs c(replay.connection(), user);
    EXPECT_FALSE(write_fields(c, Variant(""), Variant("")));
    const std::string detail =
        " - T318QDR.mAltera_Campos_ORDEM_SERVICO_TIPO (Conversão falhou : 8114)   No Nº "
        "2strsq: EXEC SP_050_GRA_FECHA_OS_TIPO03 155, '2026/11/20 08:00', '2026/11/20 17:30', "
        "null, null, 2, 'ABC1D23', " +
        std::to_string(user) + ", 1, 'NF-777'";
    EXPECT_EQ(c.message, Variant(user == 1 ? kUnavailable + detail : kUnavailable));
  }
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

  // No result set at all is a trapped error: false, and no message.
  c.message = Variant("antes");
  EXPECT_FALSE(run());
  EXPECT_EQ(c.message, Variant("antes"));
  // ...but the error log has its row.
  const auto texts = replay.texts();
  ASSERT_EQ(texts.size(), 4u);
  EXPECT_EQ(texts[0], "EXEC SP_050_CONS_TIPO_OS_FRAC01   1009");
  EXPECT_EQ(texts[3].rfind("INSERT INTO LOG_MSG", 0), 0u);
}

TEST(OrderFields, SystemParameter) {
  const std::string none =
      "Problemas na determinação do Parâmetros do sistema. Contacte o Administrador do Sistema.";
  const std::string sql = "EXEC SP_NVT_CON_PARAMETRO_SISTEMA 1334";
  const struct {
    const char* what;
    json answer;
    bool found;
    Variant value;
    std::string message;
    std::string detail;
  } cases[] = {
      {"value", rows({"PARAMETRO"}, {{"24"}}), true, Variant("24"), "antes", ""},
      {"number", rows({"PARAMETRO"}, {{24}}), true, Variant("24"), "antes", ""},
      {"null", rows({"PARAMETRO"}, {{nullptr}}), true, Variant(""), "antes", ""},
      {"no row", rows({"PARAMETRO"}, {}), false, Variant("antes"), none,
       " - ORS.EOF na rotina mVerifica_Tab_Parametro_Sistema, sql: " + sql},
      {"no result set", no_result_set(), false, Variant("antes"), none,
       " - oRS.State = 0 na mVerifica_Tab_Parametro_Sistema mConsulta_Campos_Tipo_OS, sql: " + sql},
      {"error", db_error("Falhou", 50000), false, Variant("antes"), kUnavailable,
       " - T318QDR.mVerifica_Tab_Parametro_Sistema (Falhou : 50000)   No Nº 2strsq: " + sql},
  };
  for (const auto& k : cases) {
    for (int user : {2, 1}) {
      SCOPED_TRACE(std::string(k.what) + ", user " + std::to_string(user));
      ReplayFixture replay(json::array({k.answer}));
      CommonArgs c(replay.connection(), user);
      c.message = Variant("antes");
      Variant number(1334), value("antes");
      EXPECT_EQ(closing::mVerifica_Tab_Parametro_Sistema(c.connection, c.user, c.company, c.kind,
                                                         c.product, number, value, c.message),
                k.found);
      EXPECT_EQ(value, k.value);
      EXPECT_EQ(c.message, Variant(user == 1 ? k.message + k.detail : k.message));
    }
  }
}

TEST(OrderFields, VasTerminal) {
  const std::string sql = "EXEC SP_050_CONS_TERMINAL_VAS_OS01 1009";
  const struct {
    const char* what;
    json answer;
    bool found;
    Variant terminal;
    std::string message;
    std::string detail;
  } cases[] = {
      {"row", rows({"FORNECEDOR_ID"}, {{30}}), true, Variant(30), "antes", ""},
      {"null", rows({"FORNECEDOR_ID"}, {{nullptr}}), true, Variant(0), "antes", ""},
      // No result set at all is accepted as "no terminal".
      {"no result set", no_result_set(), true, Variant(0), "antes", ""},
      {"no row", rows({"FORNECEDOR_ID"}, {}), false, Variant(-1),
       "Acesso aos dados do terminal VAS não disponível. Contacte o Administrador do Sistema.",
       " - ORS.EOF na rotina mBusca_Terminal_VAS, sql: " + sql},
      {"error", db_error("Caiu", 10054), false, Variant(-1),
       "Acesso aos dados do terminal VAS não disponível. Favor tentar mais tarde.",
       " - T318QDR.mBusca_Terminal_VAS (Caiu : 10054)   No Nº 2strsq: " + sql},
  };
  for (const auto& k : cases) {
    for (int user : {2, 1}) {
      SCOPED_TRACE(std::string(k.what) + ", user " + std::to_string(user));
      ReplayFixture replay(json::array({k.answer}));
      CommonArgs c(replay.connection(), user);
      c.message = Variant("antes");
      Variant order(1009), terminal(-1);
      EXPECT_EQ(closing::mBusca_Terminal_VAS(c.connection, c.user, c.company, c.kind, c.product,
                                             order, terminal, c.message),
                k.found);
      EXPECT_EQ(terminal, k.terminal);
      EXPECT_EQ(c.message, Variant(user == 1 ? k.message + k.detail : k.message));
    }
  }
}

}  // namespace
}  // namespace qdr
