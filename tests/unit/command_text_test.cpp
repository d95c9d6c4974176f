#include "infra/command_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "infra/vb.h"
#include "qdr/error.h"
#include "tests/support/test_env.h"

namespace qdr {
namespace {

using namespace qdr::ado;

struct Param {
  int type;
  Variant value;
};

// A stored-procedure command on NAME with the given parameters.
Command command_for(const std::string& name, const std::vector<Param>& parameters) {
  Command command;
  command.CommandType = adCmdStoredProc;
  command.CommandText(name);
  int index = 0;
  for (const auto& p : parameters)
    command.Parameters().Append(
        command.CreateParameter("p" + std::to_string(index++), p.type, adParamInput, 10, p.value));
  return command;
}

TEST(MGetCommandText, NothingGivesTheEmptyText) { EXPECT_EQ(mGetCommandText(nullptr), ""); }

TEST(MGetCommandText, EachTypeFormattedByItsRule) {
  test::ScopedLocale locale("pt_BR.UTF-8");
  ASSERT_TRUE(locale.ok());
  struct Row {
    Param param;
    std::string shown;
  };
  const std::vector<Row> rows = {
      {{adInteger, Variant(7)}, "7"},
      {{adInteger, Variant(0)}, "NULL"},  // zero means null
      {{adInteger, Variant::null()}, "NULL"},
      {{adInteger, Variant("12abc")}, "12ABC"},  // a non-zero Val: the value as it is
      {{adCurrency, Variant(12.5)}, "12.5"},     // the regional comma made a point
      {{adCurrency, Variant::currency_scaled(1234500)}, "123.45"},
      {{adDBTimeStamp, Variant("2024/01/31 10:00")}, "'2024/01/31 10:00'"},
      {{adDBTimeStamp, Variant("abc")}, "'ABC'"},
      {{adDBTimeStamp, Variant::null()}, "NULL"},
      {{adVarChar, Variant("aBc")}, "'aBc'"},  // case kept
      {{adVarChar, Variant("")}, "NULL"},
      {{adVarChar, Variant::null()}, "NULL"},
      {{adChar, Variant("xy")}, "XY"},  // any other type: its text, upper-cased
      {{adChar, Variant::null()}, ""},
      {{adDouble, Variant(1.5)}, "1,5"},
  };
  for (const auto& row : rows) {
    const Command command = command_for("SP_X", {row.param});
    EXPECT_EQ(mGetCommandText(&command), "EXECUTE SP_X " + row.shown) << row.shown;
  }
}

TEST(MGetCommandText, TheNameComesFromTheCallFormAndEveryValueIsJoined) {
  const Command command =
      command_for("SP_X", {{adInteger, Variant(7)}, {adVarChar, Variant("ab")}});
  EXPECT_EQ(mGetCommandText(&command), "EXECUTE SP_X 7, 'ab'");

  // Without "call" the name is taken from the fifth character on, deliberately.
  Command text_command;
  text_command.CommandText("{ X SP_Q(?) }");
  text_command.Parameters().Append(
      text_command.CreateParameter("a", adInteger, adParamInput, 10, Variant(3)));
  EXPECT_EQ(mGetCommandText(&text_command), "EXECUTE SP_Q 3");
}

TEST(MGetCommandText, ACommandWithoutParametersGivesTheEmptyTextAndTheFramedDetail) {
  const Command command = command_for("SP_X", {});
  std::string detail;
  EXPECT_EQ(mGetCommandText(&command, &detail), "");
  EXPECT_EQ(detail, " - mGetCommandText (Invalid procedure call or argument : 5) ");
}

TEST(GMontaTextoExec, QuotesTextTypesAndWritesNullsAsNull) {
  test::ScopedLocale locale("pt_BR.UTF-8");
  ASSERT_TRUE(locale.ok());
  Variant out;
  const Command command = command_for(
      "SP_X", {{adInteger, Variant(7)}, {adInteger, Variant::null()}, {adVarChar, Variant("O'K")}});
  EXPECT_TRUE(gMonta_Texto_Exec(command, "SP_X", out));
  EXPECT_TRUE(out == Variant("EXEC SP_X 7, Null, 'O'K'"));

  const Command all_types = command_for("SP_Y", {{adDate, Variant("31/01/2024")},
                                                 {adChar, Variant("c")},
                                                 {adWChar, Variant("w")},
                                                 {adLongVarChar, Variant("l")},
                                                 {adVarWChar, Variant("vw")},
                                                 {adLongVarWChar, Variant("lw")},
                                                 {adCurrency, Variant(12.5)},
                                                 {adDBTimeStamp, Variant("t")},
                                                 {adVarChar, Variant()}});
  EXPECT_TRUE(gMonta_Texto_Exec(all_types, "SP_Y", out));
  EXPECT_TRUE(out == Variant("EXEC SP_Y '31/01/2024', 'c', 'w', 'l', 'vw', 'lw', 12,5, t, ''"));
}

TEST(GMontaTextoExec, ACommandWithoutParametersRaisesFiveForTheCallersTrap) {
  Variant out("before");
  const Command command = command_for("SP_X", {});
  try {
    gMonta_Texto_Exec(command, "SP_X", out);
    FAIL() << "no error";
  } catch (const DatabaseError&) {
    FAIL() << "not a database error";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), vb::kInvalidCall);
  }
  EXPECT_TRUE(out == Variant("before"));
}

}  // namespace
}  // namespace qdr
