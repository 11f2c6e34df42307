#include <algorithm>
#include <utility>
#include <vector>

#include "zymcore/reports/ZYMHTML.h"

namespace zym {
namespace {

constexpr std::string_view marker = "<*KEYNAME=";
/// Bytes of values that are put in at most. A large page of a real document has some 100 KB.
constexpr std::size_t mostPutIn = 64U << 20U;

/// How many characters of the marker the text ends in, short of all.
std::size_t begunAtEndOf(std::string_view text) noexcept {
  const std::size_t start = text.size() - std::min(marker.size() - 1, text.size());
  const std::size_t at = text.find('<', start);
  for (std::size_t i = at; i != std::string_view::npos; i = text.find('<', i + 1)) {
    if (marker.starts_with(text.substr(i))) return text.size() - i;
  }
  return 0;
}

/// Fills a text in one pass. What was written holds no marker, so that the first one of the whole
/// text is always the next to be read: in what is left of the last value, of those around it, and
/// of the text. It may begin at the end of what was written, and go on over any number of seams.
class Filling {
 public:
  Filling(std::string_view text, const PlistDictionary& values) : values_(values) {
    written_.reserve(text.size() * 2);
    put(text);
  }

  [[nodiscard]] std::string run() {
    while (readMarker() && readKey()) putValue();
    while (!left_.empty()) take(left_.back().size());
    return std::move(written_);
  }

 private:
  void put(std::string_view text) {
    if (!text.empty()) left_.push_back(text);
  }
  void take(std::size_t count) {
    std::string_view& front = left_.back();
    written_.append(front.substr(0, count));
    front.remove_prefix(count);
    if (front.empty()) left_.pop_back();
  }

  bool readMarker() {
    while (!left_.empty() && begun_ < marker.size()) {
      const std::string_view front = left_.back();
      if (begun_ > 0) {
        begun_ = front[0] == marker[begun_] ? begun_ + 1 : front[0] == marker[0] ? 1 : 0;
        take(1);
      } else if (const std::size_t at = front.find(marker); at != std::string_view::npos) {
        begun_ = marker.size();
        take(at + marker.size());
      } else {
        begun_ = begunAtEndOf(front);
        take(front.size());
      }
    }
    key_ = written_.size();
    return begun_ == marker.size();
  }

  bool readKey() {
    while (!left_.empty()) {
      const std::string_view front = left_.back();
      const std::size_t end = front.find('>');
      take(end == std::string_view::npos ? front.size() : end + 1);
      if (end != std::string_view::npos) return putIn_ < mostPutIn;
    }
    return false;
  }

  void putValue() {
    const std::string_view key = std::string_view(written_).substr(key_);
    const std::string_view value = values_.stringValue(KeyName(key.substr(0, key.size() - 1)));
    written_.resize(key_ - marker.size());
    begun_ = begunAtEndOf(written_);
    putIn_ += value.size();
    put(value);
  }

  const PlistDictionary& values_;
  std::string written_;
  std::vector<std::string_view> left_;  // the last one first
  std::size_t begun_ = 0;               // characters of a marker that was written
  std::size_t key_ = 0;                 // where the key behind it starts
  std::size_t putIn_ = 0;
};

}  // namespace

std::string ZYMHTML::replaceKeysInString_fromDictionary(std::optional<std::string_view> text,
                                                        const PlistDictionary* values) {
  if (!text || text->empty()) return "";
  if (!values || values->empty()) return std::string(*text);
  return Filling(*text, *values).run();
}

}  // namespace zym
