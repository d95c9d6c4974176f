#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "qdr/export.h"

namespace qdr {

// Subtype codes, numbered as the automation platform numbers them.
enum class VarType : uint16_t {
  Empty = 0,
  Null = 1,
  Integer = 2,  // 16-bit signed
  Long = 3,     // 32-bit signed
  Double = 5,
  Currency = 6,  // 64-bit, four implied decimals
  Date = 7,      // days since 1899-12-30, time as the fraction
  String = 8,    // UTF-8 text
  Error = 10,    // an error code; a missing argument is Error 0x80020004
  Boolean = 11,
  Array = 0x200C,  // one-dimensional array of variants with bounds
};

// The value that every public argument carries. Value semantics: copying a
// variant copies its array elements too.
//
// Accessors (as_integer(), as_string(), ...) return the stored value of that
// exact subtype and throw std::logic_error for any other subtype; the
// platform's conversions between subtypes live inside the library.
class QDR_EXPORT Variant {
 public:
  // Missing-argument error code that callers pass for an omitted argument.
  static constexpr int32_t kParamNotFound = static_cast<int32_t>(0x80020004u);

  Variant() noexcept = default;     // Empty
  Variant(int32_t value) noexcept;  // Long
  Variant(double value) noexcept;   // Double
  Variant(bool value) noexcept;     // Boolean
  Variant(std::string value);       // String
  Variant(const char* value);       // String

  static Variant null() noexcept;
  static Variant integer(int16_t value) noexcept;
  static Variant long_integer(int32_t value) noexcept;
  static Variant real(double value) noexcept;
  // Currency from its scaled form: 12.34 is 123400.
  static Variant currency_scaled(int64_t ten_thousandths) noexcept;
  static Variant date(double ole_date) noexcept;
  static Variant text(std::string value);
  static Variant boolean(bool value) noexcept;
  static Variant error(int32_t code) noexcept;
  // An array with elements lower..upper, each Empty. upper = lower - 1 gives
  // an array with no elements.
  static Variant array(int32_t lower, int32_t upper);

  Variant(const Variant& other);
  Variant(Variant&& other) noexcept;
  Variant& operator=(const Variant& other);
  Variant& operator=(Variant&& other) noexcept;
  ~Variant();

  VarType type() const noexcept { return type_; }
  bool is_empty() const noexcept { return type_ == VarType::Empty; }
  bool is_null() const noexcept { return type_ == VarType::Null; }
  bool is_array() const noexcept { return type_ == VarType::Array; }
  // Integer, Long, Double or Currency.
  bool is_number() const noexcept;

  int16_t as_integer() const;
  int32_t as_long() const;
  double as_double() const;
  int64_t as_currency_scaled() const;
  double as_date() const;
  const std::string& as_string() const;
  bool as_bool() const;
  int32_t as_error() const;

  // Arrays. lbound/ubound/size/at throw qdr::Error 13 (Type mismatch) when
  // the variant is not an array; at() throws qdr::Error 9 (Subscript out of
  // range) for an index outside the bounds.
  int32_t lbound() const;
  int32_t ubound() const;
  std::size_t size() const;
  Variant& at(int32_t index);
  const Variant& at(int32_t index) const;
  // Makes this variant an array lower..upper of Empty elements, discarding
  // whatever it held (the platform's ReDim without Preserve).
  void redim(int32_t lower, int32_t upper);

  // Structural equality: same subtype and same value (arrays element-wise).
  // This is not the platform's comparison, which lives in the library.
  friend QDR_EXPORT bool operator==(const Variant& a, const Variant& b);

 private:
  struct Array {
    int32_t lower = 0;
    std::vector<Variant> items;
  };

  VarType type_ = VarType::Empty;
  int64_t int_ = 0;  // Integer, Long, Currency (scaled), Boolean, Error
  double real_ = 0;  // Double, Date
  std::string text_;
  std::unique_ptr<Array> array_;
};

}  // namespace qdr
