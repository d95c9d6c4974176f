#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "qdr/export.h"

namespace qdr {

// A run-time error as the error traps see it: a number and a description.
// Numbers below 1000 are the platform's own (6 Overflow, 9 Subscript out of
// range, 13 Type mismatch, 94 Invalid use of Null, ...).
class QDR_EXPORT Error : public std::runtime_error {
 public:
  Error(int32_t number, const std::string& description)
      : std::runtime_error(description), number_(number) {}
  int32_t number() const noexcept { return number_; }
  std::string description() const { return what(); }

 private:
  int32_t number_;
};

// A failure reported by a data source (driver, server or a registered
// backend). `number` is the native error number, `sqlstate` the five-character
// state where the source has one (empty otherwise).
class QDR_EXPORT DatabaseError : public Error {
 public:
  DatabaseError(int32_t number, const std::string& description, std::string sqlstate = {})
      : Error(number, description), sqlstate_(std::move(sqlstate)) {}
  const std::string& sqlstate() const noexcept { return sqlstate_; }

 private:
  std::string sqlstate_;
};

}  // namespace qdr
