#include "infra/vb.h"

#include <langinfo.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <chrono>
#include <clocale>
#include <cmath>
#include <ctime>
#include <limits>
#include <optional>
#include <vector>

namespace qdr::vb {

namespace {

// --- Small helpers ---------------------------------------------------------

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

char ascii_upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

std::string_view strip_blanks(std::string_view s) {
  while (!s.empty() && is_blank(s.front())) s.remove_prefix(1);
  while (!s.empty() && is_blank(s.back())) s.remove_suffix(1);
  return s;
}

std::string pad2(int value) {
  std::string text = std::to_string(value);
  return text.size() < 2 ? "0" + text : text;
}

std::string pad4(int value) {
  std::string text = std::to_string(value);
  while (text.size() < 4) text.insert(text.begin(), '0');
  return text;
}

// --- UTF-8 -----------------------------------------------------------------

// Byte length of the character at `i`; a byte that does not start a valid
// sequence counts as one character of its own, so no input is ever rejected.
std::size_t char_length(std::string_view s, std::size_t i) {
  const auto lead = static_cast<unsigned char>(s[i]);
  std::size_t n = 1;
  if (lead >= 0xC2 && lead <= 0xDF) {
    n = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    n = 3;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    n = 4;
  }
  if (i + n > s.size()) return 1;
  for (std::size_t k = 1; k < n; ++k) {
    if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return 1;
  }
  return n;
}

// Byte offset of the character with 0-based index `chars` (or the size).
std::size_t byte_offset(std::string_view s, int64_t chars) {
  std::size_t i = 0;
  while (chars > 0 && i < s.size()) {
    i += char_length(s, i);
    --chars;
  }
  return i;
}

int64_t char_count(std::string_view s, std::size_t bytes) {
  int64_t count = 0;
  for (std::size_t i = 0; i < bytes && i < s.size(); i += char_length(s, i)) ++count;
  return count;
}

char32_t decode(std::string_view s, std::size_t i, std::size_t n) {
  const auto byte = [&](std::size_t k) {
    return static_cast<char32_t>(static_cast<unsigned char>(s[i + k]));
  };
  switch (n) {
    case 2:
      return ((byte(0) & 0x1F) << 6) | (byte(1) & 0x3F);
    case 3:
      return ((byte(0) & 0x0F) << 12) | ((byte(1) & 0x3F) << 6) | (byte(2) & 0x3F);
    case 4:
      return ((byte(0) & 0x07) << 18) | ((byte(1) & 0x3F) << 12) | ((byte(2) & 0x3F) << 6) |
             (byte(3) & 0x3F);
    default:
      return byte(0);
  }
}

void encode(char32_t cp, std::string& out) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// Case pairs of the Latin, Greek and Cyrillic letters: the texts are
// Portuguese, and the result must not depend on LC_CTYPE.
char32_t to_upper(char32_t c) {
  if (c >= U'a' && c <= U'z') return c - 0x20;
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 0x20;
  if (c == 0xFF) return 0x178;
  if (c == 0x131) return U'I';  // dotless i
  if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177)) return c & ~char32_t{1};
  if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c % 2 == 0) ? c - 1 : c;
  if (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) return c - 0x20;
  if (c >= 0x430 && c <= 0x44F) return c - 0x20;
  if (c >= 0x450 && c <= 0x45F) return c - 0x50;
  return c;
}

char32_t to_lower(char32_t c) {
  if (c >= U'A' && c <= U'Z') return c + 0x20;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 0x20;
  if (c == 0x178) return 0xFF;
  if (c == 0x130) return U'i';  // dotted capital I
  if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177)) return c | 1;
  if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c % 2 == 1) ? c + 1 : c;
  if (c >= 0x391 && c <= 0x3A9 && c != 0x3A2) return c + 0x20;
  if (c >= 0x410 && c <= 0x42F) return c + 0x20;
  if (c >= 0x400 && c <= 0x40F) return c + 0x50;
  return c;
}

template <typename Map>
std::string map_case(std::string_view s, Map map) {
  std::string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size();) {
    const std::size_t n = char_length(s, i);
    if (n == 1 && static_cast<unsigned char>(s[i]) >= 0x80) {
      out += s[i];  // a stray byte stays as it is
    } else {
      encode(map(decode(s, i, n)), out);
    }
    i += n;
  }
  return out;
}

// --- Number text -----------------------------------------------------------

// Up to 15 significant digits, exponent form outside 1E-5..1E15, the way the
// platform writes a Double.
std::string double_text(double value) {
  if (value == 0) return "0";  // negative zero too
  std::array<char, 64> buf{};
  const auto result =
      std::to_chars(buf.data(), buf.data() + buf.size(), value, std::chars_format::general, 15);
  std::string text(buf.data(), result.ptr);
  const char separator = decimal_separator();
  for (char& c : text) {
    if (c == '.') c = separator;
    c = ascii_upper(c);
  }
  return text;
}

std::string currency_text(int64_t scaled) {
  const bool negative = scaled < 0;
  const uint64_t magnitude =
      negative ? uint64_t{0} - static_cast<uint64_t>(scaled) : static_cast<uint64_t>(scaled);
  std::string text = (negative ? "-" : "") + std::to_string(magnitude / 10000);
  uint64_t fraction = magnitude % 10000;
  if (fraction != 0) {
    std::string digits = std::to_string(fraction);
    digits.insert(0, 4 - digits.size(), '0');
    while (digits.back() == '0') digits.pop_back();
    text += decimal_separator();
    text += digits;
  }
  return text;
}

double currency_value(int64_t scaled) { return static_cast<double>(scaled) / 10000.0; }

enum class Parse { kNumber, kNotNumber, kOverflow };

struct ParsedNumber {
  Parse status = Parse::kNotNumber;
  double value = 0;
};

// `clean` holds sign, digits, "." and an exponent only. A range error is an
// overflow unless the magnitude is tiny, which reads as 0 as the platform does.
ParsedNumber clean_to_double(const std::string& clean, bool tiny_if_out_of_range) {
  double value = 0;
  const auto result = std::from_chars(clean.data(), clean.data() + clean.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    if (tiny_if_out_of_range) return {Parse::kNumber, 0.0};
    return {Parse::kOverflow, 0};
  }
  if (result.ec != std::errc() || result.ptr != clean.data() + clean.size()) return {};
  return {Parse::kNumber, value};
}

ParsedNumber parse_radix(std::string_view digits, int radix) {
  if (digits.empty()) return {};
  uint64_t value = 0;
  for (char c : digits) {
    int digit = -1;
    if (is_digit(c)) digit = c - '0';
    if (c >= 'a' && c <= 'f') digit = c - 'a' + 10;
    if (c >= 'A' && c <= 'F') digit = c - 'A' + 10;
    if (digit < 0 || digit >= radix) return {};
    value = value * static_cast<uint64_t>(radix) + static_cast<uint64_t>(digit);
    if (value > 0xFFFFFFFFu) return {Parse::kOverflow, 0};
  }
  // As the platform's literals: up to 16 bits an Integer, else a Long, both
  // two's complement.
  if (value <= 0xFFFF) return {Parse::kNumber, static_cast<double>(static_cast<int16_t>(value))};
  return {Parse::kNumber, static_cast<double>(static_cast<int32_t>(value))};
}

bool radix_prefix(std::string_view s, int& radix) {
  if (s.size() < 2 || s[0] != '&') return false;
  const char kind = ascii_upper(s[1]);
  if (kind == 'H')
    radix = 16;
  else if (kind == 'O')
    radix = 8;
  else
    return false;
  return true;
}

// The leading decimal number of `s` from `i`: a sign, digits with one
// `point`, `grouping` marks ('\0' for none) skipped in the whole part, an
// exponent "E" or "D". `i` ends after what was read; an exponent mark without
// digits is left unread.
ParsedNumber scan_decimal(std::string_view s, std::size_t& i, char point, char grouping) {
  std::string clean;
  if (i < s.size() && (s[i] == '+' || s[i] == '-')) {
    if (s[i] == '-') clean += '-';
    ++i;
  }
  bool digits = false, nonzero_whole = false, seen_point = false;
  for (; i < s.size(); ++i) {
    const char c = s[i];
    if (is_digit(c)) {
      digits = true;
      if (!seen_point && c != '0') nonzero_whole = true;
      clean += c;
    } else if (c == point && !seen_point) {
      seen_point = true;
      clean += '.';
    } else if (grouping != '\0' && c == grouping && digits && !seen_point) {
      // grouping is not checked, as the platform did not check it
    } else {
      break;
    }
  }
  if (!digits) return {};
  bool negative_exponent = false;
  if (i < s.size() && (ascii_upper(s[i]) == 'E' || ascii_upper(s[i]) == 'D')) {
    std::size_t j = i + 1;
    std::string exponent = "e";
    if (j < s.size() && (s[j] == '+' || s[j] == '-')) {
      negative_exponent = s[j] == '-';
      exponent += s[j++];
    }
    const std::size_t first = j;
    while (j < s.size() && is_digit(s[j])) exponent += s[j++];
    if (j > first) {
      clean += exponent;
      i = j;
    }
  }
  return clean_to_double(clean, negative_exponent || !nonzero_whole);
}

// The regional number format that IsNumeric and CDbl accept.
ParsedNumber parse_regional(std::string_view text) {
  const std::string_view s = strip_blanks(text);
  if (s.empty()) return {};
  int radix = 0;
  if (radix_prefix(s, radix)) return parse_radix(s.substr(2), radix);

  const bool leading_sign = s[0] == '+' || s[0] == '-';
  std::size_t i = 0;
  ParsedNumber parsed = scan_decimal(s, i, decimal_separator(), thousands_separator());
  if (parsed.status == Parse::kNotNumber) return parsed;
  if (i < s.size() && !leading_sign && (s[i] == '+' || s[i] == '-')) {
    if (s[i] == '-') parsed.value = -parsed.value;
    ++i;
  }
  if (i != s.size()) return {};
  return parsed;
}

double number_of(const Variant& v) {
  switch (v.type()) {
    case VarType::Empty:
      return 0;
    case VarType::Null:
      raise(kInvalidUseOfNull);
    case VarType::Integer:
      return v.as_integer();
    case VarType::Long:
      return v.as_long();
    case VarType::Double:
      return v.as_double();
    case VarType::Currency:
      return currency_value(v.as_currency_scaled());
    case VarType::Date:
      return v.as_date();
    case VarType::Boolean:
      return v.as_bool() ? -1 : 0;
    case VarType::String: {
      const ParsedNumber parsed = parse_regional(v.as_string());
      if (parsed.status == Parse::kOverflow) raise(kOverflow);
      if (parsed.status == Parse::kNotNumber) raise(kTypeMismatch);
      return parsed.value;
    }
    default:
      raise(kTypeMismatch);
  }
}

double round_to_integer(double value, double low, double high) {
  if (std::isnan(value)) raise(kOverflow);
  const double rounded = std::nearbyint(value);  // ties to even in the default mode
  if (rounded < low || rounded > high) raise(kOverflow);
  return rounded;
}

// --- Dates -----------------------------------------------------------------

// Days 100-01-01 and 9999-12-31 with any time of day.
constexpr double kMinDate = -657434.99999;
constexpr double kMaxDate = 2958465.99999;
constexpr int64_t kSecondsPerDay = 86400;
constexpr double kDaySeconds = 86400.0;

const std::chrono::sys_days kEpoch =
    std::chrono::sys_days{std::chrono::year{1899} / std::chrono::December / 30};

bool valid_date(int year, int month, int day) {
  if (year < 100 || year > 9999) return false;
  return std::chrono::year_month_day{std::chrono::year{year},
                                     std::chrono::month{static_cast<unsigned>(month)},
                                     std::chrono::day{static_cast<unsigned>(day)}}
      .ok();
}

int64_t floor_div(int64_t a, int64_t b) {
  return a / b - ((a % b != 0 && ((a < 0) != (b < 0))) ? 1 : 0);
}

double ole_from(int64_t days, int64_t seconds) {
  days += floor_div(seconds, kSecondsPerDay);
  seconds -= floor_div(seconds, kSecondsPerDay) * kSecondsPerDay;
  const double fraction = static_cast<double>(seconds) / static_cast<double>(kSecondsPerDay);
  // Before the epoch the time still counts forward from midnight, so the
  // fraction moves away from zero.
  return days >= 0 ? static_cast<double>(days) + fraction : static_cast<double>(days) - fraction;
}

struct Scanner {
  std::string_view s;
  std::size_t i = 0;

  bool done() const { return i >= s.size(); }
  char peek() const { return done() ? '\0' : s[i]; }
  void skip_blanks() {
    while (!done() && is_blank(s[i])) ++i;
  }
  // Up to `max_digits` digits; the count read goes to `count`.
  std::optional<int> number(std::size_t max_digits, std::size_t& count) {
    count = 0;
    int value = 0;
    while (!done() && is_digit(s[i]) && count < max_digits) {
      value = value * 10 + (s[i] - '0');
      ++i;
      ++count;
    }
    if (count == 0 || (!done() && is_digit(s[i]))) return std::nullopt;
    return value;
  }
};

struct DateFields {
  int year = 1899, month = 12, day = 30;
};

std::optional<DateFields> resolve_date(const std::array<int, 3>& part,
                                       const std::array<std::size_t, 3>& width) {
  auto pick = [](int year, int month, int day) -> std::optional<DateFields> {
    if (!valid_date(year, month, day)) return std::nullopt;
    return DateFields{year, month, day};
  };
  if (width[0] >= 3) {  // year first
    if (width[1] > 2 || width[2] > 2) return std::nullopt;
    if (auto d = pick(part[0], part[1], part[2])) return d;
    return pick(part[0], part[2], part[1]);
  }
  if (width[1] > 2) return std::nullopt;
  int year = part[2];
  if (width[2] <= 2) year += year < 30 ? 2000 : 1900;
  const bool day_first = day_before_month();
  const int first_month = day_first ? part[1] : part[0];
  const int first_day = day_first ? part[0] : part[1];
  if (auto d = pick(year, first_month, first_day)) return d;
  return pick(year, first_day, first_month);
}

// hh:mm[:ss[.fff]] [AM|PM], in seconds.
std::optional<double> scan_time(Scanner& sc) {
  std::size_t width = 0;
  const auto hour = sc.number(2, width);
  if (!hour || sc.peek() != ':') return std::nullopt;
  ++sc.i;
  const auto minute = sc.number(2, width);
  if (!minute) return std::nullopt;
  int second = 0;
  double fraction = 0;
  if (sc.peek() == ':') {
    ++sc.i;
    const auto s = sc.number(2, width);
    if (!s) return std::nullopt;
    second = *s;
    if (sc.peek() == '.') {
      ++sc.i;
      double scale = 0.1;
      std::size_t digits = 0;
      while (!sc.done() && is_digit(sc.peek())) {
        fraction += scale * (sc.peek() - '0');
        scale /= 10;
        ++sc.i;
        ++digits;
      }
      if (digits == 0) return std::nullopt;
    }
  }
  int h = *hour;
  const std::size_t before_suffix = sc.i;
  sc.skip_blanks();
  const std::string_view rest = sc.s.substr(sc.i);
  if (rest.size() >= 2 && ascii_upper(rest[1]) == 'M' &&
      (ascii_upper(rest[0]) == 'A' || ascii_upper(rest[0]) == 'P')) {
    if (h < 1 || h > 12) return std::nullopt;
    h %= 12;
    if (ascii_upper(rest[0]) == 'P') h += 12;
    sc.i += 2;
  } else {
    sc.i = before_suffix;
  }
  if (h > 23 || *minute > 59 || second > 59) return std::nullopt;
  return h * 3600.0 + *minute * 60.0 + second + fraction;
}

std::optional<double> parse_date_text(std::string_view text) {
  Scanner sc{strip_blanks(text)};
  if (sc.done()) return std::nullopt;

  // A time on its own.
  {
    Scanner probe = sc;
    if (auto seconds = scan_time(probe); seconds && probe.done()) return *seconds / kDaySeconds;
  }

  std::array<int, 3> part{};
  std::array<std::size_t, 3> width{};
  for (std::size_t k = 0; k < 3; ++k) {
    if (k > 0) {
      const char sep = sc.peek();
      if (sep != '/' && sep != '-' && sep != '.') return std::nullopt;
      ++sc.i;
    }
    const auto value = sc.number(4, width[k]);
    if (!value) return std::nullopt;
    part[k] = *value;
  }
  const auto date = resolve_date(part, width);
  if (!date) return std::nullopt;

  double seconds = 0;
  if (!sc.done()) {
    if (sc.peek() == 'T') {
      ++sc.i;
    } else {
      const std::size_t before = sc.i;
      sc.skip_blanks();
      if (sc.i == before) return std::nullopt;
    }
    const auto time = scan_time(sc);
    if (!time || !sc.done()) return std::nullopt;
    seconds = *time;
  }
  const double day = make_date(date->year, date->month, date->day);
  return day >= 0 ? day + seconds / kDaySeconds : day - seconds / kDaySeconds;
}

std::string short_date(const DateParts& p) {
  if (day_before_month()) return pad2(p.day) + "/" + pad2(p.month) + "/" + pad4(p.year);
  return pad2(p.month) + "/" + pad2(p.day) + "/" + pad4(p.year);
}

std::string long_time(const DateParts& p) {
  return pad2(p.hour) + ":" + pad2(p.minute) + ":" + pad2(p.second);
}

std::string date_text(double ole) {
  const DateParts p = date_parts(ole);
  const bool midnight = p.hour == 0 && p.minute == 0 && p.second == 0;
  if (std::trunc(ole) == 0) return long_time(p);  // the platform shows day zero as a time
  if (midnight) return short_date(p);
  return short_date(p) + " " + long_time(p);
}

// --- Date patterns ---------------------------------------------------------

enum class Tok {
  kLiteral,
  kYear4,
  kYear2,
  kDayOfYear,
  kMonthOrMinute,
  kMonthOrMinute2,
  kMonthAbbrev,
  kMonthName,
  kDay,
  kDay2,
  kWeekdayAbbrev,
  kWeekdayName,
  kShortDate,
  kHour,
  kHour2,
  kMinute,
  kMinute2,
  kSecond,
  kSecond2,
  kAmPm,
};

struct Token {
  Tok kind;
  std::string text;  // literal text, or the AM/PM marker as written
};

std::vector<Token> tokenize(std::string_view pattern) {
  std::vector<Token> tokens;
  auto literal = [&](std::string_view text) {
    if (!tokens.empty() && tokens.back().kind == Tok::kLiteral) {
      tokens.back().text += text;
    } else {
      tokens.push_back({Tok::kLiteral, std::string(text)});
    }
  };
  std::size_t i = 0;
  while (i < pattern.size()) {
    const char c = pattern[i];
    const char up = ascii_upper(c);
    if (c == '\\' && i + 1 < pattern.size()) {
      const std::size_t n = char_length(pattern, i + 1);
      literal(pattern.substr(i + 1, n));
      i += 1 + n;
      continue;
    }
    if (c == '"') {
      const std::size_t close = pattern.find('"', i + 1);
      const std::size_t end = close == std::string_view::npos ? pattern.size() : close;
      literal(pattern.substr(i + 1, end - i - 1));
      i = close == std::string_view::npos ? end : end + 1;
      continue;
    }
    if (up == 'A') {
      const std::string_view rest = pattern.substr(i);
      if (rest.size() >= 5 && ascii_upper(rest[1]) == 'M' && rest[2] == '/' &&
          ascii_upper(rest[3]) == 'P' && ascii_upper(rest[4]) == 'M') {
        tokens.push_back({Tok::kAmPm, std::string(rest.substr(0, 5))});
        i += 5;
        continue;
      }
    }
    std::size_t run = 0;
    while (i + run < pattern.size() && ascii_upper(pattern[i + run]) == up) ++run;
    Tok kind = Tok::kLiteral;
    std::size_t used = 1;
    switch (up) {
      case 'Y':
        used = run >= 4 ? 4 : run >= 2 ? 2 : 1;
        kind = used == 4 ? Tok::kYear4 : used == 2 ? Tok::kYear2 : Tok::kDayOfYear;
        break;
      case 'M':
        used = std::min<std::size_t>(run, 4);
        kind = used == 4   ? Tok::kMonthName
               : used == 3 ? Tok::kMonthAbbrev
               : used == 2 ? Tok::kMonthOrMinute2
                           : Tok::kMonthOrMinute;
        break;
      case 'D':
        used = std::min<std::size_t>(run, 6);
        kind = used >= 5   ? Tok::kShortDate
               : used == 4 ? Tok::kWeekdayName
               : used == 3 ? Tok::kWeekdayAbbrev
               : used == 2 ? Tok::kDay2
                           : Tok::kDay;
        break;
      case 'H':
        used = std::min<std::size_t>(run, 2);
        kind = used == 2 ? Tok::kHour2 : Tok::kHour;
        break;
      case 'N':
        used = std::min<std::size_t>(run, 2);
        kind = used == 2 ? Tok::kMinute2 : Tok::kMinute;
        break;
      case 'S':
        used = std::min<std::size_t>(run, 2);
        kind = used == 2 ? Tok::kSecond2 : Tok::kSecond;
        break;
      default:
        break;
    }
    if (kind == Tok::kLiteral) {
      const std::size_t n = char_length(pattern, i);
      literal(pattern.substr(i, n));
      i += n;
    } else {
      tokens.push_back({kind, {}});
      i += used;
    }
  }

  // m and mm are minutes right after an hour or right before a second.
  Tok previous = Tok::kLiteral;
  for (std::size_t k = 0; k < tokens.size(); ++k) {
    Token& t = tokens[k];
    if (t.kind == Tok::kLiteral) continue;
    if (t.kind == Tok::kMonthOrMinute || t.kind == Tok::kMonthOrMinute2) {
      Tok next = Tok::kLiteral;
      for (std::size_t j = k + 1; j < tokens.size() && next == Tok::kLiteral; ++j)
        next = tokens[j].kind;
      const bool after_hour = previous == Tok::kHour || previous == Tok::kHour2;
      const bool before_second = next == Tok::kSecond || next == Tok::kSecond2;
      if (after_hour || before_second)
        t.kind = t.kind == Tok::kMonthOrMinute ? Tok::kMinute : Tok::kMinute2;
    }
    previous = t.kind;
  }
  return tokens;
}

std::string langinfo(nl_item item) {
  const char* text = nl_langinfo(item);
  return text ? text : "";
}

std::string format_ole(double ole, std::string_view pattern) {
  const DateParts p = date_parts(ole);
  const std::vector<Token> tokens = tokenize(pattern);
  bool twelve_hour = false;
  for (const Token& t : tokens) twelve_hour = twelve_hour || t.kind == Tok::kAmPm;
  const int hour = twelve_hour ? (p.hour % 12 == 0 ? 12 : p.hour % 12) : p.hour;

  using namespace std::chrono;
  const year_month_day ymd{year{p.year}, month{static_cast<unsigned>(p.month)},
                           day{static_cast<unsigned>(p.day)}};
  const unsigned weekday_index = weekday{sys_days{ymd}}.c_encoding();
  const int day_of_year =
      static_cast<int>((sys_days{ymd} - sys_days{year{p.year} / January / 1}).count()) + 1;

  std::string out;
  for (const Token& t : tokens) {
    switch (t.kind) {
      case Tok::kLiteral:
        out += t.text;
        break;
      case Tok::kYear4:
        out += pad4(p.year);
        break;
      case Tok::kYear2:
        out += pad2(p.year % 100);
        break;
      case Tok::kDayOfYear:
        out += std::to_string(day_of_year);
        break;
      case Tok::kMonthOrMinute:
        out += std::to_string(p.month);
        break;
      case Tok::kMonthOrMinute2:
        out += pad2(p.month);
        break;
      case Tok::kMonthAbbrev:
        out += langinfo(static_cast<nl_item>(ABMON_1 + p.month - 1));
        break;
      case Tok::kMonthName:
        out += langinfo(static_cast<nl_item>(MON_1 + p.month - 1));
        break;
      case Tok::kDay:
        out += std::to_string(p.day);
        break;
      case Tok::kDay2:
        out += pad2(p.day);
        break;
      case Tok::kWeekdayAbbrev:
        out += langinfo(static_cast<nl_item>(ABDAY_1 + static_cast<int>(weekday_index)));
        break;
      case Tok::kWeekdayName:
        out += langinfo(static_cast<nl_item>(DAY_1 + static_cast<int>(weekday_index)));
        break;
      case Tok::kShortDate:
        out += short_date(p);
        break;
      case Tok::kHour:
        out += std::to_string(hour);
        break;
      case Tok::kHour2:
        out += pad2(hour);
        break;
      case Tok::kMinute:
        out += std::to_string(p.minute);
        break;
      case Tok::kMinute2:
        out += pad2(p.minute);
        break;
      case Tok::kSecond:
        out += std::to_string(p.second);
        break;
      case Tok::kSecond2:
        out += pad2(p.second);
        break;
      case Tok::kAmPm: {
        const bool lower = t.text[0] == 'a';
        out += p.hour < 12 ? (lower ? "am" : "AM") : (lower ? "pm" : "PM");
        break;
      }
    }
  }
  return out;
}

// --- Comparison ------------------------------------------------------------

enum class Order { kLess, kEqual, kGreater, kNull };

template <typename T>
Order order_of(const T& a, const T& b) {
  if (a < b) return Order::kLess;
  if (b < a) return Order::kGreater;
  if (a == b) return Order::kEqual;
  return Order::kNull;  // NaN
}

bool numeric_side(const Variant& v) {
  switch (v.type()) {
    case VarType::Integer:
    case VarType::Long:
    case VarType::Double:
    case VarType::Currency:
    case VarType::Date:
    case VarType::Boolean:
      return true;
    case VarType::String:
      return is_numeric(v);
    default:
      return false;
  }
}

Order compare(const Variant& a, const Variant& b) {
  if (a.is_null() || b.is_null()) return Order::kNull;
  for (const Variant* v : {&a, &b}) {
    if (v->is_array() || v->type() == VarType::Error) raise(kTypeMismatch);
  }
  if (a.is_empty() && b.is_empty()) return Order::kEqual;
  if (a.type() == VarType::Currency && b.type() == VarType::Currency)
    return order_of(a.as_currency_scaled(), b.as_currency_scaled());

  const bool a_text = a.type() == VarType::String;
  const bool b_text = b.type() == VarType::String;
  // A date against a text that reads as a date compares the two dates.
  if ((a.type() == VarType::Date && b_text && is_date(b)) ||
      (b.type() == VarType::Date && a_text && is_date(a)))
    return order_of(cdate(a), cdate(b));

  const bool a_number = a.is_empty() ? !b_text : numeric_side(a);
  const bool b_number = b.is_empty() ? !a_text : numeric_side(b);
  if (a_number && b_number) return order_of(number_of(a), number_of(b));
  return order_of(text_of(a), text_of(b));
}

}  // namespace

// --- Errors and regional settings ------------------------------------------

void raise(int32_t number) {
  switch (number) {
    case kInvalidCall:
      throw Error(number, "Invalid procedure call or argument");
    case kOverflow:
      throw Error(number, "Overflow");
    case kSubscriptOutOfRange:
      throw Error(number, "Subscript out of range");
    case kTypeMismatch:
      throw Error(number, "Type mismatch");
    case kInvalidUseOfNull:
      throw Error(number, "Invalid use of Null");
    default:
      throw Error(number, "Application-defined or object-defined error");
  }
}

char decimal_separator() {
  const std::lconv* conv = std::localeconv();
  if (conv && conv->decimal_point && conv->decimal_point[0] == ',') return ',';
  return '.';
}

char thousands_separator() {
  const char decimal = decimal_separator();
  const std::lconv* conv = std::localeconv();
  if (conv && conv->thousands_sep) {
    const char c = conv->thousands_sep[0];
    if ((c == '.' || c == ',') && c != decimal && conv->thousands_sep[1] == '\0') return c;
  }
  return decimal == ',' ? '.' : ',';
}

bool day_before_month() {
  const std::string format = langinfo(D_FMT);
  std::size_t day = std::string::npos, month = std::string::npos;
  for (std::size_t i = 0; i + 1 < format.size(); ++i) {
    if (format[i] != '%') continue;
    const char conversion = format[i + 1];
    if ((conversion == 'd' || conversion == 'e') && day == std::string::npos) day = i;
    if (conversion == 'm' && month == std::string::npos) month = i;
    if (conversion == 'D') return false;  // %m/%d/%y
    ++i;
  }
  return day != std::string::npos && month != std::string::npos && day < month;
}

// --- Conversions -----------------------------------------------------------

std::string cstr(const Variant& v) {
  switch (v.type()) {
    case VarType::Empty:
      return "";
    case VarType::Null:
      raise(kInvalidUseOfNull);
    case VarType::Integer:
      return std::to_string(v.as_integer());
    case VarType::Long:
      return std::to_string(v.as_long());
    case VarType::Double:
      return double_text(v.as_double());
    case VarType::Currency:
      return currency_text(v.as_currency_scaled());
    case VarType::Date:
      return date_text(v.as_date());
    case VarType::String:
      return v.as_string();
    case VarType::Boolean:
      return v.as_bool() ? "True" : "False";
    default:
      raise(kTypeMismatch);
  }
}

std::string text_of(const Variant& v) { return v.is_null() ? std::string() : cstr(v); }

double val(std::string_view text) {
  std::string s;
  s.reserve(text.size());
  for (char c : text) {
    if (c != ' ' && c != '\t' && c != '\n') s += c;
  }
  int radix = 0;
  if (radix_prefix(s, radix)) {
    std::size_t end = 2;
    while (end < s.size() && std::isxdigit(static_cast<unsigned char>(s[end])) &&
           (radix == 16 || (s[end] >= '0' && s[end] <= '7')))
      ++end;
    const ParsedNumber parsed = parse_radix(std::string_view(s).substr(2, end - 2), radix);
    if (parsed.status == Parse::kOverflow) raise(kOverflow);
    return parsed.value;
  }

  std::size_t i = 0;
  const ParsedNumber parsed = scan_decimal(s, i, '.', '\0');
  if (parsed.status == Parse::kOverflow) raise(kOverflow);
  return parsed.value;
}

bool is_numeric(const Variant& v) {
  switch (v.type()) {
    case VarType::Empty:
    case VarType::Integer:
    case VarType::Long:
    case VarType::Double:
    case VarType::Currency:
    case VarType::Boolean:
      return true;
    case VarType::String:
      return parse_regional(v.as_string()).status == Parse::kNumber;
    default:
      return false;
  }
}

double cdbl(const Variant& v) { return number_of(v); }

int32_t clng(const Variant& v) {
  return static_cast<int32_t>(round_to_integer(number_of(v), -2147483648.0, 2147483647.0));
}

int16_t cint(const Variant& v) {
  return static_cast<int16_t>(round_to_integer(number_of(v), -32768.0, 32767.0));
}

bool is_date(const Variant& v) {
  if (v.type() == VarType::Date) return true;
  if (v.type() != VarType::String) return false;
  return parse_date_text(v.as_string()).has_value();
}

double cdate(const Variant& v) {
  if (v.type() == VarType::Date) return v.as_date();
  if (v.type() == VarType::String) {
    if (auto ole = parse_date_text(v.as_string())) return *ole;
    raise(kTypeMismatch);
  }
  const double ole = number_of(v);
  if (!(ole >= kMinDate && ole <= kMaxDate)) raise(kOverflow);
  return ole;
}

std::string format_date(const Variant& v, std::string_view pattern) {
  if (v.type() == VarType::Date) return format_ole(v.as_date(), pattern);
  if (v.type() == VarType::String) {
    if (auto ole = parse_date_text(v.as_string())) return format_ole(*ole, pattern);
  }
  return text_of(v);
}

double make_date(int year, int month, int day, int hour, int minute, int second) {
  using namespace std::chrono;
  const int64_t months = int64_t{year} * 12 + (month - 1);
  const int64_t y = floor_div(months, 12);
  const int64_t m = months - y * 12 + 1;
  if (y < 100 || y > 9999) raise(kInvalidCall);
  const sys_days first{std::chrono::year{static_cast<int>(y)} /
                       std::chrono::month{static_cast<unsigned>(m)} / 1};
  const int64_t days = static_cast<int64_t>((first - kEpoch).count()) + (int64_t{day} - 1);
  const int64_t seconds = int64_t{hour} * 3600 + int64_t{minute} * 60 + second;
  const double ole = ole_from(days, seconds);
  if (!(ole >= kMinDate && ole <= kMaxDate)) raise(kInvalidCall);
  return ole;
}

DateParts date_parts(double ole_date) {
  if (!(ole_date >= kMinDate && ole_date <= kMaxDate)) raise(kOverflow);
  const double whole = std::trunc(ole_date);
  auto days = static_cast<int64_t>(whole);
  auto seconds = static_cast<int64_t>(std::llround(std::fabs(ole_date - whole) * kDaySeconds));
  if (seconds >= kSecondsPerDay) {
    seconds -= kSecondsPerDay;
    days += ole_date < 0 ? -1 : 1;
  }
  const std::chrono::year_month_day ymd{
      kEpoch + std::chrono::days{static_cast<std::chrono::days::rep>(days)}};
  return {static_cast<int>(ymd.year()),
          static_cast<int>(static_cast<unsigned>(ymd.month())),
          static_cast<int>(static_cast<unsigned>(ymd.day())),
          static_cast<int>(seconds / 3600),
          static_cast<int>(seconds / 60 % 60),
          static_cast<int>(seconds % 60)};
}

double now() {
  const std::time_t t = std::time(nullptr);
  std::tm local{};
  localtime_r(&t, &local);
  return make_date(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                   local.tm_min, local.tm_sec);
}

// --- Text functions --------------------------------------------------------

std::string ltrim(std::string_view s) {
  const std::size_t first = s.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(s.substr(first));
}

std::string rtrim(std::string_view s) {
  const std::size_t last = s.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string() : std::string(s.substr(0, last + 1));
}

std::string trim(std::string_view s) { return ltrim(rtrim(s)); }

std::string ucase(std::string_view s) { return map_case(s, to_upper); }
std::string lcase(std::string_view s) { return map_case(s, to_lower); }

int32_t len(std::string_view s) {
  return static_cast<int32_t>(
      std::min<int64_t>(char_count(s, s.size()), std::numeric_limits<int32_t>::max()));
}

std::string mid(std::string_view s, int32_t start, int32_t length) {
  if (start < 1 || length < -1) raise(kInvalidCall);
  const std::size_t from = byte_offset(s, start - 1);
  if (length == -1) return std::string(s.substr(from));
  const std::size_t to = from + byte_offset(s.substr(from), length);
  return std::string(s.substr(from, to - from));
}

std::string left(std::string_view s, int32_t length) {
  if (length < 0) raise(kInvalidCall);
  return std::string(s.substr(0, byte_offset(s, length)));
}

std::string right(std::string_view s, int32_t length) {
  if (length < 0) raise(kInvalidCall);
  const int64_t total = char_count(s, s.size());
  if (length >= total) return std::string(s);
  return std::string(s.substr(byte_offset(s, total - length)));
}

int32_t instr(int32_t start, std::string_view s, std::string_view find) {
  if (start < 1) raise(kInvalidCall);
  const std::size_t from = byte_offset(s, start - 1);
  if (start - 1 > char_count(s, s.size())) return 0;
  if (find.empty()) return start;
  const std::size_t at = s.find(find, from);
  if (at == std::string_view::npos) return 0;
  return static_cast<int32_t>(char_count(s, at) + 1);
}

std::string replace(std::string_view s, std::string_view find, std::string_view with) {
  if (find.empty()) return std::string(s);
  std::string out;
  std::size_t from = 0;
  for (std::size_t at = s.find(find); at != std::string_view::npos; at = s.find(find, from)) {
    out.append(s.substr(from, at - from));
    out.append(with);
    from = at + find.size();
  }
  out.append(s.substr(from));
  return out;
}

// --- Comparison ------------------------------------------------------------

bool eq(const Variant& a, const Variant& b) { return compare(a, b) == Order::kEqual; }

bool ne(const Variant& a, const Variant& b) {
  const Order o = compare(a, b);
  return o == Order::kLess || o == Order::kGreater;
}

bool lt(const Variant& a, const Variant& b) { return compare(a, b) == Order::kLess; }

bool le(const Variant& a, const Variant& b) {
  const Order o = compare(a, b);
  return o == Order::kLess || o == Order::kEqual;
}

bool gt(const Variant& a, const Variant& b) { return compare(a, b) == Order::kGreater; }

bool ge(const Variant& a, const Variant& b) {
  const Order o = compare(a, b);
  return o == Order::kGreater || o == Order::kEqual;
}

}  // namespace qdr::vb
