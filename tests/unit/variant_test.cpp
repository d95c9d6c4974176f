#include "qdr/variant.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "qdr/error.h"

namespace qdr {
namespace {

// The number and description of the qdr::Error `action` raises, or "none".
template <typename F>
std::string raised(F action) {
  try {
    action();
  } catch (const Error& e) {
    return std::to_string(e.number()) + " " + e.description();
  }
  return "none";
}

TEST(Variant, NumbersAreTheFourNumericSubtypes) {
  EXPECT_TRUE(Variant::currency_scaled(1).is_number());
  EXPECT_TRUE(Variant::integer(1).is_number());
  EXPECT_FALSE(Variant(true).is_number());
  EXPECT_FALSE(Variant::date(1).is_number());
  EXPECT_FALSE(Variant("1").is_number());
  EXPECT_EQ(Variant(static_cast<const char*>(nullptr)).as_string(), "");
}

TEST(Variant, AccessorsOfAnotherSubtypeAreProgrammingErrors) {
  EXPECT_THROW(Variant(1).as_integer(), std::logic_error);
  EXPECT_THROW(Variant::integer(1).as_long(), std::logic_error);
  EXPECT_THROW(Variant("1").as_double(), std::logic_error);
  EXPECT_THROW(Variant::null().as_string(), std::logic_error);
  EXPECT_THROW(Variant(1.0).as_date(), std::logic_error);
}

TEST(Variant, ArraysHaveBoundsAndRaiseThePlatformErrors) {
  Variant a = Variant::array(1, 3);
  EXPECT_EQ(a.lbound(), 1);
  EXPECT_EQ(a.ubound(), 3);
  EXPECT_EQ(a.size(), 3u);
  EXPECT_TRUE(a.at(2).is_empty());
  a.at(3) = Variant("c");
  EXPECT_EQ(a.at(3).as_string(), "c");
  EXPECT_EQ(raised([&] { a.at(0); }), "9 Subscript out of range");
  EXPECT_EQ(raised([&] { a.at(4); }), "9 Subscript out of range");
  EXPECT_EQ(raised([] { Variant(1).ubound(); }), "13 Type mismatch");
  EXPECT_EQ(raised([] { Variant().at(0); }), "13 Type mismatch");

  const Variant none = Variant::array(0, -1);
  EXPECT_EQ(none.size(), 0u);
  EXPECT_EQ(none.ubound(), -1);
  EXPECT_EQ(raised([&] { none.at(0); }), "9 Subscript out of range");
  EXPECT_EQ(raised([] { Variant::array(0, -2); }), "9 Subscript out of range");

  a.redim(0, 1);  // without Preserve: the old elements are gone
  EXPECT_EQ(a.lbound(), 0);
  EXPECT_TRUE(a.at(1).is_empty());
  Variant text("x");
  text.redim(5, 5);
  EXPECT_TRUE(text.is_array());
  EXPECT_TRUE(text.at(5).is_empty());
}

TEST(Variant, CopiesAreDeepAndMovesLeaveEmpty) {
  Variant a = Variant::array(0, 1);
  a.at(0) = Variant::array(0, 0);
  a.at(0).at(0) = Variant("inner");

  Variant copy = a;
  copy.at(0).at(0) = Variant("changed");
  EXPECT_EQ(a.at(0).at(0).as_string(), "inner");

  Variant assigned("old");
  assigned = a;
  assigned = assigned;  // self-assignment keeps the value
  EXPECT_TRUE(assigned == a);

  Variant moved = std::move(copy);
  EXPECT_TRUE(copy.is_empty());  // NOLINT(bugprone-use-after-move): the state is the contract
  EXPECT_EQ(moved.at(0).at(0).as_string(), "changed");
  assigned = std::move(moved);
  EXPECT_TRUE(moved.is_empty());  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(assigned.ubound(), 1);
}

TEST(Variant, EqualityIsStructural) {
  EXPECT_TRUE(Variant(1) == Variant(1));
  EXPECT_FALSE(Variant(1) == Variant::integer(1));  // same number, other subtype
  EXPECT_FALSE(Variant(1.0) == Variant::date(1.0));
  EXPECT_FALSE(Variant("1") == Variant(1));
  EXPECT_TRUE(Variant::null() == Variant::null());
  EXPECT_FALSE(Variant::null() == Variant());
  EXPECT_FALSE(Variant(true) == Variant(-1));
  Variant a = Variant::array(0, 0), b = Variant::array(1, 1);
  EXPECT_FALSE(a == b);  // bounds count
  b.redim(0, 0);
  EXPECT_TRUE(a == b);
  b.at(0) = Variant(0);
  EXPECT_FALSE(a == b);  // and elements
}

}  // namespace
}  // namespace qdr
