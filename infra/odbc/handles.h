#pragma once

// ODBC handles that free themselves, and the one checker every driver call
// goes through.

#include <sql.h>
#include <sqlext.h>

#include <string_view>
#include <utility>

namespace qdr::odbc {

// Raises qdr::DatabaseError for a failed call (SQL_ERROR, SQL_INVALID_HANDLE,
// and SQL_NEED_DATA or SQL_STILL_EXECUTING, which this layer never asks for).
// The error carries the handle's diagnostic messages, each on one line,
// joined by "; ", and the native number (-2147467259 when the driver gives
// 0) and SQLSTATE of the first record that is not a warning (class 01);
// `call` names the function only when the driver left no diagnostics. SQL_SUCCESS,
// SQL_SUCCESS_WITH_INFO and SQL_NO_DATA come back to the caller, which decides what SQL_NO_DATA
// means.
SQLRETURN check(SQLRETURN rc, SQLSMALLINT handle_type, SQLHANDLE handle, std::string_view call);

// An owned handle of one type. The destructor frees it and ignores any
// error; moving transfers ownership.
template <SQLSMALLINT Type>
class Handle {
 public:
  Handle() = default;
  explicit Handle(SQLHANDLE raw) noexcept : raw_(raw) {}
  ~Handle() { reset(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  Handle(Handle&& other) noexcept : raw_(std::exchange(other.raw_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    if (this != &other) {
      reset();
      raw_ = std::exchange(other.raw_, nullptr);
    }
    return *this;
  }

  // Allocates a handle under `parent` (SQL_NULL_HANDLE for an environment);
  // raises DatabaseError when the driver manager refuses.
  template <SQLSMALLINT ParentType>
  static Handle allocate(SQLHANDLE parent) {
    SQLHANDLE raw = SQL_NULL_HANDLE;
    check(SQLAllocHandle(Type, parent, &raw), ParentType, parent, "SQLAllocHandle");
    return Handle(raw);
  }

  SQLHANDLE get() const noexcept { return raw_; }
  explicit operator bool() const noexcept { return raw_ != nullptr; }

  void reset() noexcept {
    if (raw_ != nullptr) SQLFreeHandle(Type, raw_);
    raw_ = nullptr;
  }

 private:
  SQLHANDLE raw_ = nullptr;
};

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

// Shorthands for check() on an owned handle.
inline SQLRETURN check(SQLRETURN rc, const ConnectionHandle& h, std::string_view call) {
  return check(rc, SQL_HANDLE_DBC, h.get(), call);
}
inline SQLRETURN check(SQLRETURN rc, const StatementHandle& h, std::string_view call) {
  return check(rc, SQL_HANDLE_STMT, h.get(), call);
}
inline SQLRETURN check(SQLRETURN rc, const EnvironmentHandle& h, std::string_view call) {
  return check(rc, SQL_HANDLE_ENV, h.get(), call);
}

}  // namespace qdr::odbc
