#include "zymcore/platform/formats/XMLPropertyList.h"

#include <glib.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>

#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/PlistBuilder.h"

namespace zym {
namespace {

constexpr std::int64_t readCorruptError = 3840;
constexpr std::int64_t writeError = 3851;

// Dates are written with four digits for the year, so these are the first and the last.
constexpr std::chrono::sys_seconds firstDate =
    std::chrono::sys_days(std::chrono::year{1} / std::chrono::January / 1);
constexpr std::chrono::sys_seconds lastDate =
    std::chrono::sys_days(std::chrono::year{10000} / std::chrono::January / 1) -
    std::chrono::seconds(1);

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

  void start(std::string_view element) {
    if (refused()) return;
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

void startElement(void* reader, const xmlChar* name, const xmlChar*, const xmlChar*, int,
                  const xmlChar**, int, int, const xmlChar**) {
  static_cast<Reader*>(reader)->start(view(name));
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

// ---- Writing

void appendText(std::string& xml, std::string_view text) {
  struct Escape {
    char32_t character;
    std::string_view form;
  };
  constexpr Escape escapes[] = {{U'&', "&amp;"}, {U'<', "&lt;"}, {U'>', "&gt;"}, {U'\r', "&#13;"}};

  const std::string valid = isUTF8(text) ? std::string(text) : stringByDroppingInvalidUTF8(text);
  for (std::size_t at = 0; at < valid.size();) {
    const auto byte = static_cast<unsigned char>(valid[at]);
    const std::size_t length = byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
    const std::string_view character(valid.data() + at, length);
    at += length;
    const auto* const escape =
        std::find_if(std::begin(escapes), std::end(escapes),
                     [&](const Escape& known) { return length == 1 && known.character == byte; });
    if (escape != std::end(escapes)) {
      xml += escape->form;
    } else if (!(byte < 0x20 && byte != '\t' && byte != '\n') && character != "\uFFFE" &&
               character != "\uFFFF") {
      xml += character;
    }
  }
}

std::string dateText(NSDate date) {
  const double seconds = date.timeIntervalSince1970();
  const auto first = static_cast<double>(firstDate.time_since_epoch().count());
  const auto last = static_cast<double>(lastDate.time_since_epoch().count());
  const std::chrono::sys_seconds moment{std::chrono::seconds(static_cast<std::int64_t>(
      std::isnan(seconds) ? NSDate::NSTimeIntervalSince1970
                          : std::floor(std::clamp(seconds, first, last))))};
  const auto midnight = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day day(midnight);
  const std::chrono::hh_mm_ss time(moment - midnight);

  std::string text;
  const auto append = [&](std::int64_t number, std::size_t digits, char after) {
    const std::string figures = std::to_string(number);
    text.append(digits - figures.size(), '0').append(figures).push_back(after);
  };
  append(int{day.year()}, 4, '-');
  append(unsigned{day.month()}, 2, '-');
  append(unsigned{day.day()}, 2, 'T');
  append(time.hours().count(), 2, ':');
  append(time.minutes().count(), 2, ':');
  append(time.seconds().count(), 2, 'Z');
  return text;
}

std::string realText(double number) {
  if (std::isinf(number)) return number > 0 ? "+infinity" : "-infinity";
  return shortestNumberText(number);
}

class Writer {
 public:
  void value(const PlistValue& value, std::size_t level);
  std::string xml;

 private:
  void dictionary(const PlistDictionary& dictionary, std::size_t level);
  void array(const PlistArray& array, std::size_t level);
  void data(const NSData& data, std::size_t level);

  void indent(std::size_t level) { xml.append(level, '\t'); }
  void element(std::string_view name, std::string_view text) {
    xml.append("<").append(name).append(">");
    appendText(xml, text);
    xml.append("</").append(name).append(">\n");
  }
};

void Writer::value(const PlistValue& value, std::size_t level) {
  indent(level);
  switch (value.kind()) {
    case PlistValue::Kind::Dictionary:
      return dictionary(*value.dictionary(), level);
    case PlistValue::Kind::Array:
      return array(*value.array(), level);
    case PlistValue::Kind::String:
      return element("string", *value.string());
    case PlistValue::Kind::Integer:
      return element("integer", std::to_string(*value.integer()));
    case PlistValue::Kind::Real:
      return element("real", realText(*value.real()));
    case PlistValue::Kind::Boolean:
      xml += *value.boolean() ? "<true/>\n" : "<false/>\n";
      return;
    case PlistValue::Kind::Date:
      return element("date", dateText(*value.date()));
    case PlistValue::Kind::Data:
      return data(*value.data(), level);
  }
}

void Writer::dictionary(const PlistDictionary& dictionary, std::size_t level) {
  if (dictionary.empty()) {
    xml += "<dict/>\n";
    return;
  }
  xml += "<dict>\n";
  for (const PlistEntry& entry : dictionary) {
    indent(level + 1);
    element("key", entry.key.text());
    value(entry.value, level + 1);
  }
  indent(level);
  xml += "</dict>\n";
}

void Writer::array(const PlistArray& array, std::size_t level) {
  if (array.empty()) {
    xml += "<array/>\n";
    return;
  }
  xml += "<array>\n";
  for (const PlistValue& element : array) value(element, level + 1);
  indent(level);
  xml += "</array>\n";
}

void Writer::data(const NSData& data, std::size_t level) {
  constexpr std::size_t bytesALine = 57;  // 76 characters
  xml += "<data>\n";
  const std::span<const std::uint8_t> bytes = data.bytes();
  for (std::size_t at = 0; at < bytes.size(); at += bytesALine) {
    const std::span part = bytes.subspan(at, std::min(bytesALine, bytes.size() - at));
    const std::unique_ptr<char, decltype(&g_free)> text(g_base64_encode(part.data(), part.size()),
                                                        &g_free);
    indent(level);
    xml.append(text.get()).push_back('\n');
  }
  indent(level);
  xml += "</data>\n";
}

bool isDeeperThan(const PlistValue& value, std::size_t levels) {
  const PlistDictionary* dictionary = value.dictionary();
  const PlistArray* array = value.array();
  if (!dictionary && !array) return false;
  if (levels == 0) return true;
  if (array) {
    return std::any_of(array->begin(), array->end(), [&](const PlistValue& element) {
      return isDeeperThan(element, levels - 1);
    });
  }
  return std::any_of(dictionary->begin(), dictionary->end(), [&](const PlistEntry& entry) {
    return isDeeperThan(entry.value, levels - 1);
  });
}

}  // namespace

std::optional<PlistValue> XMLPropertyList::read(std::string_view bytes, NSError* error) {
  const auto refuse = [&](std::string reason) -> std::optional<PlistValue> {
    fail(error, NSCocoaErrorDomain, readCorruptError, std::move(reason));
    return std::nullopt;
  };
  if (bytes.size() > mostBytes) return refuse("too many bytes");
  if (bytes.empty()) return refuse("no bytes");

  static const bool isReady = (xmlInitParser(), true);
  (void)isReady;
  const std::unique_ptr<xmlParserCtxt, FreeParser> context(
      xmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size())));
  if (!context) return refuse("out of memory");
  Reader reader(context.get());
  *context->sax = handlers();
  context->userData = &reader;
  // Depth and size are bounded here, and no entity can be declared.
  xmlCtxtUseOptions(context.get(),
                    XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  context->sax->serror = noteError;
  xmlParseDocument(context.get());

  if (reader.refused()) return refuse(reader.refusal());
  std::optional<PlistValue> root = reader.takeRoot();
  if (!root || !context->wellFormed) return refuse("no property list");
  return root;
}

std::optional<std::string> XMLPropertyList::write(const PlistValue& value, NSError* error) {
  if (isDeeperThan(value, mostLevels)) {
    fail(error, NSCocoaErrorDomain, writeError, "containers nested too deep");
    return std::nullopt;
  }
  Writer writer;
  writer.xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n";
  writer.value(value, 0);
  writer.xml += "</plist>\n";
  return std::move(writer.xml);
}

}  // namespace zym
