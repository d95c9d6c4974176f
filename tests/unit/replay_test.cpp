#include "infra/replay.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "infra/backend_registry.h"
#include "infra/json_variant.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

using json::Json;

// A script in a fresh file and a journal path beside it.
struct Replay {
  std::string script = test::temp_path("replay-script");
  std::string journal = test::temp_path("replay-journal");

  explicit Replay(const std::string& responses) { write(responses); }
  void write(const std::string& responses) const { std::ofstream(script) << responses; }
  std::string connection() const {
    return "Provider=Replay;Script=" + script + ";Journal=" + journal;
  }
  std::vector<Json> journal_lines() const {
    std::vector<Json> lines;
    std::ifstream in(journal);
    for (std::string line; std::getline(in, line);) lines.push_back(Json::parse(line));
    return lines;
  }
};

Statement text(std::string sql, std::vector<Parameter> parameters = {}) {
  Statement s;
  s.text = std::move(sql);
  s.parameters = std::move(parameters);
  return s;
}

// "number|sqlstate|description" of the DatabaseError that `f` raises.
template <typename F>
std::string database_error(F&& f) {
  try {
    f();
  } catch (const DatabaseError& e) {
    return std::to_string(e.number()) + "|" + e.sqlstate() + "|" + e.what();
  }
  return "no error";
}

TEST(Replay, AnswersStatementsInOrder) {
  Replay r(R"([
    {"match": "exec sp_a", "columns": ["ID", "NOME", "VALOR", "QUANDO"],
     "rows": [[1, "Santos", {"$type": "Currency", "value": 2.5},
               {"$type": "Date", "value": "2024-02-29T13:45:00"}],
              [2147483648, null, 1.0, true]]},
    {"noResultSet": true},
    {"columns": ["X"]}
  ])");
  auto session = open_session(r.connection());

  const auto first = session->execute(text("EXEC SP_A 1"));
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first->columns, (std::vector<std::string>{"ID", "NOME", "VALOR", "QUANDO"}));
  ASSERT_EQ(first->rows.size(), 2u);
  EXPECT_EQ(first->rows[0], (std::vector<Variant>{Variant::long_integer(1), Variant("Santos"),
                                                  Variant::currency_scaled(25000),
                                                  Variant::date(45351 + (13 * 60 + 45) / 1440.0)}));
  // An integral number too large for a Long, and 1.0, are Doubles.
  EXPECT_EQ(first->rows[1], (std::vector<Variant>{Variant::real(2147483648.0), Variant::null(),
                                                  Variant::real(1.0), Variant::boolean(true)}));

  EXPECT_FALSE(session->execute(text("UPDATE T SET A = 1")).has_value());
  const auto third = session->execute(text("SELECT X FROM T"));
  ASSERT_TRUE(third.has_value());
  EXPECT_TRUE(third->rows.empty());
}

TEST(Replay, FailuresAreDatabaseErrors) {
  Replay r(R"([
    {"error": "Violação de chave", "number": 2627, "sqlstate": "23000"},
    {"error": "Sem número"},
    {"match": "EXEC SP_B", "noResultSet": true},
    {"columns": ["A"]}
  ])");
  auto session = open_session(r.connection());
  const struct {
    const char* statement;
    std::string expected;
  } cases[] = {
      {"EXEC SP_A", "2627|23000|Violação de chave"},
      {"EXEC SP_A", "-2147467259||Sem número"},
      {"EXEC SP_C 1", "-2147467259||Replay script '" + r.script +
                          "', response 3 expects a statement starting with \"EXEC SP_B\", "
                          "not: EXEC SP_C 1"},
      // The mismatch used its response: the next statement gets the next one.
      {"EXEC SP_B", "no error"},
      {"EXEC SP_D",
       "-2147467259||Replay script '" + r.script + "' has no response left for: EXEC SP_D"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(database_error([&] { session->execute(text(c.statement)); }), c.expected)
        << c.statement;
  // Every statement was journalled, the failed ones included.
  EXPECT_EQ(r.journal_lines().size(), 5u);
}

TEST(Replay, JournalsEveryStatementExactly) {
  Replay r(R"([{"noResultSet": true}, {"noResultSet": true}])");
  auto session = open_session(r.connection());
  session->execute(
      text("EXEC SP_LOG @Usuario_Id = 7, 'd''Ávila', NULL, 2.5", {{"@Usuario_Id", 3, 0, Variant(7)},
                                                                  {"", 200, 8, Variant("d'Ávila")},
                                                                  {"", 0, 0, Variant::null()},
                                                                  {"", 5, 0, Variant(2.5)}}));
  Statement command;
  command.kind = Statement::Kind::Command;
  command.text = "{ call SP_GRAVA(?, ?, ?) }";
  command.procedure = "SP_GRAVA";
  command.parameters = {{"@Data", 135, 0, Variant::date(45351.5)},
                        {"@Valor", 6, 0, Variant::currency_scaled(123456)},
                        {"@Obs", 200, 10, Variant()}};
  session->execute(command);

  const auto expected = Json::parse(R"([
    {"kind": "text", "text": "EXEC SP_LOG @Usuario_Id = 7, 'd''Ávila', NULL, 2.5",
     "procedure": null,
     "parameters": [{"name": "@Usuario_Id", "type": 3, "size": 0, "value": 7},
                    {"name": "", "type": 200, "size": 8, "value": "d'Ávila"},
                    {"name": "", "type": 0, "size": 0, "value": null},
                    {"name": "", "type": 5, "size": 0, "value": 2.5}]},
    {"kind": "command", "text": "{ call SP_GRAVA(?, ?, ?) }", "procedure": "SP_GRAVA",
     "parameters": [{"name": "@Data", "type": 135, "size": 0,
                     "value": {"$type": "Date", "value": "2024-02-29T12:00:00"}},
                    {"name": "@Valor", "type": 6, "size": 0,
                     "value": {"$type": "Currency", "value": 12.3456}},
                    {"name": "@Obs", "type": 200, "size": 10, "value": {"$type": "Empty"}}]}
  ])");
  EXPECT_EQ(Json(r.journal_lines()), expected);
}

TEST(Replay, SessionsOnOneScriptShareItsPosition) {
  Replay r(R"([{"columns": ["N"], "rows": [[1]]}, {"columns": ["N"], "rows": [[2]]}])");
  auto next_n = [](const std::string& connection) {
    return open_session(connection)->execute(text("SELECT N"))->rows.at(0).at(0).as_long();
  };
  // Another spelling of the same file carries on from the same place.
  const auto path = std::filesystem::path(r.script);
  const std::string other_spelling =
      "Provider=Replay;Script=" + (path.parent_path() / "." / path.filename()).string();
  EXPECT_EQ(next_n(r.connection()), 1);
  EXPECT_EQ(next_n(other_spelling), 2);

  reset_replay_scripts();
  EXPECT_EQ(next_n(r.connection()), 1);

  // A changed file starts from its own first response.
  r.write(R"([{"columns": ["N"], "rows": [[30]]}])");
  EXPECT_EQ(next_n(r.connection()), 30);
}

TEST(Replay, BadConnectionsFailToOpen) {
  Replay r("[]");
  const std::string prefix = "-2147467259||Replay script '" + r.script + "'";
  const struct {
    std::string script;
    std::string expected;
  } cases[] = {
      {R"({"responses": []})", prefix + " must hold a list of responses"},
      {R"([{"colums": ["A"]}])", prefix + ", response 1: unknown key \"colums\""},
      {R"([{"noResultSet": true, "error": "x"}])",
       prefix + ", response 1: a response needs exactly one of \"columns\", \"noResultSet\" and "
                "\"error\""},
      {R"([{"noResultSet": true}, {"columns": ["A", "B"], "rows": [[1]]}])",
       prefix + ", response 2: row 1 must be a list of 2 values"},
  };
  for (const auto& c : cases) {
    r.write(c.script);
    EXPECT_EQ(database_error([&] { open_session(r.connection()); }), c.expected) << c.script;
  }

  r.write("[{");
  EXPECT_EQ(database_error([&] {
              open_session(r.connection());
            }).rfind(prefix + " is not valid JSON: [json.exception.parse_error.101]", 0),
            0u);
  EXPECT_EQ(database_error([] { open_session("Provider=Replay;Journal=x"); }),
            "-2147467259||Replay connection string names no Script file");
  EXPECT_EQ(database_error([] { open_session("Provider=Replay;Script=/nonexistent/s.json"); }),
            "-2147467259||Replay script '/nonexistent/s.json' cannot be read: No such file or "
            "directory");
  r.write("[]");
  EXPECT_EQ(database_error([&] {
              open_session("Provider=Replay;Script=" + r.script + ";Journal=/nonexistent/j");
            }),
            "-2147467259||Replay journal '/nonexistent/j' cannot be written: No such file or "
            "directory");
}

// The JSON form of a Variant, shared by script rows, journals and the qdr
// command (whose tests round-trip the common forms): each row decodes to
// `value` and encodes back to `canonical`.
TEST(JsonVariant, RoundTrips) {
  const struct {
    const char* json;
    Variant value;
    const char* canonical;
  } cases[] = {
      {"42.0", Variant(42.0), "42.0"},
      {"3000000000", Variant(3e9), "3000000000.0"},
      {R"({"$type":"Currency","value":7})", Variant::currency_scaled(70000),
       R"({"$type":"Currency","value":7.0})"},
      // Before day zero the time counts forward from midnight.
      {R"({"$type":"Date","value":"1899-12-29T06:00:00"})", Variant::date(-1.25),
       R"({"$type":"Date","value":"1899-12-29T06:00:00"})"},
      {R"({"$type":"Date","value":45351.99999999})", Variant::date(45351.99999999),
       R"({"$type":"Date","value":"2024-03-01T00:00:00"})"},
      {R"({"$type":"Error","value":2147614724})", Variant::error(Variant::kParamNotFound),
       R"({"$type":"Error","value":-2147352572})"},
  };
  for (const auto& c : cases) {
    const Variant decoded = json::from_json(Json::parse(c.json));
    EXPECT_EQ(decoded, c.value) << c.json;
    EXPECT_EQ(json::dump(json::to_json(decoded)), c.canonical) << c.json;
  }
}

TEST(JsonVariant, RejectsValuesWithoutMeaning) {
  const struct {
    const char* json;
    const char* message;
  } cases[] = {
      {R"({"$type":"Long64","value":1})", "unknown $type \"Long64\""},
      {R"({"$type":"Long","value":2147483648})",
       "$type \"Long\" needs an integral number from -2147483648 to 2147483647"},
      {R"([0,[1,{"$type":"Date","value":"2023-02-29"}]])",
       "[1][1]: $type \"Date\" needs \"yyyy-mm-ddThh:mm:ss\" or \"yyyy-mm-dd\" text or a day "
       "number"},
  };
  for (const auto& c : cases) {
    try {
      json::from_json(Json::parse(c.json));
      ADD_FAILURE() << c.json << " was accepted";
    } catch (const json::ValueError& e) {
      EXPECT_STREQ(e.what(), c.message) << c.json;
    }
  }
}

}  // namespace
}  // namespace qdr
