#include <algorithm>
#include <utility>
#include <vector>

#include "zymcore/reports/ZYMHTML.h"

namespace zym {
namespace {

constexpr std::string_view marker = "<*KEYNAME=";
/// Bytes of values that are put in at most. A large page of a real document has some 100 KB.
constexpr std::size_t mostPutIn = 64U << 20U;

/// The first marker. Its second character is far rarer in a page than its first.
std::size_t findMarker(std::string_view text) noexcept {
  for (std::size_t at = text.find(marker[1]); at != std::string_view::npos;
       at = text.find(marker[1], at + 1)) {
    if (at > 0 && text.substr(at - 1).starts_with(marker)) return at - 1;
  }
  return std::string_view::npos;
}

/// How many characters of the marker the text ends in, short of all.
std::size_t begunAtEndOf(std::string_view text) noexcept {
  if (text.ends_with('>')) return 0;  // as mostly, behind a tag
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
    do {
      putPlainValues();
    } while (readMarker() && readKey());
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

  /// The usual case: whole markers before the next seam, with values that hold none.
  void putPlainValues() {
    if (left_.empty() || begun_ > 0) return;
    std::string_view front = left_.back();
    while (putIn_ < mostPutIn) {
      const std::size_t at = findMarker(front);
      if (at == std::string_view::npos) break;
      const std::size_t key = at + marker.size();
      const std::size_t end = front.find('>', key);
      if (end == std::string_view::npos) break;
      const std::string* const text = values_.string(KeyName(front.substr(key, end - key)));
      if (text && text->find(marker[0]) != std::string::npos) break;
      if (at > 0 && front[at - 1] != '>' && begunAtEndOf(front.substr(0, at)) > 0) break;
      written_.append(front.substr(0, at));
      if (text) written_.append(*text);
      putIn_ += text ? text->size() : 0;
      front.remove_prefix(end + 1);
    }
    left_.back() = front;
    if (front.empty()) left_.pop_back();
  }

  bool readMarker() {
    while (!left_.empty() && begun_ < marker.size()) {
      const std::string_view front = left_.back();
      if (begun_ > 0) {
        begun_ = front[0] == marker[begun_] ? begun_ + 1 : front[0] == marker[0] ? 1 : 0;
        take(1);
      } else if (const std::size_t at = findMarker(front); at != std::string_view::npos) {
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
      if (end == std::string_view::npos) continue;
      if (putIn_ >= mostPutIn) return false;
      const std::string name = written_.substr(key_, written_.size() - 1 - key_);
      written_.resize(key_ - marker.size());
      putValue(name);
      return true;
    }
    return false;
  }

  void putValue(std::string_view key) {
    const std::string* const text = values_.string(KeyName(key));
    begun_ = begunAtEndOf(written_);
    putIn_ += text ? text->size() : 0;
    if (text) put(*text);
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
