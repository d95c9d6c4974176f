#pragma once

// Shared helpers for the test suites.

#include <gtest/gtest.h>

#include <clocale>
#include <functional>
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

// The two regional settings the suites compare: decimal comma and day first,
// decimal point and month first.
inline constexpr const char* kPtBr = "pt_BR.UTF-8";
inline constexpr const char* kEnUs = "en_US.UTF-8";

// Runs `check` under kPtBr and then kEnUs, passing the expectation column of
// each (0 = pt_BR, 1 = en_US); a locale that is not installed fails the test.
void under_both(const std::function<void(int)>& check);

// The reference database's ODBC connection string (QDR_TEST_CONNECTION), or
// "" when the database suite runs without one.
std::string db_connection();

// Base of the database suite's fixtures: `connection_` is db_connection(),
// and without one every test is skipped.
class DbTest : public ::testing::Test {
 protected:
  void SetUp() override;
  std::string connection_;
};

// A fresh file path under the build's temporary directory.
std::string temp_path(const std::string& stem);

}  // namespace qdr::test
