#include "zymcore/platform/values/PlistDictionary.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <map>
#include <memory>
#include <vector>

#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

// One byte of each key's hash lies apart from the entries: a look-up scans these alone, and 60 of
// them are one cache line. A dictionary too large to scan, which no document has but a hostile one
// may, gets an index.
struct PlistDictionary::Storage : CowStorage {
  static constexpr std::size_t mostScanned = 256;
  static constexpr std::size_t notFound = std::string::npos;

  std::string tags;
  std::vector<PlistEntry> entries;
  std::unique_ptr<std::map<std::string_view, std::size_t>> index;

  Storage() = default;
  Storage(const Storage& other) : CowStorage(other), tags(other.tags), entries(other.entries) {
    indexIfLarge();
  }

  static char tagOf(KeyName key) noexcept { return static_cast<char>(key.hash() >> 24U); }

  [[nodiscard]] const PlistValue* find(KeyName key) const noexcept {
    const PlistEntry* const entry = likelyEntry(key);
    return entry ? &entry->value : findElsewhere(key);
  }

  [[nodiscard]] std::size_t positionOf(KeyName key) const noexcept {
    const PlistEntry* const entry = likelyEntry(key);
    return entry ? static_cast<std::size_t>(entry - entries.data()) : search(key);
  }

  [[nodiscard]] std::size_t search(KeyName key) const noexcept {
    if (index) {
      const auto found = index->find(key.text());
      return found == index->end() ? notFound : found->second;
    }
    std::size_t position = tags.find(tagOf(key));
    while (position != notFound && !entries[position].key.isNamed(key)) {
      position = tags.find(tagOf(key), position + 1);
    }
    return position;
  }

  void append(PlistKey&& key, PlistValue&& value) {
    tags.push_back(tagOf(key));
    entries.push_back({std::move(key), std::move(value)});
    if (index) {
      index->emplace(entries.back().key.text(), entries.size() - 1);
    } else {
      indexIfLarge();
    }
  }

  void set(PlistKey&& key, PlistValue&& value) {
    const std::size_t position = search(key);
    if (position == notFound) {
      append(std::move(key), std::move(value));
    } else {
      entries[position].value = std::move(value);
    }
  }

  // An indexed dictionary moves its last entry into the gap, so that emptying it stays quick.
  void removeAt(std::size_t position) {
    if (index) {
      index->erase(entries[position].key.text());
      if (position + 1 != entries.size()) {
        (*index)[entries.back().key.text()] = position;
        std::swap(entries[position], entries.back());
        tags[position] = tags.back();
      }
      entries.pop_back();
      tags.pop_back();
      return;
    }
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(position));
    tags.erase(position, 1);
  }

 private:
  // Documents of a kind have their keys in the same places, so the last place of a key is tried
  // before any search. Any thread may be wrong about it at no harm.
  static inline std::array<std::atomic<std::uint8_t>, 1024> lastPlaces{};

  [[nodiscard]] const PlistEntry* likelyEntry(KeyName key) const noexcept {
    const std::size_t place =
        lastPlaces[key.hash() % lastPlaces.size()].load(std::memory_order_relaxed);
    if (place >= entries.size()) return nullptr;
    const PlistEntry* const entry = entries.data() + place;
    return entry->key.isNamed(key) ? entry : nullptr;
  }

  // Apart, so that the usual way needs no room for it.
  [[nodiscard, gnu::noinline]] const PlistValue* findElsewhere(KeyName key) const noexcept {
    const std::size_t position = search(key);
    if (position == notFound) return nullptr;
    if (position < mostScanned) {
      lastPlaces[key.hash() % lastPlaces.size()].store(static_cast<std::uint8_t>(position),
                                                       std::memory_order_relaxed);
    }
    return &entries[position].value;
  }

  void indexIfLarge() {
    if (entries.size() <= mostScanned) return;
    index = std::make_unique<std::map<std::string_view, std::size_t>>();
    for (std::size_t i = 0; i < entries.size(); ++i) index->emplace(entries[i].key.text(), i);
  }
};

PlistDictionary::PlistDictionary() noexcept = default;
PlistDictionary::PlistDictionary(const PlistDictionary&) noexcept = default;
PlistDictionary::PlistDictionary(PlistDictionary&&) noexcept = default;
PlistDictionary& PlistDictionary::operator=(const PlistDictionary&) noexcept = default;
PlistDictionary& PlistDictionary::operator=(PlistDictionary&&) noexcept = default;
PlistDictionary::~PlistDictionary() = default;

PlistDictionary::PlistDictionary(std::initializer_list<std::pair<KeyName, PlistValue>> entries) {
  for (const auto& [key, value] : entries) set(key, value);
}

PlistDictionary::PlistDictionary(std::span<PlistKey> keys, std::span<PlistValue> values) {
  if (keys.empty()) return;
  Storage& storage = storage_.writable();
  storage.tags.reserve(keys.size());
  storage.entries.reserve(keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    storage.set(std::move(keys[i]), std::move(values[i]));
  }
}

std::size_t PlistDictionary::size() const noexcept {
  return storage_.get() ? storage_.get()->entries.size() : 0;
}

const PlistEntry* PlistDictionary::begin() const noexcept {
  return storage_.get() ? storage_.get()->entries.data() : nullptr;
}

const PlistEntry* PlistDictionary::end() const noexcept {
  const PlistEntry* first = begin();
  return first ? first + size() : nullptr;
}

const PlistValue* PlistDictionary::find(KeyName key) const noexcept {
  return storage_.get() ? storage_.get()->find(key) : nullptr;
}

double PlistDictionary::doubleValue(KeyName key) const noexcept {
  const PlistValue* value = find(key);
  return value ? value->doubleValue() : 0;
}

float PlistDictionary::floatValue(KeyName key) const noexcept {
  const PlistValue* value = find(key);
  return value ? value->floatValue() : 0;
}

std::int64_t PlistDictionary::integerValue(KeyName key) const noexcept {
  const PlistValue* value = find(key);
  return value ? value->integerValue() : 0;
}

bool PlistDictionary::boolValue(KeyName key) const noexcept {
  const PlistValue* value = find(key);
  return value && value->boolValue();
}

std::string_view PlistDictionary::stringValue(KeyName key) const noexcept {
  const std::string* text = string(key);
  return text ? std::string_view(*text) : std::string_view();
}

const PlistDictionary* PlistDictionary::dictionary(KeyName key) const noexcept {
  const PlistValue* value = find(key);
  return value ? value->dictionary() : nullptr;
}

const PlistArray* PlistDictionary::array(KeyName key) const noexcept {
  const PlistValue* value = find(key);
  return value ? value->array() : nullptr;
}

const std::string* PlistDictionary::string(KeyName key) const noexcept {
  const PlistValue* value = find(key);
  return value ? value->string() : nullptr;
}

const NSDate* PlistDictionary::date(KeyName key) const noexcept {
  const PlistValue* value = find(key);
  return value ? value->date() : nullptr;
}

void PlistDictionary::set(KeyName key, PlistValue value) {
  Storage& storage = storage_.writable();
  const std::size_t position = storage.positionOf(key);
  if (position == Storage::notFound) {
    storage.append(PlistKey(key), std::move(value));
  } else {
    storage.entries[position].value = std::move(value);
  }
}

void PlistDictionary::setNumber(KeyName key, double number) {
  set(key, stringWithFormatF(number));
}

void PlistDictionary::setOrRemove(KeyName key, const PlistValue* value) {
  if (value) {
    set(key, *value);
  } else {
    remove(key);
  }
}

bool PlistDictionary::remove(KeyName key) {
  if (!contains(key)) return false;
  Storage& storage = storage_.writable();
  storage.removeAt(storage.positionOf(key));
  return true;
}

void PlistDictionary::clear() {
  *this = PlistDictionary();
}

PlistValue* PlistDictionary::edit(KeyName key) {
  if (!contains(key)) return nullptr;
  Storage& storage = storage_.writable();
  return &storage.entries[storage.positionOf(key)].value;
}

PlistDictionary* PlistDictionary::editDictionary(KeyName key) {
  PlistValue* value = edit(key);
  return value ? value->editDictionary() : nullptr;
}

PlistArray* PlistDictionary::editArray(KeyName key) {
  PlistValue* value = edit(key);
  return value ? value->editArray() : nullptr;
}

PlistValue& PlistDictionary::editAt(std::size_t position) {
  if (position >= size()) {
    throw NSException(NSRangeException, "position " + std::to_string(position) +
                                            " beyond bounds for dictionary of " +
                                            std::to_string(size()));
  }
  return storage_.writable().entries[position].value;
}

bool operator==(const PlistDictionary& a, const PlistDictionary& b) noexcept {
  if (a.storage_.get() == b.storage_.get()) return true;
  if (a.size() != b.size()) return false;
  return std::all_of(a.begin(), a.end(), [&](const PlistEntry& entry) {
    const PlistValue* other = b.find(entry.key);
    return other && entry.value == *other;
  });
}

}  // namespace zym
