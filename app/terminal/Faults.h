#pragma once

#include <stdexcept>

namespace zym::host {

/// What a file holds can't be used. The program names it, goes on and in the end exits with 1.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The program was called wrongly. It exits with 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace zym::host
