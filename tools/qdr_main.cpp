// qdr: calls a method of the component from a JSON request and prints the
// arguments as the method left them.

#include <clocale>
#include <exception>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "infra/ascii.h"
#include "infra/json_variant.h"
#include "qdr/dispatch.h"
#include "qdr/qdr.h"

namespace {

using qdr::json::Json;

constexpr int kRejected = 1;
constexpr int kUsage = 2;

constexpr const char* kHelp = R"(Usage: qdr call METHOD [--pretty] < REQUEST.json
       qdr methods [METHOD]
       qdr --help

Calls one method of the service-order closing component (class QDR) and
prints its answer as JSON.

qdr call METHOD
  Reads from standard input a JSON object that maps the method's parameter
  names, spelt exactly as in the interface (see 'qdr methods METHOD'), to
  their values; a parameter left out is passed as Empty. Calls the method and
  prints one line of UTF-8 JSON (indented with --pretty):
    {"result": STATUS, "args": {every parameter, in interface order, as the
                                method left it}}
  STATUS is the method's status: 0 success, 10 failure, with the reason (in
  Portuguese) in outvntMsg_Ret.

qdr methods [METHOD]
  Lists the methods, or one of them, with their parameter names in order.

Values (request and answer)
  null                                             Null
  true, false                                      Boolean
  "text"                                           String
  42                                               Long (Double beyond 32 bits)
  42.0, 1.5                                        Double
  [a, b, c]                                        array indexed 0..n-1
  {"$type":"Empty"}                                Empty
  {"$type":"Integer","value":10}                   Integer (16 bits)
  {"$type":"Currency","value":12.34}               Currency
  {"$type":"Date","value":"2024-03-01T14:30:00"}   Date ("2024-03-01" is
                                                   midnight; a day number
                                                   counted from 1899-12-30
                                                   is accepted too)
  {"$type":"Error","value":-2147352572}            Error (this code is the
                                                   one for a missing argument)
  {"$type":"Array","lbound":1,"value":[a, b]}      array indexed from lbound
  "Long", "Double", "String", "Boolean" and "Null" may be spelt out the same
  way. The answer uses the same encoding, so each subtype shows: Empty,
  Integer, Currency, Date and Error always appear as {"$type":...} objects,
  and a Double always carries a decimal point or an exponent.

Connections
  invntConecta_db is the connection string: ODBC ("Driver=...;...",
  "DSN=..."), a provider ("Provider=SQLOLEDB;...", "Provider=PostgreSQL;...")
  or the Replay provider, which answers from a script instead of a database:
    Provider=Replay;Script=SCRIPT.json;Journal=JOURNAL.jsonl
  SCRIPT.json is a JSON list of responses, one per statement, in order:
    {"columns":["A","B"],"rows":[[1,"x"],[2,null]]}   a result set
    {"noResultSet":true}                               no result set
    {"error":"text","number":N}                        a database error N
  Each may carry "match":"PREFIX": the statement's text (for a stored
  procedure command, its call form "{ call NAME(?, ?) }") must start with
  PREFIX (letter case ignored). A statement that fails its match or finds no
  response left fails as a database error. Row values use the encoding above.
  Sessions on one script carry on where the previous one stopped; each run
  of qdr starts at the first response.
  The Journal (optional) receives one JSON line per statement, failed ones
  included:
    {"kind":"text"|"command","text":"...","procedure":"NAME"|null,
     "parameters":[{"name":"...","type":N,"size":N,"value":...}]}

Locale
  The component follows the process locale (LANG, LC_ALL) for decimal
  separators and date order, as it followed the machine's regional settings.

Exit status
  0 the method was called, whatever its status; 1 the request was rejected
  (not JSON, not an object, unknown method or parameter, bad value); 2 bad
  command line. The reason goes to standard error.

Example
  $ cat ports.json
  [{"match":"EXEC SP_050_CON_PORTO_PONTO01",
    "columns":["PONTO_OPERACAO_ID","PORTO_ID","nome_porto"],
    "rows":[[5,1,"Santos"],[5,2,"Paranaguá"]]}]
  $ echo '{"invntUsuario_internet_id": 7, "invntBase_dados": "SQLSERVER",
  >  "invntConecta_db": "Provider=Replay;Script=ports.json;Journal=calls.jsonl"}' |
  >  qdr call gConsulta_Porto_Ponto
  {"result":0,"args":{"invntUsuario_internet_id":7,...,"outvntTam_arr":2,...}}
  $ cat calls.jsonl
  {"kind":"text","text":"EXEC SP_050_CON_PORTO_PONTO01   7","procedure":...}
)";

int usage_error(const std::string& why) {
  std::cerr << "qdr: " << why << "\nTry 'qdr --help'.\n";
  return kUsage;
}

int rejected(const std::string& why) {
  std::cerr << "qdr: " << why << "\n";
  return kRejected;
}

const qdr::MethodInfo* method_or_complain(const std::string& name) {
  const qdr::MethodInfo* info = qdr::find_method(name);
  if (info == nullptr) rejected("unknown method \"" + name + "\" ('qdr methods' lists them)");
  return info;
}

int list_methods(const std::optional<std::string>& only) {
  std::vector<const qdr::MethodInfo*> shown;
  if (only) {
    const qdr::MethodInfo* info = method_or_complain(*only);
    if (info == nullptr) return kRejected;
    shown.push_back(info);
  } else {
    for (const auto& m : qdr::methods()) shown.push_back(&m);
  }
  for (const auto* m : shown) {
    std::cout << m->name << " (" << m->parameters.size() << " parameters)\n";
    for (std::size_t i = 0; i < m->parameters.size(); ++i)
      std::cout << std::setw(4) << i + 1 << " " << m->parameters[i] << "\n";
  }
  return 0;
}

int call(const std::string& method, bool pretty) {
  const qdr::MethodInfo* info = method_or_complain(method);
  if (info == nullptr) return kRejected;

  const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
  Json request;
  try {
    request = Json::parse(text);
  } catch (const Json::parse_error& e) {
    return rejected(std::string("the request is not valid JSON: ") + e.what());
  }
  if (!request.is_object())
    return rejected("the request must be a JSON object mapping parameter names to values");

  const auto& names = info->parameters;
  std::vector<qdr::Variant> args(names.size());
  for (const auto& item : request.items()) {
    std::size_t i = 0;
    while (i < names.size() && names[i] != item.key()) ++i;
    if (i == names.size()) {
      std::string why = method + " has no parameter \"" + item.key() + "\"";
      for (const auto& name : names)
        if (qdr::ascii::to_lower(name) == qdr::ascii::to_lower(item.key()))
          why += " (did you mean \"" + name + "\"?)";
      return rejected(why);
    }
    try {
      args[i] = qdr::json::from_json(item.value());
    } catch (const qdr::json::ValueError& e) {
      return rejected("bad value for " + item.key() + ": " + e.what());
    }
  }

  qdr::QDR object;
  const qdr::Variant status = qdr::invoke(object, info->name, args);

  Json answer;
  answer["result"] = status.type() == qdr::VarType::Integer ? Json(status.as_integer())
                                                            : qdr::json::to_json(status);
  answer["args"] = Json::object();
  for (std::size_t i = 0; i < names.size(); ++i)
    answer["args"][names[i]] = qdr::json::to_json(args[i]);
  std::cout << qdr::json::dump(answer, pretty) << "\n" << std::flush;
  if (!std::cout) return rejected("cannot write the answer to standard output");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  // The component reads decimal separators and the date order from the
  // process locale, so the command takes the user's.
  std::setlocale(LC_ALL, "");
  try {
    std::vector<std::string> words;
    bool pretty = false;
    for (int i = 1; i < argc; ++i) {
      const std::string arg = argv[i];
      if (arg == "--help" || arg == "-h" || arg == "help") {
        std::cout << kHelp;
        return 0;
      }
      if (arg == "--pretty")
        pretty = true;
      else if (arg.size() > 1 && arg[0] == '-')
        return usage_error("unknown option " + arg);
      else
        words.push_back(arg);
    }
    if (words.empty()) return usage_error("missing command (call or methods)");
    if (words[0] == "call") {
      if (words.size() != 2) return usage_error("call takes one METHOD");
      return call(words[1], pretty);
    }
    if (words[0] == "methods") {
      if (words.size() > 2) return usage_error("methods takes at most one METHOD");
      return list_methods(words.size() == 2 ? std::optional(words[1]) : std::nullopt);
    }
    return usage_error("unknown command \"" + words[0] + "\"");
  } catch (const std::exception& e) {
    std::cerr << "qdr: " << e.what() << "\n";
    return kRejected;
  }
}
