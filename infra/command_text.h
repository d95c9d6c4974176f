#pragma once

// A prepared command turned back into readable statement text, for error
// messages and logs. The texts are for reading only: nothing runs them.

#include <string>

#include "infra/ado.h"
#include "qdr/variant.h"

namespace qdr {

// "EXECUTE " + the procedure name + " " + the parameter values joined by
// ", ". The name is taken from the command's call form: from 5 characters
// after the first "call" to before the next "(" (the presence of "call" is
// not checked, deliberately). Each value is written by its type: 3 as a
// numeric literal upper-cased (0, empty and Null give "NULL"); 6 likewise
// with every "," made "."; 135 as a quoted text literal upper-cased; 200 as
// a quoted text literal with "null" upper-cased and any other literal kept
// as it is; any other type as its text upper-cased (Null gives "").
//
// No command gives "". Any failure (a command without parameters has no
// "(" in its call form) also gives "", and, when `error_detail` is given,
// stores there " - mGetCommandText (" + description + " : " + number + ") ".
std::string mGetCommandText(const ado::Command* command, std::string* error_detail = nullptr);

// out_text = "EXEC " + name + " " + the parameter values joined by ", ":
// Null as "Null"; types 7, 129, 130 and 200-203 between single quotes, an
// inner quote left as it is (deliberately: the text is only for reading);
// any other value as its text. Returns true. A command without parameters
// raises qdr::Error 5 (Invalid procedure call or argument), which belongs
// to the caller's trap; out_text is then left as it was.
bool gMonta_Texto_Exec(const ado::Command& command, const std::string& name, Variant& out_text);

}  // namespace qdr
