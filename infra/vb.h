#pragma once

// The conversions, comparisons and text functions of the legacy automation
// platform, in one place. They follow the process locale (LC_NUMERIC for the
// decimal and thousands separators, LC_TIME for the day/month order) as the
// legacy runtime followed the machine's regional settings.
//
// Failures raise qdr::Error with the platform's numbers: 5 Invalid procedure
// call or argument, 6 Overflow, 9 Subscript out of range, 13 Type mismatch,
// 94 Invalid use of Null.

#include <cstdint>
#include <string>
#include <string_view>

#include "qdr/error.h"
#include "qdr/variant.h"

namespace qdr::vb {

// Error numbers of the platform.
inline constexpr int32_t kInvalidCall = 5;
inline constexpr int32_t kOverflow = 6;
inline constexpr int32_t kSubscriptOutOfRange = 9;
inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kInvalidUseOfNull = 94;

[[noreturn]] void raise(int32_t number);  // with the platform's description

// Regional settings as the process locale gives them.
char decimal_separator();    // "," under pt_BR, "." under en_US
char thousands_separator();  // "." under pt_BR, "," under en_US
bool day_before_month();     // the regional short date order

// --- Conversions -----------------------------------------------------------

// CStr: Empty gives "", Null raises 94, numbers use the regional decimal
// separator and up to 15 significant digits, dates the regional short date
// (plus " hh:mm:ss" when the time is not midnight), Booleans "True"/"False".
std::string cstr(const Variant& v);

// The text of a variant where Null reads as "" (the common `"" & value`).
std::string text_of(const Variant& v);

// Val: the leading number of the text (blanks, tabs and line feeds skipped
// anywhere, "." is the only decimal point whatever the locale, an exponent
// "E"/"D" taken, "&H"/"&O" prefixes honoured); 0 when there is none. Raises 6
// when the number does not fit a Double.
double val(std::string_view text);

// IsNumeric: true for numbers, Booleans and texts that hold a number in the
// regional format (decimal and thousands separators, leading/trailing blanks,
// a leading or trailing sign, currency-free). Empty is numeric (0); Null and
// "" are not.
bool is_numeric(const Variant& v);

// CDbl/CLng/CInt: numbers and numeric texts (regional format); Empty is 0;
// Null raises 94, anything else 13. CLng and CInt round half to even and
// raise 6 outside their range.
double cdbl(const Variant& v);
int32_t clng(const Variant& v);
int16_t cint(const Variant& v);

// IsDate / CDate. A text is tried in the regional day/month order first; when
// that cannot be a date the other order is tried, so under pt_BR "10/13/2001"
// is October 13th, and "31/02/2001" is no date at all. A date has day, month
// and year separated by "/", "-" or "."; a year of four digits may come first
// ("2001/10/13"); two-digit years are 1930-2029; years run 100-9999. Times
// "hh:mm[:ss] [AM|PM]" may follow the date (after blanks or "T") or stand
// alone. Only Date variants and such texts are dates for is_date; cdate also
// takes numbers as OLE dates (6 out of range) and raises 13 otherwise.
bool is_date(const Variant& v);
double cdate(const Variant& v);

// Format with a date pattern, letters in either case: yyyy, yy, y (day of the
// year), mmmm/mmm (regional month name), mm/m, dddd/ddd (regional weekday
// name), ddddd (short date), dd/d, hh/h, nn/n, ss/s, AM/PM (12-hour clock);
// mm or m right after an hour or right before a second is minutes. A
// backslash or double quotes make text literal; any other character is
// literal. Date variants and date texts are formatted; any other value comes
// back as its text ("" for Null).
std::string format_date(const Variant& v, std::string_view pattern);

// OLE date <-> calendar fields. make_date carries overflowing fields over as
// the platform does (month 13 is January of the next year, day 0 the
// last day of the previous month) and raises 5 outside the years 100-9999;
// date_parts rounds to the second and raises 6 outside that range.
double make_date(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
struct DateParts {
  int year, month, day, hour, minute, second;
};
DateParts date_parts(double ole_date);
double now();  // the current local date and time

// --- Text functions (characters, not bytes) --------------------------------

// Trim, LTrim and RTrim remove blanks (" ") only, as the platform did.
std::string trim(std::string_view s);
std::string ltrim(std::string_view s);
std::string rtrim(std::string_view s);
std::string ucase(std::string_view s);
std::string lcase(std::string_view s);
int32_t len(std::string_view s);
// Mid(s, start[, length]); start is 1-based; length -1 means to the end;
// raises 5 for start < 1 or any other negative length. Left/Right raise 5
// for a negative length.
std::string mid(std::string_view s, int32_t start, int32_t length = -1);
std::string left(std::string_view s, int32_t length);
std::string right(std::string_view s, int32_t length);
// InStr(start, s, find): 1-based position of `find` at or after `start`, 0
// when absent; raises 5 for start < 1.
int32_t instr(int32_t start, std::string_view s, std::string_view find);
std::string replace(std::string_view s, std::string_view find, std::string_view with);

// --- Comparison ------------------------------------------------------------

// Comparison as the platform's `If a = b` sees it. Both sides numeric
// (numbers, or texts that pass is_numeric) compare as numbers; otherwise as
// texts (binary). Empty is 0 against a number and "" against a text. Any
// comparison involving Null is Null, which an If takes as false: so both
// eq(Null, "") and ne(Null, "") are false.
bool eq(const Variant& a, const Variant& b);
bool ne(const Variant& a, const Variant& b);
bool lt(const Variant& a, const Variant& b);
bool le(const Variant& a, const Variant& b);
bool gt(const Variant& a, const Variant& b);
bool ge(const Variant& a, const Variant& b);

}  // namespace qdr::vb
