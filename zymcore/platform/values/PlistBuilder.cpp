#include "zymcore/platform/values/PlistBuilder.h"

#include <iterator>
#include <span>

namespace zym {

bool PlistBuilder::begin(bool isDictionary) {
  if (frames_.size() == mostLevels_ || ++count_ > mostValues_) return false;
  frames_.push_back({isDictionary, keys_.size(), values_.size()});
  return true;
}

void PlistBuilder::end() {
  const Frame frame = frames_.back();
  frames_.pop_back();
  const std::span values(values_.data() + frame.firstValue, values_.size() - frame.firstValue);
  PlistValue container = PlistArray();
  if (frame.isDictionary) {
    container = PlistDictionary({keys_.data() + frame.firstKey, values.size()}, values);
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(frame.firstKey), keys_.end());
  } else {
    container = PlistArray(
        {std::make_move_iterator(values.begin()), std::make_move_iterator(values.end())});
  }
  values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(frame.firstValue), values_.end());
  values_.push_back(std::move(container));
}

const char* PlistBuilder::refusal() const noexcept {
  return count_ > mostValues_ ? "too many values" : "containers nested too deep";
}

std::optional<PlistValue> PlistBuilder::takeRoot() {
  if (values_.size() != 1 || !frames_.empty()) return std::nullopt;
  return std::move(values_.front());
}

}  // namespace zym
