#pragma once

// A replay data source for one test: writes the script, hands out the
// connection string, reads the journal back.

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace qdr::test {

class ReplayFixture {
 public:
  // `responses` is the script: an array of {"columns":[...],"rows":[...]},
  // {"noResultSet":true} or {"error":"text","number":N}, each optionally
  // with "match".
  explicit ReplayFixture(const nlohmann::json& responses);
  // Removes the script and the journal.
  ~ReplayFixture();
  ReplayFixture(const ReplayFixture&) = delete;
  ReplayFixture& operator=(const ReplayFixture&) = delete;

  // "Provider=Replay;Script=...;Journal=..." for this fixture's files.
  const std::string& connection() const { return connection_; }

  // Every statement the data source received, one JSON object each.
  std::vector<nlohmann::json> journal() const;
  // Just their texts, in order.
  std::vector<std::string> texts() const;

 private:
  std::string script_;
  std::string journal_;
  std::string connection_;
};

// Shorthands for script responses.
nlohmann::json rows(const std::vector<std::string>& columns,
                    const std::vector<std::vector<nlohmann::json>>& values);
nlohmann::json no_result_set();
nlohmann::json db_error(const std::string& text, int number = -2147217900);

}  // namespace qdr::test
