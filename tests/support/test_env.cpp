#include "tests/support/test_env.h"

#include <unistd.h>
#include <atomic>
#include <cstdlib>
#include <filesystem>

namespace qdr::test {

ScopedLocale::ScopedLocale(const char* name) {
  if (const char* current = std::setlocale(LC_ALL, nullptr)) previous_ = current;
  ok_ = std::setlocale(LC_ALL, name) != nullptr;
}

ScopedLocale::~ScopedLocale() { std::setlocale(LC_ALL, previous_.c_str()); }

void under_both(const std::function<void(int)>& check) {
  int column = 0;
  for (const char* name : {kPtBr, kEnUs}) {
    ScopedLocale locale(name);
    ASSERT_TRUE(locale.ok()) << name;
    SCOPED_TRACE(name);
    check(column++);
  }
}

std::string db_connection() {
  const char* value = std::getenv("QDR_TEST_CONNECTION");
  return value ? value : "";
}

void DbTest::SetUp() {
  connection_ = db_connection();
  if (connection_.empty()) GTEST_SKIP() << "QDR_TEST_CONNECTION is not set";
}

std::string temp_path(const std::string& stem) {
  static std::atomic<int> counter{0};
  const auto dir = std::filesystem::temp_directory_path() / "qdr-tests";
  std::filesystem::create_directories(dir);
  return (dir / (stem + "-" + std::to_string(::getpid()) + "-" + std::to_string(counter++)))
      .string();
}

}  // namespace qdr::test
