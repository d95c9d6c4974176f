#include "infra/validation.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/test_env.h"

namespace qdr {
namespace {

// A variant as failure output can show it.
std::string shown(const Variant& v) {
  if (v.type() == VarType::String) return "\"" + v.as_string() + "\"";
  return "subtype " + std::to_string(static_cast<int>(v.type()));
}

enum Routine { kData, kHora, kInteiro, kNumero, kString };

// One call: routine, caption, value and limits ("" for none; for kString
// `min` is the maximum length; for kHora `extra` is the comparison value).
// `after` is the caller's value afterwards ("=" when unchanged), `ymd` the
// date's out value ("-" when untouched).
struct Case {
  Routine routine;
  const char* value;
  const char* min;
  const char* max;
  const char* flag;
  bool ok;
  std::string message;  // "antes" when untouched
  const char* after = "=";
  const char* ymd = "-";
  const char* extra = "";
};

bool call(const Case& c, Variant& value, Variant& message, Variant& ymd, const Variant& user) {
  const Variant min(c.min), max(c.max), flag(c.flag);
  switch (c.routine) {
    case kData:
      return gConsiste_Data(Variant("Data"), value, min, max, user, message, ymd, flag);
    case kHora:
      return gConsiste_Hora(Variant("Hora"), value, min, max, user, message, Variant(c.extra),
                            flag);
    case kInteiro:
      return gConsiste_Inteiro(Variant("Qtde"), value, min, max, user, message, flag);
    case kNumero:
      return gConsiste_Numero(Variant("Tara"), value, min, max, user, message, flag);
    case kString:
      return gConsiste_String(Variant("Obs"), value, min, user, message, flag);
  }
  return false;
}

const std::string kDate10 =
    "Preencha Data com uma data válida, com 10 dígitos, no formato dd/mm/aaaa (Exemplo: "
    "13/10/2001)";
const std::string kDate =
    "Preencha Data com uma data válida, no formato dd/mm/aaaa (Exemplo: 13/10/2001)";
std::string hora(const char* example) {
  return std::string(
             "Preencha Hora com uma hora válida, com 5 dígitos, no formato hh:mm (Exemplo: ") +
         example + ")";
}
const std::string kMilhar = " não permite a digitação de números com uso de separador de milhar(.)";

TEST(Consiste, MessagesUnderBothLocales) {
  const Case cases[] = {
      {kData, "", "", "", "N", true, "antes"},                 // optional and empty
      {kData, "", "", "", "n", false, "Preencha Data"},        // "N" compared exactly
      {kData, "()", "", "", "S", false, "Preencha Data", ""},  // empty once cleaned
      {kData, "1/10/2001", "", "", "S", false, kDate10},
      {kData, "31/02/2001", "", "", "S", false, kDate},  // no such day
      {kData, "10/13/2001", "", "", "S", false,          // parsed month first, then refused
       "O mês da data do campo Data deve ser menor ou igual a 12"},
      {kData, "(13/10/2001)", "13/10/2001", "", "S", true, "antes", "13/10/2001", "2001/10/13"},
      {kData, "13/10/2001", "14/10/2001", "", "S", false,
       "Data deve ser igual ou maior que 14/10/2001", "=", "2001/10/13"},
      {kData, "05/01/2002", "", "31/12/2001", "S", false,  // ordered as yyyy/mm/dd
       "Data deve ser igual ou menor que 31/12/2001", "=", "2002/01/05"},
      {kHora, "", "", "", "S", false, "Preencha Hora"},
      {kHora, "8:10", "", "", "S", false, hora("08:10")},
      {kHora, "08.10", "", "", "S", false, hora("08:15")},
      {kHora, "ab:10", "", "", "S", false, hora("08:20")},
      {kHora, "08:xy", "", "", "S", false, hora("08:25")},
      {kHora, "24:00", "", "", "S", false, hora("08:30")},
      {kHora, "-1:00", "", "", "S", false, hora("08:30")},
      {kHora, "23:60", "", "", "S", false, hora("08:35")},
      {kHora, "(23:59)", "", "23:59", "S", true, "antes", "23:59"},
      {kHora, "08:00", "08:30", "", "S", false, "Hora deve ser igual ou maior que 08:30"},
      {kHora, "08:00", "", "07:00", "S", false, "Hora deve ser igual ou menor que 07:00"},
      {kHora, "08:00", "2001/10/13 09:00", "", "S", false,  // the comparison value is compared
       "Hora deve ser igual ou maior que 2001/10/13 09:00", "=", "-", "2001/10/13 08:00"},
      {kHora, "08:00", "2001/10/13 09:00", "", "S", true, "antes", "=", "-", "2001/10/14 08:00"},
      {kInteiro, "1.000", "", "", "S", false, "O campo Qtde" + kMilhar},
      {kInteiro, "10,5", "", "", "S", false,
       "O campo Qtde não permite a digitação de números com casas decimais(,)"},
      {kInteiro, "12a", "", "", "S", false, "Preencha Qtde com valor numérico"},
      {kInteiro, "+5", "10", "", "S", false,  // cleaned; compared as numbers, not texts
       "Qtde deve ser igual ou maior que 10", "5"},
      {kInteiro, "100", "", "99", "S", false, "Qtde deve ser igual ou menor que 99"},
      {kNumero, "9999999,99", "0", "9999999.99", "S", true, "antes"},  // limits in either form
      {kNumero, "10000000", "0", "9999999.99", "S", false,
       "Tara deve ser igual ou menor que 9999999.99"},
      {kNumero, "10,5", "", "10", "S", false, "Tara deve ser igual ou menor que 10"},
      {kNumero, "1.5", "", "", "S", false, "O campo Tara" + kMilhar},
      {kString, "O'Brien", "6", "", "S", true, "antes", "OBrien"},  // cleaned, then measured
      {kString, "Ação", "4", "", "S", true, "antes"},               // characters, not bytes
      {kString, "Açãoo", "4", "", "S", false, "Preencha Obs com, no máximo, 4 caracteres."},
      {kString, "qualquer", "0", "", "S", true, "antes"},  // 0: no limit
  };
  test::under_both([&](int) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::to_string(c.routine) + " " + c.value);
      Variant value(c.value), message("antes"), ymd("-");
      EXPECT_EQ(call(c, value, message, ymd, Variant(2)), c.ok);
      EXPECT_EQ(shown(message), shown(Variant(c.message)));
      EXPECT_EQ(shown(value), shown(Variant(std::string(c.after) == "=" ? c.value : c.after)));
      EXPECT_EQ(shown(ymd), shown(Variant(c.ymd)));
    }
  });
}

// A value that cannot be read as text: the routine's fixed text, and the
// detail for user 1 only.
TEST(Consiste, TrappedErrors) {
  const std::pair<Routine, std::string> cases[] = {
      {kData,
       "Acesso a consistência de datas não disponível. Favor tentar mais tarde. "
       "| - KRNCCA.gConsiste_Data ("},
      {kHora,
       "Acesso a consistência de Hora não disponível. Favor tentar mais tarde. "
       "| - KRNCCA.gConsiste_Hora ("},
      {kInteiro,
       "Acesso a consistência de campo inteiro não disponível. Favor tentar mais "
       "tarde. | - KRNCCA.gConsiste_Inteiro ("},
      {kNumero,
       "Acesso a consistência de campo numérico não disponível. Favor tentar mais "
       "tarde. | - KRNCCA.gConsiste_Numero ("},
      {kString,
       "Acesso a consistência de campos alfanuméricos disponível. Favor tentar mais "
       "tarde. | - KRNCCA.gConsiste_String ("},
  };
  for (const auto& [routine, text] : cases) {
    const std::string fixed = text.substr(0, text.find('|'));
    const std::string detail = text.substr(text.find('|') + 1) + "13 : Type mismatch)   No Nº 1";
    for (int user : {1, 2}) {
      SCOPED_TRACE(fixed + std::to_string(user));
      Variant value = Variant::array(0, 1), message, ymd;
      EXPECT_FALSE(
          call({routine, "", "10", "", "S", false, ""}, value, message, ymd, Variant(user)));
      EXPECT_EQ(shown(message), shown(Variant(user == 1 ? fixed + detail : fixed)));
    }
  }
}

// A limit that cannot be read as text traps at its own step: the minimum's
// line, then the maximum's.
TEST(Consiste, UnreadableLimitsTrapAtTheirStep) {
  using Check = std::function<bool(Variant&, const Variant&, const Variant&, Variant&)>;
  const Variant user(1), flag("S");
  const struct {
    const char* routine;
    const char* value;
    int minimum_line;
    Check check;
  } cases[] = {
      {"gConsiste_Data", "13/10/2001", 8,
       [&](Variant& v, const Variant& lo, const Variant& hi, Variant& m) {
         Variant ymd;
         return gConsiste_Data(Variant("Data"), v, lo, hi, user, m, ymd, flag);
       }},
      {"gConsiste_Hora", "08:10", 11,
       [&](Variant& v, const Variant& lo, const Variant& hi, Variant& m) {
         return gConsiste_Hora(Variant("Hora"), v, lo, hi, user, m, Variant(), flag);
       }},
      {"gConsiste_Inteiro", "12", 7,
       [&](Variant& v, const Variant& lo, const Variant& hi, Variant& m) {
         return gConsiste_Inteiro(Variant("Qtde"), v, lo, hi, user, m, flag);
       }},
      {"gConsiste_Numero", "12", 7,
       [&](Variant& v, const Variant& lo, const Variant& hi, Variant& m) {
         return gConsiste_Numero(Variant("Tara"), v, lo, hi, user, m, flag);
       }},
  };
  test::ScopedLocale locale(test::kPtBr);
  ASSERT_TRUE(locale.ok());
  const Variant unreadable = Variant::array(0, 1), none("");
  for (const auto& c : cases) {
    for (int maximum : {0, 1}) {
      SCOPED_TRACE(std::string(c.routine) + (maximum ? " maximum" : " minimum"));
      Variant value(c.value), message;
      EXPECT_FALSE(maximum ? c.check(value, none, unreadable, message)
                           : c.check(value, unreadable, none, message));
      const std::string text = message.as_string();
      const auto at = text.find(" - KRNCCA.");
      ASSERT_NE(at, std::string::npos) << text;
      EXPECT_EQ(text.substr(at), " - KRNCCA." + std::string(c.routine) +
                                     " (13 : Type mismatch)   No Nº " +
                                     std::to_string(c.minimum_line + maximum));
    }
  }
}

}  // namespace
}  // namespace qdr
