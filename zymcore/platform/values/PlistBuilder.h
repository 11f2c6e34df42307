#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "zymcore/platform/values/PlistKey.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// Makes a tree from what a reader meets, in order: the start and end of containers, keys, values.
/// An operation answers false when the tree would grow past its bounds, and `refusal` then says
/// which. The caller sees to it that keys and values come in turn.
class PlistBuilder {
 public:
  PlistBuilder(std::size_t mostValues, std::size_t mostLevels)
      : mostValues_(mostValues), mostLevels_(mostLevels) {
    constexpr std::size_t usualDepth = 128;  // in keys and values that wait
    keys_.reserve(usualDepth);
    values_.reserve(usualDepth);
  }

  [[nodiscard]] bool beginDictionary() { return begin(true); }
  [[nodiscard]] bool beginArray() { return begin(false); }
  /// Ends the innermost container.
  void end();
  void addKey(KeyName key) { keys_.emplace_back(key); }
  template <class Value>
  [[nodiscard]] bool addValue(Value&& value) {
    if (++count_ > mostValues_) return false;
    values_.emplace_back(std::forward<Value>(value));
    return true;
  }
  /// Takes back the key that waits for its value.
  void dropKey() { keys_.pop_back(); }

  [[nodiscard]] std::size_t levels() const noexcept { return frames_.size(); }
  [[nodiscard]] bool isInDictionary() const noexcept {
    return !frames_.empty() && frames_.back().isDictionary;
  }
  /// True between a key and its value.
  [[nodiscard]] bool hasKeyWaiting() const noexcept {
    return isInDictionary() &&
           keys_.size() - frames_.back().firstKey != values_.size() - frames_.back().firstValue;
  }
  [[nodiscard]] const char* refusal() const noexcept;
  /// The value at the top, once all containers have ended; absent when there was none.
  [[nodiscard]] std::optional<PlistValue> takeRoot();

 private:
  struct Frame {
    bool isDictionary;
    std::size_t firstKey;
    std::size_t firstValue;
  };

  [[nodiscard]] bool begin(bool isDictionary);

  std::size_t mostValues_;
  std::size_t mostLevels_;
  std::size_t count_ = 0;
  std::vector<Frame> frames_;
  std::vector<PlistKey> keys_;      // of all containers that haven't ended
  std::vector<PlistValue> values_;  // likewise
};

}  // namespace zym
