#include "infra/trap.h"

#include <exception>
#include <new>

#include "qdr/error.h"

namespace qdr {

ErrInfo current_error() noexcept {
  try {
    throw;
  } catch (const Error& e) {
    return {e.number(), e.what()};
  } catch (const std::bad_alloc&) {
    return {7, "Out of memory"};
  } catch (const std::exception& e) {
    return {440, e.what()};
  } catch (...) {
    return {440, "Unknown error"};
  }
}

}  // namespace qdr
