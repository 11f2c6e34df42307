#pragma once

#include <optional>
#include <string_view>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// All that is stored of a recipe, for a file of ours: the document with its batches under
/// "Batches", and of each of them the pictures under "Images"; of a batch, the document with its
/// pictures. Schedules say that they are of the present version. Absent when there is neither.
/// Throws `NSInvalidArgumentException` when a document can't be read. Main thread.
[[nodiscard]] std::optional<PlistDictionary> itemForExportWithUUID(std::string_view uuid);

}  // namespace zym
