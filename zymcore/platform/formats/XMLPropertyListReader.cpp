#include <glib.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <limits>
#include <memory>

#include "zymcore/platform/formats/XMLPropertyList.h"
#include "zymcore/platform/formats/internal/XMLEncoding.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/text/TextEncoding.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/PlistBuilder.h"

namespace zym {
namespace {

std::string_view trimmed(std::string_view text) noexcept {
  return withoutTrailingWhiteSpace(withoutLeadingWhiteSpace(text));
}

bool isBlank(std::string_view text) noexcept {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// ---- Leaves: the value of an element from its text; absent when the text says none.

std::optional<PlistValue> integerFromText(std::string_view text) {
  text = trimmed(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (isHexadecimal) text.remove_prefix(2);
  const char* const end = text.data() + text.size();

  std::uint64_t magnitude = 0;
  const auto result = std::from_chars(text.data(), end, magnitude, isHexadecimal ? 16 : 10);
  if (result.ptr != end || text.empty()) return std::nullopt;
  constexpr std::uint64_t signBit = std::uint64_t{1} << 63U;
  if (result.ec == std::errc() && magnitude < signBit + (negative ? 1 : 0)) {
    return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
  }
  if (result.ec == std::errc()) return negative ? -static_cast<double>(magnitude) : magnitude * 1.0;
  if (isHexadecimal) return std::nullopt;
  return negative ? -doubleValue(text) : doubleValue(text);
}

std::optional<PlistValue> realFromText(std::string_view text) {
  std::string word = lowercaseString(trimmed(text));
  const bool negative = word.starts_with('-');
  if (negative || word.starts_with('+')) word.erase(0, 1);
  double magnitude = 0;
  if (word == "nan") {
    magnitude = std::numeric_limits<double>::quiet_NaN();
  } else if (word == "inf" || word == "infinity") {
    magnitude = std::numeric_limits<double>::infinity();
  } else {
    const bool isDecimal = word.find_first_not_of("0123456789.e+-") == std::string::npos &&
                           word.find_first_of("0123456789") != std::string::npos &&
                           word.find_first_of("+-") != 0;
    if (!isDecimal) return std::nullopt;
    magnitude = doubleValue(word);
  }
  return negative ? -magnitude : magnitude;
}

bool takeDigits(std::string_view& text, std::size_t most, int& number) noexcept {
  const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
  if (count == 0 || count > most) return false;
  number = static_cast<int>(integerValue(text.substr(0, count)));
  text.remove_prefix(count);
  return true;
}

bool takeCharacter(std::string_view& text, char c) noexcept {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

// 2026-01-02T03:04:05Z
std::optional<PlistValue> dateFromText(std::string_view text) {
  text = trimmed(text);
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  const bool read = takeDigits(text, 4, year) && takeCharacter(text, '-') &&
                    takeDigits(text, 2, month) && takeCharacter(text, '-') &&
                    takeDigits(text, 2, day) && takeCharacter(text, 'T') &&
                    takeDigits(text, 2, hour) && takeCharacter(text, ':') &&
                    takeDigits(text, 2, minute) && takeCharacter(text, ':') &&
                    takeDigits(text, 2, second) && takeCharacter(text, 'Z') && text.empty();
  const std::chrono::year_month_day date(std::chrono::year{year},
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (!read || year < 1 || !date.ok() || hour > 23 || minute > 59 || second > 59) {
    return std::nullopt;
  }
  const std::chrono::sys_seconds moment = std::chrono::sys_days(date) + std::chrono::hours(hour) +
                                          std::chrono::minutes(minute) +
                                          std::chrono::seconds(second);
  return NSDate::dateWithTimeIntervalSince1970(
      static_cast<double>(moment.time_since_epoch().count()));
}

std::optional<PlistValue> dataFromText(std::string_view text) {
  std::vector<std::uint8_t> bytes(text.size() / 4 * 3 + 3);
  int state = 0;
  guint save = 0;
  bytes.resize(g_base64_decode_step(text.data(), text.size(), bytes.data(), &state, &save));
  return NSData(std::move(bytes));
}

struct Leaf {
  std::string_view element;
  std::optional<PlistValue> (*value)(std::string_view text);
};
constexpr Leaf leaves[] = {
    {"string", [](std::string_view text) -> std::optional<PlistValue> { return text; }},
    {"integer", integerFromText},
    {"real", realFromText},
    {"true", [](std::string_view) -> std::optional<PlistValue> { return true; }},
    {"false", [](std::string_view) -> std::optional<PlistValue> { return false; }},
    {"date", dateFromText},
    {"data", dataFromText},
};

// ---- Reading

class Reader {
 public:
  explicit Reader(xmlParserCtxtPtr context) noexcept
      : context_(context), builder_(XMLPropertyList::mostValues, XMLPropertyList::mostLevels) {}

  void start(std::string_view element, std::size_t attributes) {
    if (refused()) return;
    // Only the version of the list is ever written as one, and libxml2 takes ever longer over more.
    if (attributes > attributesLeft_) return refuse("more attributes than any property list has");
    attributesLeft_ -= attributes;
    if (isInLeaf_) return refuse("an element inside <" + element_ + ">");
    if (!isBlank(text_)) return refuse("text outside a value");
    text_.clear();
    if (element == "plist") {
      if (isInPlist_ || builder_.levels() > 0 || isDone_) return refuse("<plist> within a value");
      isInPlist_ = true;
    } else if (element == "key") {
      startKey();
    } else {
      startValue(element);
    }
  }

  void end(std::string_view element) {
    if (refused()) return;
    if (isInLeaf_) {
      endLeaf();
    } else if (!isBlank(text_)) {
      refuse("text outside a value");
    } else if (element != "plist") {
      if (builder_.hasKeyWaiting()) return refuse("a key without a value");
      builder_.end();
      isDone_ = builder_.levels() == 0;
    }
    text_.clear();
  }

  void characters(std::string_view text) {
    if (!refused()) text_ += text;
  }

  void refuse(std::string reason) {
    if (refused()) return;
    refusal_ = "line " + std::to_string(xmlSAX2GetLineNumber(context_)) + ": " + std::move(reason);
    xmlStopParser(context_);
  }

  [[nodiscard]] bool refused() const noexcept { return !refusal_.empty(); }
  [[nodiscard]] const std::string& refusal() const noexcept { return refusal_; }
  [[nodiscard]] std::optional<PlistValue> takeRoot() { return builder_.takeRoot(); }

 private:
  void startKey() {
    if (!builder_.isInDictionary()) return refuse("a key outside a dictionary");
    if (builder_.hasKeyWaiting()) return refuse("a key without a value");
    startLeaf("key", nullptr);
  }

  void startValue(std::string_view element) {
    if (isDone_) return refuse("more than one value at the top level");
    if (builder_.isInDictionary() && !builder_.hasKeyWaiting()) {
      return refuse("a value without a key");
    }
    if (element == "dict" || element == "array") {
      const bool begun = element == "dict" ? builder_.beginDictionary() : builder_.beginArray();
      if (!begun) refuse(builder_.refusal());
      return;
    }
    const auto* const leaf =
        std::find_if(std::begin(leaves), std::end(leaves),
                     [&](const Leaf& known) { return known.element == element; });
    if (leaf == std::end(leaves)) return refuse("unknown element <" + std::string(element) + ">");
    startLeaf(element, leaf);
  }

  void startLeaf(std::string_view element, const Leaf* leaf) {
    element_ = element;
    leaf_ = leaf;
    isInLeaf_ = true;
  }

  void endLeaf() {
    isInLeaf_ = false;
    if (!leaf_) return builder_.addKey(KeyName(text_));
    std::optional<PlistValue> value = leaf_->value(text_);
    if (!value) return refuse("no value in <" + element_ + ">");
    if (!builder_.addValue(std::move(*value))) refuse(builder_.refusal());
    isDone_ = builder_.levels() == 0;
  }

  xmlParserCtxtPtr context_;
  std::size_t attributesLeft_ = 1000;
  PlistBuilder builder_;
  std::string refusal_;
  std::string text_;
  std::string element_;         // the leaf being read
  const Leaf* leaf_ = nullptr;  // what becomes of its text; null for a key
  bool isInLeaf_ = false;
  bool isInPlist_ = false;
  bool isDone_ = false;
};

std::string_view view(const xmlChar* text) noexcept {
  return reinterpret_cast<const char*>(text);
}

void startElement(void* reader, const xmlChar* name, const xmlChar*, const xmlChar*, int namespaces,
                  const xmlChar**, int attributes, int, const xmlChar**) {
  static_cast<Reader*>(reader)->start(view(name),
                                      static_cast<std::size_t>(namespaces + attributes));
}

void endElement(void* reader, const xmlChar* name, const xmlChar*, const xmlChar*) {
  static_cast<Reader*>(reader)->end(view(name));
}

void characters(void* reader, const xmlChar* text, int length) {
  static_cast<Reader*>(reader)->characters(
      {reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
}

xmlEntityPtr predefinedEntity(void*, const xmlChar* name) {
  return xmlGetPredefinedEntity(name);
}

void refuseEntity(void* reader, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
  static_cast<Reader*>(reader)->refuse("an entity of its own");
}

void noteError(void* reader, xmlErrorPtr problem) {
  if (problem->level == XML_ERR_WARNING) return;
  std::string_view message = problem->message ? problem->message : "malformed XML";
  static_cast<Reader*>(reader)->refuse(std::string(trimmed(message)));
}

// The parser keeps a document of its own for the entities it meets.
struct FreeParser {
  void operator()(xmlParserCtxtPtr context) const noexcept {
    xmlFreeDoc(context->myDoc);
    context->myDoc = nullptr;
    xmlFreeParserCtxt(context);
  }
};

xmlSAXHandler handlers() noexcept {
  xmlSAXHandler table{};
  table.initialized = XML_SAX2_MAGIC;
  table.startElementNs = startElement;
  table.endElementNs = endElement;
  table.characters = characters;
  table.ignorableWhitespace = characters;
  table.cdataBlock = characters;
  table.getEntity = predefinedEntity;
  table.entityDecl = refuseEntity;
  table.serror = noteError;
  return table;
}

// ---- Bounds

constexpr std::size_t mostTagBytes = 4096;

std::size_t endOf(std::string_view text, std::string_view mark, std::size_t from) noexcept {
  const std::size_t found = text.find(mark, from);
  return found == std::string_view::npos ? text.size() : found + mark.size();
}

// Where the tag or document type ends that begins there, or where it has a "[".
std::size_t endOfTag(std::string_view text, std::size_t from) noexcept {
  std::size_t at = text.find_first_of("\"'>[", from);
  while (at < text.size() && text[at] != '>' && text[at] != '[') {
    const std::size_t quoteEnd = text.find(text[at], at + 1);
    if (quoteEnd == std::string_view::npos) return text.size();
    at = text.find_first_of("\"'>[", quoteEnd + 1);
  }
  return std::min(at, text.size());
}

std::string lineOf(std::string_view text, std::size_t place) {
  const auto line = 1 + std::ranges::count(text.substr(0, place), '\n');
  return "line " + std::to_string(line) + ": ";
}

struct Excess {
  const char* what;
  std::size_t place;
};

/// What would keep the parser busy for longer than its bytes are worth: it compares each attribute
/// of a tag with all others, and adds to each tag what a document type declares.
std::optional<Excess> excessIn(std::string_view text) {
  for (std::size_t at = text.find('<'); at < text.size(); at = text.find('<', at)) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("<!--")) {
      at = endOf(text, "-->", at + 4);
    } else if (rest.starts_with("<![CDATA[")) {
      at = endOf(text, "]]>", at);
    } else if (rest.starts_with("<?")) {
      at = endOf(text, "?>", at);
    } else {
      const std::size_t end = endOfTag(text, at);
      if (rest.starts_with("<!") && end < text.size() && text[end] == '[') {
        return Excess{"a document type with declarations of its own", at};
      }
      if (end - at > mostTagBytes) return Excess{"a tag that is too long", at};
      at = end;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<PlistValue> XMLPropertyList::read(std::string_view bytes, NSError* error) {
  const auto refuse = [&](std::string reason) -> std::optional<PlistValue> {
    fail(error, NSCocoaErrorDomain, NSPropertyListReadCorruptError, std::move(reason));
    return std::nullopt;
  };
  if (bytes.size() > mostBytes) return refuse("too many bytes");
  if (bytes.empty()) return refuse("no bytes");

  const bool isKnown = wideEncodingOf(bytes) || declaresOtherEncoding(bytes);
  if (const std::size_t valid = lengthOfValidUTF8(bytes); valid < bytes.size() && !isKnown) {
    return refuse(lineOf(bytes, valid) + "text that isn't UTF-8");
  }
  std::string converted;
  const std::string_view text = textOfXML(bytes, converted);
  if (const auto excess = excessIn(text)) return refuse(lineOf(text, excess->place) + excess->what);

  static const bool isReady = (xmlInitParser(), true);
  (void)isReady;
  const std::unique_ptr<xmlParserCtxt, FreeParser> context(
      xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size())));
  if (!context) return refuse("out of memory");
  Reader reader(context.get());
  *context->sax = handlers();
  context->userData = &reader;
  // Depth and size are bounded here, and nothing can be declared.
  xmlCtxtUseOptions(context.get(), XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC |
                                       XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  context->sax->serror = noteError;
  xmlParseDocument(context.get());

  if (reader.refused()) return refuse(reader.refusal());
  std::optional<PlistValue> root = reader.takeRoot();
  if (!root || !context->wellFormed) return refuse("no property list");
  return root;
}

}  // namespace zym
