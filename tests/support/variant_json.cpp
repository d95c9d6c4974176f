#include "tests/support/variant_json.h"

#include <cstdint>

namespace qdr::test {

std::string shown(const Variant& value) { return ::qdr::json::dump(::qdr::json::to_json(value)); }

std::string values(std::initializer_list<Variant> list) {
  Variant array = Variant::array(0, static_cast<int32_t>(list.size()) - 1);
  int32_t i = 0;
  for (const Variant& v : list) array.at(i++) = v;
  return shown(array);
}

}  // namespace qdr::test
