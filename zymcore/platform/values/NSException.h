#pragma once

#include <stdexcept>
#include <string>

namespace zym {

/// Thrown for a fault of the programmer only: a missing override, a wrong kind of value, an index
/// outside an array. Whatever may go wrong with data is answered, never thrown.
class NSException : public std::runtime_error {
 public:
  NSException(std::string name, const std::string& reason)
      : std::runtime_error(reason), name_(std::move(name)) {}

  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  [[nodiscard]] std::string reason() const { return what(); }

 private:
  std::string name_;
};

inline constexpr const char* NSInternalInconsistencyException = "NSInternalInconsistencyException";
inline constexpr const char* NSInvalidArgumentException = "NSInvalidArgumentException";
inline constexpr const char* NSRangeException = "NSRangeException";

}  // namespace zym
