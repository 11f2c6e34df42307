#pragma once

#include "tests/support/Test.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

enum class AnyTree { OfJSON, OfPropertyList };

/// Text of few characters, awkward ones among them, so that keys collide now and then.
inline rc::Gen<std::string> anyText() {
  const auto character =
      rc::gen::element<std::string>("a", "b", "Z", " ", "\t", "\n", "\r", "\"", "\\", "/", "&", "<",
                                    "]]>", "\u00fc", "\u2212", "\uFFFD", "\U0001F37A");
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(character),
                      [](const std::vector<std::string>& characters) {
                        std::string text;
                        for (const std::string& c : characters) text += c;
                        return text;
                      });
}

inline rc::Gen<PlistValue> anyLeaf(AnyTree kind) {
  const auto wholeSecond = [](std::int32_t seconds) {
    return PlistValue(NSDate::dateWithTimeIntervalSinceReferenceDate(seconds));
  };
  const auto data = [](const std::string& bytes) { return PlistValue(NSData(bytes)); };
  const auto value = [](auto x) { return PlistValue(x); };
  if (kind == AnyTree::OfJSON) {
    return rc::gen::oneOf(rc::gen::map(anyText(), value),
                          rc::gen::map(rc::gen::arbitrary<std::int64_t>(), value),
                          rc::gen::map(rc::gen::arbitrary<double>(), value),
                          rc::gen::map(rc::gen::arbitrary<bool>(), value));
  }
  return rc::gen::oneOf(anyLeaf(AnyTree::OfJSON),
                        rc::gen::map(rc::gen::arbitrary<std::int32_t>(), wholeSecond),
                        rc::gen::map(rc::gen::arbitrary<std::string>(), data));
}

/// A dictionary or an array, up to five levels deep.
inline rc::Gen<PlistValue> anyTree(AnyTree kind, int levels = 5) {
  const auto element = levels == 1
                           ? anyLeaf(kind)
                           : rc::gen::weightedOneOf<PlistValue>(
                                 {{3, anyLeaf(kind)},
                                  {1, rc::gen::lazy([=] { return anyTree(kind, levels - 1); })}});
  const auto few = [](auto generator) { return rc::gen::scale(0.3, generator); };
  const auto array = rc::gen::map(
      few(rc::gen::container<std::vector<PlistValue>>(element)),
      [](std::vector<PlistValue> values) { return PlistValue(PlistArray(std::move(values))); });
  const auto dictionary =
      rc::gen::map(few(rc::gen::container<std::vector<std::pair<std::string, PlistValue>>>(
                       rc::gen::pair(anyText(), element))),
                   [](const std::vector<std::pair<std::string, PlistValue>>& entries) {
                     PlistDictionary result;
                     for (const auto& [key, entry] : entries) result.set(KeyName(key), entry);
                     return PlistValue(result);
                   });
  return rc::gen::oneOf(array, dictionary);
}

/// Equal, and every number of the same kind.
inline bool isIdentical(const PlistValue& a, const PlistValue& b) {
  if (a.kind() != b.kind()) return false;
  if (const PlistArray* array = a.array()) {
    if (array->size() != b.array()->size()) return false;
    for (std::size_t i = 0; i < array->size(); ++i) {
      if (!isIdentical(*array->find(i), *b.array()->find(i))) return false;
    }
    return true;
  }
  if (const PlistDictionary* dictionary = a.dictionary()) {
    if (dictionary->size() != b.dictionary()->size()) return false;
    for (const PlistEntry& entry : *dictionary) {
      const PlistValue* other = b.dictionary()->find(entry.key);
      if (!other || !isIdentical(entry.value, *other)) return false;
    }
    return true;
  }
  return a == b;
}

}  // namespace zym

namespace rc {
template <>
struct Arbitrary<zym::PlistValue> {
  static Gen<zym::PlistValue> arbitrary() { return zym::anyTree(zym::AnyTree::OfPropertyList); }
};
}  // namespace rc
