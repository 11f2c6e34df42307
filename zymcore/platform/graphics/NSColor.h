#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace zym {

/// A colour of components from 0 to 1.
class NSColor {
 public:
  [[nodiscard]] static NSColor colorWithWhite_alpha(double white, double alpha) noexcept {
    return {{white, alpha}, 2};
  }
  [[nodiscard]] static NSColor colorWithRed_green_blue_alpha(double red, double green, double blue,
                                                             double alpha) noexcept {
    return {{red, green, blue, alpha}, 4};
  }

  /// Grey and alpha, or red, green, blue and alpha, for as long as this colour lives; so not of one
  /// that ends with the statement.
  [[nodiscard]] std::span<const double> components() const& noexcept {
    return {components_.data(), count_};
  }
  std::span<const double> components() const&& = delete;

 private:
  NSColor(std::array<double, 4> components, std::size_t count) noexcept
      : components_(components), count_(count) {}

  std::array<double, 4> components_;
  std::size_t count_;
};

}  // namespace zym
