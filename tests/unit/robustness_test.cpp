#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "qdr/dispatch.h"
#include "qdr/qdr.h"
#include "tests/support/replay_fixture.h"

namespace qdr {
namespace {

// Values a caller can pass by mistake in any position: wrong subtypes,
// extremes, arrays where a scalar belongs and the other way round.
std::vector<Variant> nasty_values() {
  Variant nested = Variant::array(0, 1);
  nested.at(0) = Variant::array(5, 7);
  nested.at(1) = Variant::null();
  return {
      Variant(),
      Variant::null(),
      Variant::error(Variant::kParamNotFound),
      Variant(std::numeric_limits<int32_t>::min()),
      Variant(std::numeric_limits<double>::infinity()),
      Variant(std::numeric_limits<double>::quiet_NaN()),
      Variant(-1e300),
      Variant::currency_scaled(std::numeric_limits<int64_t>::max()),
      Variant::date(-1e9),
      Variant(true),
      Variant("1.234.567,89"),
      Variant("'; DROP TABLE LOG_MSG; --"),
      Variant(std::string(5000, 'x')),
      Variant(std::string("n\xc3\xa3o \xff\xfe inv\xe1lido")),
      Variant::array(-3, -1),
      Variant::array(0, -1),
      nested,
  };
}

// Every statement fails, so each routine meets a database error wherever it
// gets that far.
const nlohmann::json kEverythingFails = nlohmann::json::array();

TEST(Robustness, EveryMethodAnswersEveryValueInEveryPosition) {
  const test::ReplayFixture replay(kEverythingFails);
  const auto values = nasty_values();
  QDR object;
  for (const auto& method : methods()) {
    const std::size_t count = method.parameters.size();
    for (std::size_t slot = 0; slot < count; ++slot) {
      for (std::size_t v = 0; v < values.size(); ++v) {
        SCOPED_TRACE(method.name + " " + method.parameters[slot] + " value #" + std::to_string(v));
        // Sensible defaults elsewhere: the replay connection, user 1 (the
        // longest messages), a key and a few rows, so the routines go deep.
        std::vector<Variant> args(count, Variant(3));
        for (std::size_t i = 0; i < count; ++i) {
          const auto& name = method.parameters[i];
          if (name == "invntConecta_db") args[i] = Variant(replay.connection());
          if (name.find("arr") != std::string::npos) args[i] = Variant::array(0, 2);
          if (name == "invntUsuario_internet_id") args[i] = Variant(1);
        }
        args[slot] = values[v];
        Variant status;
        ASSERT_NO_THROW(status = invoke(object, method.name, args));
        ASSERT_EQ(status.type(), VarType::Integer);
        EXPECT_TRUE(status.as_integer() == 0 || status.as_integer() == 10);
      }
    }
  }
}

}  // namespace
}  // namespace qdr
