#include "qdr/variant.h"

#include <stdexcept>

#include "qdr/error.h"

namespace qdr {

namespace {

[[noreturn]] void wrong_subtype(const char* wanted) {
  throw std::logic_error(std::string("variant does not hold a ") + wanted);
}

}  // namespace

Variant::Variant(int32_t value) noexcept : type_(VarType::Long), int_(value) {}
Variant::Variant(double value) noexcept : type_(VarType::Double), real_(value) {}
Variant::Variant(bool value) noexcept : type_(VarType::Boolean), int_(value ? -1 : 0) {}
Variant::Variant(std::string value) : type_(VarType::String), text_(std::move(value)) {}
Variant::Variant(const char* value) : type_(VarType::String), text_(value ? value : "") {}

Variant Variant::null() noexcept {
  Variant v;
  v.type_ = VarType::Null;
  return v;
}

Variant Variant::integer(int16_t value) noexcept {
  Variant v;
  v.type_ = VarType::Integer;
  v.int_ = value;
  return v;
}

Variant Variant::long_integer(int32_t value) noexcept { return Variant(value); }
Variant Variant::real(double value) noexcept { return Variant(value); }

Variant Variant::currency_scaled(int64_t ten_thousandths) noexcept {
  Variant v;
  v.type_ = VarType::Currency;
  v.int_ = ten_thousandths;
  return v;
}

Variant Variant::date(double ole_date) noexcept {
  Variant v;
  v.type_ = VarType::Date;
  v.real_ = ole_date;
  return v;
}

Variant Variant::text(std::string value) { return Variant(std::move(value)); }
Variant Variant::boolean(bool value) noexcept { return Variant(value); }

Variant Variant::error(int32_t code) noexcept {
  Variant v;
  v.type_ = VarType::Error;
  v.int_ = code;
  return v;
}

Variant Variant::array(int32_t lower, int32_t upper) {
  Variant v;
  v.redim(lower, upper);
  return v;
}

Variant::Variant(const Variant& other)
    : type_(other.type_),
      int_(other.int_),
      real_(other.real_),
      text_(other.text_),
      array_(other.array_ ? std::make_unique<Array>(*other.array_) : nullptr) {}

Variant::Variant(Variant&& other) noexcept
    : type_(other.type_),
      int_(other.int_),
      real_(other.real_),
      text_(std::move(other.text_)),
      array_(std::move(other.array_)) {
  other.type_ = VarType::Empty;
}

Variant& Variant::operator=(const Variant& other) {
  if (this != &other) {
    Variant copy(other);
    *this = std::move(copy);
  }
  return *this;
}

Variant& Variant::operator=(Variant&& other) noexcept {
  if (this != &other) {
    type_ = other.type_;
    int_ = other.int_;
    real_ = other.real_;
    text_ = std::move(other.text_);
    array_ = std::move(other.array_);
    other.type_ = VarType::Empty;
  }
  return *this;
}

Variant::~Variant() = default;

bool Variant::is_number() const noexcept {
  return type_ == VarType::Integer || type_ == VarType::Long || type_ == VarType::Double ||
         type_ == VarType::Currency;
}

int16_t Variant::as_integer() const {
  if (type_ != VarType::Integer) wrong_subtype("Integer");
  return static_cast<int16_t>(int_);
}

int32_t Variant::as_long() const {
  if (type_ != VarType::Long) wrong_subtype("Long");
  return static_cast<int32_t>(int_);
}

double Variant::as_double() const {
  if (type_ != VarType::Double) wrong_subtype("Double");
  return real_;
}

int64_t Variant::as_currency_scaled() const {
  if (type_ != VarType::Currency) wrong_subtype("Currency");
  return int_;
}

double Variant::as_date() const {
  if (type_ != VarType::Date) wrong_subtype("Date");
  return real_;
}

const std::string& Variant::as_string() const {
  if (type_ != VarType::String) wrong_subtype("String");
  return text_;
}

bool Variant::as_bool() const {
  if (type_ != VarType::Boolean) wrong_subtype("Boolean");
  return int_ != 0;
}

int32_t Variant::as_error() const {
  if (type_ != VarType::Error) wrong_subtype("Error");
  return static_cast<int32_t>(int_);
}

int32_t Variant::lbound() const {
  if (type_ != VarType::Array) throw Error(13, "Type mismatch");
  return array_->lower;
}

int32_t Variant::ubound() const {
  if (type_ != VarType::Array) throw Error(13, "Type mismatch");
  return array_->lower + static_cast<int32_t>(array_->items.size()) - 1;
}

std::size_t Variant::size() const {
  if (type_ != VarType::Array) throw Error(13, "Type mismatch");
  return array_->items.size();
}

Variant& Variant::at(int32_t index) {
  return const_cast<Variant&>(static_cast<const Variant&>(*this).at(index));
}

const Variant& Variant::at(int32_t index) const {
  if (type_ != VarType::Array) throw Error(13, "Type mismatch");
  const int64_t offset = static_cast<int64_t>(index) - array_->lower;
  if (offset < 0 || offset >= static_cast<int64_t>(array_->items.size()))
    throw Error(9, "Subscript out of range");
  return array_->items[static_cast<std::size_t>(offset)];
}

void Variant::redim(int32_t lower, int32_t upper) {
  const int64_t count = static_cast<int64_t>(upper) - lower + 1;
  if (count < 0) throw Error(9, "Subscript out of range");
  auto fresh = std::make_unique<Array>();
  fresh->lower = lower;
  fresh->items.resize(static_cast<std::size_t>(count));
  type_ = VarType::Array;
  int_ = 0;
  real_ = 0;
  text_.clear();
  array_ = std::move(fresh);
}

bool operator==(const Variant& a, const Variant& b) {
  if (a.type_ != b.type_) return false;
  switch (a.type_) {
    case VarType::Empty:
    case VarType::Null:
      return true;
    case VarType::Double:
    case VarType::Date:
      return a.real_ == b.real_;
    case VarType::String:
      return a.text_ == b.text_;
    case VarType::Array:
      return a.array_->lower == b.array_->lower && a.array_->items == b.array_->items;
    default:
      return a.int_ == b.int_;
  }
}

}  // namespace qdr
