#include "zymcore/platform/PlistBuilder.h"

#include <iterator>

namespace zym {

bool PlistBuilder::begin(bool isDictionary) {
  if (frames_.size() == mostLevels_ || ++count_ > mostValues_) return false;
  frames_.push_back({isDictionary, keys_.size(), values_.size()});
  return true;
}

void PlistBuilder::end() {
  const Frame frame = frames_.back();
  frames_.pop_back();
  const auto firstValue = values_.begin() + static_cast<std::ptrdiff_t>(frame.firstValue);
  if (frame.isDictionary) {
    PlistDictionary dictionary;
    dictionary.reserve(values_.size() - frame.firstValue);
    for (std::size_t i = frame.firstValue; i < values_.size(); ++i) {
      dictionary.set(keys_[frame.firstKey + i - frame.firstValue], std::move(values_[i]));
    }
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(frame.firstKey), keys_.end());
    values_.erase(firstValue, values_.end());
    values_.emplace_back(std::move(dictionary));
  } else {
    PlistArray array({std::make_move_iterator(firstValue), std::make_move_iterator(values_.end())});
    values_.erase(firstValue, values_.end());
    values_.emplace_back(std::move(array));
  }
}

const char* PlistBuilder::refusal() const noexcept {
  return count_ > mostValues_ ? "too many values" : "containers nested too deep";
}

std::optional<PlistValue> PlistBuilder::takeRoot() {
  if (values_.size() != 1 || !frames_.empty()) return std::nullopt;
  return std::move(values_.front());
}

}  // namespace zym
