#include "zymcore/documents/NSStringExtensions.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "zymcore/documents/internal/LetterPairs.h"
#include "zymcore/platform/text/CommonDigest.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/text/NSUUID.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

constexpr bool isContinuation(char c) noexcept {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::string replacingAll(std::string_view text, char character, std::string_view replacement) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (c == character) {
      result += replacement;
    } else {
      result += c;
    }
  }
  return result;
}

constexpr char uppercaseASCII(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string uuid() {
  return NSUUID::UUIDString();
}

bool boolFromString(std::string_view text) noexcept {
  return floatValue(text) > 0.2F;
}

bool containsSubstring(std::string_view text, std::optional<std::string_view> other) {
  if (!other || other->empty()) return false;
  if (!isASCII(text) || !isASCII(*other)) {
    return containsString(uppercaseString(text), uppercaseString(*other));
  }
  const auto isSame = [](char a, char b) { return uppercaseASCII(a) == uppercaseASCII(b); };
  return std::search(text.begin(), text.end(), other->begin(), other->end(), isSame) != text.end();
}

double similarityWithString(std::string_view text, std::string_view other) {
  // The buffers stay warm from one call to the next.
  thread_local std::vector<letterpairs::LetterPair> pairs;
  thread_local std::vector<letterpairs::LetterPair> otherPairs;
  pairs.clear();
  otherPairs.clear();
  letterpairs::append(text, pairs);
  letterpairs::append(other, otherPairs);
  return letterpairs::score(pairs, otherPairs);
}

std::string trimWhiteSpace(std::string_view text) {
  return std::string(withoutTrailingWhiteSpace(withoutLeadingWhiteSpace(text)));
}

std::string stringByAppendingColon(std::string_view text) {
  return std::string(text) + ":";
}

bool isEmptyString(std::string_view text) noexcept {
  return text.empty();
}

std::string stringWithLastCharacterRemoved(std::string_view text) {
  while (!text.empty() && isContinuation(text.back())) text.remove_suffix(1);
  if (!text.empty()) text.remove_suffix(1);
  return std::string(text);
}

bool isLastCharacterPlusSign(std::string_view text) noexcept {
  return text.ends_with('+');
}

std::string stringWithTrailingPlusSignRemovedIfPresent(std::string_view text) {
  if (isLastCharacterPlusSign(text)) text.remove_suffix(1);
  return std::string(text);
}

bool isEqualTo(std::string_view text, std::string_view other) noexcept {
  return text == other;
}

std::string stringFormattedForHTML(std::string_view text) {
  return replacingAll(text, '\n', "&nbsp;<br>");
}

std::string encodeForXML(std::string_view text) {
  static constexpr std::pair<char, std::string_view> entities[] = {
      {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'\'', "&apos;"}, {'"', "&quot;"}};
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    const auto* entity = std::find_if(std::begin(entities), std::end(entities),
                                      [c](const auto& e) { return e.first == c; });
    if (entity == std::end(entities)) {
      result += c;
    } else {
      result += entity->second;
    }
  }
  return result;
}

std::string md5HexHash(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string hash;
  for (const std::uint8_t byte : CC_MD5(text)) {
    hash += digits[byte >> 4U];
    hash += digits[byte & 0xFU];
  }
  return hash;
}

void indentXMLBy(std::string& text, int indentation) {
  text += '\n';
  text.append(static_cast<std::size_t>(std::max(indentation, 0)), '\t');
}

void xmlAppendKey_withValue_withIndentation(std::string& text, std::string_view key,
                                            std::string_view value, int indentation) {
  indentXMLBy(text, indentation);
  text.append("<").append(key).append(">");
  text += encodeForXML(value);
  text.append("</").append(key).append(">");
}

}  // namespace zym
