#pragma once

#include <chrono>
#include <compare>
#include <string>

namespace zym {

/// A moment, as seconds since 2001-01-01 00:00 UTC in double precision. Two dates are equal when
/// these doubles are.
class NSDate {
 public:
  /// Seconds from 1970-01-01 to 2001-01-01, both 00:00 UTC.
  static constexpr double NSTimeIntervalSince1970 = 978307200.0;

  constexpr NSDate() noexcept = default;

  /// The present time.
  [[nodiscard]] static NSDate date() noexcept {
    const std::chrono::duration<double> since1970 =
        std::chrono::system_clock::now().time_since_epoch();
    return dateWithTimeIntervalSince1970(since1970.count());
  }
  [[nodiscard]] static constexpr NSDate dateWithTimeIntervalSince1970(double seconds) noexcept {
    return NSDate(seconds - NSTimeIntervalSince1970);
  }
  [[nodiscard]] static constexpr NSDate dateWithTimeIntervalSinceReferenceDate(
      double seconds) noexcept {
    return NSDate(seconds);
  }

  [[nodiscard]] static NSDate dateWithTimeIntervalSinceNow(double seconds) noexcept {
    return NSDate(date().seconds_ + seconds);
  }
  /// The year 1, before any date that is meant.
  [[nodiscard]] static constexpr NSDate distantPast() noexcept { return NSDate(-63114076800); }

  [[nodiscard]] constexpr double timeIntervalSince1970() const noexcept {
    return seconds_ + NSTimeIntervalSince1970;
  }
  [[nodiscard]] constexpr double timeIntervalSinceReferenceDate() const noexcept {
    return seconds_;
  }

  /// Such as "2026-03-01 09:30:00 +0000"; seconds since 2001 for a moment that is no date of years
  /// with four digits.
  [[nodiscard]] std::string description() const;

  friend constexpr bool operator==(NSDate, NSDate) noexcept = default;
  friend constexpr std::partial_ordering operator<=>(NSDate, NSDate) noexcept = default;

 private:
  explicit constexpr NSDate(double secondsSinceReferenceDate) noexcept
      : seconds_(secondsSinceReferenceDate) {}

  double seconds_ = 0;
};

}  // namespace zym
