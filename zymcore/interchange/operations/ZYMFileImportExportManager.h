#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

// Notifications, on the main thread in a later turn of its loop, with the manager as object and the
// number of operations in the queue, under this key, as user info.
inline constexpr KeyName ZYMQueueStatusCountKey{"count"};
inline constexpr const char* ZYMImportQueueStatusChangedNotification =
    "ZYMImportQueueStatusChangedNotification";
/// For a queue that isn't that of imports. There has never been another: whoever listens takes the
/// one above, which comes twice for each change, for imports and exports alike.
inline constexpr const char* ZYMExportQueueStatusChangedNotification =
    "ZYMExportQueueStatusChangedNotification";

/// Where a host hands in files to import and items to export. Imports and exports share the main
/// queue and so run one at a time, in the order in which they came. Main thread.
class ZYMFileImportExportManager : public std::enable_shared_from_this<ZYMFileImportExportManager> {
 public:
  [[nodiscard]] static ZYMFileImportExportManager& sharedInstance();
  /// Cancels what waits in the queues.
  ~ZYMFileImportExportManager();
  ZYMFileImportExportManager(const ZYMFileImportExportManager&) = delete;
  ZYMFileImportExportManager& operator=(const ZYMFileImportExportManager&) = delete;

  [[nodiscard]] NSOperationQueue& importQueue() const noexcept { return *importQueue_; }
  [[nodiscard]] NSOperationQueue& exportQueue() const noexcept { return *exportQueue_; }

  /// A `ZYMFileImportOperation` for each path.
  void importFilesAtURLS(const std::vector<std::string>& urls);
  /// A `ZYMFileExportOperation` (which tells the types) for each item, or one for all of them where
  /// the type is a package of ingredients.
  void exportItems_toPath_fileType(const PlistArray& items, const std::string& path,
                                   std::int32_t fileType);
  /// Posts the number of operations in the queue, in the next turn of the loop.
  void sendQueueNotificationForQueue(const NSOperationQueue& queue);

 private:
  ZYMFileImportExportManager();
  static std::shared_ptr<ZYMFileImportExportManager>& instance();
  [[nodiscard]] NSNotificationCenter::Token observe(NSOperationQueue& queue);

  NSOperationQueue* importQueue_;
  NSOperationQueue* exportQueue_;
  std::vector<NSNotificationCenter::Token> observers_;
};

}  // namespace zym
