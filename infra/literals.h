#pragma once

// Pieces of statement text made from argument and field values. Pure
// functions: no database access, no messages. Zero and empty values become
// the word null on purpose, so a numeric 0 never reaches a procedure as 0.

#include <optional>
#include <string>

#include "qdr/variant.h"

namespace qdr {

Variant gFormata_Data_SQL(const Variant& value);    // "'yyyy/mm/dd hh:mm'" or "null"
Variant gTrata_Nulo(const Variant& value);          // Null gives "", anything else as it is
Variant gFormata_Numero_SQL(const Variant& value);  // "null" when Val() is 0, else the value
Variant gFormata_Texto_SQL(const Variant& value);   // "'value'" (quotes not doubled) or "null"
// Every "," to "."; accepts any input (Null, arrays and errors give "").
bool gTroca_Virgula_Ponto(const Variant& text, Variant& out_text);
// Drops ' < > ( ) ; % & + and the double quote; Null gives "".
Variant gRetira_Caracteres_Especiais(const Variant& text);
// The value when its text is not empty; else the default, or Null when none
// was passed.
Variant gValor_Padrao(const Variant& value, const std::optional<Variant>& default_value = {});
Variant gWhere_Data_Oracle(const Variant& value, Variant& op);
Variant gWhere_Numero(const Variant& value, Variant& op);
Variant gWhere_Texto(const Variant& value, Variant& op);

}  // namespace qdr
