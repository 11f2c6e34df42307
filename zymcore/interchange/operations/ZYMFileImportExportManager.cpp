#include "zymcore/interchange/operations/ZYMFileImportExportManager.h"

#include "zymcore/interchange/operations/ZYMFileExportOperation.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {

std::shared_ptr<ZYMFileImportExportManager>& ZYMFileImportExportManager::instance() {
  static std::shared_ptr<ZYMFileImportExportManager> instance;
  return instance;
}

ZYMFileImportExportManager& ZYMFileImportExportManager::sharedInstance() {
  static TearDownPlace place([] { instance().reset(); });
  if (!instance()) {
    instance().reset(new ZYMFileImportExportManager());
    place.take();
  }
  return *instance();
}

ZYMFileImportExportManager::ZYMFileImportExportManager()
    : importQueue_(&NSOperationQueue::mainQueue()), exportQueue_(&NSOperationQueue::mainQueue()) {
  observers_.push_back(observe(*importQueue_));
  observers_.push_back(observe(*exportQueue_));
}

ZYMFileImportExportManager::~ZYMFileImportExportManager() {
  importQueue_->cancelAllOperations();
  exportQueue_->cancelAllOperations();
}

NSNotificationCenter::Token ZYMFileImportExportManager::observe(NSOperationQueue& queue) {
  return queue.addObserverForOperationCount(
      [this, &queue] { sendQueueNotificationForQueue(queue); });
}

void ZYMFileImportExportManager::importFilesAtURLS(const std::vector<std::string>& urls) {
  for (const std::string& url : urls) {
    importQueue_->addOperation(std::make_shared<ZYMFileImportOperation>(url));
  }
}

void ZYMFileImportExportManager::exportItems_toPath_fileType(const PlistArray& items,
                                                             const std::string& path,
                                                             std::int32_t fileType) {
  const auto add = [&](const PlistValue& item) {
    exportQueue_->addOperation(std::make_shared<ZYMFileExportOperation>(item, path, fileType));
  };
  if (static_cast<ZYMExportFileType>(fileType) == ZYMExportFileType::IngredientPackage) {
    return add(items);
  }
  for (const PlistValue& item : items) add(item);
}

void ZYMFileImportExportManager::sendQueueNotificationForQueue(const NSOperationQueue& queue) {
  NSRunLoop::mainRunLoop().performBlock([weak = weak_from_this(), &queue] {
    const std::shared_ptr<ZYMFileImportExportManager> manager = weak.lock();
    if (!manager) return;
    const bool isImport = &queue == manager->importQueue_;
    NSNotificationCenter::defaultCenter().postNotificationName_object_userInfo(
        isImport ? ZYMImportQueueStatusChangedNotification
                 : ZYMExportQueueStatusChangedNotification,
        manager.get(), {{ZYMQueueStatusCountKey, queue.operationCount()}});
  });
}

}  // namespace zym
