// The qdr command, run as a separate process.

#include <sys/wait.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "infra/json_variant.h"
#include "qdr/dispatch.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

using json::Json;

struct ToolRun {
  int exit_code = -1;
  std::string out;
  std::string err;
};

ToolRun run_qdr(const std::string& arguments, const std::string& input) {
  const std::string in = test::temp_path("qdr-in");
  const std::string err = test::temp_path("qdr-err");
  std::ofstream(in) << input;
  const std::string command =
      std::string("'") + QDR_TOOL_PATH + "' " + arguments + " < '" + in + "' 2> '" + err + "'";
  ToolRun run;
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  char buffer[4096];
  for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
    run.out.append(buffer, n);
  const int status = ::pclose(pipe);
  run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  std::stringstream errors;
  errors << std::ifstream(err).rdbuf();
  run.err = errors.str();
  return run;
}

TEST(QdrTool, CallsTheMethodAndEchoesEveryArgument) {
  const std::string script = std::string(QDR_SOURCE_DIR) + "/tests/data/replay/ports_empty.json";
  const std::string journal = test::temp_path("qdr-journal");
  // The user has no ports, so the method fails and leaves the outputs as given.
  Json request = Json::parse(R"({
    "invntUsuario_internet_id": 7,
    "invntBase_dados": "SQLSERVER",
    "outvntPONTO_OPERACAO_ID": {"$type": "Currency", "value": 1.5},
    "outvntTam_arr": {"$type": "Integer", "value": 4},
    "outarrvntPORTO_ID": {"$type": "Array", "lbound": 1,
                          "value": [{"$type": "Date", "value": "2024-02-29T13:45:00"},
                                    {"$type": "Error", "value": -2147352572}, [1.0, null]]},
    "outarrvntnome_porto": ["Paranaguá"]
  })");
  request["invntConecta_db"] = "Provider=Replay;Script=" + script + ";Journal=" + journal;

  const ToolRun run = run_qdr("call gConsulta_Porto_Ponto", request.dump());
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const Json answer = Json::parse(run.out);
  EXPECT_EQ(answer.at("result"), 10);

  const Json& args = answer.at("args");
  std::vector<std::string> names;
  for (const auto& item : args.items()) names.push_back(item.key());
  EXPECT_EQ(names, find_method("gConsulta_Porto_Ponto")->parameters);
  for (const auto& item : request.items())
    EXPECT_EQ(args.at(item.key()), item.value()) << item.key();
  EXPECT_EQ(args.at("outvntMsg_Ret"),
            "Problemas ao identificar os Portos relacionado à Filial do Usuário.Contacte o "
            "Administrador do Sistema.");

  // The statement reached the script, and the journal tells it.
  std::ifstream lines(journal);
  std::string first;
  ASSERT_TRUE(std::getline(lines, first));
  EXPECT_EQ(Json::parse(first).at("text"), "EXEC SP_050_CON_PORTO_PONTO01   7");
}

TEST(QdrTool, RejectsMalformedRequests) {
  const struct {
    const char* arguments;
    const char* input;
    int exit_code;
    const char* err;  // the whole of standard error, or its start when it ends in "..."
  } cases[] = {
      {"call gConsulta_Porto_Ponto", "{\"invntBase_dados\": ", 1,
       "qdr: the request is not valid JSON: [json.exception.parse_error.101] ..."},
      {"call gConsulta_Porto_Ponto", "[7]", 1,
       "qdr: the request must be a JSON object mapping parameter names to values\n"},
      {"call gConsulta_Porto_Ponto", R"({"invntconecta_db": ""})", 1,
       "qdr: gConsulta_Porto_Ponto has no parameter \"invntconecta_db\" (did you mean "
       "\"invntConecta_db\"?)\n"},
      {"call gConsulta_Porto_Ponto", R"({"outvntTam_arr": [1, {"$type": "Date", "value": 1}, {}]})",
       1, "qdr: bad value for outvntTam_arr: [2]: an object needs a \"$type\"\n"},
      {"call gConsulta_Porto", "{}", 1,
       "qdr: unknown method \"gConsulta_Porto\" ('qdr methods' lists them)\n"},
      {"call", "{}", 2, "qdr: call takes one METHOD\nTry 'qdr --help'.\n"},
  };
  for (const auto& c : cases) {
    const ToolRun run = run_qdr(c.arguments, c.input);
    EXPECT_EQ(run.exit_code, c.exit_code) << c.input;
    EXPECT_EQ(run.out, "") << c.input;
    const std::string expected = c.err;
    if (expected.ends_with("..."))
      EXPECT_EQ(run.err.substr(0, expected.size() - 3), expected.substr(0, expected.size() - 3));
    else
      EXPECT_EQ(run.err, expected);
  }
}

}  // namespace
}  // namespace qdr
