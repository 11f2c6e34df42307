#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zym {

// What the library asks of texts. Text is UTF-8; where characters are counted or paired they are
// UTF-16 units.

/// A new random UUID, upper case, 36 characters.
[[nodiscard]] std::string uuid();

/// True when the number of the text, in single precision, is greater than 0.2.
[[nodiscard]] bool boolFromString(std::string_view text) noexcept;

/// Whether `text` contains `other`, whatever the case of either; false when `other` is absent
/// or empty.
[[nodiscard]] bool containsSubstring(std::string_view text, std::optional<std::string_view> other);

/// How alike two texts are by the pairs of adjacent letters they share, whatever their case: 0 when
/// none, 1 for the same text. Not a number when neither has a pair of letters in one word.
///
/// Every pair of `text`, in order, is taken out of the pairs of `other` at every place where it
/// stands, except that the place behind one taken out is passed over. So a text of few letters can
/// score above its due against one that repeats them, and the two texts can't be exchanged.
[[nodiscard]] double similarityWithString(std::string_view text, std::string_view other);

[[nodiscard]] std::string trimWhiteSpace(std::string_view text);
[[nodiscard]] std::string stringByAppendingColon(std::string_view text);
[[nodiscard]] bool isEmptyString(std::string_view text) noexcept;
/// An empty text stays empty.
[[nodiscard]] std::string stringWithLastCharacterRemoved(std::string_view text);
[[nodiscard]] bool isLastCharacterPlusSign(std::string_view text) noexcept;
[[nodiscard]] std::string stringWithTrailingPlusSignRemovedIfPresent(std::string_view text);
[[nodiscard]] bool isEqualTo(std::string_view text, std::string_view other) noexcept;

/// Every line feed as "&nbsp;<br>".
[[nodiscard]] std::string stringFormattedForHTML(std::string_view text);
/// The five characters that mark up XML as entities.
[[nodiscard]] std::string encodeForXML(std::string_view text);
/// MD5 of the UTF-8 bytes as 32 upper-case hexadecimal digits.
[[nodiscard]] std::string md5HexHash(std::string_view text);

/// Appends a line feed and that many tabs.
void indentXMLBy(std::string& text, int indentation);
/// Appends the same and an element of the key, with the encoded value.
void xmlAppendKey_withValue_withIndentation(std::string& text, std::string_view key,
                                            std::string_view value, int indentation);

}  // namespace zym
