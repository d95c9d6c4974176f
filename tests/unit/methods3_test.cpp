// The incident type list, incident recording and port lookup through the
// public class, against scripted data sources.

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "qdr/qdr.h"
#include "tests/support/replay_fixture.h"

namespace qdr {
namespace {

using nlohmann::json;
using test::db_error;
using test::no_result_set;
using test::ReplayFixture;
using test::rows;
using Texts = std::vector<std::string>;

const Variant kOk = Variant::integer(0);
const Variant kFailed = Variant::integer(10);

const std::string kInclusaoFalha =
    "Problemas na inclusão do Incidente. Contacte o Administrador do Sistema.";

// Statements other than the error log's INSERT.
Texts calls(const ReplayFixture& replay) {
  Texts out;
  for (const auto& text : replay.texts())
    if (text.rfind("INSERT INTO LOG_MSG", 0) != 0) out.push_back(text);
  return out;
}

size_t log_rows(const ReplayFixture& replay) {
  return replay.texts().size() - calls(replay).size();
}

Variant list(std::initializer_list<Variant> items) {
  Variant out = Variant::array(0, static_cast<int32_t>(items.size()) - 1);
  int32_t i = 0;
  for (const Variant& item : items) out.at(i++) = item;
  return out;
}

// The arguments of each routine, outputs preset to markers so that "left
// alone" can be seen.
struct Lista {
  Variant conecta, base{"SQLSERVER"}, usuario{2}, tam{"antes"}, ids{list({"x"})}, desc{list({"x"})},
      sel{list({"x"})}, ident{102}, just{list({"x"})}, canhoto{list({"x"})}, msg{"antes"},
      cadastro{list({"x"})};
  explicit Lista(const ReplayFixture& replay) : conecta(replay.connection()) {}
  Variant call() {
    return QDR().gMonta_Lista_Tab_Tipo_Incidente(conecta, base, usuario, tam, ids, desc, sel, ident,
                                                 just, canhoto, msg, cadastro);
  }
};

// By default one ticked line of type 12.
struct Gravacao {
  Variant conecta, base{"SQLSERVER"}, usuario{2}, ident{102}, ids{list({"12"})}, sel{list({"S"})},
      grava_obs{"S"}, tam{1}, obs{"Cliente avisado"}, just{list({"Amassado na lateral"})},
      msg{"antes"}, tipo_os{2}, cadastro{list({"A"})};
  explicit Gravacao(const ReplayFixture& replay) : conecta(replay.connection()) {}
  Variant call() {
    return QDR().gGrava_Incidente(conecta, base, usuario, ident, ids, sel, grava_obs, tam, obs,
                                  just, msg, tipo_os, cadastro);
  }
};

struct Portos {
  Variant usuario{2}, conecta, base{"SQLSERVER"}, ponto{"antes"}, tam{"antes"}, ids{list({"x"})},
      msg{"antes"}, nomes{list({"x"})};
  explicit Portos(const ReplayFixture& replay) : conecta(replay.connection()) {}
  Variant call() {
    return QDR().gConsulta_Porto_Ponto(usuario, conecta, base, ponto, tam, ids, msg, nomes);
  }
};

const std::vector<std::string> kListaColunas = {"tab_tipo_incidente_id", "descricao",
                                                "Flag_Selecionado",      "justificativa",
                                                "flag_contr_canhoto",    "flag_tipo_cadastro"};
const std::vector<std::string> kPortoColunas = {"PONTO_OPERACAO_ID", "PORTO_ID", "nome_porto"};
const json kRetornoZero = rows({"retorno", "Msg_Ret"}, {{0, "ok"}});

// --- Incident type list ------------------------------------------------------

// The list's record and the lookup's user go as a number, or as null when
// their value is zero.
TEST(IncidentTypeList, CommandTextPerIdentifier) {
  const std::pair<Variant, std::string> table[] = {
      {Variant(102), "102"}, {Variant("103"), "103"},  {Variant(0), "null"},
      {Variant(""), "null"}, {Variant("abc"), "null"}, {Variant::null(), "null"},
      {Variant(), "null"},  // Empty
  };
  for (const auto& [id, literal] : table) {
    SCOPED_TRACE(literal);
    ReplayFixture replay(json::array({rows(kListaColunas, {})}));
    Lista lista(replay);
    lista.ident = id;
    EXPECT_EQ(lista.call(), kOk);
    EXPECT_EQ(calls(replay),
              Texts{"EXECUTE SP_050_CON_LISTA_TIPO_INCIDENTE_OS01 " + literal + " "});
    // An empty list succeeds and leaves every output as the caller had it.
    EXPECT_EQ(lista.tam, Variant("antes"));
    EXPECT_EQ(lista.ids, list({"x"}));
    EXPECT_EQ(lista.cadastro, list({"x"}));
    EXPECT_EQ(lista.msg, Variant("antes"));

    ReplayFixture ports(json::array({rows(kPortoColunas, {{1, 11, "Porto de Santos"}})}));
    Portos p(ports);
    p.usuario = id;
    EXPECT_EQ(p.call(), kOk);
    EXPECT_EQ(calls(ports), Texts{"EXEC SP_050_CON_PORTO_PONTO01   " + literal});
  }
}

TEST(IncidentTypeList, RowsFillTheParallelArrays) {
  // Column names in other cases than the procedure's: found all the same.
  ReplayFixture replay(
      json::array({rows({"TAB_TIPO_INCIDENTE_ID", "Descricao", "flag_selecionado", "JUSTIFICATIVA",
                         "Flag_Contr_Canhoto", "FLAG_TIPO_CADASTRO"},
                        {{11, "Atraso na entrega", "N", nullptr, "N", "A"},
                         {"15", "Canhoto não devolvido", "S", "Cliente fechado", "S", "A"},
                         {nullptr, nullptr, nullptr, "", nullptr, nullptr}})}));
  Lista lista(replay);
  lista.ids = list({"a", "b", "c", "d", "e"});  // former contents are discarded
  EXPECT_EQ(lista.call(), kOk);
  EXPECT_EQ(lista.tam, Variant::long_integer(3));
  EXPECT_EQ(lista.ids, list({11, "15", Variant::integer(0)}));  // a null id reads 0
  EXPECT_EQ(lista.desc, list({"Atraso na entrega", "Canhoto não devolvido", ""}));
  EXPECT_EQ(lista.sel, list({"N", "S", ""}));
  EXPECT_EQ(lista.just, list({"", "Cliente fechado", ""}));
  EXPECT_EQ(lista.canhoto, list({"N", "S", ""}));
  EXPECT_EQ(lista.cadastro, list({"A", "A", ""}));
  EXPECT_EQ(lista.msg, Variant("antes"));
  EXPECT_EQ(log_rows(replay), 0u);
}

// --- Incident recording ------------------------------------------------------

// Every answer is retorno 0: the text sent is the whole story.
TEST(IncidentRecording, CommandTexts) {
  const std::string no_lines =
      "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', null, 'Cliente avisado', null, null, 2, null ";
  const struct {
    const char* what;
    std::function<void(Gravacao&)> setup;
    std::string text;
  } table[] = {
      // Line 2 (nothing ticked, nothing written) is left out; line 3 counts
      // for its justification and goes as "S" because its flag holds "N";
      // line 4 counts for its justification too and, its flag empty, goes as
      // "N". Ids and kinds are trimmed.
      {"the qualifying lines",
       [](Gravacao& g) {
         g.tam = Variant("4");
         g.ids = list({"11", "12", "15", " 18 "});
         g.sel = list({"S", "", "N", ""});
         g.just = list({"", "", "Canhoto retido", "Recusa do cliente"});
         g.cadastro = list({"A", "A", "", " M"});
       },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '11,15,18', 'Cliente avisado', '|Canhoto "
       "retido|Recusa do cliente', 'S,S,N', 2, 'A,,M' "},
      {"no lines: every list goes as null", [](Gravacao& g) { g.tam = Variant(0); }, no_lines},
      {"a Null line count", [](Gravacao& g) { g.tam = Variant::null(); }, no_lines},
      {"an empty line count", [](Gravacao& g) { g.tam = Variant(""); }, no_lines},
      {"zero, empty and non-numeric ids and empty texts go as null",
       [](Gravacao& g) {
         g.ident = Variant("abc");
         g.usuario = Variant(0);
         g.grava_obs = g.obs = Variant("");
         g.tam = Variant(0);
       },
       "EXECUTE SP_050_INC_INCIDENTE01 null, null, null, null, null, null, null, null "},
      {"a single ticked line without justification sends a null justification list",
       [](Gravacao& g) { g.just = g.cadastro = list({""}); },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', null, 'S', 2, null "},
      {"type 18 kind M needs a justification only on order type 2",
       [](Gravacao& g) {
         g.tipo_os = Variant(1);
         g.ids = list({"18"});
         g.just = list({""});
         g.cadastro = list({"M"});
       },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '18', 'Cliente avisado', null, 'S', 2, 'M' "},
      {"the observation is cleaned before it is sent",
       [](Gravacao& g) { g.obs = Variant("Cliente (avisado); ok"); },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado ok', 'Amassado na "
       "lateral', 'S', 2, 'A' "},
      {"lines past the count are not read",
       [](Gravacao& g) {
         g.ids = list({"12", "15"});
         g.sel = list({"S", "S"});
         g.just = list({"a", "b"});
         g.cadastro = list({"A", "A"});
       },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', 'a', 'S', 2, 'A' "},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.what);
    ReplayFixture replay(json::array({kRetornoZero}));
    Gravacao g(replay);
    row.setup(g);
    EXPECT_EQ(g.call(), kOk);
    EXPECT_EQ(calls(replay), Texts{row.text});
    EXPECT_EQ(g.msg, Variant("antes"));
    EXPECT_EQ(log_rows(replay), 0u);
  }
}

// A failing check stops before any statement and leaves its own message.
TEST(IncidentRecording, ValidationStopsBeforeTheDatabase) {
  const struct {
    const char* what;
    std::function<void(Gravacao&)> setup;
    std::string message;
  } table[] = {
      {"a justification of 256 characters, on the line that holds it",
       [](Gravacao& g) {
         g.tam = Variant(3);
         g.ids = list({"11", "12", "15"});
         g.sel = list({"S", "S", "S"});
         g.just = list({"ok", std::string(256, 'j'), "ok"});
         g.cadastro = list({"A", "A", "A"});
       },
       "Preencha Observação Indicador (Linha 2) com, no máximo, 255 caracteres."},
      {"type 18 kind M on order type 2 requires its justification",
       [](Gravacao& g) {
         g.ids = list({"18"});
         g.just = list({""});
         g.cadastro = list({"M"});
       },
       "Preencha Observação Indicador (Linha 1)"},
      {"an observation of 301 characters",
       [](Gravacao& g) { g.obs = Variant(std::string(301, 'o')); },
       "Preencha Observação com, no máximo, 300 caracteres."},
  };
  for (const auto& row : table) {
    for (int user : {1, 2}) {
      SCOPED_TRACE(std::string(row.what) + ", user " + std::to_string(user));
      ReplayFixture replay(json::array());
      Gravacao g(replay);
      g.usuario = Variant(user);
      row.setup(g);
      EXPECT_EQ(g.call(), kFailed);
      EXPECT_EQ(g.msg, Variant(row.message));
      EXPECT_TRUE(replay.texts().empty());
    }
  }
}

// The justification is checked on a copy: a quote in it reaches the
// statement as typed, where it breaks the call, which fails as a database
// error and writes nothing.
TEST(IncidentRecording, QuoteInAJustificationIsSentAsTyped) {
  ReplayFixture replay(json::array({kRetornoZero, no_result_set()}));
  Gravacao g(replay);
  g.usuario = Variant(1);
  g.just = list({"O'K"});
  EXPECT_EQ(g.call(), kFailed);
  EXPECT_EQ(g.just, list({"O'K"}));
  const std::string message = g.msg.as_string();
  const std::string tail =
      " :  No Nº 20)SQL: EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', "
      "'O'K', 'S', 1, 'A' ";
  EXPECT_EQ(message.rfind(kInclusaoFalha + " - T318QDR.mInclui_Incidente( ", 0), 0u) << message;
  EXPECT_TRUE(message.ends_with(tail)) << message;
  EXPECT_TRUE(calls(replay).empty());
  EXPECT_EQ(log_rows(replay), 1u);
}

// --- Port lookup ---------------------------------------------------------------

TEST(PortLookup, ThreePortsWithTheOperationPoint) {
  ReplayFixture replay(
      json::array({rows(kPortoColunas, {{2, 23, "Porto de Angra dos Reis"},
                                        {7, 22, nullptr},
                                        {7, "21", "Rio de Janeiro, RJ, Brasil"}})}));
  Portos p(replay);
  EXPECT_EQ(p.call(), kOk);
  EXPECT_EQ(calls(replay), Texts{"EXEC SP_050_CON_PORTO_PONTO01   2"});
  EXPECT_EQ(p.ponto, Variant(2));  // from the first row
  EXPECT_EQ(p.tam, Variant::long_integer(3));
  EXPECT_EQ(p.ids, list({23, 22, "21"}));
  // Names pass the number normalisation: a Null name reads 0.
  EXPECT_EQ(p.nomes,
            list({"Porto de Angra dos Reis", Variant::integer(0), "Rio de Janeiro, RJ, Brasil"}));
  EXPECT_EQ(p.msg, Variant("antes"));
}

// --- Failures, one table for the three routines ------------------------------

// Runs routine Args for a user after `setup`, checks the outputs with
// `after`; gives the status and the message.
using Routine = std::function<std::pair<Variant, Variant>(const ReplayFixture&, int)>;
template <class Args>
Routine run(std::function<void(Args&)> setup = nullptr,
            std::function<void(const Args&)> after = nullptr) {
  return [setup, after](const ReplayFixture& replay, int user) {
    Args args(replay);
    args.usuario = Variant(user);
    if (setup) setup(args);
    const Variant status = args.call();
    if (after) after(args);
    return std::pair{status, args.msg};
  };
}

// Each routine's failure: its text for everyone, its detail (the failing
// step's line and the statement) for user 1 only, one error-log row.
TEST(Failures, ExactMessagesForUsersOneAndTwo) {
  const std::string closed = "Operation is not allowed when the object is closed.";
  const std::string no_column =
      "Item cannot be found in the collection corresponding to the requested name or ordinal.";
  // Each routine's text and its detail, where "USER" stands for the user id.
  using Expected = std::pair<std::string, std::string>;
  const auto lista = [](const std::string& error, int line) {
    return Expected{
        "Problemas na Montagem da Lista de Indicadores. Contacte o Administrador do Sistema.",
        " - T318QDR.mMonta_Lista_Tab_Tipo_Incidente( " + error + " :  No Nº " +
            std::to_string(line) + ")SQL: EXECUTE SP_050_CON_LISTA_TIPO_INCIDENTE_OS01 102 "};
  };
  const auto inclusao = [](const std::string& error, int line) {
    return Expected{kInclusaoFalha,
                    " - T318QDR.mInclui_Incidente( " + error + " :  No Nº " + std::to_string(line) +
                        ")SQL: EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', "
                        "'Amassado na lateral', 'S', USER, 'A' "};
  };
  // Errors in the recording's own loop are trapped there, before any
  // statement: the recording's text, its detail without a statement.
  const auto gravacao = [](const std::string& error, int line) {
    return Expected{
        "Problemas na Gravação do Incidente. Contacte o Administrador do Sistema.",
        " - T318QDR.gGrava_Incidente( " + error + " :  No Nº " + std::to_string(line) + ")SQL: "};
  };
  const auto porto = [](const std::string& error, int line) {
    return Expected{
        "Problema na Consulta do Porto e Agente relacionados ao Usuário. Contacte o "
        "Administrador do Sistema.",
        " - T318QDR.gConsulta_Porto_Ponto -(" + error + " :  No Nº " + std::to_string(line) +
            ")EXEC SP_050_CON_PORTO_PONTO01   USER"};
  };
  const auto untouched = [](const Portos& p) {
    EXPECT_EQ(p.tam, Variant("antes"));
    EXPECT_EQ(p.ponto, Variant("antes"));
    EXPECT_EQ(p.ids, list({"x"}));
    EXPECT_EQ(p.nomes, list({"x"}));
  };
  const struct {
    const char* what;
    json answer;
    Routine run;
    size_t sent;  // statements that reached the database, the log's aside
    Expected expected;
  } table[] = {
      {"list: database error", db_error("tabela inexistente", 208), run<Lista>(), 1,
       lista("tabela inexistente", 20)},
      {"list: no result set", no_result_set(), run<Lista>(), 1, lista(closed, 30)},
      {"list: a column missing", rows({"tab_tipo_incidente_id", "descricao"}, {{11, "x"}}),
       run<Lista>(), 1, lista(no_column, 60)},
      {"recording: database error", db_error("deadlock", 1205), run<Gravacao>(), 1,
       inclusao("deadlock", 20)},
      {"recording: no retorno column", rows({"Msg_Ret"}, {{"ok"}}), run<Gravacao>(), 1,
       inclusao(no_column, 50)},
      {"recording: no result set", no_result_set(), run<Gravacao>(), 1, inclusao("State = 0", 0)},
      {"recording: no row", rows({"retorno", "Msg_Ret"}, {}), run<Gravacao>(), 1,
       inclusao("Fim de Arquivo", 0)},
      {"recording: a positive retorno", rows({"retorno", "Msg_Ret"}, {{3, "listas"}}),
       run<Gravacao>(), 1, inclusao("Retorno > 0 ", 0)},
      {"recording: a negative retorno", rows({"RETORNO"}, {{-1}}), run<Gravacao>(), 1,
       inclusao("Retorno > 0 ", 0)},
      {"recording: a retorno in text", rows({"retorno"}, {{"5"}}), run<Gravacao>(), 1,
       inclusao("Retorno > 0 ", 0)},
      {"recording: more lines than the arrays hold", no_result_set(),
       run<Gravacao>([](Gravacao& g) { g.tam = Variant(2); }), 0,
       gravacao("Subscript out of range", 20)},
      {"recording: an array that is not one", no_result_set(),
       run<Gravacao>([](Gravacao& g) { g.ids = Variant("12"); }), 0, gravacao("Type mismatch", 30)},
      {"ports: database error", db_error("timeout", -2147217871), run<Portos>(), 1,
       porto("timeout", 20)},
      {"ports: no result set", no_result_set(), run<Portos>(), 1, porto(closed, 30)},
      {"ports: a column missing", rows({"PORTO_ID", "nome_porto"}, {{11, "Santos"}}), run<Portos>(),
       1, porto(no_column, 50)},
      {"ports: none for the user",
       rows(kPortoColunas, {}),
       run<Portos>(nullptr, untouched),
       1,
       {"Problemas ao identificar os Portos relacionado à Filial do Usuário.Contacte o "
        "Administrador do Sistema.",
        " - T529LW.mConsulta_Porto_Ponto -( State = 0:  No Nº 0)EXEC "
        "SP_050_CON_PORTO_PONTO01   USER"}},
  };
  for (const auto& row : table) {
    for (int user : {1, 2}) {
      SCOPED_TRACE(std::string(row.what) + ", user " + std::to_string(user));
      ReplayFixture replay(json::array({row.answer, no_result_set()}));
      const auto [status, msg] = row.run(replay, user);
      EXPECT_EQ(status, kFailed);
      auto [text, detail] = row.expected;
      if (const auto at = detail.find("USER"); at != std::string::npos)
        detail.replace(at, 4, std::to_string(user));
      EXPECT_EQ(msg, Variant(user == 1 ? text + detail : text));
      EXPECT_EQ(calls(replay).size(), row.sent);
      EXPECT_EQ(log_rows(replay), 1u);
    }
  }
}

}  // namespace
}  // namespace qdr
