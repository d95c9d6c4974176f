#include "infra/logging.h"

#include <gtest/gtest.h>

#include <regex>

#include "infra/vb.h"
#include "tests/support/replay_fixture.h"
#include "tests/support/variant_json.h"

namespace qdr {
namespace {

using nlohmann::json;
using test::db_error;
using test::no_result_set;
using test::ReplayFixture;
using test::rows;
using Texts = std::vector<std::string>;

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

TEST(Counter, AdvancesByOneOrSaysWhy) {
  const std::string select = "SELECT  log_gerador_id FROM infra_ids ";
  const std::string update = "UPDATE infra_ids SET log_gerador_id = ";
  const std::string unavailable =
      "Acesso aos SQL não disponível. Favor tentar mais tarde. KRN_SQL1.gAtualiza_infra_ids ( ";
  const struct {
    json script;
    const char* written;  // the value the UPDATE sends, nullptr when none is sent
    std::string message;  // "antes", left alone, on success
  } cases[] = {
      // a number, a text with blanks, a counter never set (Null)
      {json::array({rows({"LOG_GERADOR_ID"}, {{41}}), no_result_set()}), "42", "antes"},
      {json::array({rows({"log_gerador_id"}, {{" 41 "}}), no_result_set()}), "42", "antes"},
      {json::array({rows({"log_gerador_id"}, {{nullptr}}), no_result_set()}), "1", "antes"},
      {json::array({rows({"log_gerador_id"}, {})}), nullptr,
       "Não há registro no banco de dados na tabela Infra_ids. "},
      {json::array({db_error("relation infra_ids does not exist", 7)}), nullptr,
       unavailable + "7 : relation infra_ids does not exist)   no nº 1 strsq: " + select},
      {json::array({rows({"log_gerador_id"}, {{2147483647}})}), nullptr,
       unavailable + "6 : Overflow)   no nº 3 strsq: " + select},
      {json::array({rows({"log_gerador_id"}, {{41}}), db_error("deadlock", 1205)}), "42",
       unavailable + "1205 : deadlock)   no nº 4 strsq: " + update + "42"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    ReplayFixture replay(c.script);
    Variant value("nada"), message("antes");
    const bool ok = c.message == "antes";
    EXPECT_EQ(gAtualiza_infra_ids(Variant(replay.connection()), "log_gerador_id", value, message),
              ok);
    EXPECT_EQ(value, ok ? Variant(std::stoi(c.written)) : Variant("nada"));
    EXPECT_EQ(message, Variant(c.message));
    Texts texts{select};  // and nothing after a failure
    if (c.written) texts.push_back(update + c.written);
    EXPECT_EQ(replay.texts(), texts);
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
