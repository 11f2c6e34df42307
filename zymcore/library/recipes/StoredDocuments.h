#pragma once

#include <optional>
#include <string_view>

#include "zymcore/platform/graphics/NSImage.h"
#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/platform/values/PlistKey.h"

namespace zym {

class ZYMDocumentEntity;
class ZYMImageEntity;

/// How the documents of one entity, recipes or batches, go into the main context and change there.
///
/// But for `update`, nothing here opens an undo group or saves: the caller holds a `ZYMUndoGroup`
/// around all that belongs together, so that a recipe with its batches, images and group is one
/// undo step and one save. Main thread.
struct StoredDocuments {
  std::string_view entityName;
  KeyName titleKey;
  // Of the undo step of an update.
  std::string_view actionName;

  /// The one object with that uuid, or null.
  [[nodiscard]] ZYMDocumentEntity* objectWithUUID(std::optional<std::string_view> uuid) const;

  /// A new object with a document that is ready. One too deep to be stored throws
  /// `NSInvalidArgumentException` and leaves no object behind.
  ZYMDocumentEntity& insert(PlistDictionary& document) const;

  /// Stores a document, as one undo step, under the one object with its "UUID", unless it equals
  /// what is stored there or there is none. Unless `preservingDLM` its "DateLastModified" becomes
  /// the present time, in `document` as well. Throws `NSInvalidArgumentException` when the stored
  /// document can't be read or this one is too deep to be stored.
  void update(PlistDictionary& document, bool preservingDLM) const;

  /// A new image, its two files written, as the last of its owner, whose date moves; of nobody
  /// without an owner. Answers whether both files could be written; the record is made all the
  /// same.
  [[nodiscard]] static bool addImage(ZYMDocumentEntity* owner, const NSImage& thumbnail,
                                     const NSImage& large);

  /// Deletes an object with its batches and images, and the files of those: for what was inserted
  /// and then turned out not to be whole.
  static void withdraw(ZYMDocumentEntity& object);

  // A recipe joins or leaves a group, whose date moves, if there is such a group. The library, "",
  // is none.
  static void joinGroup(ZYMDocumentEntity& recipe, std::optional<std::string_view> groupUUID);
  static void leaveGroup(ZYMDocumentEntity& recipe, std::optional<std::string_view> groupUUID);
};

extern const StoredDocuments storedRecipes;
extern const StoredDocuments storedBatches;

/// The recipe or, where there is none, the batch with that uuid; or null.
[[nodiscard]] ZYMDocumentEntity* documentWithUUID(std::optional<std::string_view> uuid);

}  // namespace zym
