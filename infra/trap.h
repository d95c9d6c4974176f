#pragma once

// What an error trap reads of the error it caught.

#include <cstdint>
#include <string>

namespace qdr {

struct ErrInfo {
  int32_t number = 0;
  std::string description;
};

// The number and description of the exception being handled. Call it only
// inside a catch block. qdr::Error keeps its own; std::bad_alloc reads as 7
// "Out of memory"; any other exception as 440 with its what().
ErrInfo current_error() noexcept;

}  // namespace qdr
