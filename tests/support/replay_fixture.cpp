#include "tests/support/replay_fixture.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "tests/support/test_env.h"

namespace qdr::test {

ReplayFixture::ReplayFixture(const nlohmann::json& responses)
    : script_(temp_path("script") + ".json"), journal_(temp_path("journal") + ".jsonl") {
  std::ofstream(script_) << responses.dump();
  connection_ = "Provider=Replay;Script=" + script_ + ";Journal=" + journal_;
}

ReplayFixture::~ReplayFixture() {
  std::error_code ignored;
  std::filesystem::remove(script_, ignored);
  std::filesystem::remove(journal_, ignored);
}

std::vector<nlohmann::json> ReplayFixture::journal() const {
  std::vector<nlohmann::json> lines;
  std::ifstream in(journal_);
  for (std::string line; std::getline(in, line);)
    if (!line.empty()) lines.push_back(nlohmann::json::parse(line));
  return lines;
}

std::vector<std::string> ReplayFixture::texts() const {
  std::vector<std::string> out;
  for (const auto& entry : journal()) out.push_back(entry.at("text").get<std::string>());
  return out;
}

nlohmann::json rows(const std::vector<std::string>& columns,
                    const std::vector<std::vector<nlohmann::json>>& values) {
  nlohmann::json rows_json = nlohmann::json::array();
  for (const auto& row : values) rows_json.push_back(row);
  return {{"columns", columns}, {"rows", rows_json}};
}

nlohmann::json no_result_set() { return {{"noResultSet", true}}; }

nlohmann::json db_error(const std::string& text, int number) {
  return {{"error", text}, {"number", number}};
}

}  // namespace qdr::test
