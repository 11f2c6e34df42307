#include <bit>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

/// The numbers of the keys that were met, by their text. A key that finds the places of its hash
/// taken goes into a map, so that chosen keys don't slow it down.
class KeyTable {
 public:
  KeyTable() : slots_(64, empty) {}

  /// The number of the key, or none yet; then the caller gives it the one that it set in `fresh`.
  [[nodiscard]] std::uint32_t numberOf(KeyName key, std::uint32_t fresh) {
    if ((keys_.size() + 1) * 2 > slots_.size()) grow();
    std::uint32_t& place = placeOf(key);
    if (place == empty) {
      place = static_cast<std::uint32_t>(keys_.size());
      keys_.push_back({key, fresh});
    }
    return keys_[place].second;
  }

 private:
  static constexpr std::uint32_t empty = UINT32_MAX;
  static constexpr std::size_t mostProbes = 16;

  std::uint32_t& placeOf(KeyName key) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t probe = 0; probe < mostProbes; ++probe) {
      std::uint32_t& slot = slots_[(key.hash() + probe) & mask];
      if (slot == empty || isKey(slot, key)) return slot;
    }
    return others_.try_emplace(key.text(), empty).first->second;
  }

  [[nodiscard]] bool isKey(std::uint32_t position, KeyName key) const noexcept {
    const KeyName known = keys_[position].first;
    return known.hash() == key.hash() && known.text() == key.text();
  }

  void grow() {
    slots_.assign(slots_.size() * 2, empty);
    others_.clear();
    for (std::uint32_t i = 0; i < keys_.size(); ++i) placeOf(keys_[i].first) = i;
  }

  std::vector<std::uint32_t> slots_;
  std::map<std::string_view, std::uint32_t> others_;
  std::vector<std::pair<KeyName, std::uint32_t>> keys_;
};

unsigned widthOf(std::uint64_t number) noexcept {
  return number <= 0xFF ? 1 : number <= 0xFFFF ? 2 : number <= 0xFFFFFFFF ? 4 : 8;
}

/// Objects are numbered level by level from the top, so the members of a container have numbers in
/// a row, and every number and width is known before the first byte is written.
class Writer {
 public:
  [[nodiscard]] bool take(const PlistValue& top) {
    objects_.push_back({&top, {}, 0, 0});
    for (std::size_t i = 0; i < objects_.size(); ++i) {
      const PlistValue* const value = objects_[i].value;
      if (!value) continue;
      const std::size_t level = objects_[i].level;
      const PlistDictionary* const dictionary = value->dictionary();
      const PlistArray* const array = value->array();
      if (!dictionary && !array) continue;
      if (level >= BinaryPropertyList::mostLevels) return false;
      objects_[i].references = references_.size();
      if (dictionary) takeKeys(*dictionary);
      if (dictionary) {
        for (const PlistEntry& entry : *dictionary) takeMember(entry.value, level + 1);
      } else {
        for (const PlistValue& member : *array) takeMember(member, level + 1);
      }
    }
    return true;
  }

  [[nodiscard]] std::string bytes() {
    referenceWidth_ = widthOf(objects_.size());
    out_ = "bplist00";
    std::vector<std::uint64_t> offsets;
    offsets.reserve(objects_.size());
    for (const Object& object : objects_) {
      offsets.push_back(out_.size());
      if (object.value) {
        writeValue(object);
      } else {
        writeText(object.key);
      }
    }
    const std::uint64_t table = out_.size();
    const unsigned offsetWidth = widthOf(table);
    for (const std::uint64_t offset : offsets) writeNumber(offset, offsetWidth);
    out_.append(6, '\0');
    out_.push_back(static_cast<char>(offsetWidth));
    out_.push_back(static_cast<char>(referenceWidth_));
    writeNumber(objects_.size(), 8);
    writeNumber(0, 8);
    writeNumber(table, 8);
    return std::move(out_);
  }

 private:
  struct Object {
    const PlistValue* value;  // Null for a key.
    std::string_view key;
    std::size_t references;  // Where those of a container begin.
    std::size_t level;
  };

  void takeKeys(const PlistDictionary& dictionary) {
    for (const PlistEntry& entry : dictionary) {
      const auto fresh = static_cast<std::uint32_t>(objects_.size());
      const std::uint32_t number = keys_.numberOf(entry.key, fresh);
      if (number == fresh) objects_.push_back({nullptr, entry.key.text(), 0, 0});
      references_.push_back(number);
    }
  }

  void takeMember(const PlistValue& value, std::size_t level) {
    references_.push_back(static_cast<std::uint32_t>(objects_.size()));
    objects_.push_back({&value, {}, 0, level});
  }

  void writeNumber(std::uint64_t number, unsigned width) {
    char bytes[8];
    for (unsigned i = 0; i < width; ++i) {
      bytes[i] = static_cast<char>(number >> 8U * (width - 1 - i));
    }
    out_.append(bytes, width);
  }

  void writeMarker(unsigned kind, std::size_t count) {
    if (count < 0xF) {
      out_.push_back(static_cast<char>(kind << 4U | count));
      return;
    }
    out_.push_back(static_cast<char>(kind << 4U | 0xFU));
    writeInteger(count);
  }

  // What has its top bit set is a negative number only in eight bytes.
  void writeInteger(std::uint64_t number) {
    const unsigned width = widthOf(number);
    out_.push_back(static_cast<char>(0x10U | static_cast<unsigned>(std::countr_zero(width))));
    writeNumber(number, width);
  }

  void writeReal(unsigned marker, double number) {
    out_.push_back(static_cast<char>(marker));
    writeNumber(std::bit_cast<std::uint64_t>(number), 8);
  }

  void writeText(std::string_view text) {
    if (isASCII(text)) {
      writeMarker(0x5, text.size());
      out_.append(text);
      return;
    }
    const std::u16string units = UTF16String(text);
    writeMarker(0x6, units.size());
    for (const char16_t unit : units) writeNumber(unit, 2);
  }

  void writeContainer(unsigned kind, std::size_t count, std::size_t first, std::size_t references) {
    writeMarker(kind, count);
    for (std::size_t i = first; i < first + references; ++i) {
      writeNumber(references_[i], referenceWidth_);
    }
  }

  void writeValue(const Object& object) {
    const PlistValue& value = *object.value;
    switch (value.kind()) {
      case PlistValue::Kind::Dictionary: {
        const std::size_t count = value.dictionary()->size();
        return writeContainer(0xD, count, object.references, 2 * count);
      }
      case PlistValue::Kind::Array: {
        const std::size_t count = value.array()->size();
        return writeContainer(0xA, count, object.references, count);
      }
      case PlistValue::Kind::String:
        return writeText(*value.string());
      case PlistValue::Kind::Integer:
        return writeInteger(static_cast<std::uint64_t>(*value.integer()));
      case PlistValue::Kind::Real:
        return writeReal(0x23, *value.real());
      case PlistValue::Kind::Boolean:
        out_.push_back(*value.boolean() ? '\x09' : '\x08');
        return;
      case PlistValue::Kind::Date:
        return writeReal(0x33, value.date()->timeIntervalSinceReferenceDate());
      case PlistValue::Kind::Data:
        writeMarker(0x4, value.data()->length());
        out_.append(value.data()->view());
        return;
    }
  }

  std::vector<Object> objects_;
  std::vector<std::uint32_t> references_;
  KeyTable keys_;
  unsigned referenceWidth_ = 1;
  std::string out_;
};

}  // namespace

std::optional<std::string> BinaryPropertyList::write(const PlistValue& value, NSError* error) {
  Writer writer;
  if (!writer.take(value)) {
    fail(error, NSCocoaErrorDomain, NSPropertyListWriteInvalidError,
         "The tree is nested too deeply for a property list.");
    return std::nullopt;
  }
  return writer.bytes();
}

}  // namespace zym
