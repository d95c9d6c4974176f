#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "qdr/export.h"
#include "qdr/qdr.h"
#include "qdr/variant.h"

namespace qdr {

// Late binding by name, as automation clients call the component: the
// method's dispatch id and its parameter names in interface order.
struct MethodInfo {
  std::string name;
  int32_t dispid = 0;
  std::vector<std::string> parameters;
};

// The five methods of the interface, in slot order.
QDR_EXPORT const std::vector<MethodInfo>& methods();

// The method of that exact name (case-sensitive), or nullptr.
QDR_EXPORT const MethodInfo* find_method(std::string_view name);

// Calls `method` with `args`, which must hold exactly as many variants as
// the method has parameters, in interface order; they are passed by
// reference and hold the outputs afterwards. Throws std::invalid_argument
// for an unknown method or a wrong argument count; the method itself never
// throws.
QDR_EXPORT Variant invoke(QDR& object, std::string_view method, std::span<Variant> args);

}  // namespace qdr
