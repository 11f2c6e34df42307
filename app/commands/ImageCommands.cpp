#include "app/commands/ImageCommands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <iostream>
#include <memory>

#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Output.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Items.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/host/NSFileManager.h"

namespace zym::host {
namespace {

/// Far above any photo.
constexpr std::size_t mostBytes = 256U << 20U;

struct Options {
  std::string item;
  std::vector<std::string> files;
  std::string image;
  bool asJSON = false;
};

ZYMRecipes& library() {
  return ZYMRecipes::sharedInstance();
}

NSImage imageIn(const std::string& file) {
  NSError error;
  auto bytes = NSFileManager::contentsAtPath(file, mostBytes, &error);
  const auto image =
      bytes ? NSImage::imageWithData(NSData(std::move(*bytes)), &error) : std::nullopt;
  if (!image) throw InputError(printable(file) + ": " + error.localizedDescription);
  return *image;
}

/// The library keeps the record of an image also where no file could be written. A photo that isn't
/// there is of no use: the record goes again, and the user is told.
void requireFilesOfNewImages(const Item& item, const std::vector<std::string>& before) {
  for (const std::string& uuid : library().imageUUIDsForItemWithUUID(item.uuid)) {
    if (std::ranges::find(before, uuid) != before.end()) continue;
    const auto path = library().pathForLargeImageWithUUID(uuid);
    if (path && NSFileManager::fileExistsAtPath(*path)) continue;
    (void)library().removeImageWithUUID(uuid);
    throw InputError(label("%1: can't be written", {printable(path.value_or(""))}));
  }
}

void addImages(const Options& options) {
  openStore();
  const Item item = itemNamed(options.item);
  for (const std::string& file : options.files) {
    const NSImage image = imageIn(file);
    const std::vector<std::string> before = library().imageUUIDsForItemWithUUID(item.uuid);
    library().addThumbnailImage_withLargeImage_toItemWithUUID(
        ZYMRecipes::thumbnailFromImage(image), ZYMRecipes::sizedLargeImageFromImage(image),
        item.uuid);
    requireFilesOfNewImages(item, before);
  }
}

void listImages(const Options& options) {
  openStore();
  const std::vector<std::string> uuids =
      library().imageUUIDsForItemWithUUID(itemNamed(options.item).uuid);
  PlistArray rows;
  Table table({{"", Table::Cells::Quantities},
               {"UUID", Table::Cells::Texts},
               {label("File"), Table::Cells::Texts}});
  for (std::size_t i = 0; i < uuids.size(); ++i) {
    const std::string path = library().pathForLargeImageWithUUID(uuids[i]).value_or("");
    rows.append(PlistDictionary{{keys::UUID, uuids[i]}, {KeyName("File"), path}});
    table.addRow({std::to_string(i + 1), uuids[i], printable(path)});
  }
  options.asJSON ? printJSON(rows) : printTable(table);
}

/// By its number in the list, from 1, or its uuid.
void removeImage(const Options& options) {
  openStore();
  const Item item = itemNamed(options.item);
  const std::vector<std::string> uuids = library().imageUUIDsForItemWithUUID(item.uuid);
  std::size_t number = 0;
  const std::string& typed = options.image;
  const auto read = std::from_chars(typed.data(), typed.data() + typed.size(), number);
  const bool isNumber = read.ec == std::errc() && read.ptr == typed.data() + typed.size();
  const bool isRemoved =
      isNumber
          ? number > 0 && library().removeImageAtIndex_fromItemWithUUID(number - 1, item.uuid)
          : std::ranges::find(uuids, typed) != uuids.end() && library().removeImageWithUUID(typed);
  if (!isRemoved) {
    throw InputError(label("'%1' has no image '%2'", {printable(item.name), printable(typed)}));
  }
}

}  // namespace

void addImageCommands(CLI::App& program) {
  CLI::App* const image = program.add_subcommand("image", "The images of a recipe or a batch.");
  image->require_subcommand(1)->fallthrough();
  const auto add = [&](const char* name, const char* description, void (*run)(const Options&)) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = image->add_subcommand(name, description);
    command->fallthrough();
    command->add_option("ITEM", options->item, "A recipe or a batch")->required();
    command->callback([options, run] { run(*options); });
    return std::pair(command, options.get());
  };
  const auto [adding, ofAdding] = add("add", "Add images from files.", addImages);
  adding->add_option("FILE", ofAdding->files, "Pictures")->required();
  const auto [listing, ofListing] = add("list", "List the images.", listImages);
  listing->add_flag("--json", ofListing->asJSON, "Print JSON and nothing else");
  const auto [removing, ofRemoving] = add("remove", "Remove an image.", removeImage);
  removing->add_option("IMAGE", ofRemoving->image, "Its number in the list, or its UUID")
      ->required();
}

}  // namespace zym::host
