#include "zymcore/platform/formats/internal/XMLReader.h"

#include <libxml/HTMLparser.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <unordered_map>
#include <utility>

#include "zymcore/platform/formats/internal/XMLTree.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

enum Class : std::uint8_t {
  Plain = 0,
  Markup = 1,
  Special = 2,
  Blank = 4,
  NameStart = 8,
  Name = 16
};

constexpr std::array<std::uint8_t, 256> classes = [] {
  std::array<std::uint8_t, 256> table{};
  for (unsigned c = 0; c < 256; ++c) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80;
    const bool isNameStart = isLetter || c == '_' || c == ':';
    const bool isName = isNameStart || (c >= '0' && c <= '9') || c == '-' || c == '.';
    if (c == '<' || c == '&') table[c] |= Markup;
    if (c < 0x20 && c != '\t' && c != '\n') table[c] |= Special;
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') table[c] |= Blank;
    if (isNameStart) table[c] |= NameStart;
    if (isName) table[c] |= Name;
  }
  return table;
}();

std::uint8_t classOf(char c) noexcept {
  return classes[static_cast<unsigned char>(c)];
}

bool isAllowed(char32_t c) noexcept {
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return c < 0xD800 || (c > 0xDFFF && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF);
}

std::string UTF8String(char32_t c) {
  std::u16string units;
  if (c < 0x10000) {
    units += static_cast<char16_t>(c);
  } else {
    units += static_cast<char16_t>(0xD7C0 + (c >> 10U));
    units += static_cast<char16_t>(0xDC00 + (c & 0x3FFU));
  }
  return stringWithUTF16(units);
}

// Of what stands between "&#" and ";". 0, which XML doesn't allow, for a number past all
// characters.
std::optional<char32_t> characterWithNumber(std::string_view digits) noexcept {
  const bool isHexadecimal = digits.starts_with('x');
  if (isHexadecimal) digits.remove_prefix(1);
  std::uint32_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, number, isHexadecimal ? 16 : 10);
  if (result.ptr != end || digits.empty()) return std::nullopt;
  return result.ec == std::errc() && isAllowed(number) ? number : 0;
}

/// The characters of HTML 4 by their names.
class NamedCharacters {
 public:
  NamedCharacters() {
    constexpr unsigned last = 0x2666;
    for (unsigned character = 1; character <= last; ++character) {
      const htmlEntityDesc* const entity = htmlEntityValueLookup(character);
      if (entity) byName_.emplace(entity->name, static_cast<char32_t>(character));
    }
  }

  [[nodiscard]] std::optional<char32_t> named(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  std::unordered_map<std::string_view, char32_t> byName_;  // Nobody else adds to it.
};

std::optional<char32_t> characterWithName(std::string_view name) {
  static const NamedCharacters characters;
  return characters.named(name);
}

constexpr std::string_view predefined[] = {"amp", "lt", "gt", "quot", "apos"};

}  // namespace

std::size_t XMLReader::Mark::find(std::string_view text, std::size_t from) noexcept {
  if (next < from) next = text.find(mark, from);
  return next;
}

void XMLReader::read() {
  while (at_ < text_.size() && tree_.refusal().empty()) {
    if (text_[at_] != '<' || !readMarkup()) readText();
  }
  if (tree_.levels() == 0) return;
  damage("the text ends within <", tree_.name(), ">");
  tree_.endAll();
}

bool XMLReader::readMarkup() {
  struct Beginning {
    std::string_view mark;
    bool (XMLReader::*read)();
  };
  constexpr Beginning beginnings[] = {
      {"</", &XMLReader::readEndTag},
      {"<!--", &XMLReader::skipComment},
      {"<![CDATA[", &XMLReader::readCDATA},
      {"<?", &XMLReader::skipInstruction},
      {"<!DOCTYPE", &XMLReader::skipDocumentType},
      {"<", &XMLReader::readStartTag},
  };
  const auto* const beginning = std::ranges::find_if(
      beginnings, [this](const Beginning& known) { return isAt(at_, known.mark); });
  return (this->*beginning->read)();
}

// ---- Tags

bool XMLReader::readStartTag() {
  const std::size_t nameEnd = endOfName(at_ + 1);
  const std::string_view name = text_.substr(at_ + 1, nameEnd - at_ - 1);
  if (name.empty()) return false;

  std::size_t at = endOfBlanks(nameEnd);
  for (bool isFirst = true; !isAt(at, ">") && !isAt(at, "/>"); isFirst = false) {
    if (isFirst && at == nameEnd) return false;
    at = endOfAttribute(at);
    if (at == std::string_view::npos) return false;
    at = endOfBlanks(at);
  }
  if (tree_.levels() == 0 && !tree_.isEmpty()) damage("a second root element <", name, ">");
  tree_.start(name);
  if (!tree_.refusal().empty()) return true;
  if (text_[at] == '/') tree_.end();
  at_ = at + (text_[at] == '/' ? 2 : 1);
  return true;
}

// `npos` where there is none.
std::size_t XMLReader::endOfAttribute(std::size_t place) {
  const std::size_t nameEnd = endOfName(place);
  const std::size_t sign = endOfBlanks(nameEnd);
  if (nameEnd == place || !isAt(sign, "=")) return std::string_view::npos;
  const std::size_t value = endOfBlanks(sign + 1);
  if (isAt(value, "\"") || isAt(value, "'")) {
    const char ends[] = {text_[value], '<'};
    const std::size_t end = text_.find_first_of({ends, 2}, value + 1);
    if (end != std::string_view::npos && text_[end] != '<') return end + 1;
  }
  damage("the attribute ", text_.substr(place, nameEnd - place), " without quotes");
  std::size_t end = value;
  while (end < text_.size() && !(classOf(text_[end]) & Blank) && text_[end] != '<' &&
         !isAt(end, ">") && !isAt(end, "/>")) {
    ++end;
  }
  return end;
}

bool XMLReader::readEndTag() {
  const std::size_t nameEnd = endOfName(at_ + 2);
  const std::string_view name = text_.substr(at_ + 2, nameEnd - at_ - 2);
  if (name.empty()) return false;
  if (!isAt(endOfBlanks(nameEnd), ">")) damage("no end of the tag </", name, "");
  at_ = nextBracket(nameEnd);
  if (isAt(at_, ">")) ++at_;
  endElement(name);
  return true;
}

void XMLReader::endElement(std::string_view name) {
  if (tree_.levels() > 0 && tree_.name() == name) return tree_.end();
  if (!tree_.isOpen(name)) {
    damage("</", name, "> ends no element");
    const std::size_t next = endOfBlanks(at_);
    const bool isBeforeMarkup = next == text_.size() || text_[next] == '<';
    if (tree_.levels() > 0 && tree_.isTextOnly() && isBeforeMarkup) tree_.end();
    return;
  }
  damage("</", name, "> ends an element that isn't the innermost");
  while (tree_.name() != name) tree_.endForgotten();
  tree_.end();
}

// ---- What isn't read

bool XMLReader::skipComment() {
  const std::size_t end = commentEnd_.find(text_, at_ + 4);
  if (end == std::string_view::npos) return skipBroken("a comment without an end");
  at_ = end + 3;
  return true;
}

// The declaration among them, which may lack its end.
bool XMLReader::skipInstruction() {
  const bool isDeclaration = isAt(at_, "<?xml") && endOfName(at_ + 2) == at_ + 5;
  const std::size_t end = instructionEnd_.find(text_, at_ + 1);
  if (end == std::string_view::npos || (isDeclaration && nextBracket(at_ + 1) < end)) {
    return skipBroken("a processing instruction without an end");
  }
  if (isDeclaration && at_ > 0) damage("a declaration after the beginning", "", "");
  at_ = end + 2;
  return true;
}

bool XMLReader::skipDocumentType() {
  const bool isFirst = !std::exchange(hasDocumentType_, true);
  bool isInSubset = false;
  for (std::size_t at = at_ + 9; isFirst && at < text_.size(); ++at) {
    const char c = text_[at];
    if (c == '"' || c == '\'') {
      at = std::min(text_.find(c, at + 1), text_.size());
    } else if (isAt(at, "<!--")) {
      at = std::min(text_.find("-->", at + 4), text_.size());
    } else if (isAt(at, "<?")) {
      at = std::min(text_.find("?>", at + 2), text_.size());
    } else if (c == '[' || c == ']') {
      isInSubset = c == '[';
    } else if (c == '>' && !isInSubset) {
      at_ = at + 1;
      return true;
    }
  }
  return skipBroken("a document type without an end");
}

bool XMLReader::skipBroken(std::string_view what) {
  damage(what, "", "");
  at_ = nextBracket(at_ + 1);
  if (isAt(at_, ">")) ++at_;
  return true;
}

// ---- Text

void XMLReader::readText() {
  if (text_[at_] == '<') {
    damage("a \"<\" that begins no tag", "", "");
    addText("<");
    ++at_;
  }
  while (at_ < text_.size() && text_[at_] != '<') {
    const std::size_t start = at_;
    std::uint8_t seen = Plain;
    while (at_ < text_.size() && !(classOf(text_[at_]) & Markup)) seen |= classOf(text_[at_++]);
    const std::string_view piece = text_.substr(start, at_ - start);
    if (seen & Special) {
      addCharacters(piece);
    } else {
      addText(piece);
    }
    if (isAt(at_, "&")) readReference();
  }
}

bool XMLReader::readCDATA() {
  constexpr std::string_view mark = "<![CDATA[";
  const std::size_t start = at_ + mark.size();
  const std::size_t end = CDATAEnd_.find(text_, start);
  if (end == std::string_view::npos) {
    damage("a CDATA section without an end", "", "");
    at_ = start;
    return true;
  }
  addCharacters(text_.substr(start, end - start));
  at_ = end + 3;
  return true;
}

void XMLReader::readReference() {
  constexpr std::size_t mostLength = 32;
  const std::string_view rest = text_.substr(at_ + 1, mostLength);
  const std::size_t length = rest.find(';');
  const std::string_view name = rest.substr(0, length);
  std::optional<char32_t> character;
  if (length != std::string_view::npos) {
    character =
        name.starts_with('#') ? characterWithNumber(name.substr(1)) : characterWithName(name);
  }
  if (!character) {
    damage("an \"&\" that begins no entity", "", "");
    addText("&");
    ++at_;
    return;
  }
  at_ += length + 2;
  if (*character == 0) return damage("the character ", name, ", which XML doesn't allow");
  if (!name.starts_with('#') && std::ranges::find(predefined, name) == std::end(predefined)) {
    damage("the entity ", name, ", which isn't declared");
  }
  addText(UTF8String(*character));
}

// Line ends become line feeds.
void XMLReader::addCharacters(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    while (at < text.size() && !(classOf(text[at]) & Special)) ++at;
    addText(text.substr(start, at - start));
    if (at == text.size()) return;
    if (text[at] != '\r') {
      damage("a character that XML doesn't allow", "", "");
    } else if (!text.substr(at + 1).starts_with('\n')) {
      addText("\n");
    }
    ++at;
  }
}

void XMLReader::addText(std::string_view text) {
  if (tree_.levels() > 0) return tree_.addText(text);
  if (!withoutLeadingWhiteSpace(text).empty()) damage("text outside all elements", "", "");
}

// ---- Places

void XMLReader::damage(std::string_view what, std::string_view name, std::string_view end) {
  if (!damage_.empty()) return;
  const auto line =
      1 + std::count(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(at_), '\n');
  constexpr std::size_t mostLength = 64;
  damage_ = "line " + std::to_string(line) + ": " + std::string(what) +
            stringByDroppingInvalidUTF8(name.substr(0, mostLength)) + std::string(end);
}

bool XMLReader::isAt(std::size_t place, std::string_view mark) const noexcept {
  return text_.substr(std::min(place, text_.size())).starts_with(mark);
}

std::size_t XMLReader::endOfName(std::size_t place) const noexcept {
  std::size_t at = place;
  if (at < text_.size() && !(classOf(text_[at]) & NameStart)) return place;
  while (at < text_.size() && (classOf(text_[at]) & Name)) ++at;
  return at;
}

std::size_t XMLReader::endOfBlanks(std::size_t place) const noexcept {
  while (place < text_.size() && (classOf(text_[place]) & Blank)) ++place;
  return place;
}

// The next "<" or ">", or the end.
std::size_t XMLReader::nextBracket(std::size_t place) const noexcept {
  while (place < text_.size() && text_[place] != '<' && text_[place] != '>') ++place;
  return place;
}

}  // namespace zym
