#include "infra/json_variant.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>
#include <optional>

namespace qdr::json {

namespace {

constexpr std::chrono::sys_days kDayZero{std::chrono::year{1899} / 12 / 30};
constexpr int64_t kCurrencyScale = 10000;

[[noreturn]] void fail(const std::string& where, const std::string& why) {
  throw ValueError(where.empty() ? why : where + ": " + why);
}

// Integral JSON numbers come as signed or unsigned; both fit in int64 for
// every range that matters here, anything larger is out of range anyway.
std::optional<int64_t> integral(const Json& j) {
  if (j.is_number_integer() && !j.is_number_unsigned()) return j.get<int64_t>();
  if (j.is_number_unsigned()) {
    const auto u = j.get<uint64_t>();
    if (u <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
      return static_cast<int64_t>(u);
  }
  return std::nullopt;
}

std::optional<int64_t> integral_in(const Json& j, int64_t lo, int64_t hi) {
  const auto v = integral(j);
  if (v && *v >= lo && *v <= hi) return v;
  return std::nullopt;
}

std::optional<int64_t> currency_scaled(const Json& j) {
  constexpr int64_t max_units = std::numeric_limits<int64_t>::max() / kCurrencyScale;
  if (const auto v = integral(j)) {
    if (*v < -max_units || *v > max_units) return std::nullopt;
    return *v * kCurrencyScale;
  }
  if (!j.is_number_float()) return std::nullopt;
  const double scaled = j.get<double>() * static_cast<double>(kCurrencyScale);
  // 2^63 is exactly representable; anything at or beyond it does not fit.
  if (!std::isfinite(scaled) || std::fabs(scaled) >= 9223372036854775808.0) return std::nullopt;
  return std::llround(scaled);
}

bool digits(const std::string& s, std::size_t from, std::size_t count, int& out) {
  out = 0;
  for (std::size_t i = from; i < from + count; ++i) {
    if (s[i] < '0' || s[i] > '9') return false;
    out = out * 10 + (s[i] - '0');
  }
  return true;
}

std::optional<double> parse_date(const std::string& s) {
  if (s.size() != 10 && s.size() != 19) return std::nullopt;
  int y = 0, mo = 0, d = 0, h = 0, mi = 0, se = 0;
  if (!digits(s, 0, 4, y) || s[4] != '-' || !digits(s, 5, 2, mo) || s[7] != '-' ||
      !digits(s, 8, 2, d))
    return std::nullopt;
  if (s.size() == 19 && (s[10] != 'T' || !digits(s, 11, 2, h) || s[13] != ':' ||
                         !digits(s, 14, 2, mi) || s[16] != ':' || !digits(s, 17, 2, se)))
    return std::nullopt;
  const std::chrono::year_month_day ymd{std::chrono::year{y},
                                        std::chrono::month{static_cast<unsigned>(mo)},
                                        std::chrono::day{static_cast<unsigned>(d)}};
  if (!ymd.ok() || h > 23 || mi > 59 || se > 59) return std::nullopt;
  const auto days = static_cast<double>((std::chrono::sys_days{ymd} - kDayZero).count());
  const double time = (h * 3600 + mi * 60 + se) / 86400.0;
  // Before day zero the time still counts forward from midnight, so it is
  // subtracted from the negative day number.
  return days < 0 ? days - time : days + time;
}

// Empty when the date lies outside the years that the text form covers.
std::optional<std::string> format_date(double ole) {
  if (!std::isfinite(ole) || ole <= -657435.0 || ole >= 2958466.0) return std::nullopt;
  const double whole = std::trunc(ole);
  auto seconds = std::llround(std::fabs(ole - whole) * 86400.0);
  auto day = kDayZero + std::chrono::days{static_cast<int64_t>(whole)};
  if (seconds >= 86400) {
    seconds -= 86400;
    day += std::chrono::days{1};
  }
  const std::chrono::year_month_day ymd{day};
  const int year = static_cast<int>(ymd.year());
  if (year > 9999) return std::nullopt;
  const auto clock = static_cast<int>(seconds);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d", year,
                static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()), clock / 3600,
                clock / 60 % 60, clock % 60);
  return std::string(text);
}

Variant decode(const Json& j, const std::string& where);

Variant decode_list(const Json& list, int64_t lower, const std::string& where) {
  const auto n = static_cast<int64_t>(list.size());
  if (lower + n - 1 > std::numeric_limits<int32_t>::max())
    fail(where, "the array's last index does not fit in 32 bits");
  Variant out = Variant::array(static_cast<int32_t>(lower), static_cast<int32_t>(lower + n - 1));
  for (int64_t i = 0; i < n; ++i)
    out.at(static_cast<int32_t>(lower + i)) =
        decode(list[static_cast<std::size_t>(i)], where + "[" + std::to_string(i) + "]");
  return out;
}

Variant decode_typed(const Json& j, const std::string& where) {
  for (const auto& item : j.items())
    if (item.key() != "$type" && item.key() != "value" && item.key() != "lbound")
      fail(where, "unexpected key \"" + item.key() + "\" in a $type object");
  if (!j["$type"].is_string()) fail(where, "$type must be a text");
  const std::string type = j["$type"].get<std::string>();
  static const char* const known[] = {"Empty", "Null",   "Integer", "Long",  "Double", "Currency",
                                      "Date",  "String", "Boolean", "Error", "Array"};
  if (std::find(std::begin(known), std::end(known), type) == std::end(known))
    fail(where, "unknown $type \"" + type + "\"");
  if (j.contains("lbound") && type != "Array")
    fail(where, "\"lbound\" belongs only to $type \"Array\"");
  const bool has_value = j.contains("value");
  const Json& v = has_value ? j["value"] : j;

  if (type == "Empty" || type == "Null") {
    if (has_value && !v.is_null()) fail(where, "$type \"" + type + "\" takes no value");
    return type == "Empty" ? Variant() : Variant::null();
  }
  if (!has_value) fail(where, "$type \"" + type + "\" needs a \"value\"");
  if (type == "Integer") {
    if (const auto n = integral_in(v, std::numeric_limits<int16_t>::min(),
                                   std::numeric_limits<int16_t>::max()))
      return Variant::integer(static_cast<int16_t>(*n));
    fail(where, "$type \"Integer\" needs an integral number from -32768 to 32767");
  }
  if (type == "Long") {
    if (const auto n = integral_in(v, std::numeric_limits<int32_t>::min(),
                                   std::numeric_limits<int32_t>::max()))
      return Variant::long_integer(static_cast<int32_t>(*n));
    fail(where, "$type \"Long\" needs an integral number from -2147483648 to 2147483647");
  }
  if (type == "Double") {
    if (v.is_number()) return Variant::real(v.get<double>());
    if (v == "NaN") return Variant::real(std::numeric_limits<double>::quiet_NaN());
    if (v == "Infinity") return Variant::real(std::numeric_limits<double>::infinity());
    if (v == "-Infinity") return Variant::real(-std::numeric_limits<double>::infinity());
    fail(where, "$type \"Double\" needs a number, \"NaN\", \"Infinity\" or \"-Infinity\"");
  }
  if (type == "Currency") {
    if (const auto scaled = currency_scaled(v)) return Variant::currency_scaled(*scaled);
    fail(where, "$type \"Currency\" needs a number from -922337203685477 to 922337203685477");
  }
  if (type == "Date") {
    if (v.is_number()) return Variant::date(v.get<double>());
    if (v.is_string())
      if (const auto ole = parse_date(v.get<std::string>())) return Variant::date(*ole);
    fail(where,
         "$type \"Date\" needs \"yyyy-mm-ddThh:mm:ss\" or \"yyyy-mm-dd\" text or a day number");
  }
  if (type == "String") {
    if (v.is_string()) return Variant::text(v.get<std::string>());
    fail(where, "$type \"String\" needs a text");
  }
  if (type == "Boolean") {
    if (v.is_boolean()) return Variant::boolean(v.get<bool>());
    fail(where, "$type \"Boolean\" needs true or false");
  }
  if (type == "Error") {
    if (const auto n = integral_in(v, std::numeric_limits<int32_t>::min(),
                                   std::numeric_limits<uint32_t>::max()))
      return Variant::error(static_cast<int32_t>(static_cast<uint32_t>(*n)));
    fail(where, "$type \"Error\" needs an integral number from -2147483648 to 4294967295");
  }
  if (type == "Array") {
    if (!v.is_array()) fail(where, "$type \"Array\" needs a list in \"value\"");
    int64_t lower = 0;
    if (j.contains("lbound")) {
      const auto n = integral_in(j["lbound"], std::numeric_limits<int32_t>::min(),
                                 std::numeric_limits<int32_t>::max());
      if (!n) fail(where, "\"lbound\" needs an integral number from -2147483648 to 2147483647");
      lower = *n;
    }
    return decode_list(v, lower, where);
  }
  fail(where, "$type \"" + type + "\" is not handled");
}

Variant decode(const Json& j, const std::string& where) {
  switch (j.type()) {
    case Json::value_t::null:
      return Variant::null();
    case Json::value_t::boolean:
      return Variant::boolean(j.get<bool>());
    case Json::value_t::string:
      return Variant::text(j.get<std::string>());
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
      if (const auto n = integral_in(j, std::numeric_limits<int32_t>::min(),
                                     std::numeric_limits<int32_t>::max()))
        return Variant::long_integer(static_cast<int32_t>(*n));
      return Variant::real(j.get<double>());
    case Json::value_t::number_float:
      return Variant::real(j.get<double>());
    case Json::value_t::array:
      return decode_list(j, 0, where);
    case Json::value_t::object:
      if (!j.contains("$type")) fail(where, "an object needs a \"$type\"");
      return decode_typed(j, where);
    default:
      fail(where, "unsupported JSON value");
  }
}

Json typed(const char* type, Json value) {
  return Json{{"$type", type}, {"value", std::move(value)}};
}

}  // namespace

Variant from_json(const Json& value) { return decode(value, ""); }

Json to_json(const Variant& value) {
  switch (value.type()) {
    case VarType::Empty:
      return Json{{"$type", "Empty"}};
    case VarType::Null:
      return nullptr;
    case VarType::Integer:
      return typed("Integer", value.as_integer());
    case VarType::Long:
      return value.as_long();
    case VarType::Double: {
      const double d = value.as_double();
      if (std::isfinite(d)) return d;
      return typed("Double", std::isnan(d) ? "NaN" : d > 0 ? "Infinity" : "-Infinity");
    }
    case VarType::Currency:
      return typed("Currency", static_cast<double>(value.as_currency_scaled()) /
                                   static_cast<double>(kCurrencyScale));
    case VarType::Date: {
      if (auto text = format_date(value.as_date())) return typed("Date", *text);
      return typed("Date", value.as_date());
    }
    case VarType::String:
      return value.as_string();
    case VarType::Error:
      return typed("Error", value.as_error());
    case VarType::Boolean:
      return value.as_bool();
    case VarType::Array: {
      Json items = Json::array();
      for (int64_t i = value.lbound(); i <= value.ubound(); ++i)
        items.push_back(to_json(value.at(static_cast<int32_t>(i))));
      if (value.lbound() == 0) return items;
      return Json{{"$type", "Array"}, {"lbound", value.lbound()}, {"value", std::move(items)}};
    }
  }
  return nullptr;
}

std::string dump(const Json& value, bool pretty) {
  return value.dump(pretty ? 2 : -1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace qdr::json
