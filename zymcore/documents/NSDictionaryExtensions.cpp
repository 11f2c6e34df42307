#include "zymcore/documents/NSDictionaryExtensions.h"

#include <algorithm>
#include <string>

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/NSNotFound.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

constexpr std::size_t longestText = 10000;
constexpr std::string_view corruptionWarning =
    "*Possible Corruption Detected. Text removed. Contact support@zymcore.example for more info.*";

bool hasBlank(const PlistEntry& entry) {
  return entry.key.text().find(' ') != std::string_view::npos;
}

void removeBlanksFromOwnKeys(PlistDictionary& tree) {
  if (std::none_of(tree.begin(), tree.end(), hasBlank)) return;
  PlistDictionary renamed;
  for (const PlistEntry& entry : tree) {
    if (!hasBlank(entry)) renamed.set(entry.key, entry.value);
  }
  for (const PlistEntry& entry : tree) {
    if (!hasBlank(entry)) continue;
    std::string key(entry.key.text());
    std::erase(key, ' ');
    renamed.set(KeyName(key), entry.value);
  }
  tree = std::move(renamed);
}

// What a text becomes in the store, or absent when it is fit as it is.
std::optional<std::string> corrected(const std::string& text) {
  if (text.size() > longestText && UTF16Length(text) > longestText) {
    return Localized_String(corruptionWarning);
  }
  if (!isUTF8(text)) return stringByDroppingInvalidUTF8(text);
  return std::nullopt;
}

// These answer whether anything was changed, so that a tree that is fit keeps sharing its storage.
bool correct(PlistDictionary& tree);
bool correct(PlistArray& tree);

std::optional<PlistValue> correctedContainer(const PlistValue& value) {
  PlistValue copy = value;
  PlistDictionary* dictionary = copy.editDictionary();
  PlistArray* array = copy.editArray();
  if ((dictionary && correct(*dictionary)) || (array && correct(*array))) return copy;
  return std::nullopt;
}

bool correct(PlistDictionary& tree) {
  bool changed = false;
  for (std::size_t i = 0; i < tree.size(); ++i) {
    const PlistValue& value = tree.begin()[i].value;
    std::optional<PlistValue> fit;
    if (const std::string* text = value.string()) {
      if (std::optional<std::string> repaired = corrected(*text)) fit = std::move(*repaired);
    } else if (value.isNumber()) {
      fit = stringWithFormatF(value.floatValue());
    } else {
      fit = correctedContainer(value);
    }
    if (!fit) continue;
    tree.editAt(i) = std::move(*fit);
    changed = true;
  }
  return changed;
}

bool correct(PlistArray& tree) {
  bool changed = false;
  for (std::size_t i = 0; i < tree.size(); ++i) {
    std::optional<PlistValue> fit = correctedContainer(*tree.find(i));
    if (!fit) continue;
    tree.edit(i) = std::move(*fit);
    changed = true;
  }
  return changed;
}

}  // namespace

PlistDictionary duplicate(const PlistDictionary& tree) {
  return tree;
}
PlistArray duplicate(const PlistArray& tree) {
  return tree;
}

std::int64_t indexOfObjectWithUUID(const PlistArray& records, std::string_view uuid) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    const PlistDictionary* record = records.find(i)->dictionary();
    const std::string* own = record ? record->string(keys::UUID) : nullptr;
    if (own && *own == uuid) return static_cast<std::int64_t>(i);
  }
  return NSNotFound;
}

std::int64_t indexOfObjectWithUUID(const std::vector<ZYMSummary>& summaries,
                                   std::string_view uuid) {
  const auto found = std::find_if(summaries.begin(), summaries.end(),
                                  [uuid](const ZYMSummary& row) { return row.uuid == uuid; });
  return found == summaries.end() ? NSNotFound : found - summaries.begin();
}

void removeSpacesInKeys(PlistDictionary& tree) {
  removeBlanksFromOwnKeys(tree);
  for (std::size_t i = 0; i < tree.size(); ++i) {
    const PlistValue& value = tree.begin()[i].value;
    if (value.dictionary() || value.array()) removeSpacesInKeysOfObject(&tree.editAt(i));
  }
}

void removeSpacesInKeysOfObject(PlistValue* tree) {
  if (!tree) return;
  if (PlistDictionary* dictionary = tree->editDictionary()) {
    removeSpacesInKeys(*dictionary);
    return;
  }
  PlistArray* array = tree->editArray();
  if (!array) {
    NSLog("*** Assertion failure in NSDictionaryExtensions");
    throw NSException(NSInternalInconsistencyException,
                      "Non-mutable object passed to to removeSpacesInKeysOfObject:");
  }
  for (std::size_t i = 0; i < array->size(); ++i) {
    const PlistValue& value = *array->find(i);
    if (value.dictionary() || value.array()) removeSpacesInKeysOfObject(&array->edit(i));
  }
}

void correctForSerialization(PlistDictionary& tree) {
  correct(tree);
}
void correctForSerialization(PlistArray& tree) {
  correct(tree);
}

}  // namespace zym
