#pragma once

// The JSON form of a Variant, shared by the qdr command (requests and
// answers) and the replay data source (script rows and journal values).
//
//   JSON                                   Variant
//   null                                   Null
//   true / false                           Boolean
//   "text"                                 String (UTF-8)
//   integral number, e.g. 42               Long (a Double when it does not fit
//                                          in 32 bits)
//   other number, e.g. 42.0 or 1.5         Double
//   [a, b, ...]                            array with bounds 0..n-1
//   {"$type": T, "value": V}               the subtype T:
//     "Empty"      (no value)
//     "Integer"    integral number, -32768..32767
//     "Currency"   number, four decimals kept: {"$type":"Currency","value":12.34}
//     "Date"       "yyyy-mm-ddThh:mm:ss" or "yyyy-mm-dd" text, or the
//                  day number (days since 1899-12-30, time as the fraction)
//     "Error"      integral number, e.g. -2147352572 (a missing argument;
//                  2147614724, the same code unsigned, is accepted too)
//     "Long", "Double", "String", "Boolean", "Null"  the plain forms spelt out
//                  (a Double may also be "NaN", "Infinity" or "-Infinity")
//     "Array"      {"$type":"Array","lbound":1,"value":[...]}: an array whose
//                  first index is lbound (0 when left out)
//
// to_json writes the plain form wherever it tells the subtype apart (Null,
// Boolean, String, Long, finite Double, arrays from 0) and the "$type" form
// for the rest (Empty, Integer, Currency, Date, Error, arrays from another
// first index, non-finite Double). Dates are written as text, with seconds
// rounded; a date outside years 100..9999 is written as its day number.
// from_json(to_json(v)) == v for every variant except dates with fractions
// of a second and currencies too large for a double to hold exactly.

#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include "qdr/variant.h"

namespace qdr::json {

// Objects keep their keys in insertion order, so answers list arguments in
// interface order.
using Json = nlohmann::ordered_json;

// A JSON value that has no Variant meaning. what() says why, naming the
// place inside the value (e.g. "[2]: unknown $type \"Long64\"").
class ValueError : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

// Raises ValueError for an object without a known "$type", keys other than
// "$type", "value" and "lbound", or a value out of its subtype's range.
Variant from_json(const Json& value);

Json to_json(const Variant& value);

// Serialises as UTF-8 JSON: one line, or indented by two blanks when
// `pretty`. Invalid UTF-8 inside texts is replaced by U+FFFD rather than
// failing.
std::string dump(const Json& value, bool pretty = false);

}  // namespace qdr::json
