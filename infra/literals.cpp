#include "infra/literals.h"

#include <string>

#include "infra/vb.h"

namespace qdr {

namespace {

const Variant& empty_text() {
  static const Variant empty("");
  return empty;
}

bool differs_from_empty(const Variant& value) { return vb::ne(value, empty_text()); }

Variant null_form(const Variant& op) {
  const std::string text = vb::text_of(op);
  if (text == "<>") return Variant(" is not null");
  if (text == "=") return Variant(" is null");
  return Variant(" null");
}

}  // namespace

Variant gFormata_Data_SQL(const Variant& value) {
  if (!differs_from_empty(value)) return Variant("null");
  return Variant("'" + vb::format_date(value, "yyyy/mm/dd hh:mm") + "'");
}

Variant gTrata_Nulo(const Variant& value) { return value.is_null() ? empty_text() : value; }

Variant gFormata_Numero_SQL(const Variant& value) {
  if (vb::val(vb::text_of(value)) == 0) return Variant("null");
  return value;
}

Variant gFormata_Texto_SQL(const Variant& value) {
  if (!differs_from_empty(value)) return Variant("null");
  return Variant("'" + vb::text_of(value) + "'");
}

bool gTroca_Virgula_Ponto(const Variant& text, Variant& out_text) {
  std::string result;
  if (!text.is_array() && text.type() != VarType::Error) result = vb::text_of(text);
  for (char& c : result) {
    if (c == ',') c = '.';
  }
  out_text = Variant(std::move(result));
  return true;
}

Variant gRetira_Caracteres_Especiais(const Variant& text) {
  const std::string source = vb::text_of(text);
  std::string result;
  result.reserve(source.size());
  for (char c : source) {
    switch (c) {
      case '\'':
      case '<':
      case '>':
      case '(':
      case ')':
      case ';':
      case '%':
      case '&':
      case '+':
      case '"':
        break;
      default:
        result += c;
    }
  }
  return Variant(std::move(result));
}

Variant gValor_Padrao(const Variant& value, const std::optional<Variant>& default_value) {
  if (vb::len(vb::text_of(value)) > 0) return value;
  return default_value ? *default_value : Variant::null();
}

Variant gWhere_Data_Oracle(const Variant& value, Variant& op) {
  if (!differs_from_empty(value)) return null_form(op);
  return Variant(" " + vb::text_of(op) + " to_date('" +
                 vb::format_date(value, "yyyy/mm/dd hh:mm:ss") + "', 'yyyy/mm/dd hh24:mi:ss')");
}

Variant gWhere_Numero(const Variant& value, Variant& op) {
  if (vb::val(vb::text_of(value)) == 0) return null_form(op);
  return Variant(" " + vb::text_of(op) + " " + vb::text_of(value));
}

Variant gWhere_Texto(const Variant& value, Variant& op) {
  const Variant piece = differs_from_empty(value)
                            ? Variant(" " + vb::text_of(op) + " '" + vb::text_of(value) + "'")
                            : null_form(op);
  return Variant(vb::ucase(piece.as_string()));
}

}  // namespace qdr
