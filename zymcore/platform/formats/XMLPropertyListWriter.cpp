#include <glib.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>

#include "zymcore/platform/formats/XMLPropertyList.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

// Dates are written with four digits for the year, so these are the first and the last.
constexpr std::chrono::sys_seconds firstDate =
    std::chrono::sys_days(std::chrono::year{1} / std::chrono::January / 1);
constexpr std::chrono::sys_seconds lastDate =
    std::chrono::sys_days(std::chrono::year{10000} / std::chrono::January / 1) -
    std::chrono::seconds(1);

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

std::optional<std::string> XMLPropertyList::write(const PlistValue& value, NSError* error) {
  if (isDeeperThan(value, mostLevels)) {
    fail(error, NSCocoaErrorDomain, NSPropertyListWriteInvalidError, "containers nested too deep");
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
