#include "infra/logging.h"

#include <gtest/gtest.h>

#include <regex>

#include "infra/vb.h"
#include "tests/support/replay_fixture.h"

namespace qdr {
namespace {

using nlohmann::json;
using test::db_error;
using test::no_result_set;
using test::ReplayFixture;
using test::rows;
using Texts = std::vector<std::string>;

// A variant as failure output can show it.
std::string shown(const Variant& v) {
  if (v.type() == VarType::String) return "\"" + v.as_string() + "\"";
  if (v.type() == VarType::Long) return std::to_string(v.as_long());
  return "subtype " + std::to_string(static_cast<int>(v.type()));
}

std::string repeat(const std::string& piece, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += piece;
  return out;
}

const std::string kInsert =
    "INSERT INTO LOG_MSG ( TAB_TIPO_MSG_ID, USUARIO_INTERNET_ID ,  DATA_LOG    ,  MSG01       , "
    " MSG02       ,  MSG03       ,  MSG04       ,  MSG05       )  VALUES ( ";

// What one call of the error-log writer sent.
Texts logged(const Variant& kind, const Variant& user, const Variant& msg_kind,
             const std::string& text, const json& answer = no_result_set()) {
  ReplayFixture replay(json::array({answer}));
  gGrava_Log_Msg(kind, Variant(replay.connection()), user, msg_kind, Variant(text));
  return replay.texts();
}

TEST(ErrorLog, InsertText) {
  const std::string a255 = repeat("ã", 255);  // two bytes each
  struct Case {
    Variant kind, user, msg_kind;
    std::string text, values;
  };
  const Case cases[] = {
      {"SQLSERVER", 2, 1, "Falha", "1 , 2 ,  GETDATE() , 'Falha' , null , null , null , null"},
      {"sqlserver", 2, 1, "x", "1 , 2 ,  '2002/01/01' , 'x' , null , null , null , null"},
      {"POSTGRES", 2, 1, "x", "1 , 2 ,  '2002/01/01' , 'x' , null , null , null , null"},
      // ids: the leading number when numeric, else 0, and 0 goes as null
      {"SQLSERVER", " 42 ", "abc", "x", "null , 42 ,  GETDATE() , 'x' , null , null , null , null"},
      {"SQLSERVER", Variant::null(), Variant(), "x",
       "null , null ,  GETDATE() , 'x' , null , null , null , null"},
      // the ten characters are dropped
      {"SQLSERVER", 2, 1, "O'Brien (erro); 50% <x> & \"y\" + z",
       "1 , 2 ,  GETDATE() , 'OBrien erro 50 x  y  z' , null , null , null , null"},
      // 300 characters (600 bytes): 255 and 45
      {"SQLSERVER", 2, 1, repeat("ç", 300),
       "1 , 2 ,  GETDATE() , '" + repeat("ç", 255) + "' , '" + repeat("ç", 45) +
           "' , null , null , null"},
      // beyond 1,275 characters: dropped
      {"SQLSERVER", 2, 1, repeat(a255, 5) + "resto",
       "1 , 2 ,  GETDATE() , '" + a255 + "' , '" + a255 + "' , '" + a255 + "' , '" + a255 +
           "' , '" + a255 + "'"},
      // an empty text still leaves a row
      {"SQLSERVER", 2, 1, "()", "1 , 2 ,  GETDATE() , null , null , null , null , null"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.values.substr(0, 60));
    EXPECT_EQ(logged(c.kind, c.user, c.msg_kind, c.text), Texts{kInsert + c.values + " ) "});
  }
}

TEST(ErrorLog, OracleDateIsTheLocalTime) {
  const auto stamp = [] {
    return vb::format_date(Variant::date(vb::now()), "yyyy/mm/dd hh:mm:ss");
  };
  const std::string before = stamp();
  const Texts texts = logged(Variant("ORACLE"), Variant(2), Variant(1), "x");
  const std::string after = stamp();
  std::smatch m;
  ASSERT_EQ(texts.size(), 1u);
  ASSERT_TRUE(std::regex_match(
      texts[0], m,
      std::regex(
          R"((.*)1 , 2 ,  TO_DATE\('(.{19})' , 'YYYY/MM/DD hh24:mi:ss'\) , 'x' , null , null , null , null \) )")));
  EXPECT_EQ(m[1].str(), kInsert);
  EXPECT_LE(before, m[2].str());
  EXPECT_GE(after, m[2].str());
}

TEST(ErrorLog, WritesNothingAndNeverRaises) {
  for (const Variant& kind : {Variant(""), Variant("   "), Variant::null()})
    EXPECT_EQ(logged(kind, Variant(2), Variant(1), "m"), Texts{});
  for (const Variant& connection : {Variant(""), Variant("  "), Variant("Provider=Nenhum;")})
    gGrava_Log_Msg(Variant("SQLSERVER"), connection, Variant(2), Variant(1), Variant("m"));
  // A failing or answering statement is as good as a silent one.
  EXPECT_EQ(logged(Variant("SQLSERVER"), 2, 1, "m", db_error("sem LOG_MSG")).size(), 1u);
  EXPECT_EQ(logged(Variant("SQLSERVER"), 2, 1, "m", rows({"X"}, {{1}})).size(), 1u);
}

struct CounterRun {
  bool ok;
  Variant value{"nada"}, message{"antes"};
  Texts texts;
};

CounterRun counter(const json& script) {
  ReplayFixture replay(script);
  CounterRun run;
  run.ok =
      gAtualiza_infra_ids(Variant(replay.connection()), "log_gerador_id", run.value, run.message);
  run.texts = replay.texts();
  return run;
}

const std::string kSelect = "SELECT  log_gerador_id FROM infra_ids ";
const std::string kUpdate = "UPDATE infra_ids SET log_gerador_id = 42";

TEST(Counter, AdvancesByOne) {
  // a number, a text with blanks, a counter never set (Null)
  for (const auto& [current, next] : {std::pair{json(41), 42}, {json(" 41 "), 42}, {json(), 1}}) {
    const auto run = counter(json::array({rows({"LOG_GERADOR_ID"}, {{current}}), no_result_set()}));
    EXPECT_TRUE(run.ok);
    EXPECT_EQ(shown(run.value), std::to_string(next));
    EXPECT_EQ(shown(run.message), "\"antes\"");
    EXPECT_EQ(run.texts.at(0), kSelect);
  }
  EXPECT_EQ(counter(json::array({rows({"log_gerador_id"}, {{41}}), no_result_set()})).texts,
            (Texts{kSelect, kUpdate}));
}

TEST(Counter, Failures) {
  const std::string unavailable =
      "Acesso aos SQL não disponível. Favor tentar mais tarde. KRN_SQL1.gAtualiza_infra_ids ( ";
  const std::pair<json, std::string> cases[] = {
      {json::array({rows({"log_gerador_id"}, {})}),
       "Não há registro no banco de dados na tabela Infra_ids. "},
      {json::array({db_error("relation infra_ids does not exist", 7)}),
       unavailable + "7 : relation infra_ids does not exist)   no nº 1 strsq: " + kSelect},
      {json::array({rows({"log_gerador_id"}, {{2147483647}})}),
       unavailable + "6 : Overflow)   no nº 3 strsq: " + kSelect},
      {json::array({rows({"log_gerador_id"}, {{41}}), db_error("deadlock", 1205)}),
       unavailable + "1205 : deadlock)   no nº 4 strsq: " + kUpdate},
  };
  for (const auto& [script, message] : cases) {
    SCOPED_TRACE(message);
    const auto run = counter(script);
    EXPECT_FALSE(run.ok);
    EXPECT_EQ(shown(run.message), shown(Variant(message)));
    EXPECT_EQ(shown(run.value), "\"nada\"");
    EXPECT_EQ(run.texts.size(), script.size());  // nothing after the failure
  }
}

TEST(ActivityLog, CallsTheProcedure) {
  const std::pair<json, int32_t> cases[] = {
      {rows({"retorno"}, {{3}}), 3},  // the answer row's retorno comes back
      {db_error("falhou"), 9},        // no answer: retorno kept, false
      {no_result_set(), 9},
      {rows({"outro"}, {{0}}), 9},
  };
  for (const auto& [answer, expected] : cases) {
    SCOPED_TRACE(answer.dump());
    ReplayFixture replay(json::array({answer}));
    int32_t table = 1, action = 4, user = 2, record = -3, retorno = 9;
    EXPECT_EQ(
        gInclui_Log_Sistema(Variant(replay.connection()), table, action, user, record, retorno),
        expected != 9);
    EXPECT_EQ(retorno, expected);
    EXPECT_EQ(replay.texts(),
              Texts{"EXEC SP_KRN_INC_LOG_SISTEMA2  @Tabela_Sistema_Id = 1, @Usuario_Id = 2, "
                    "@Registro_Id = -3, @Tab_Tipo_Acao_Id = 4, @Retorno = 9"});
  }
}

}  // namespace
}  // namespace qdr
