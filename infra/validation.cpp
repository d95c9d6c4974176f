#include "infra/validation.h"

#include <compare>
#include <optional>
#include <string>

#include "infra/literals.h"
#include "infra/logging.h"
#include "infra/numbers.h"
#include "infra/trap.h"
#include "infra/vb.h"

namespace qdr {

namespace {

// The three steps every routine opens with; `erl` follows them (1 to 3).
// Gives the routine's answer when they decide it (an optional field left
// empty, a mandatory one left empty), nothing when the routine's own rules
// follow.
std::optional<bool> common_steps(const std::string& caption, Variant& value,
                                 const Variant& mandatory, Variant& message, int& erl) {
  erl = 1;
  if (!vb::text_of(value).empty()) value = gRetira_Caracteres_Especiais(value);
  const bool empty = vb::text_of(value).empty();
  erl = 2;
  if (vb::eq(mandatory, Variant("N")) && empty) return true;
  erl = 3;
  if (empty) {
    message = Variant("Preencha " + caption);
    return false;
  }
  return std::nullopt;
}

bool reject(Variant& message, std::string text) {
  message = Variant(std::move(text));
  return false;
}

bool given(const Variant& limit) { return !vb::text_of(limit).empty(); }

// The closing pair of checks of a date, a time or a number: the value
// against each limit that is given, at lines `erl_minimum` and the next.
// `order(limit)` compares the value with a limit in the routine's own terms
// (texts or numbers); an unordered pair passes both checks.
template <typename Order>
bool within_limits(const std::string& label, const Variant& minimum, const Variant& maximum,
                   Order order, Variant& message, int& erl, int erl_minimum) {
  erl = erl_minimum;
  if (given(minimum) && order(minimum) < 0) {
    return reject(message, label + " deve ser igual ou maior que " + vb::text_of(minimum));
  }
  erl = erl_minimum + 1;
  if (given(maximum) && order(maximum) > 0) {
    return reject(message, label + " deve ser igual ou menor que " + vb::text_of(maximum));
  }
  return true;
}

// The routine's fixed text, and for user id 1 the technical detail.
bool trapped(const char* fixed_text, const char* routine, const Variant& user_id, Variant& message,
             int erl) noexcept {
  const ErrInfo error = current_error();
  try {
    std::string text = fixed_text;
    if (is_technical_user(user_id)) {
      text += std::string(" - KRNCCA.") + routine + " (" + std::to_string(error.number) + " : " +
              error.description + ")  " + " No Nº " + std::to_string(erl);
    }
    message = Variant(std::move(text));
  } catch (...) {
  }
  return false;
}

// "dd/mm/aaaa" to "yyyy/mm/dd", by position.
std::string year_month_day(const std::string& text) {
  return vb::mid(text, 7, 4) + "/" + vb::mid(text, 4, 2) + "/" + vb::mid(text, 1, 2);
}

std::string hour_format_message(const std::string& caption, const char* example) {
  return "Preencha " + caption +
         " com uma hora válida, com 5 dígitos, no formato hh:mm (Exemplo: " + example + ")";
}

// gConsiste_Inteiro and gConsiste_Numero differ only in the decimal comma
// and in their trap's texts.
bool check_number(const Variant& caption, Variant& value, const Variant& minimum,
                  const Variant& maximum, const Variant& user_id, Variant& message,
                  const Variant& mandatory, bool allow_comma, const char* fixed_text,
                  const char* routine) noexcept {
  int erl = 0;
  try {
    const std::string label = vb::text_of(caption);
    if (const auto decided = common_steps(label, value, mandatory, message, erl)) return *decided;
    const std::string text = vb::text_of(value);
    erl = 4;
    if (vb::instr(1, text, ".") > 0) {
      return reject(message, "O campo " + label +
                                 " não permite a digitação de números com uso de separador de "
                                 "milhar(.)");
    }
    erl = 5;
    if (!allow_comma && vb::instr(1, text, ",") > 0) {
      return reject(message, "O campo " + label +
                                 " não permite a digitação de números com casas decimais(,)");
    }
    erl = 6;
    if (!vb::is_numeric(value)) return reject(message, "Preencha " + label + " com valor numérico");
    const auto order = [&](const Variant& limit) {
      return numeric_value(value) <=> numeric_value(limit);
    };
    return within_limits(label, minimum, maximum, order, message, erl, 7);
  } catch (...) {
    return trapped(fixed_text, routine, user_id, message, erl);
  }
}

}  // namespace

bool gConsiste_Data(const Variant& caption, Variant& value, const Variant& minimum,
                    const Variant& maximum, const Variant& user_id, Variant& message,
                    Variant& as_ymd, const Variant& mandatory) {
  int erl = 0;
  try {
    const std::string label = vb::text_of(caption);
    if (const auto decided = common_steps(label, value, mandatory, message, erl)) return *decided;
    const std::string text = vb::text_of(value);
    erl = 4;
    if (vb::len(text) != 10) {
      return reject(message, "Preencha " + label +
                                 " com uma data válida, com 10 dígitos, no formato dd/mm/aaaa "
                                 "(Exemplo: 13/10/2001)");
    }
    erl = 5;
    if (!vb::is_date(Variant(text))) {
      return reject(message, "Preencha " + label +
                                 " com uma data válida, no formato dd/mm/aaaa (Exemplo: "
                                 "13/10/2001)");
    }
    erl = 6;
    if (vb::gt(Variant(vb::mid(text, 4, 2)), Variant(12))) {
      return reject(message, "O mês da data do campo " + label + " deve ser menor ou igual a 12");
    }
    erl = 7;
    const std::string ymd = year_month_day(text);
    as_ymd = Variant(ymd);
    // The limits are compared as "yyyy/mm/dd" texts, which orders them as
    // dates; a limit in another layout compares as whatever its characters
    // say, deliberately.
    const auto order = [&](const Variant& limit) {
      return ymd <=> year_month_day(vb::text_of(limit));
    };
    return within_limits(label, minimum, maximum, order, message, erl, 8);
  } catch (...) {
    return trapped("Acesso a consistência de datas não disponível. Favor tentar mais tarde. ",
                   "gConsiste_Data", user_id, message, erl);
  }
}

bool gConsiste_Hora(const Variant& caption, Variant& value, const Variant& minimum,
                    const Variant& maximum, const Variant& user_id, Variant& message,
                    const Variant& comparison, const Variant& mandatory) {
  int erl = 0;
  try {
    const std::string label = vb::text_of(caption);
    if (const auto decided = common_steps(label, value, mandatory, message, erl)) return *decided;
    const std::string text = vb::text_of(value);
    const Variant hours(vb::mid(text, 1, 2));
    const Variant minutes(vb::mid(text, 4, 2));
    // Deliberate: each format rule names an example time of its own.
    erl = 4;
    if (vb::len(text) != 5) return reject(message, hour_format_message(label, "08:10"));
    erl = 5;
    if (vb::mid(text, 3, 1) != ":") return reject(message, hour_format_message(label, "08:15"));
    erl = 6;
    if (!vb::is_numeric(hours)) return reject(message, hour_format_message(label, "08:20"));
    erl = 7;
    if (!vb::is_numeric(minutes)) return reject(message, hour_format_message(label, "08:25"));
    erl = 8;
    if (vb::gt(hours, Variant(23)) || vb::lt(hours, Variant(0))) {
      return reject(message, hour_format_message(label, "08:30"));
    }
    erl = 9;
    if (vb::gt(minutes, Variant(59)) || vb::lt(minutes, Variant(0))) {
      return reject(message, hour_format_message(label, "08:35"));
    }
    erl = 10;
    if (!vb::is_date(Variant(text))) {
      return reject(
          message, "Preencha " + label + " com uma hora válida, no formato hh:mm (Exemplo: 08:40)");
    }
    // Times are compared as texts, as everywhere else in the closing.
    const std::string compared = vb::text_of(comparison).empty() ? text : vb::text_of(comparison);
    const auto order = [&](const Variant& limit) { return compared <=> vb::text_of(limit); };
    return within_limits(label, minimum, maximum, order, message, erl, 11);
  } catch (...) {
    return trapped("Acesso a consistência de Hora não disponível. Favor tentar mais tarde. ",
                   "gConsiste_Hora", user_id, message, erl);
  }
}

bool gConsiste_Inteiro(const Variant& caption, Variant& value, const Variant& minimum,
                       const Variant& maximum, const Variant& user_id, Variant& message,
                       const Variant& mandatory) {
  return check_number(
      caption, value, minimum, maximum, user_id, message, mandatory, false,
      "Acesso a consistência de campo inteiro não disponível. Favor tentar mais tarde. ",
      "gConsiste_Inteiro");
}

bool gConsiste_Numero(const Variant& caption, Variant& value, const Variant& minimum,
                      const Variant& maximum, const Variant& user_id, Variant& message,
                      const Variant& mandatory) {
  return check_number(
      caption, value, minimum, maximum, user_id, message, mandatory, true,
      "Acesso a consistência de campo numérico não disponível. Favor tentar mais tarde. ",
      "gConsiste_Numero");
}

bool gConsiste_String(const Variant& caption, Variant& value, const Variant& maximum_length,
                      const Variant& user_id, Variant& message, const Variant& mandatory) {
  int erl = 0;
  try {
    const std::string label = vb::text_of(caption);
    if (const auto decided = common_steps(label, value, mandatory, message, erl)) return *decided;
    erl = 4;
    const double limit = numeric_value(maximum_length);
    if (limit > 0 && vb::len(vb::text_of(value)) > limit) {
      return reject(message, "Preencha " + label + " com, no máximo, " +
                                 vb::text_of(maximum_length) + " caracteres.");
    }
    return true;
  } catch (...) {
    // Deliberate: this text says "disponível" without "não", as it always has.
    return trapped(
        "Acesso a consistência de campos alfanuméricos disponível. Favor tentar mais tarde. ",
        "gConsiste_String", user_id, message, erl);
  }
}

}  // namespace qdr
