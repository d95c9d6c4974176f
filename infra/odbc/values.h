#pragma once

// Values in and out of ODBC: bound parameters and result columns.

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "infra/odbc/dialect.h"
#include "infra/odbc/handles.h"
#include "qdr/backend.h"

namespace qdr::odbc {

// The buffers of one execution's parameters; they must stay alive until the
// statement has run.
//
// A text statement's literals are bound as text (SQL_C_CHAR, SQL_VARCHAR)
// so that the database resolves them against the declared argument types,
// as it would the literals themselves: numbers in their plain form ("12",
// "-3", "4.5"), texts as UTF-8, null as NULL.
//
// A command's parameters are bound by their type: 3 as a 32-bit integer,
// 5 as a double, 6 as a decimal(19,4), 7 and 135 as a timestamp, 129, 200
// and 201 as text (130, 202 and 203 as wide text on SQL Server), anything
// else as text. Null and Empty values are bound as NULL. A value that does
// not convert to its type raises qdr::Error (13 Type mismatch, 6 Overflow).
class ParameterBuffers {
 public:
  void bind(const StatementHandle& statement, const Statement& source, Dialect dialect);

 private:
  struct Slot {
    std::string text;
    SQLLEN indicator = 0;
    SQLINTEGER integer = 0;
    double real = 0;
    SQL_TIMESTAMP_STRUCT timestamp{};
  };
  // A deque keeps the addresses given to the driver stable as it grows.
  std::deque<Slot> slots_;
};

// Reads every row of the statement's current result set. Column values
// become variants: smallint and tinyint Integer; integer Long; bigint Long
// when it fits, else Double; numeric, decimal, real, float and double
// Double; money Currency; date, time and timestamp Date; bit and boolean
// Boolean; text of any kind String (UTF-8); NULL Null.
ResultSet read_result_set(const StatementHandle& statement, SQLSMALLINT column_count);

// A money value as the databases print it ("$1,234.50", "-1234.5000",
// "($3.00)", "R$ 1.234,56") in ten-thousandths; nullopt when the text holds
// no number. The decimal separator is the last "." or "," followed by one,
// two or four digits.
std::optional<int64_t> parse_money(std::string_view text);

}  // namespace qdr::odbc
