#pragma once

// Shared helpers for the test suites.

#include <clocale>
#include <string>

namespace qdr::test {

// Switches the process locale (all categories) for the lifetime of the
// object and restores the previous one afterwards.
class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name);
  ~ScopedLocale();
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;
  bool ok() const { return ok_; }

 private:
  std::string previous_;
  bool ok_ = false;
};

// The reference database's ODBC connection string (QDR_TEST_CONNECTION), or
// "" when the database suite runs without one.
std::string db_connection();

// A fresh file path under the build's temporary directory.
std::string temp_path(const std::string& stem);

}  // namespace qdr::test
