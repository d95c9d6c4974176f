// The incident type list, incident recording and port lookup through the
// public class, against scripted data sources.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
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

const Variant kOk = Variant::integer(0);
const Variant kFailed = Variant::integer(10);

const std::string kListaFalha =
    "Problemas na Montagem da Lista de Indicadores. Contacte o Administrador do Sistema.";
const std::string kGravacaoFalha =
    "Problemas na Gravação do Incidente. Contacte o Administrador do Sistema.";
const std::string kInclusaoFalha =
    "Problemas na inclusão do Incidente. Contacte o Administrador do Sistema.";
const std::string kPortoFalha =
    "Problema na Consulta do Porto e Agente relacionados ao Usuário. Contacte o Administrador "
    "do Sistema.";
const std::string kSemPortos =
    "Problemas ao identificar os Portos relacionado à Filial do Usuário.Contacte o Administrador "
    "do Sistema.";

// Statements other than the error log's INSERT.
std::vector<std::string> calls(const ReplayFixture& replay) {
  std::vector<std::string> out;
  for (const auto& text : replay.texts())
    if (text.rfind("INSERT INTO LOG_MSG", 0) != 0) out.push_back(text);
  return out;
}

long log_rows(const ReplayFixture& replay) {
  const auto texts = replay.texts();
  return std::count_if(texts.begin(), texts.end(),
                       [](const std::string& t) { return t.rfind("INSERT INTO LOG_MSG", 0) == 0; });
}

Variant strings(const std::vector<std::string>& items) {
  Variant out = Variant::array(0, static_cast<int32_t>(items.size()) - 1);
  for (std::size_t i = 0; i < items.size(); ++i)
    out.at(static_cast<int32_t>(i)) = Variant(items[i]);
  return out;
}

// Arguments of gMonta_Lista_Tab_Tipo_Incidente, outputs preset to markers so
// that "left alone" can be seen.
struct Lista {
  Variant conecta;
  Variant base{"SQLSERVER"};
  Variant usuario{2};
  Variant tam{"antes"};
  Variant ids{strings({"x"})};
  Variant desc{strings({"x"})};
  Variant sel{strings({"x"})};
  Variant ident{102};
  Variant just{strings({"x"})};
  Variant canhoto{strings({"x"})};
  Variant msg{"antes"};
  Variant cadastro{strings({"x"})};

  explicit Lista(const ReplayFixture& replay) : conecta(replay.connection()) {}
  Variant call() {
    QDR qdr;
    return qdr.gMonta_Lista_Tab_Tipo_Incidente(conecta, base, usuario, tam, ids, desc, sel, ident,
                                               just, canhoto, msg, cadastro);
  }
};

// Arguments of gGrava_Incidente: by default one ticked line of type 12.
struct Gravacao {
  Variant conecta;
  Variant base{"SQLSERVER"};
  Variant usuario{2};
  Variant ident{102};
  Variant ids{strings({"12"})};
  Variant sel{strings({"S"})};
  Variant grava_obs{"S"};
  Variant tam{1};
  Variant obs{"Cliente avisado"};
  Variant just{strings({"Amassado na lateral"})};
  Variant msg{"antes"};
  Variant tipo_os{2};
  Variant cadastro{strings({"A"})};

  explicit Gravacao(const ReplayFixture& replay) : conecta(replay.connection()) {}
  Variant call() {
    QDR qdr;
    return qdr.gGrava_Incidente(conecta, base, usuario, ident, ids, sel, grava_obs, tam, obs, just,
                                msg, tipo_os, cadastro);
  }
};

struct Portos {
  Variant usuario{2};
  Variant conecta;
  Variant base{"SQLSERVER"};
  Variant ponto{"antes"};
  Variant tam{"antes"};
  Variant ids{strings({"x"})};
  Variant msg{"antes"};
  Variant nomes{strings({"x"})};

  explicit Portos(const ReplayFixture& replay) : conecta(replay.connection()) {}
  Variant call() {
    QDR qdr;
    return qdr.gConsulta_Porto_Ponto(usuario, conecta, base, ponto, tam, ids, msg, nomes);
  }
};

const std::vector<std::string> kListaColunas = {"tab_tipo_incidente_id", "descricao",
                                                "Flag_Selecionado",      "justificativa",
                                                "flag_contr_canhoto",    "flag_tipo_cadastro"};
const json kRetornoZero = rows({"retorno", "Msg_Ret"}, {{0, "ok"}});

// --- Incident type list ------------------------------------------------------

// The identifier goes as a number, or as null when its value is zero.
TEST(IncidentTypeList, CommandTextPerIdentifier) {
  const std::pair<Variant, const char*> table[] = {
      {Variant(102), "102"}, {Variant("103"), "103"},  {Variant(0), "null"},
      {Variant(""), "null"}, {Variant("abc"), "null"}, {Variant::null(), "null"},
      {Variant(), "null"},  // Empty
  };
  for (const auto& [ident, literal] : table) {
    SCOPED_TRACE(literal);
    ReplayFixture replay(json::array({rows(kListaColunas, {})}));
    Lista lista(replay);
    lista.ident = ident;
    EXPECT_EQ(lista.call(), kOk);
    EXPECT_EQ(calls(replay),
              std::vector<std::string>{
                  std::string("EXECUTE SP_050_CON_LISTA_TIPO_INCIDENTE_OS01 ") + literal + " "});
    // An empty list succeeds and leaves every output as the caller had it.
    EXPECT_EQ(lista.tam, Variant("antes"));
    EXPECT_EQ(lista.ids, strings({"x"}));
    EXPECT_EQ(lista.cadastro, strings({"x"}));
    EXPECT_EQ(lista.msg, Variant("antes"));
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
  lista.ids = strings({"a", "b", "c", "d", "e"});  // former contents are discarded
  EXPECT_EQ(lista.call(), kOk);
  EXPECT_EQ(lista.tam, Variant::long_integer(3));

  Variant ids = Variant::array(0, 2);
  ids.at(0) = Variant(11);
  ids.at(1) = Variant("15");
  ids.at(2) = Variant::integer(0);  // a null id reads 0
  EXPECT_EQ(lista.ids, ids);
  EXPECT_EQ(lista.desc, strings({"Atraso na entrega", "Canhoto não devolvido", ""}));
  EXPECT_EQ(lista.sel, strings({"N", "S", ""}));
  EXPECT_EQ(lista.just, strings({"", "Cliente fechado", ""}));
  EXPECT_EQ(lista.canhoto, strings({"N", "S", ""}));
  EXPECT_EQ(lista.cadastro, strings({"A", "A", ""}));
  EXPECT_EQ(lista.msg, Variant("antes"));
  EXPECT_EQ(log_rows(replay), 0);
}

// --- Incident recording ------------------------------------------------------

TEST(IncidentRecording, ListsBuiltFromTheQualifyingLines) {
  ReplayFixture replay(json::array({kRetornoZero}));
  Gravacao g(replay);
  g.tam = Variant("4");
  g.ids = strings({"11", "12", "15", " 18 "});
  g.sel = strings({"S", "", "N", ""});
  g.just = strings({"", "", "Canhoto retido", "Recusa do cliente"});
  g.cadastro = strings({"A", "A", "", " M"});
  EXPECT_EQ(g.call(), kOk);
  // Line 2 (nothing ticked, nothing written) is left out; line 3 counts for
  // its justification and goes as "S" because its flag holds "N"; line 4
  // counts for its justification too and, its flag empty, goes as "N".
  EXPECT_EQ(calls(replay), std::vector<std::string>{
                               "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '11,15,18', 'Cliente "
                               "avisado', '|Canhoto retido|Recusa do cliente', 'S,S,N', 2, "
                               "'A,,M' "});
  EXPECT_EQ(g.msg, Variant("antes"));
  EXPECT_EQ(log_rows(replay), 0);
}

TEST(IncidentRecording, CommandTextEdgeCases) {
  struct Row {
    const char* what;
    std::function<void(Gravacao&)> setup;
    const char* text;
  };
  const Row table[] = {
      {"no lines: every list goes as null", [](Gravacao& g) { g.tam = Variant(0); },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', null, 'Cliente avisado', null, null, 2, null "},
      {"a Null line count examines no line", [](Gravacao& g) { g.tam = Variant::null(); },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', null, 'Cliente avisado', null, null, 2, null "},
      {"an empty line count examines no line", [](Gravacao& g) { g.tam = Variant(""); },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', null, 'Cliente avisado', null, null, 2, null "},
      {"zero, empty and non-numeric ids and empty texts go as null",
       [](Gravacao& g) {
         g.ident = Variant("abc");
         g.usuario = Variant(0);
         g.grava_obs = Variant("");
         g.obs = Variant("");
         g.tam = Variant(0);
       },
       "EXECUTE SP_050_INC_INCIDENTE01 null, null, null, null, null, null, null, null "},
      {"a single ticked line without justification sends a null justification list",
       [](Gravacao& g) {
         g.just = strings({""});
         g.cadastro = strings({""});
       },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', null, 'S', 2, null "},
      {"type 18 kind M needs a justification only on order type 2",
       [](Gravacao& g) {
         g.tipo_os = Variant(1);
         g.ids = strings({"18"});
         g.just = strings({""});
         g.cadastro = strings({"M"});
       },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '18', 'Cliente avisado', null, 'S', 2, 'M' "},
      {"the observation is cleaned in place before it is sent",
       [](Gravacao& g) { g.obs = Variant("Cliente (avisado); ok"); },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado ok', 'Amassado na "
       "lateral', 'S', 2, 'A' "},
      {"lines past the count are not read",
       [](Gravacao& g) {
         g.ids = strings({"12", "15"});
         g.sel = strings({"S", "S"});
         g.just = strings({"a", "b"});
         g.cadastro = strings({"A", "A"});
       },
       "EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', 'a', 'S', 2, 'A' "},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.what);
    ReplayFixture replay(json::array({kRetornoZero}));
    Gravacao g(replay);
    row.setup(g);
    EXPECT_EQ(g.call(), kOk);
    EXPECT_EQ(calls(replay), std::vector<std::string>{row.text});
  }
}

// A failing check stops before any statement and leaves its own message.
TEST(IncidentRecording, ValidationStopsBeforeTheDatabase) {
  struct Row {
    const char* what;
    std::function<void(Gravacao&)> setup;
    std::string message;
  };
  const Row table[] = {
      {"a justification of 256 characters, on the line that holds it",
       [](Gravacao& g) {
         g.tam = Variant(3);
         g.ids = strings({"11", "12", "15"});
         g.sel = strings({"S", "S", "S"});
         g.just = strings({"ok", std::string(256, 'j'), "ok"});
         g.cadastro = strings({"A", "A", "A"});
       },
       "Preencha Observação Indicador (Linha 2) com, no máximo, 255 caracteres."},
      {"type 18 kind M on order type 2 requires its justification",
       [](Gravacao& g) {
         g.ids = strings({"18"});
         g.just = strings({""});
         g.cadastro = strings({"M"});
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

// Answers that are not retorno 0: the inclusion's text, its detail for user 1
// only, one error-log row each.
TEST(IncidentRecording, ProcedureAnswers) {
  const std::string sql =
      "SQL: EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', 'Amassado na "
      "lateral', 'S', 1, 'A' ";
  struct Row {
    const char* what;
    json answer;
    std::string detail;
  };
  const Row table[] = {
      {"no result set", no_result_set(),
       " - T318QDR.mInclui_Incidente( State = 0 :  No Nº 0)" + sql},
      {"no row", rows({"retorno", "Msg_Ret"}, {}),
       " - T318QDR.mInclui_Incidente( Fim de Arquivo :  No Nº 0)" + sql},
      {"a positive retorno", rows({"retorno", "Msg_Ret"}, {{3, "listas"}}),
       " - T318QDR.mInclui_Incidente( Retorno > 0  :  No Nº 0)" + sql},
      {"a negative retorno", rows({"RETORNO"}, {{-1}}),
       " - T318QDR.mInclui_Incidente( Retorno > 0  :  No Nº 0)" + sql},
      {"a retorno in text", rows({"retorno"}, {{"5"}}),
       " - T318QDR.mInclui_Incidente( Retorno > 0  :  No Nº 0)" + sql},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.what);
    for (int user : {1, 2}) {
      ReplayFixture replay(json::array({row.answer, no_result_set()}));
      Gravacao g(replay);
      g.usuario = Variant(user);
      EXPECT_EQ(g.call(), kFailed);
      if (user == 1) {
        EXPECT_EQ(g.msg, Variant(kInclusaoFalha + row.detail));
      } else {
        EXPECT_EQ(g.msg, Variant(kInclusaoFalha));
      }
      EXPECT_EQ(log_rows(replay), 1);
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
  g.just = strings({"O'K"});
  EXPECT_EQ(g.call(), kFailed);
  EXPECT_EQ(g.just, strings({"O'K"}));
  const std::string message = g.msg.as_string();
  EXPECT_EQ(message.rfind(kInclusaoFalha + " - T318QDR.mInclui_Incidente( ", 0), 0u) << message;
  const std::string tail =
      " :  No Nº 20)SQL: EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', "
      "'O'K', 'S', 1, 'A' ";
  ASSERT_GE(message.size(), tail.size());
  EXPECT_EQ(message.substr(message.size() - tail.size()), tail) << message;
  EXPECT_TRUE(calls(replay).empty());
  EXPECT_EQ(log_rows(replay), 1);
}

// --- Port lookup ---------------------------------------------------------------

TEST(PortLookup, ThreePortsWithTheOperationPoint) {
  ReplayFixture replay(json::array({rows({"PONTO_OPERACAO_ID", "PORTO_ID", "nome_porto"},
                                         {{2, 23, "Porto de Angra dos Reis"},
                                          {7, 22, nullptr},
                                          {7, "21", "Rio de Janeiro, RJ, Brasil"}})}));
  Portos p(replay);
  EXPECT_EQ(p.call(), kOk);
  EXPECT_EQ(calls(replay), std::vector<std::string>{"EXEC SP_050_CON_PORTO_PONTO01   2"});
  EXPECT_EQ(p.ponto, Variant(2));  // from the first row
  EXPECT_EQ(p.tam, Variant::long_integer(3));
  Variant ids = Variant::array(0, 2);
  ids.at(0) = Variant(23);
  ids.at(1) = Variant(22);
  ids.at(2) = Variant("21");
  EXPECT_EQ(p.ids, ids);
  // Names pass the number normalisation: a Null name reads 0.
  Variant nomes = Variant::array(0, 2);
  nomes.at(0) = Variant("Porto de Angra dos Reis");
  nomes.at(1) = Variant::integer(0);
  nomes.at(2) = Variant("Rio de Janeiro, RJ, Brasil");
  EXPECT_EQ(p.nomes, nomes);
  EXPECT_EQ(p.msg, Variant("antes"));
}

TEST(PortLookup, UserIdWithoutValueGoesAsNull) {
  for (const Variant& user : {Variant(0), Variant(""), Variant("abc"), Variant::null()}) {
    ReplayFixture replay(json::array(
        {rows({"PONTO_OPERACAO_ID", "PORTO_ID", "nome_porto"}, {{1, 11, "Porto de Santos"}})}));
    Portos p(replay);
    p.usuario = user;
    EXPECT_EQ(p.call(), kOk);
    EXPECT_EQ(calls(replay), std::vector<std::string>{"EXEC SP_050_CON_PORTO_PONTO01   null"});
  }
}

TEST(PortLookup, UserWithoutPorts) {
  for (int user : {1, 2}) {
    ReplayFixture replay(
        json::array({rows({"PONTO_OPERACAO_ID", "PORTO_ID", "nome_porto"}, {}), no_result_set()}));
    Portos p(replay);
    p.usuario = Variant(user);
    EXPECT_EQ(p.call(), kFailed);
    const std::string detail =
        " - T529LW.mConsulta_Porto_Ponto -( State = 0:  No Nº 0)EXEC "
        "SP_050_CON_PORTO_PONTO01   " +
        std::to_string(user);
    EXPECT_EQ(p.msg, Variant(user == 1 ? kSemPortos + detail : kSemPortos));
    EXPECT_EQ(p.tam, Variant("antes"));
    EXPECT_EQ(p.ponto, Variant("antes"));
    EXPECT_EQ(p.ids, strings({"x"}));
    EXPECT_EQ(p.nomes, strings({"x"}));
    EXPECT_EQ(log_rows(replay), 1);
  }
}

// --- Trapped errors, one table for the three methods -------------------------

std::pair<Variant, Variant> run_lista(const ReplayFixture& replay, int user) {
  Lista lista(replay);
  lista.usuario = Variant(user);
  const Variant status = lista.call();
  return {status, lista.msg};
}

std::pair<Variant, Variant> run_gravacao(const ReplayFixture& replay, int user) {
  Gravacao g(replay);
  g.usuario = Variant(user);
  const Variant status = g.call();
  return {status, g.msg};
}

std::pair<Variant, Variant> run_portos(const ReplayFixture& replay, int user) {
  Portos p(replay);
  p.usuario = Variant(user);
  const Variant status = p.call();
  return {status, p.msg};
}

const std::string kClosed = "Operation is not allowed when the object is closed.";
const std::string kNoColumn =
    "Item cannot be found in the collection corresponding to the requested name or ordinal.";

// Each routine's own trap: its text for everyone, its detail (with the line
// of the failing step and the statement) for user 1 only, one log row.
TEST(TrappedErrors, ExactMessagesForUsersOneAndTwo) {
  struct Row {
    const char* what;
    json answer;
    std::function<std::pair<Variant, Variant>(const ReplayFixture&, int)> run;
    std::string user_text;
    std::string detail;  // "USER" stands for the user id
  };
  const std::string lista_sql = ")SQL: EXECUTE SP_050_CON_LISTA_TIPO_INCIDENTE_OS01 102 ";
  const std::string portos_sql = ")EXEC SP_050_CON_PORTO_PONTO01   USER";
  const Row table[] = {
      {"list: database error", db_error("tabela inexistente", 208), run_lista, kListaFalha,
       " - T318QDR.mMonta_Lista_Tab_Tipo_Incidente( tabela inexistente :  No Nº 20" + lista_sql},
      {"list: no result set", no_result_set(), run_lista, kListaFalha,
       " - T318QDR.mMonta_Lista_Tab_Tipo_Incidente( " + kClosed + " :  No Nº 30" + lista_sql},
      {"list: a column missing", rows({"tab_tipo_incidente_id", "descricao"}, {{11, "x"}}),
       run_lista, kListaFalha,
       " - T318QDR.mMonta_Lista_Tab_Tipo_Incidente( " + kNoColumn + " :  No Nº 60" + lista_sql},
      {"recording: database error", db_error("deadlock", 1205), run_gravacao, kInclusaoFalha,
       " - T318QDR.mInclui_Incidente( deadlock :  No Nº 20)SQL: EXECUTE SP_050_INC_INCIDENTE01 "
       "102, 'S', '12', 'Cliente avisado', 'Amassado na lateral', 'S', USER, 'A' "},
      {"recording: no retorno column", rows({"Msg_Ret"}, {{"ok"}}), run_gravacao, kInclusaoFalha,
       " - T318QDR.mInclui_Incidente( " + kNoColumn +
           " :  No Nº 50)SQL: EXECUTE SP_050_INC_INCIDENTE01 102, 'S', '12', 'Cliente avisado', "
           "'Amassado na lateral', 'S', USER, 'A' "},
      {"ports: database error", db_error("timeout", -2147217871), run_portos, kPortoFalha,
       " - T318QDR.gConsulta_Porto_Ponto -(timeout :  No Nº 20" + portos_sql},
      {"ports: no result set", no_result_set(), run_portos, kPortoFalha,
       " - T318QDR.gConsulta_Porto_Ponto -(" + kClosed + " :  No Nº 30" + portos_sql},
      {"ports: a column missing", rows({"PORTO_ID", "nome_porto"}, {{11, "Santos"}}), run_portos,
       kPortoFalha,
       " - T318QDR.gConsulta_Porto_Ponto -(" + kNoColumn + " :  No Nº 50" + portos_sql},
  };
  for (const auto& row : table) {
    for (int user : {1, 2}) {
      SCOPED_TRACE(std::string(row.what) + ", user " + std::to_string(user));
      ReplayFixture replay(json::array({row.answer, no_result_set()}));
      const auto [status, msg] = row.run(replay, user);
      EXPECT_EQ(status, kFailed);
      std::string detail = row.detail;
      if (const auto at = detail.find("USER"); at != std::string::npos)
        detail.replace(at, 4, std::to_string(user));
      EXPECT_EQ(msg, Variant(user == 1 ? row.user_text + detail : row.user_text));
      EXPECT_EQ(log_rows(replay), 1);
    }
  }
}

// An error in the recording's own loop is trapped there, before any
// statement: the recording's text, its detail without a statement.
TEST(TrappedErrors, RecordingLoopErrors) {
  struct Row {
    const char* what;
    std::function<void(Gravacao&)> setup;
    std::string detail;
  };
  const Row table[] = {
      {"more lines than the arrays hold", [](Gravacao& g) { g.tam = Variant(2); },
       " - T318QDR.gGrava_Incidente( Subscript out of range :  No Nº 20)SQL: "},
      {"an array that is not one", [](Gravacao& g) { g.ids = Variant("12"); },
       " - T318QDR.gGrava_Incidente( Type mismatch :  No Nº 30)SQL: "},
  };
  for (const auto& row : table) {
    for (int user : {1, 2}) {
      SCOPED_TRACE(std::string(row.what) + ", user " + std::to_string(user));
      ReplayFixture replay(json::array({no_result_set()}));
      Gravacao g(replay);
      g.usuario = Variant(user);
      row.setup(g);
      EXPECT_EQ(g.call(), kFailed);
      EXPECT_EQ(g.msg, Variant(user == 1 ? kGravacaoFalha + row.detail : kGravacaoFalha));
      EXPECT_TRUE(calls(replay).empty());
      EXPECT_EQ(log_rows(replay), 1);
    }
  }
}

}  // namespace
}  // namespace qdr
