#pragma once

// Letter case for names and keywords (column, provider and table names, SQL
// words, script prefixes): only A-Z and a-z are folded, whatever the process
// locale, so a name matches the same way on every machine. Every other byte,
// UTF-8 included, compares as it is.

#include <string>
#include <string_view>

namespace qdr::ascii {

constexpr char to_lower(char c) noexcept {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string to_lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = to_lower(c);
  return out;
}

constexpr bool iequals(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (to_lower(a[i]) != to_lower(b[i])) return false;
  return true;
}

constexpr bool istarts_with(std::string_view text, std::string_view prefix) noexcept {
  return text.size() >= prefix.size() && iequals(text.substr(0, prefix.size()), prefix);
}

}  // namespace qdr::ascii
