#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "zymcore/platform/events/NSOperation.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// The kinds of file that are written.
enum class ZYMExportFileType : std::int32_t {
  NativePropertyList = 0,  // "wmr"
  NativeJSON = 1,          // "wm2", with the pictures of the store
  OldNative = 2,           // not written any more
  IngredientPackage = 3,   // records of a library, to the path itself
  REC = 4,                 // "rec"
  BeerXML = 5,             // "xml"
  HTML = 6,                // "htm"
  PDF = 7,                 // "pdf"
};

/// Writes an item, a recipe or a batch, into a folder, or a list of records into a file. The file
/// is named by the title of the item, and never takes the place of another: the second of a title
/// is "Title-1". It comes into being whole or not at all.
///
/// What goes wrong is logged and told to nobody; the operation knows it. The work runs on the main
/// thread; started elsewhere, it waits for it.
class ZYMFileExportOperation final : public NSOperation {
 public:
  ZYMFileExportOperation(PlistValue item, std::string path, std::int32_t fileType)
      : item_(std::move(item)), path_(std::move(path)), fileType_(fileType) {}

  [[nodiscard]] const PlistValue& item() const noexcept { return item_; }
  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  [[nodiscard]] std::int32_t fileType() const noexcept { return fileType_; }

  void main() override;

  /// The path, or, where there is a file, the first of "name-1", "name-2" and so on that is free,
  /// with its extension.
  [[nodiscard]] static std::optional<std::string> uniquePathForPath(
      const std::optional<std::string>& path);

  // What came of it.

  /// The file that was written.
  [[nodiscard]] const std::optional<std::string>& writtenPath() const noexcept {
    return writtenPath_;
  }
  /// In English; absent for a success.
  [[nodiscard]] const std::optional<std::string>& failureReason() const noexcept {
    return failureReason_;
  }

 private:
  struct Kind;
  static const Kind kinds[];

  void exportItem();
  void refuse(std::string reason);

  PlistValue item_;
  std::string path_;
  std::int32_t fileType_;
  std::optional<std::string> writtenPath_;
  std::optional<std::string> failureReason_;
};

}  // namespace zym
