#include "infra/command_text.h"

#include <vector>

#include "infra/literals.h"
#include "infra/trap.h"
#include "infra/vb.h"

namespace qdr {

namespace {

std::string formatted(const ado::AdoParameter& parameter) {
  const Variant& value = parameter.Value;
  switch (parameter.Type) {
    case ado::adInteger:
      return vb::ucase(vb::text_of(gFormata_Numero_SQL(gTrata_Nulo(value))));
    case ado::adCurrency:
      return vb::replace(vb::ucase(vb::text_of(gFormata_Numero_SQL(gTrata_Nulo(value)))), ",", ".");
    case ado::adDBTimeStamp:
      return vb::ucase(vb::text_of(gFormata_Texto_SQL(value)));
    case ado::adVarChar: {
      std::string literal = vb::text_of(gFormata_Texto_SQL(value));
      return literal == "null" ? "NULL" : literal;
    }
    default:
      return vb::ucase(vb::text_of(gTrata_Nulo(value)));
  }
}

}  // namespace

std::string mGetCommandText(const ado::Command* command, std::string* error_detail) {
  if (command == nullptr) return "";
  try {
    const std::string text = command->CommandText();
    const int32_t start = vb::instr(1, text, "call") + 5;
    const int32_t open = vb::instr(start, text, "(");
    const std::string name = vb::mid(text, start, open - start);

    const auto& parameters = command->Parameters();
    // The values go into an array dimensioned 0 to Count - 1, which cannot
    // be made for a command without parameters.
    if (parameters.Count() == 0) vb::raise(vb::kSubscriptOutOfRange);
    std::string list;
    for (int32_t i = 0; i < parameters.Count(); ++i)
      list += (i ? ", " : "") + formatted(parameters.Item(i));
    return "EXECUTE " + name + " " + list;
  } catch (...) {
    if (error_detail != nullptr) {
      const ErrInfo error = current_error();
      *error_detail =
          " - mGetCommandText (" + error.description + " : " + std::to_string(error.number) + ") ";
    }
    return "";
  }
}

bool gMonta_Texto_Exec(const ado::Command& command, const std::string& name, Variant& out_text) {
  const auto& parameters = command.Parameters();
  std::string list;
  for (int32_t i = 0; i < parameters.Count(); ++i) {
    const auto& parameter = parameters.Item(i);
    if (parameter.Value.is_null()) {
      list += "Null, ";
      continue;
    }
    switch (parameter.Type) {
      case ado::adDate:
      case ado::adChar:
      case ado::adWChar:
      case ado::adVarChar:
      case ado::adLongVarChar:
      case ado::adVarWChar:
      case ado::adLongVarWChar:
        list += '\'';
        list += vb::cstr(parameter.Value);
        list += "', ";
        break;
      default:
        list += vb::cstr(parameter.Value) + ", ";
        break;
    }
  }
  // Cutting the trailing ", " off an empty list is the legacy failure for a
  // command without parameters.
  list = vb::left(list, vb::len(list) - 2);
  out_text = Variant("EXEC " + name + " " + list);
  return true;
}

}  // namespace qdr
