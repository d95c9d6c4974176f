#include "infra/numbers.h"

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "infra/vb.h"

namespace qdr {

namespace {

constexpr int32_t kMaxPlaces = 255;

// The number in plain notation with up to 15 significant digits and "." as
// the point, whatever the locale: the exponent form the platform switches to
// for very large or small values would not split into digits.
std::string plain_digits(double value) {
  if (value == 0) return "0";
  char buf[64];
  const auto result =
      std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific, 14);
  std::string_view text(buf, static_cast<std::size_t>(result.ptr - buf));
  std::string out;
  if (text.front() == '-') {
    out += '-';
    text.remove_prefix(1);
  }
  const std::size_t e = text.find('e');
  std::string digits;
  for (char c : text.substr(0, e)) {
    if (c != '.') digits += c;
  }
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
  std::string_view exponent_text = text.substr(e + 1);
  const bool negative_exponent = exponent_text.front() == '-';
  exponent_text.remove_prefix(1);
  int exponent = 0;
  std::from_chars(exponent_text.data(), exponent_text.data() + exponent_text.size(), exponent);
  if (negative_exponent) exponent = -exponent;

  if (exponent < 0) {
    out += "0.";
    out.append(static_cast<std::size_t>(-exponent - 1), '0');
    out += digits;
    return out;
  }
  const auto whole = static_cast<std::size_t>(exponent) + 1;
  if (digits.size() <= whole) {
    out += digits;
    out.append(whole - digits.size(), '0');
  } else {
    out += digits.substr(0, whole);
    out += '.';
    out += digits.substr(whole);
  }
  return out;
}

}  // namespace

Separators probe_separators() {
  const std::string half = vb::cstr(Variant(50.0 / 100.0));
  if (half.find('.') != std::string::npos) return {'.', ','};
  return {',', '.'};
}

Variant gTrata_Separador_Decimal(const Variant& value) {
  try {
    if (value.is_null() || vb::eq(value, Variant(""))) return Variant::integer(0);
    const Separators separators = probe_separators();
    std::string text = vb::text_of(value);
    const std::size_t first = text.find(separators.foreign);
    if (first == std::string::npos) return value;
    // Deliberate: a second foreign separator means thousands grouping, and
    // the value is left as it came.
    if (text.find(separators.foreign, first + 1) != std::string::npos) return value;
    text[first] = separators.machine;
    return Variant(std::move(text));
  } catch (...) {
    return Variant();
  }
}

double gConverte_Numero_Separador(const Variant& text, const Variant& separator) {
  const std::string source = vb::trim(vb::text_of(text));
  const std::string mark = vb::text_of(separator);
  const bool one_character = vb::len(mark) == 1;

  std::string whole_digits, fraction_digits;
  bool after_separator = false;
  for (std::size_t i = 0; i < source.size();) {
    if (one_character && source.compare(i, mark.size(), mark) == 0) {
      after_separator = true;
      i += mark.size();
      continue;
    }
    (after_separator ? fraction_digits : whole_digits) += source[i];
    ++i;
  }
  if (whole_digits.empty()) whole_digits = "0";
  if (fraction_digits.empty()) fraction_digits = "0";

  const double whole = vb::cdbl(Variant(whole_digits));
  const double fraction =
      vb::cdbl(Variant(fraction_digits)) / std::pow(10.0, vb::len(fraction_digits));
  // The fraction follows the sign of the whole part, so "-12,5" is -12.5.
  return std::signbit(whole) ? whole - std::fabs(fraction) : whole + fraction;
}

Variant gFormata_Numero(const Variant& value, const Variant& default_value, Variant& places) {
  try {
    if (value.is_null() || value.is_empty()) return default_value;
    if (value.type() == VarType::String && value.as_string().empty()) return default_value;
    const Variant regional = gTrata_Separador_Decimal(value);
    if (regional.is_empty() || !vb::is_numeric(regional)) return Variant();
    double number = vb::cdbl(regional);
    if (number == 0) return default_value;

    const int32_t decimals = vb::clng(places);
    if (decimals < 0 || decimals > kMaxPlaces) return Variant();
    if (number > -1 && number < 1) {
      const double scale = std::pow(10.0, decimals);
      number = std::nearbyint(number * scale) / scale;  // ties to even
    }

    const std::string text = plain_digits(number);
    const std::size_t point = text.find('.');
    std::string whole = text.substr(0, point);
    std::string fraction = point == std::string::npos ? std::string() : text.substr(point + 1);
    // Deliberate: from one unit up the extra decimals are cut, not rounded.
    fraction.resize(static_cast<std::size_t>(decimals), '0');
    if (whole.empty() || whole == "-") whole += "0";
    if (decimals == 0) return Variant(whole);
    return Variant(whole + "," + fraction);
  } catch (...) {
    return Variant();
  }
}

double numeric_value(const Variant& value) {
  const Variant regional = gTrata_Separador_Decimal(value);
  return vb::is_numeric(regional) ? vb::cdbl(regional) : 0.0;
}

}  // namespace qdr
