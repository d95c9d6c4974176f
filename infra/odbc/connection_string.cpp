#include "infra/odbc/connection_string.h"

#include <cstdlib>
#include <initializer_list>
#include <map>

#include "infra/ascii.h"
#include "infra/backend_registry.h"
#include "qdr/error.h"

namespace qdr {

namespace odbc {

std::string odbc_value(std::string_view value) {
  const bool plain = value.find_first_of(";{}=") == std::string_view::npos &&
                     (value.empty() || (value.front() != ' ' && value.back() != ' '));
  if (plain) return std::string(value);
  std::string out = "{";
  for (const char c : value) {
    out += c;
    if (c == '}') out += '}';
  }
  return out + "}";
}

}  // namespace odbc

namespace {

using Attributes = std::map<std::string, std::string>;

// The first of `keys` present in the attributes (keys are lower case).
std::string first_of(const Attributes& attributes, std::initializer_list<const char*> keys) {
  for (const char* key : keys)
    if (auto it = attributes.find(key); it != attributes.end()) return it->second;
  return {};
}

std::string driver_name(const char* variable, const char* fallback) {
  const char* value = std::getenv(variable);
  return value && *value ? value : fallback;
}

bool is_true(const std::string& value) {
  const std::string v = ascii::to_lower(value);
  return v == "true" || v == "yes" || v == "sspi" || v == "1";
}

void add(std::string& out, const char* key, const std::string& value) {
  if (!value.empty()) out += std::string(key) + "=" + odbc::odbc_value(value) + ";";
}

std::string sql_server(const Attributes& attributes) {
  std::string out = "Driver={" +
                    driver_name(odbc::kSqlServerDriverVariable, odbc::kSqlServerDefaultDriver) +
                    "};";
  add(out, "Server",
      first_of(attributes, {"data source", "server", "address", "addr", "network address"}));
  add(out, "Database", first_of(attributes, {"initial catalog", "database"}));
  if (is_true(first_of(attributes, {"integrated security", "trusted_connection"}))) {
    out += "Trusted_Connection=yes;";
  } else {
    add(out, "UID", first_of(attributes, {"user id", "uid", "user"}));
    add(out, "PWD", first_of(attributes, {"password", "pwd"}));
  }
  const std::string encrypt = first_of(attributes, {"use encryption for data", "encrypt"});
  if (!encrypt.empty())
    add(out, "Encrypt",
        is_true(encrypt)                      ? "yes"
        : ascii::to_lower(encrypt) == "false" ? "no"
                                              : encrypt);
  const std::string trust =
      first_of(attributes, {"trust server certificate", "trustservercertificate"});
  if (!trust.empty()) add(out, "TrustServerCertificate", is_true(trust) ? "yes" : "no");
  add(out, "APP", first_of(attributes, {"application name", "app"}));
  add(out, "WSID", first_of(attributes, {"workstation id", "wsid"}));
  return out;
}

std::string postgresql(const Attributes& attributes) {
  std::string host = first_of(attributes, {"host", "server", "servername", "data source"});
  std::string port = first_of(attributes, {"port"});
  // "host:port" in Data Source, as some callers write it (not for IPv6).
  if (const auto colon = host.rfind(':');
      port.empty() && colon != std::string::npos && host.find(':') == colon &&
      colon + 1 < host.size() &&
      host.find_first_not_of("0123456789", colon + 1) == std::string::npos) {
    port = host.substr(colon + 1);
    host.resize(colon);
  }
  std::string out = "Driver={" +
                    driver_name(odbc::kPostgreSqlDriverVariable, odbc::kPostgreSqlDefaultDriver) +
                    "};";
  add(out, "Servername", host);
  add(out, "Port", port);
  add(out, "Database", first_of(attributes, {"database", "initial catalog"}));
  add(out, "UID", first_of(attributes, {"user id", "uid", "user", "username"}));
  add(out, "PWD", first_of(attributes, {"password", "pwd"}));
  add(out, "SSLmode", first_of(attributes, {"sslmode", "ssl mode"}));
  return out;
}

}  // namespace

std::string odbc_string_for_provider(const std::map<std::string, std::string>& attributes) {
  const std::string provider = ascii::to_lower(first_of(attributes, {"provider"}));
  if (provider.rfind("sqloledb", 0) == 0 || provider.rfind("msoledbsql", 0) == 0 ||
      provider.rfind("sqlncli", 0) == 0)
    return sql_server(attributes);
  if (provider == "postgresql" || provider.rfind("postgresql.", 0) == 0)
    return postgresql(attributes);
  throw DatabaseError(-2147467259,
                      "Provider '" + first_of(attributes, {"provider"}) +
                          "' has no ODBC equivalent in this component",
                      "IM002");
}

}  // namespace qdr
