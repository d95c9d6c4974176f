#include "infra/odbc/values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>
#include <vector>

#include "infra/ado.h"
#include "infra/ascii.h"
#include "infra/vb.h"
#include "qdr/error.h"

namespace qdr::odbc {

namespace {

// Numbers written the same way whatever the process locale says.
std::string plain_number(double value) {
  char buffer[64];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
  if (error != std::errc()) return vb::cstr(Variant(value));
  return std::string(buffer, end);
}

std::string literal_text(const Variant& value) {
  switch (value.type()) {
    case VarType::Long:
      return std::to_string(value.as_long());
    case VarType::Integer:
      return std::to_string(value.as_integer());
    case VarType::Double:
      return plain_number(value.as_double());
    case VarType::String:
      return value.as_string();
    default:
      return vb::cstr(value);
  }
}

std::string currency_text(const Variant& value) {
  int64_t scaled = 0;
  if (value.type() == VarType::Currency) {
    scaled = value.as_currency_scaled();
  } else {
    const double real = std::round(vb::cdbl(value) * 10000.0);
    if (!(std::fabs(real) < 9.2e18)) vb::raise(vb::kOverflow);
    scaled = static_cast<int64_t>(real);
  }
  const bool negative = scaled < 0;
  const uint64_t magnitude =
      negative ? 0 - static_cast<uint64_t>(scaled) : static_cast<uint64_t>(scaled);
  std::string fraction = std::to_string(magnitude % 10000);
  fraction.insert(0, 4 - fraction.size(), '0');
  return (negative ? "-" : "") + std::to_string(magnitude / 10000) + "." + fraction;
}

SQL_TIMESTAMP_STRUCT timestamp_of(const Variant& value) {
  const auto parts = vb::date_parts(vb::cdate(value));
  SQL_TIMESTAMP_STRUCT ts{};
  ts.year = static_cast<SQLSMALLINT>(parts.year);
  ts.month = static_cast<SQLUSMALLINT>(parts.month);
  ts.day = static_cast<SQLUSMALLINT>(parts.day);
  ts.hour = static_cast<SQLUSMALLINT>(parts.hour);
  ts.minute = static_cast<SQLUSMALLINT>(parts.minute);
  ts.second = static_cast<SQLUSMALLINT>(parts.second);
  return ts;
}

SQLULEN text_size(const std::string& text) {
  return text.empty() ? 1 : static_cast<SQLULEN>(text.size());
}

}  // namespace

void ParameterBuffers::bind(const StatementHandle& statement, const Statement& source,
                            Dialect dialect) {
  SQLUSMALLINT number = 0;
  for (const auto& parameter : source.parameters) {
    ++number;
    Slot& slot = slots_.emplace_back();
    const Variant& value = parameter.value;
    const bool is_null = value.is_null() || value.is_empty();
    SQLSMALLINT c_type = SQL_C_CHAR;
    SQLSMALLINT sql_type = SQL_VARCHAR;
    SQLULEN column_size = 1;
    SQLSMALLINT digits = 0;
    SQLPOINTER data = nullptr;
    SQLLEN capacity = 0;

    auto as_text = [&](SQLSMALLINT type) {
      if (!is_null)
        slot.text = source.kind == Statement::Kind::Text ? literal_text(value) : vb::cstr(value);
      sql_type = type;
      // SQL Server's varchar stops at 8000 bytes; beyond that it is the long form.
      if (dialect == Dialect::SqlServer && slot.text.size() > 8000)
        sql_type = type == SQL_WVARCHAR ? SQL_WLONGVARCHAR : SQL_LONGVARCHAR;
      column_size = text_size(slot.text);
      data = slot.text.data();
      capacity = static_cast<SQLLEN>(slot.text.size());
      slot.indicator = capacity;
    };

    if (source.kind == Statement::Kind::Text) {
      as_text(SQL_VARCHAR);
    } else {
      switch (parameter.type) {
        case ado::adInteger:
          c_type = SQL_C_SLONG;
          sql_type = SQL_INTEGER;
          column_size = 10;
          if (!is_null) slot.integer = vb::clng(value);
          data = &slot.integer;
          break;
        case ado::adDouble:
          c_type = SQL_C_DOUBLE;
          sql_type = SQL_DOUBLE;
          column_size = 15;
          if (!is_null) slot.real = vb::cdbl(value);
          data = &slot.real;
          break;
        case ado::adCurrency:
          if (!is_null) slot.text = currency_text(value);
          sql_type = SQL_DECIMAL;
          column_size = 19;
          digits = 4;
          data = slot.text.data();
          capacity = static_cast<SQLLEN>(slot.text.size());
          slot.indicator = capacity;
          break;
        case ado::adDate:
        case ado::adDBTimeStamp:
          c_type = SQL_C_TYPE_TIMESTAMP;
          sql_type = SQL_TYPE_TIMESTAMP;
          column_size = 23;
          digits = 3;
          if (!is_null) slot.timestamp = timestamp_of(value);
          data = &slot.timestamp;
          break;
        case ado::adLongVarChar:
          as_text(SQL_LONGVARCHAR);
          break;
        case ado::adWChar:
        case ado::adVarWChar:
        case ado::adLongVarWChar:
          as_text(dialect == Dialect::SqlServer
                      ? (parameter.type == ado::adLongVarWChar ? SQL_WLONGVARCHAR : SQL_WVARCHAR)
                      : SQL_VARCHAR);
          break;
        default:
          as_text(SQL_VARCHAR);
          break;
      }
    }
    if (is_null) slot.indicator = SQL_NULL_DATA;
    check(SQLBindParameter(statement.get(), number, SQL_PARAM_INPUT, c_type, sql_type, column_size,
                           digits, data, capacity, &slot.indicator),
          statement, "SQLBindParameter");
  }
}

std::optional<int64_t> parse_money(std::string_view text) {
  bool negative = false;
  std::string digits;
  std::size_t fraction_digits = 0;
  // The decimal separator: the last "." or "," followed by 1, 2 or 4 digits.
  std::size_t separator = std::string_view::npos;
  const auto last = text.find_last_of(".,");
  if (last != std::string_view::npos) {
    std::size_t count = 0;
    for (std::size_t i = last + 1; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
      ++count;
    if (count == 1 || count == 2 || count == 4) separator = last;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '-' || c == '(') negative = true;
    if (c >= '0' && c <= '9') {
      digits += c;
      if (separator != std::string_view::npos && i > separator) ++fraction_digits;
    }
  }
  if (digits.empty()) return std::nullopt;
  while (fraction_digits < 4) {
    digits += '0';
    ++fraction_digits;
  }
  int64_t scaled = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), scaled);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return negative ? -scaled : scaled;
}

namespace {

enum class Reader { Int16, Int32, Int64, Real, Money, Boolean, Date, Time, Text };

struct Column {
  std::string name;
  Reader reader = Reader::Text;
};

Reader reader_for(SQLSMALLINT sql_type, std::string_view type_name) {
  // Drivers report money and booleans under general types (psqlODBC: money
  // as SQL_FLOAT, bool as SQL_VARCHAR), so their type names decide first.
  if (ascii::iequals(type_name, "money") || ascii::iequals(type_name, "smallmoney"))
    return Reader::Money;
  if (ascii::iequals(type_name, "bool") || ascii::iequals(type_name, "boolean"))
    return Reader::Boolean;
  switch (sql_type) {
    case SQL_TINYINT:
    case SQL_SMALLINT:
      return Reader::Int16;
    case SQL_INTEGER:
      return Reader::Int32;
    case SQL_BIGINT:
      return Reader::Int64;
    case SQL_NUMERIC:
    case SQL_DECIMAL:
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return Reader::Real;
    case SQL_BIT:
      return Reader::Boolean;
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
    case SQL_DATE:
    case SQL_TIMESTAMP:
      return Reader::Date;
    case SQL_TYPE_TIME:
    case SQL_TIME:
      return Reader::Time;
    default:
      return Reader::Text;
  }
}

std::vector<Column> describe_columns(const StatementHandle& statement, SQLSMALLINT count) {
  std::vector<Column> columns;
  columns.reserve(static_cast<std::size_t>(count));
  for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
    SQLCHAR name[256] = {};
    SQLSMALLINT name_length = 0, sql_type = 0, digits = 0, nullable = 0;
    SQLULEN size = 0;
    check(SQLDescribeCol(statement.get(), i, name, sizeof name, &name_length, &sql_type, &size,
                         &digits, &nullable),
          statement, "SQLDescribeCol");
    SQLCHAR type_name[128] = {};
    SQLSMALLINT type_name_length = 0;
    check(SQLColAttribute(statement.get(), i, SQL_DESC_TYPE_NAME, type_name, sizeof type_name,
                          &type_name_length, nullptr),
          statement, "SQLColAttribute");
    const auto used = static_cast<std::size_t>(
        std::clamp<SQLSMALLINT>(name_length, 0, static_cast<SQLSMALLINT>(sizeof name - 1)));
    columns.push_back({std::string(reinterpret_cast<const char*>(name), used),
                       reader_for(sql_type, reinterpret_cast<const char*>(type_name))});
  }
  return columns;
}

// The whole text of a column, however long; nullopt for NULL.
std::optional<std::string> read_text(const StatementHandle& statement, SQLUSMALLINT column) {
  std::string out;
  char buffer[4096];
  for (;;) {
    SQLLEN indicator = 0;
    const SQLRETURN rc =
        check(SQLGetData(statement.get(), column, SQL_C_CHAR, buffer, sizeof buffer, &indicator),
              statement, "SQLGetData");
    if (rc == SQL_NO_DATA) break;
    if (indicator == SQL_NULL_DATA) return std::nullopt;
    const bool truncated =
        indicator == SQL_NO_TOTAL || indicator >= static_cast<SQLLEN>(sizeof buffer);
    if (rc == SQL_SUCCESS_WITH_INFO && truncated) {
      out.append(buffer, sizeof buffer - 1);
      continue;
    }
    out.append(buffer, static_cast<std::size_t>(indicator));
    break;
  }
  return out;
}

template <typename T>
std::optional<T> read_fixed(const StatementHandle& statement, SQLUSMALLINT column,
                            SQLSMALLINT c_type) {
  T value{};
  SQLLEN indicator = 0;
  check(SQLGetData(statement.get(), column, c_type, &value, sizeof value, &indicator), statement,
        "SQLGetData");
  if (indicator == SQL_NULL_DATA) return std::nullopt;
  return value;
}

// psqlODBC writes numerics as text with the process locale's decimal
// separator ("1,5" under pt_BR); a driver never groups thousands, so a lone
// comma is the decimal point.
double parse_real(std::string text) {
  if (text.find('.') == std::string::npos) {
    const auto comma = text.find(',');
    if (comma != std::string::npos && text.find(',', comma + 1) == std::string::npos)
      text[comma] = '.';
  }
  const char* first = text.data();
  const char* last = text.data() + text.size();
  while (first < last && *first == ' ') ++first;
  if (first < last && *first == '+') ++first;
  double value = 0;
  const auto [end, error] = std::from_chars(first, last, value);
  if (error != std::errc() || end != last) vb::raise(vb::kTypeMismatch);
  return value;
}

Variant read_value(const StatementHandle& statement, SQLUSMALLINT column, Reader reader) {
  switch (reader) {
    case Reader::Int16: {
      auto v = read_fixed<SQLSMALLINT>(statement, column, SQL_C_SSHORT);
      return v ? Variant::integer(*v) : Variant::null();
    }
    case Reader::Int32: {
      auto v = read_fixed<SQLINTEGER>(statement, column, SQL_C_SLONG);
      return v ? Variant(static_cast<int32_t>(*v)) : Variant::null();
    }
    case Reader::Int64: {
      auto v = read_fixed<SQLBIGINT>(statement, column, SQL_C_SBIGINT);
      if (!v) return Variant::null();
      if (*v >= std::numeric_limits<int32_t>::min() && *v <= std::numeric_limits<int32_t>::max())
        return Variant(static_cast<int32_t>(*v));
      return Variant(static_cast<double>(*v));
    }
    case Reader::Real: {
      // As text: a driver's own conversion to double may follow the process
      // locale and misread the server's "1.5" under a decimal comma.
      auto text = read_text(statement, column);
      return text ? Variant(parse_real(*text)) : Variant::null();
    }
    case Reader::Money: {
      auto text = read_text(statement, column);
      if (!text) return Variant::null();
      auto scaled = parse_money(*text);
      if (!scaled) vb::raise(vb::kTypeMismatch);
      return Variant::currency_scaled(*scaled);
    }
    case Reader::Boolean: {
      auto text = read_text(statement, column);
      if (!text) return Variant::null();
      const std::string& t = *text;
      return Variant(t == "1" || ascii::iequals(t, "t") || ascii::iequals(t, "true") ||
                     ascii::iequals(t, "y") || ascii::iequals(t, "yes") || ascii::iequals(t, "on"));
    }
    case Reader::Date: {
      auto v = read_fixed<SQL_TIMESTAMP_STRUCT>(statement, column, SQL_C_TYPE_TIMESTAMP);
      if (!v) return Variant::null();
      return Variant::date(vb::make_date(v->year, v->month, v->day, v->hour, v->minute, v->second));
    }
    case Reader::Time: {
      auto v = read_fixed<SQL_TIME_STRUCT>(statement, column, SQL_C_TYPE_TIME);
      if (!v) return Variant::null();
      return Variant::date(vb::make_date(1899, 12, 30, v->hour, v->minute, v->second));
    }
    case Reader::Text:
      break;
  }
  auto text = read_text(statement, column);
  return text ? Variant(std::move(*text)) : Variant::null();
}

}  // namespace

ResultSet read_result_set(const StatementHandle& statement, SQLSMALLINT column_count) {
  const auto columns = describe_columns(statement, column_count);
  ResultSet result;
  result.columns.reserve(columns.size());
  for (const auto& column : columns) result.columns.push_back(column.name);
  while (check(SQLFetch(statement.get()), statement, "SQLFetch") != SQL_NO_DATA) {
    std::vector<Variant> row;
    row.reserve(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
      row.push_back(read_value(statement, static_cast<SQLUSMALLINT>(i + 1), columns[i].reader));
    result.rows.push_back(std::move(row));
  }
  return result;
}

}  // namespace qdr::odbc
