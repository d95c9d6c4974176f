#include "infra/replay.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <map>
#include <mutex>
#include <system_error>

#include "infra/ascii.h"
#include "infra/backend_registry.h"
#include "infra/json_variant.h"

namespace qdr {

namespace {

using json::Json;

constexpr int32_t kProviderError = -2147467259;

[[noreturn]] void raise(const std::string& message) {
  throw DatabaseError(kProviderError, message);
}

std::string errno_text(int code) { return std::generic_category().message(code); }

struct Response {
  enum class Kind { Rows, NoResultSet, Error };
  Kind kind = Kind::NoResultSet;
  std::string match;
  ResultSet result;
  std::string error;
  int32_t number = kProviderError;
  std::string sqlstate;
};

struct Script {
  std::string content;  // the file as last parsed
  std::vector<Response> responses;
  std::size_t next = 0;
};

// Keyed by the script's normalised path, so that every spelling of one file
// shares one position.
struct ScriptTable {
  std::mutex mutex;
  std::map<std::string, Script> scripts;
};

ScriptTable& table() {
  static auto* instance = new ScriptTable;  // never destroyed: sessions may outlive statics
  return *instance;
}

std::string normalised(const std::string& path) {
  std::error_code ec;
  auto p = std::filesystem::weakly_canonical(path, ec);
  if (ec) p = std::filesystem::absolute(path, ec);
  return ec ? path : p.string();
}

std::string read_file(const std::string& path) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (f == nullptr) raise("Replay script '" + path + "' cannot be read: " + errno_text(errno));
  std::string content;
  char buffer[65536];
  std::size_t n = 0;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) content.append(buffer, n);
  const bool failed = std::ferror(f) != 0;
  const int code = errno;
  std::fclose(f);
  if (failed) raise("Replay script '" + path + "' cannot be read: " + errno_text(code));
  return content;
}

Response parse_response(const Json& j, const std::string& where) {
  auto bad = [&](const std::string& why) -> void { raise(where + ": " + why); };
  if (!j.is_object()) bad("a response must be an object");
  for (const auto& item : j.items()) {
    static const char* const known[] = {"match", "columns", "rows",    "noResultSet",
                                        "error", "number",  "sqlstate"};
    bool ok = false;
    for (const char* k : known) ok = ok || item.key() == k;
    if (!ok) bad("unknown key \"" + item.key() + "\"");
  }
  const int kinds =
      int{j.contains("columns")} + int{j.contains("noResultSet")} + int{j.contains("error")};
  if (kinds != 1) bad("a response needs exactly one of \"columns\", \"noResultSet\" and \"error\"");

  Response r;
  if (j.contains("match")) {
    if (!j["match"].is_string()) bad("\"match\" must be a text");
    r.match = j["match"].get<std::string>();
  }
  if (j.contains("rows") && !j.contains("columns")) bad("\"rows\" needs \"columns\"");
  if ((j.contains("number") || j.contains("sqlstate")) && !j.contains("error"))
    bad("\"number\" and \"sqlstate\" belong to an \"error\" response");

  if (j.contains("noResultSet")) {
    if (j["noResultSet"] != true) bad("\"noResultSet\" must be true");
    r.kind = Response::Kind::NoResultSet;
  } else if (j.contains("error")) {
    r.kind = Response::Kind::Error;
    if (!j["error"].is_string()) bad("\"error\" must be a text");
    r.error = j["error"].get<std::string>();
    if (j.contains("number")) {
      const Json& n = j["number"];
      const bool fits = n.is_number_unsigned()
                            ? n.get<uint64_t>() <= std::numeric_limits<int32_t>::max()
                            : n.is_number_integer() &&
                                  n.get<int64_t>() >= std::numeric_limits<int32_t>::min() &&
                                  n.get<int64_t>() <= std::numeric_limits<int32_t>::max();
      if (!fits) bad("\"number\" must be an integral number from -2147483648 to 2147483647");
      r.number = static_cast<int32_t>(n.get<int64_t>());
    }
    if (j.contains("sqlstate")) {
      if (!j["sqlstate"].is_string()) bad("\"sqlstate\" must be a text");
      r.sqlstate = j["sqlstate"].get<std::string>();
    }
  } else {
    r.kind = Response::Kind::Rows;
    const Json& columns = j["columns"];
    if (!columns.is_array()) bad("\"columns\" must be a list of texts");
    for (const auto& c : columns) {
      if (!c.is_string()) bad("\"columns\" must be a list of texts");
      r.result.columns.push_back(c.get<std::string>());
    }
    if (j.contains("rows")) {
      const Json& rows = j["rows"];
      if (!rows.is_array()) bad("\"rows\" must be a list of lists");
      for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string row = "row " + std::to_string(i + 1);
        if (!rows[i].is_array() || rows[i].size() != columns.size())
          bad(row + " must be a list of " + std::to_string(columns.size()) + " values");
        auto& values = r.result.rows.emplace_back();
        for (std::size_t c = 0; c < columns.size(); ++c) {
          try {
            values.push_back(json::from_json(rows[i][c]));
          } catch (const json::ValueError& e) {
            bad(row + ", column \"" + r.result.columns[c] + "\": " + e.what());
          }
        }
      }
    }
  }
  return r;
}

std::vector<Response> parse_script(const std::string& path, const std::string& content) {
  Json doc;
  try {
    doc = Json::parse(content);
  } catch (const Json::parse_error& e) {
    raise("Replay script '" + path + "' is not valid JSON: " + e.what());
  }
  if (!doc.is_array()) raise("Replay script '" + path + "' must hold a list of responses");
  std::vector<Response> responses;
  for (std::size_t i = 0; i < doc.size(); ++i)
    responses.push_back(
        parse_response(doc[i], "Replay script '" + path + "', response " + std::to_string(i + 1)));
  return responses;
}

// Brings the table's entry up to date with the file; the caller holds the
// table's mutex.
Script& current_script(const std::string& path, const std::string& key) {
  std::string content = read_file(path);
  auto& scripts = table().scripts;
  auto it = scripts.find(key);
  if (it != scripts.end() && it->second.content == content) return it->second;
  auto responses = parse_script(path, content);
  Script& script = scripts[key];
  script.content = std::move(content);
  script.responses = std::move(responses);
  script.next = 0;
  return script;
}

Json journal_line(const Statement& statement) {
  Json parameters = Json::array();
  for (const auto& p : statement.parameters)
    parameters.push_back(Json{
        {"name", p.name}, {"type", p.type}, {"size", p.size}, {"value", json::to_json(p.value)}});
  return Json{
      {"kind", statement.kind == Statement::Kind::Command ? "command" : "text"},
      {"text", statement.text},
      {"procedure", statement.procedure.empty() ? Json(nullptr) : Json(statement.procedure)},
      {"parameters", std::move(parameters)}};
}

// One write() on an O_APPEND descriptor, so that lines from several
// processes sharing a journal do not interleave.
void append_line(const std::string& path, const std::string& line) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  if (fd < 0) raise("Replay journal '" + path + "' cannot be written: " + errno_text(errno));
  std::size_t done = 0;
  int code = 0;
  while (done < line.size()) {
    const ssize_t n = ::write(fd, line.data() + done, line.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      code = errno;
      break;
    }
    done += static_cast<std::size_t>(n);
  }
  if (::close(fd) != 0 && code == 0) code = errno;
  if (code != 0) raise("Replay journal '" + path + "' cannot be written: " + errno_text(code));
}

class ReplaySession final : public Session {
 public:
  ReplaySession(std::string script, std::string journal)
      : script_(std::move(script)), key_(normalised(script_)), journal_(std::move(journal)) {
    std::lock_guard lock(table().mutex);
    current_script(script_, key_);
  }

  std::optional<ResultSet> execute(const Statement& statement) override {
    std::lock_guard lock(table().mutex);
    if (!journal_.empty()) append_line(journal_, json::dump(journal_line(statement)) + "\n");
    Script& script = current_script(script_, key_);
    if (script.next >= script.responses.size())
      raise("Replay script '" + script_ + "' has no response left for: " + statement.text);
    const std::size_t number = ++script.next;
    const Response& r = script.responses[number - 1];
    if (!r.match.empty() && !ascii::istarts_with(statement.text, r.match))
      raise("Replay script '" + script_ + "', response " + std::to_string(number) +
            " expects a statement starting with \"" + r.match + "\", not: " + statement.text);
    switch (r.kind) {
      case Response::Kind::Rows:
        return r.result;
      case Response::Kind::Error:
        throw DatabaseError(r.number, r.error, r.sqlstate);
      case Response::Kind::NoResultSet:
        break;
    }
    return std::nullopt;
  }

 private:
  std::string script_;
  std::string key_;
  std::string journal_;
};

std::string attribute(const std::map<std::string, std::string>& attributes,
                      const std::string& key) {
  const auto it = attributes.find(key);
  return it == attributes.end() ? std::string() : it->second;
}

}  // namespace

std::unique_ptr<Session> open_replay_session(const std::map<std::string, std::string>& attributes) {
  const std::string script = attribute(attributes, "script");
  if (script.empty()) raise("Replay connection string names no Script file");
  const std::string journal = attribute(attributes, "journal");
  // A journal that cannot be written fails the opening, not a statement later.
  if (!journal.empty()) append_line(journal, "");
  return std::make_unique<ReplaySession>(script, journal);
}

void reset_replay_scripts() {
  std::lock_guard lock(table().mutex);
  for (auto& [key, script] : table().scripts) script.next = 0;
}

}  // namespace qdr
