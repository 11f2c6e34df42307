#include "zymcore/documents/SafeJSON.h"

#include "zymcore/documents/Base64.h"
#include "zymcore/platform/formats/NSJSONSerialization.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

constexpr std::string_view dateMarker = "//Date:";
constexpr std::string_view dataMarker = "//Data:";

std::string withoutMarkers(std::string_view text, std::string_view marker) {
  std::string result;
  for (std::size_t at = text.find(marker); at != std::string_view::npos; at = text.find(marker)) {
    result += text.substr(0, at);
    text.remove_prefix(at + marker.size());
  }
  result += text;
  return result;
}

// Applies a pass to the containers in a value, sharing what the pass leaves as it is.
void prepare(PlistValue& value) {
  if (PlistDictionary* dictionary = value.editDictionary()) prepareForSerialization(*dictionary);
  if (PlistArray* array = value.editArray()) prepareForSerialization(*array);
}

void process(PlistValue& value) {
  if (PlistDictionary* dictionary = value.editDictionary())
    processAfterDeserialization(*dictionary);
  if (PlistArray* array = value.editArray()) processAfterDeserialization(*array);
}

}  // namespace

std::string JSONDate(NSDate date) {
  return std::string(dateMarker) + stringWithFormatF(date.timeIntervalSince1970());
}

bool isJSONDate(std::string_view text) noexcept {
  return text.find(dateMarker) != std::string_view::npos;
}

std::optional<NSDate> dateFromJSONDate(std::string_view text) {
  if (!isJSONDate(text)) return std::nullopt;
  return NSDate::dateWithTimeIntervalSince1970(doubleValue(withoutMarkers(text, dateMarker)));
}

std::string JSONData(const NSData& data) {
  return std::string(dataMarker) + base64EncodedString(data);
}

bool isJSONData(std::string_view text) noexcept {
  return text.find(dataMarker) != std::string_view::npos;
}

NSData dataFromJSONData(std::string_view text) {
  return dataFromBase64String(withoutMarkers(text, dataMarker));
}

std::string base64EncodedString(const NSData& data) {
  return NewBase64Encode(data.bytes(), true);
}

NSData dataFromBase64String(std::string_view text) {
  return NSData(NewBase64Decode(text));
}

void prepareForSerialization(PlistDictionary& tree) {
  for (std::size_t i = 0; i < tree.size(); ++i) {
    const PlistValue& value = tree.begin()[i].value;
    if (const NSDate* date = value.date()) {
      tree.editAt(i) = JSONDate(*date);
    } else if (const NSData* data = value.data()) {
      tree.editAt(i) = JSONData(*data);
    } else if (value.dictionary() || value.array()) {
      prepare(tree.editAt(i));
    }
  }
}

void prepareForSerialization(PlistArray& tree) {
  for (std::size_t i = 0; i < tree.size(); ++i) {
    const PlistValue& value = *tree.find(i);
    if (const NSData* data = value.data()) {
      tree.edit(i) = JSONData(*data);
    } else if (value.dictionary() || value.array()) {
      prepare(tree.edit(i));
    }
  }
}

void processAfterDeserialization(PlistDictionary& tree) {
  for (std::size_t i = 0; i < tree.size(); ++i) {
    const PlistValue& value = tree.begin()[i].value;
    if (const std::string* text = value.string()) {
      if (isJSONDate(*text)) {
        tree.editAt(i) = *dateFromJSONDate(*text);
      } else if (isJSONData(*text)) {
        tree.editAt(i) = dataFromJSONData(*text);
      }
    } else if (value.dictionary() || value.array()) {
      process(tree.editAt(i));
    }
  }
}

void processAfterDeserialization(PlistArray& tree) {
  for (std::size_t i = 0; i < tree.size(); ++i) {
    const PlistValue& value = *tree.find(i);
    if (const std::string* text = value.string()) {
      if (isJSONData(*text)) tree.edit(i) = dataFromJSONData(*text);
    } else if (value.dictionary() || value.array()) {
      process(tree.edit(i));
    }
  }
}

std::optional<std::string> safeDataWithJSONObject_options(const PlistValue& tree, unsigned options,
                                                          NSError* error) {
  if (NSJSONSerialization::isValidJSONObject(tree)) {
    return NSJSONSerialization::dataWithJSONObject_options(tree, options, error);
  }
  PlistValue prepared = tree;
  prepare(prepared);
  return NSJSONSerialization::dataWithJSONObject_options(prepared, options, error);
}

std::optional<PlistValue> safeJSONObjectWithData_options(std::string_view data, unsigned options,
                                                         NSError* error) {
  std::optional<PlistValue> tree =
      NSJSONSerialization::JSONObjectWithData_options(data, options, error);
  if (tree) process(*tree);
  return tree;
}

}  // namespace zym
