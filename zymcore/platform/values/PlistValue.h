#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSDate.h"
#include "zymcore/platform/values/PlistArray.h"
#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/platform/values/PlistKey.h"

namespace zym {

/// One value of a tree: a dictionary, an array, a string (UTF-8), an integer, a real, a boolean, a
/// date or binary data. A copy is independent at every depth. Absence is no value: it is a null
/// pointer or an empty optional beside the tree.
class PlistValue {
 public:
  enum class Kind { Dictionary, Array, String, Integer, Real, Boolean, Date, Data };

  // NOLINTBEGIN(google-explicit-constructor): what it can hold becomes one without a word.
  PlistValue(PlistDictionary value) noexcept : value_(std::move(value)) {}
  PlistValue(PlistArray value) noexcept : value_(std::move(value)) {}
  PlistValue(std::string value) noexcept : value_(std::move(value)) {}
  PlistValue(std::string_view value) : value_(std::in_place_type<std::string>, value) {}
  PlistValue(const char* value) : value_(std::in_place_type<std::string>, value) {}
  PlistValue(bool value) noexcept : value_(value) {}
  template <std::integral Integer>
  PlistValue(Integer value) noexcept : value_(static_cast<std::int64_t>(value)) {}
  PlistValue(double value) noexcept : value_(value) {}
  PlistValue(NSDate value) noexcept : value_(value) {}
  PlistValue(NSData value) noexcept : value_(std::move(value)) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] Kind kind() const noexcept { return static_cast<Kind>(value_.index()); }
  /// The platform's name for a value of this kind, such as "NSString", for messages.
  [[nodiscard]] const char* className() const noexcept;

  // The value, or null when it is of another kind.
  [[nodiscard]] const PlistDictionary* dictionary() const noexcept {
    return get<PlistDictionary>();
  }
  [[nodiscard]] const PlistArray* array() const noexcept { return get<PlistArray>(); }
  [[nodiscard]] const std::string* string() const noexcept { return get<std::string>(); }
  [[nodiscard]] const std::int64_t* integer() const noexcept { return get<std::int64_t>(); }
  [[nodiscard]] const double* real() const noexcept { return get<double>(); }
  [[nodiscard]] const bool* boolean() const noexcept { return get<bool>(); }
  [[nodiscard]] const NSDate* date() const noexcept { return get<NSDate>(); }
  [[nodiscard]] const NSData* data() const noexcept { return get<NSData>(); }
  /// An integer, a real or a boolean.
  [[nodiscard]] bool isNumber() const noexcept {
    return kind() >= Kind::Integer && kind() <= Kind::Boolean;
  }

  // The same for changing it in place, at once: not after a copy was made.
  [[nodiscard]] PlistDictionary* editDictionary() noexcept {
    return std::get_if<PlistDictionary>(&value_);
  }
  [[nodiscard]] PlistArray* editArray() noexcept { return std::get_if<PlistArray>(&value_); }
  [[nodiscard]] std::string* editString() noexcept { return std::get_if<std::string>(&value_); }

  /// The number: of a string its leading number, of a boolean 0 or 1, of any other kind 0.
  [[nodiscard]] double doubleValue() const noexcept;
  /// `doubleValue` rounded to single precision.
  [[nodiscard]] float floatValue() const noexcept { return static_cast<float>(doubleValue()); }
  /// The same without fraction, limited to the range of the type.
  [[nodiscard]] std::int64_t integerValue() const noexcept;
  /// True when the number in single precision is greater than 0.2.
  [[nodiscard]] bool boolValue() const noexcept { return floatValue() > 0.2F; }

  /// Deep equality. Numbers are equal when they are the same number, of whatever kind; one that is
  /// no number equals itself.
  friend bool operator==(const PlistValue& a, const PlistValue& b) noexcept;

 private:
  template <class T>
  [[nodiscard]] const T* get() const noexcept {
    return std::get_if<T>(&value_);
  }

  // In the order of `Kind`.
  std::variant<PlistDictionary, PlistArray, std::string, std::int64_t, double, bool, NSDate, NSData>
      value_;
};

/// A key and its value, as a dictionary is walked.
struct PlistEntry {
  PlistKey key;
  PlistValue value;
};

/// The dictionaries of an array. Lives no longer than the array, unchanged.
class PlistRows {
 public:
  class iterator {
   public:
    iterator(const PlistValue* at, const PlistValue* end) noexcept : at_(at), end_(end) { skip(); }
    const PlistDictionary& operator*() const noexcept { return *at_->dictionary(); }
    const PlistDictionary* operator->() const noexcept { return at_->dictionary(); }
    iterator& operator++() noexcept {
      ++at_;
      skip();
      return *this;
    }
    bool operator==(const iterator& other) const noexcept { return at_ == other.at_; }

   private:
    void skip() noexcept {
      while (at_ != end_ && !at_->dictionary()) ++at_;
    }
    const PlistValue* at_;
    const PlistValue* end_;
  };

  explicit PlistRows(const PlistArray* array) noexcept : array_(array) {}
  [[nodiscard]] iterator begin() const noexcept {
    return array_ ? iterator(array_->begin(), array_->end()) : iterator(nullptr, nullptr);
  }
  [[nodiscard]] iterator end() const noexcept {
    return array_ ? iterator(array_->end(), array_->end()) : iterator(nullptr, nullptr);
  }

 private:
  const PlistArray* array_;
};

/// The dictionaries of an array, for changing them in place. Neither the array nor what holds it
/// may be copied meanwhile.
class PlistEditableRows {
 public:
  class iterator {
   public:
    iterator(PlistValue* at, PlistValue* end) noexcept : at_(at), end_(end) { skip(); }
    PlistDictionary& operator*() const noexcept { return *at_->editDictionary(); }
    PlistDictionary* operator->() const noexcept { return at_->editDictionary(); }
    iterator& operator++() noexcept {
      ++at_;
      skip();
      return *this;
    }
    bool operator==(const iterator& other) const noexcept { return at_ == other.at_; }

   private:
    void skip() noexcept {
      while (at_ != end_ && !at_->editDictionary()) ++at_;
    }
    PlistValue* at_;
    PlistValue* end_;
  };

  explicit PlistEditableRows(PlistArray* array) : values_(array ? &array->editAll() : nullptr) {}
  [[nodiscard]] iterator begin() const noexcept { return at(0); }
  [[nodiscard]] iterator end() const noexcept { return at(values_ ? values_->size() : 0); }

 private:
  [[nodiscard]] iterator at(std::size_t position) const noexcept {
    if (!values_) return {nullptr, nullptr};
    return {values_->data() + position, values_->data() + values_->size()};
  }
  std::vector<PlistValue>* values_;
};

inline PlistRows PlistDictionary::rows(KeyName key) const noexcept {
  return PlistRows(array(key));
}
inline PlistEditableRows PlistDictionary::editRows(KeyName key) {
  return PlistEditableRows(editArray(key));
}

}  // namespace zym
