#pragma once

// The statement parser: the only way a statement reaches a data source.
//
// The routines build their statements as text ("EXEC NAME 1, 'a', null") or
// as stored-procedure commands. Both become a qdr::Statement here: one call
// with its literals taken out as bound values, or one of the component's few
// plain statements in a fixed shape. Anything else (a second statement, a
// comment, an unbalanced quote, a name that is not a plain name, text after
// the last argument, a statement of another shape) is refused with
// qdr::DatabaseError before any data source sees it, so the routines' traps
// treat it like any database failure.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "qdr/backend.h"

namespace qdr::sql_text {

// The number and SQLSTATE of a refused statement (a syntax error, as the
// data-access platform numbers it).
inline constexpr int32_t kRefusedNumber = -2147217900;
inline constexpr const char* kRefusedState = "42000";

// Parses a statement text. Accepted, keywords in any letter case and blanks,
// tabs and line breaks anywhere between the pieces:
//
//   EXEC|EXECUTE name [argument {, argument}]
//       argument: a number (12, -3, 4.5, 1E3), a quoted text ('a', with ''
//       for a quote inside), null, or "@Name = " one of those; once an
//       argument is named, all that follow must be named too.
//   INSERT INTO LOG_MSG (column {, column}) VALUES (value {, value})
//       value: a literal as above, GETDATE() or TO_DATE('text' , 'text');
//       as many values as columns.
//   SELECT column FROM infra_ids
//   UPDATE infra_ids SET column = literal
//
// Names are plain names: [A-Za-z_][A-Za-z0-9_]*, a procedure's optionally
// qualified by one schema name ("dbo.SP_X"). The tables are matched without
// regard to case.
//
// The result has kind Text and `text` exactly as given. For a call,
// `procedure` is the name as written and `sql` is empty; for a plain
// statement, `procedure` is empty and `sql` is the statement with "?" for
// each literal (GETDATE() kept, TO_DATE taking two "?"), names as written.
// Parameters are the literals in order: type 3 and a Long for an integral
// number that fits 32 bits, type 5 and a Double for any other number, 200
// and a String for a text (size its length in bytes), 0 and Null for null;
// name is "@Name" for a named argument.
//
// Raises DatabaseError(kRefusedNumber, "Statement refused: <reason>",
// kRefusedState) for anything else.
Statement parse_text(std::string_view text);

// The statement of a stored-procedure command: kind Command, `text` the
// call form below, `procedure` the name, the parameters as given. Raises
// DatabaseError as above when the name is not a plain name.
Statement parse_command(std::string_view procedure, std::vector<Parameter> parameters);

// "{ call NAME(?, ?) }", or "{ call NAME }" without parameters.
std::string call_form(std::string_view procedure, std::size_t parameter_count);

// True for a plain name, optionally qualified by one schema name.
bool is_plain_name(std::string_view name);

}  // namespace qdr::sql_text
