#include "zymcore/interchange/operations/ZYMFileExportOperation.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/interchange/native/ZYMIngFile.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/formats/NSJSONSerialization.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/services/WebView.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/reports/ZYMHTML.h"

namespace zym {
namespace {

using Bytes = std::optional<std::string>;

// ---- What is written. Absent, with the error, where there is no such file of the item.

Bytes propertyListOf(const PlistValue& item, NSError& error) {
  return NSPropertyListSerialization::dataWithPropertyList_format(
      item, NSPropertyListFormat::XMLFormat_v1_0, &error);
}

Bytes JSONOf(const PlistValue& item, NSError& error) {
  PlistDictionary whole = *item.dictionary();
  if (const std::string* uuid = whole.string(keys::UUID)) {
    whole.set(keys::Images, ZYMRecipes::sharedInstance().orderedImageDataForItemWithUUID(*uuid));
  }
  return safeDataWithJSONObject_options(whole, NSJSONWritingPrettyPrinted, &error);
}

Bytes packageOf(const PlistValue& item, NSError& /*error*/) {
  const auto data = ZYMIngFile::dataForItem(ZYMIngFile::packageIngredients(*item.array()));
  return data ? std::optional(std::string(data->view())) : std::nullopt;
}

template <class Format>
Bytes fileOf(const PlistValue& item, NSError& /*error*/) {
  return std::string(Format::dataForItem(*item.dictionary()).view());
}

Bytes pageOf(const PlistValue& item, NSError& /*error*/) {
  PlistDictionary document = *item.dictionary();
  return document.contains(keys::ModifiedRecipe) ? ZYMHTML::renderBatchToHTMLForWeb(document)
                                                 : ZYMHTML::renderRecipeToHTMLForWeb(document);
}

Bytes PDFOf(const PlistValue& item, NSError& error) {
  constexpr double width = 600;
  WebView view(width);
  view.loadHTMLString(*pageOf(item, error));
  return view.dataWithPDF(&error);
}

// ---- Names

// What is added to a name, for a free one and while it is written, stays within the 255 bytes that
// file systems allow.
constexpr std::size_t mostNameBytes = 200;
constexpr std::string_view noTitle = "Untitled";

std::string nameOf(const PlistDictionary& item) {
  const bool isBatch = item.contains(keys::ModifiedRecipe);
  std::string name =
      stringByDroppingInvalidUTF8(item.stringValue(isBatch ? keys::BatchTitle : keys::RecipeTitle));
  std::erase_if(name, [](char c) {
    return c == '/' || c == '.' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
  });
  if (name.size() > mostNameBytes) {
    name.resize(lengthOfValidUTF8(std::string_view(name).substr(0, mostNameBytes)));
  }
  return name.empty() ? std::string(noTitle) : name;
}

// The file is whole before it gets its name. Another process may take the free one meanwhile.
std::optional<std::string> writtenTo(const std::string& path, const std::string& bytes,
                                     NSError& error) {
  constexpr int mostAttempts = 100;
  const auto folder = std::filesystem::path(path).parent_path();
  const std::string unfinished = (folder / ("." + uuid())).string();
  if (!NSFileManager::writeData_toPath(bytes, unfinished, &error)) return std::nullopt;
  for (int attempt = 0; attempt < mostAttempts; ++attempt) {
    std::string target = ZYMFileExportOperation::uniquePathForPath(path).value();
    if (NSFileManager::moveItemAtPath_toPath(unfinished, target, &error)) return target;
    if (error.code != NSFileWriteFileExistsError) break;
  }
  NSFileManager::removeItemAtPath(unfinished);
  return std::nullopt;
}

void log(std::string_view message) {
  NSLog("-[ZYMFileExportOperation main] " + std::string(message));
}

}  // namespace

/// A kind of file, and what is logged about an item or a path that it can't be written of.
struct ZYMFileExportOperation::Kind {
  ZYMExportFileType type;
  /// Empty for a kind that takes a list and goes to the path itself.
  std::string_view extension;
  const char* itemMessage;
  const char* pathMessage;
  Bytes (*bytesOf)(const PlistValue& item, NSError& error);
};

// The texts are as they always were.
constexpr ZYMFileExportOperation::Kind ZYMFileExportOperation::kinds[] = {
    {ZYMExportFileType::NativePropertyList, "wmr",
     "Item is required to be an NSDcitionary for WMR export",
     "path is required to be a directory for WMR export", propertyListOf},
    {ZYMExportFileType::NativeJSON, "wm2", "Item is required to be an NSDcitionary for WMR export",
     "path is required to be a directory for WMR export", JSONOf},
    {ZYMExportFileType::IngredientPackage, "", "Item is required to be an NSArray for ING export",
     "path is required not to be a directory for ING export", packageOf},
    {ZYMExportFileType::REC, "rec", "Item is required to be an NSDcitionary for REC export",
     "path is required to be a directory for REC export", fileOf<ZYMRecFile>},
    {ZYMExportFileType::BeerXML, "xml", "Item is required to be an NSDcitionary for REC export",
     "path is required to be a directory for REC export", fileOf<ZYMBeerXML>},
    {ZYMExportFileType::HTML, "htm", "Item is required to be an NSDcitionary for HTM export",
     "path is required to be a directory for REC export", pageOf},
    {ZYMExportFileType::PDF, "pdf", "Item is required to be an NSDcitionary for PDF export",
     "path is required to be a directory for PDF export", PDFOf},
};

void ZYMFileExportOperation::main() {
  if (isCancelled()) return;
  if (!NSRunLoop::isMainThread()) {
    NSRunLoop::mainRunLoop().performOnMainThreadAndWait([this] { main(); });
    return;
  }
  try {
    exportItem();
  } catch (const std::exception& fault) {
    refuse(fault.what());
  }
}

void ZYMFileExportOperation::exportItem() {
  const auto type = static_cast<ZYMExportFileType>(fileType_);
  if (type == ZYMExportFileType::OldNative) {
    log("WMA files unsupported");
    return refuse("WMA files unsupported");
  }
  const Kind* kind = std::ranges::find(kinds, type, &Kind::type);
  if (kind == std::end(kinds)) return refuse("no such type of file");

  const bool goesToFolder = !kind->extension.empty();
  const bool fits = goesToFolder ? item_.dictionary() != nullptr : item_.array() != nullptr;
  if (!fits) log(kind->itemMessage);
  if (NSFileManager::isDirectoryAtPath(path_) != goesToFolder) {
    log(kind->pathMessage);
    return refuse(kind->pathMessage);
  }
  if (!fits) return refuse(kind->itemMessage);

  NSError error;
  const Bytes bytes = kind->bytesOf(item_, error);
  if (!bytes) return refuse(error.localizedDescription);
  const std::string path =
      goesToFolder ? path_ + "/" + nameOf(*item_.dictionary()) + "." + std::string(kind->extension)
                   : path_;
  writtenPath_ = writtenTo(path, *bytes, error);
  if (!writtenPath_) refuse(error.localizedFailureReason);
}

void ZYMFileExportOperation::refuse(std::string reason) {
  failureReason_ = std::move(reason);
}

std::optional<std::string> ZYMFileExportOperation::uniquePathForPath(
    const std::optional<std::string>& path) {
  if (!path || !NSFileManager::fileExistsAtPath(*path)) return path;
  const std::filesystem::path whole(*path);
  const std::string extension = whole.extension();
  const std::string stem = path->substr(0, path->size() - extension.size());
  for (std::uint64_t n = 1;; ++n) {
    std::string free = stem + "-" + std::to_string(n) + extension;
    if (!NSFileManager::fileExistsAtPath(free)) return free;
  }
}

}  // namespace zym
