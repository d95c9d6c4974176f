#pragma once

// Variants as JSON text, subtype included, so that a failed comparison reads
// well.

#include <initializer_list>
#include <ostream>
#include <string>

#include "infra/json_variant.h"
#include "qdr/variant.h"

namespace qdr {

// Failed comparisons of variants print them as JSON. Internal linkage: only
// the test files that include this header print variants this way.
[[maybe_unused]] static void PrintTo(const Variant& value, std::ostream* out) {
  *out << ::qdr::json::dump(::qdr::json::to_json(value));
}

namespace test {

std::string shown(const Variant& value);
// An array's elements (bounds and subtypes included), to compare with values().
inline std::string elements(const Variant& array) { return shown(array); }
// The 0-based array of `list`, shown.
std::string values(std::initializer_list<Variant> list);

}  // namespace test
}  // namespace qdr
