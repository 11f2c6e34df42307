#include "zymcore/platform/formats/NSJSONSerialization.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/text/TextEncoding.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/PlistBuilder.h"

// An empty stack of RapidJSON adds to a null pointer before it takes memory, which a sanitizer
// would stop at.
#ifdef __clang__
#pragma clang attribute push(__attribute__((no_sanitize("pointer-overflow"))), apply_to = function)
#endif
#include <rapidjson/error/en.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#ifdef __clang__
#pragma clang attribute pop
#endif

namespace zym {
namespace {

std::nullopt_t refuse(NSError* error, std::int64_t code, std::string description) {
  fail(error, NSCocoaErrorDomain, code, std::move(description));
  return std::nullopt;
}

// What the reader meets, handed on to the builder. Null is the one value a tree has no kind for.
class Handler {
 public:
  /// A text with escapes may name half a surrogate pair, which the reader doesn't mind.
  Handler(PlistBuilder& builder, bool hasEscapes) noexcept
      : builder_(builder), hasEscapes_(hasEscapes) {}

  bool Null() {
    if (builder_.isInDictionary()) builder_.dropKey();
    return true;
  }
  bool Bool(bool flag) { return builder_.addValue(flag); }
  bool RawNumber(const char* text, rapidjson::SizeType length, bool) {
    const std::string_view number(text, length);
    std::int64_t integer = 0;
    const auto read = std::from_chars(text, text + length, integer);
    if (read.ec == std::errc() && read.ptr == text + length) return builder_.addValue(integer);
    const double real = doubleValue(number);
    if (std::isinf(real)) return refuse("a number too big");
    return builder_.addValue(real);
  }
  bool String(const char* text, rapidjson::SizeType length, bool) {
    return isText({text, length}) && builder_.addValue(std::string_view(text, length));
  }
  bool StartObject() { return builder_.beginDictionary(); }
  bool Key(const char* text, rapidjson::SizeType length, bool) {
    if (!isText({text, length})) return false;
    builder_.addKey(KeyName(std::string_view(text, length)));
    return true;
  }
  bool EndObject(rapidjson::SizeType) { return end(); }
  bool StartArray() { return builder_.beginArray(); }
  bool EndArray(rapidjson::SizeType) { return end(); }
  // Numbers come as they stand.
  bool Int(int) { return false; }
  bool Uint(unsigned) { return false; }
  bool Int64(std::int64_t) { return false; }
  bool Uint64(std::uint64_t) { return false; }
  bool Double(double) { return false; }

  [[nodiscard]] const char* refusal() const noexcept {
    return refusal_ ? refusal_ : builder_.refusal();
  }

 private:
  bool end() {
    builder_.end();
    return true;
  }

  bool refuse(const char* refusal) noexcept {
    refusal_ = refusal;
    return false;
  }
  bool isText(std::string_view text) noexcept {
    return !hasEscapes_ || isUTF8(text) || refuse("half a surrogate pair");
  }

  PlistBuilder& builder_;
  bool hasEscapes_;
  const char* refusal_ = nullptr;
};

std::string place(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t lineStart = before.rfind('\n') + 1;
  return "line " + std::to_string(line) + ", column " +
         std::to_string(UTF16Length(before.substr(lineStart)) + 1) + ": ";
}

std::optional<PlistValue> read(std::string_view text, NSError* error) {
  const std::size_t valid = lengthOfValidUTF8(text);
  if (valid != text.size()) {
    return refuse(error, NSPropertyListReadCorruptError,
                  place(text, valid) + "bytes that aren't UTF-8");
  }
  // The reader undoes the escapes where they stand.
  std::string scratch(text);

  // Its own reading of reals leaves the defined ground of the language here and there.
  constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag |
                             rapidjson::kParseNumbersAsStringsFlag;
  PlistBuilder builder(NSJSONSerialization::mostValues, NSJSONSerialization::mostLevels);
  Handler handler(builder, text.find("\\u") != std::string_view::npos);
  rapidjson::InsituStringStream stream(scratch.data());
  rapidjson::Reader reader;
  const rapidjson::ParseResult result = reader.Parse<flags>(stream, handler);

  if (result.Code() == rapidjson::kParseErrorTermination) {
    return refuse(error, NSPropertyListReadCorruptError,
                  place(text, result.Offset()) + handler.refusal());
  }
  if (result.IsError()) {
    return refuse(error, NSPropertyListReadCorruptError,
                  place(text, result.Offset()) + rapidjson::GetParseError_En(result.Code()));
  }
  if (stream.Tell() != text.size()) {
    return refuse(error, NSPropertyListReadCorruptError,
                  place(text, stream.Tell()) + "a zero byte");
  }
  std::optional<PlistValue> root = builder.takeRoot();
  if (!root || (!root->dictionary() && !root->array())) {
    return refuse(error, NSPropertyListReadCorruptError,
                  "neither an object nor an array at the top level");
  }
  return root;
}

constexpr const char* notUTF8 = "text that isn't UTF-8";
constexpr const char* tooDeep = "containers nested too deep";

rapidjson::SizeType length(std::string_view text) noexcept {
  return static_cast<rapidjson::SizeType>(text.size());
}

// Puts a value into a writer. Answers what the value holds that JSON can't carry; null for nothing.
template <class Writer>
const char* put(const PlistValue& value, Writer& writer, std::size_t levelsLeft);

template <class Writer>
const char* putDictionary(const PlistDictionary& dictionary, Writer& writer,
                          std::size_t levelsLeft) {
  if (levelsLeft == 0) return tooDeep;
  writer.StartObject();
  for (const PlistEntry& entry : dictionary) {
    const std::string_view key = entry.key.text();
    if (!writer.Key(key.data(), length(key))) return notUTF8;
    if (const char* flaw = put(entry.value, writer, levelsLeft - 1)) return flaw;
  }
  writer.EndObject();
  return nullptr;
}

template <class Writer>
const char* putArray(const PlistArray& array, Writer& writer, std::size_t levelsLeft) {
  if (levelsLeft == 0) return tooDeep;
  writer.StartArray();
  for (const PlistValue& element : array) {
    if (const char* flaw = put(element, writer, levelsLeft - 1)) return flaw;
  }
  writer.EndArray();
  return nullptr;
}

template <class Writer>
const char* put(const PlistValue& value, Writer& writer, std::size_t levelsLeft) {
  switch (value.kind()) {
    case PlistValue::Kind::Dictionary:
      return putDictionary(*value.dictionary(), writer, levelsLeft);
    case PlistValue::Kind::Array:
      return putArray(*value.array(), writer, levelsLeft);
    case PlistValue::Kind::String:
      return writer.String(value.string()->data(), length(*value.string())) ? nullptr : notUTF8;
    case PlistValue::Kind::Integer:
      writer.Int64(*value.integer());
      return nullptr;
    case PlistValue::Kind::Real:
      return writer.Double(*value.real()) ? nullptr : "a number that is infinite or none";
    case PlistValue::Kind::Boolean:
      writer.Bool(*value.boolean());
      return nullptr;
    case PlistValue::Kind::Date:
      return "a date";
    case PlistValue::Kind::Data:
      return "binary data";
  }
  return nullptr;
}

template <class Writer>
const char* putObject(const PlistValue& object, Writer& writer) {
  if (!object.dictionary() && !object.array()) {
    return "neither a dictionary nor an array at the top level";
  }
  return put(object, writer, NSJSONSerialization::mostLevels);
}

// A writer that only looks.
struct Checker {
  void StartObject() {}
  void EndObject() {}
  void StartArray() {}
  void EndArray() {}
  bool Key(const char* text, rapidjson::SizeType length) { return isUTF8({text, length}); }
  bool String(const char* text, rapidjson::SizeType length) { return isUTF8({text, length}); }
  void Int64(std::int64_t) {}
  bool Double(double number) { return std::isfinite(number); }
  void Bool(bool) {}
};

}  // namespace

std::optional<PlistValue> NSJSONSerialization::JSONObjectWithData_options(std::string_view data,
                                                                          NSJSONReadingOptions,
                                                                          NSError* error) {
  if (data.size() > mostBytes)
    return refuse(error, NSPropertyListReadCorruptError, "too many bytes");
  constexpr std::string_view byteOrderMark = "\uFEFF";
  if (data.starts_with(byteOrderMark)) {
    return read(data.substr(byteOrderMark.size()), error);
  }
  if (const char* encoding = wideEncodingOf(data)) {
    const std::optional<std::string> text =
        stringFromEncoding(data, encoding, InvalidBytes::Refused);
    if (!text)
      return refuse(error, NSPropertyListReadCorruptError, std::string("invalid ") + encoding);
    const bool isMarked = text->starts_with(byteOrderMark);
    return read(std::string_view(*text).substr(isMarked ? byteOrderMark.size() : 0), error);
  }
  return read(data, error);
}

std::optional<std::string> NSJSONSerialization::dataWithJSONObject_options(
    const PlistValue& object, NSJSONWritingOptions options, NSError* error) {
  rapidjson::StringBuffer buffer;
  const char* flaw = nullptr;
  if (options & NSJSONWritingPrettyPrinted) {
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
    writer.SetIndent(' ', 2);
    flaw = putObject(object, writer);
  } else {
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    flaw = putObject(object, writer);
  }
  const std::string_view text(buffer.GetString(), buffer.GetSize());
  // Quotation marks part the texts, so what is wrong in one can't come right with the next.
  if (!flaw && !isUTF8(text)) flaw = notUTF8;
  if (flaw)
    return refuse(error, NSPropertyListWriteStreamError, std::string("JSON can't carry ") + flaw);
  return std::string(text);
}

bool NSJSONSerialization::isValidJSONObject(const PlistValue& object) {
  Checker checker;
  return !putObject(object, checker);
}

}  // namespace zym
