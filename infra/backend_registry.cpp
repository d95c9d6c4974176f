#include "infra/backend_registry.h"

#include <mutex>

#include "infra/ascii.h"

namespace qdr {

Session::~Session() = default;

namespace {

// Registration is rare and opening a session already costs a connect, so one
// mutex around the table is plenty.
struct Registry {
  std::mutex mutex;
  std::map<std::string, BackendFactory> factories;  // keys lower-cased
};

std::string trim_blanks(const std::string& s) {
  const auto first = s.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  const auto last = s.find_last_not_of(" \t\r\n");
  return s.substr(first, last - first + 1);
}

BackendFactory odbc_provider() {
  return [](const std::map<std::string, std::string>& attributes, const std::string&) {
    return open_odbc_session(odbc_string_for_provider(attributes));
  };
}

Registry& registry() {
  static Registry* instance = [] {
    auto* r = new Registry;
    for (const char* name : {"sqloledb", "msoledbsql", "postgresql"})
      r->factories[name] = odbc_provider();
    r->factories["replay"] = [](const std::map<std::string, std::string>& attributes,
                                const std::string&) { return open_replay_session(attributes); };
    return r;
  }();
  return *instance;
}

BackendFactory find_factory(const std::string& provider) {
  auto& r = registry();
  std::lock_guard lock(r.mutex);
  const std::string key = ascii::to_lower(provider);
  if (auto it = r.factories.find(key); it != r.factories.end()) return it->second;
  // A version-qualified name ("SQLOLEDB.1") is the provider it qualifies.
  if (const auto dot = key.rfind('.');
      dot != std::string::npos && dot + 1 < key.size() &&
      key.find_first_not_of("0123456789", dot + 1) == std::string::npos) {
    if (auto it = r.factories.find(key.substr(0, dot)); it != r.factories.end()) return it->second;
  }
  // Every SQL Server Native Client version (SQLNCLI, SQLNCLI10, SQLNCLI11)
  // and every OLE DB Driver version (MSOLEDBSQL, MSOLEDBSQL19).
  if (key.rfind("sqlncli", 0) == 0 || key.rfind("msoledbsql", 0) == 0) return odbc_provider();
  return {};
}

}  // namespace

std::map<std::string, std::string> parse_connection_string(const std::string& text) {
  std::map<std::string, std::string> out;
  std::size_t i = 0;
  while (i < text.size()) {
    const auto eq = text.find('=', i);
    if (eq == std::string::npos) break;
    std::string key = ascii::to_lower(trim_blanks(text.substr(i, eq - i)));
    std::size_t j = eq + 1;
    while (j < text.size() && (text[j] == ' ' || text[j] == '\t')) ++j;
    std::string value;
    if (j < text.size() && (text[j] == '{' || text[j] == '"' || text[j] == '\'')) {
      const char close = text[j] == '{' ? '}' : text[j];
      const auto end = text.find(close, j + 1);
      value = text.substr(j + 1, end == std::string::npos ? std::string::npos : end - j - 1);
      j = end == std::string::npos ? text.size() : end + 1;
      const auto semi = text.find(';', j);
      i = semi == std::string::npos ? text.size() : semi + 1;
    } else {
      const auto semi = text.find(';', j);
      value = trim_blanks(text.substr(j, semi == std::string::npos ? std::string::npos : semi - j));
      i = semi == std::string::npos ? text.size() : semi + 1;
    }
    if (!key.empty()) out[key] = value;
  }
  return out;
}

void register_backend(const std::string& provider, BackendFactory factory) {
  auto& r = registry();
  std::lock_guard lock(r.mutex);
  r.factories[ascii::to_lower(provider)] = std::move(factory);
}

bool unregister_backend(const std::string& provider) {
  auto& r = registry();
  std::lock_guard lock(r.mutex);
  return r.factories.erase(ascii::to_lower(provider)) > 0;
}

std::unique_ptr<Session> open_session(const std::string& connection_string) {
  if (trim_blanks(connection_string).empty())
    throw DatabaseError(-2147467259, "Connection string is empty", "08001");
  const auto attributes = parse_connection_string(connection_string);
  if (auto it = attributes.find("provider"); it != attributes.end()) {
    if (auto factory = find_factory(it->second)) return factory(attributes, connection_string);
    throw DatabaseError(-2147467259,
                        "Provider '" + it->second + "' is not registered with this component",
                        "IM002");
  }
  if (attributes.count("driver") || attributes.count("dsn") || attributes.count("filedsn"))
    return open_odbc_session(connection_string);
  throw DatabaseError(-2147467259,
                      "Connection string names no provider, driver or data source name", "IM002");
}

}  // namespace qdr
