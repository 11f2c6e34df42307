#include "app/session/Documents.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "app/session/Import.h"
#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Words.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::host {
namespace {

/// Far above any recipe, with its pictures and all its batches.
constexpr std::size_t mostBytes = 64U << 20U;

constexpr KeyName batchKeys[] = {keys::ModifiedRecipe, keys::Actuals};
constexpr KeyName recipeKeys[] = {
    keys::RecipeTitle,       keys::FermentableIngredients, keys::HopIngredients,
    keys::YeastIngredients,  keys::OtherIngredients,       keys::MashType,
    keys::PreBoilWortVolume, keys::FinalWortVolume,        keys::VolumeToFermenter,
    keys::VolumeAtPitching,  keys::FinalBatchVolume,       keys::ExpectedOriginalGravity};

template <std::size_t Count>
bool hasAny(const PlistDictionary& document, const KeyName (&keys)[Count]) {
  return std::ranges::any_of(keys, [&](KeyName key) { return document.contains(key); });
}

std::string tooLarge() {
  return label("is larger than %1 MB", {std::to_string(mostBytes >> 20U)});
}

std::string readStandardInput() {
  std::string bytes;
  char buffer[1U << 16U];
  while (true) {
    const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
    if (count == 0) return bytes;
    if (count < 0) {
      if (errno == EINTR) continue;
      throw InputError(std::strerror(errno));
    }
    bytes.append(buffer, static_cast<std::size_t>(count));
    if (bytes.size() > mostBytes) throw InputError(tooLarge());
  }
}

std::string readFile(const std::string& file) {
  NSError error;
  std::optional<std::string> bytes = NSFileManager::contentsAtPath(file, mostBytes, &error);
  if (!bytes) {
    throw InputError(error.code == NSFileReadTooLargeError ? tooLarge()
                                                           : error.localizedFailureReason);
  }
  return std::move(*bytes);
}

PlistDictionary readBeerXML(const std::string& file) {
  openTemporaryStore();
  return recipeToImport(file).recipe;
}

void addDocument(const PlistValue& value, const std::string& what,
                 std::vector<PlistDictionary>& documents) {
  const PlistDictionary* document = value.dictionary();
  if (!document || !kindOf(*document))
    throw InputError(label("%1 is neither a recipe nor a batch", {what}));
  documents.push_back(*document);
}

}  // namespace

std::optional<DocumentKind> kindOf(const PlistDictionary& document) {
  if (hasAny(document, batchKeys)) return DocumentKind::Batch;
  if (hasAny(document, recipeKeys)) return DocumentKind::Recipe;
  return std::nullopt;
}

std::vector<PlistDictionary> readDocuments(const std::string& file) {
  if (file.ends_with(".xml")) return {readBeerXML(file)};
  const std::string bytes = file == standardInput ? readStandardInput() : readFile(file);
  if (bytes.empty()) throw InputError(label("is empty"));

  NSError error;
  const std::optional<PlistValue> tree = safeJSONObjectWithData_options(bytes, 0, &error);
  if (!tree) throw InputError(label("is no native JSON: %1", {error.localizedDescription}));

  std::vector<PlistDictionary> documents;
  if (const PlistArray* array = tree->array()) {
    if (array->empty()) throw InputError(label("holds no recipe and no batch"));
    for (const PlistValue& value : *array) {
      addDocument(value, label("item %1", {std::to_string(documents.size() + 1)}), documents);
    }
  } else {
    addDocument(*tree, label("the document"), documents);
  }
  return documents;
}

}  // namespace zym::host
