#pragma once

#include <string>
#include <string_view>

#include "zymcore/platform/events/NSOperation.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// Brings a dictionary of records into one library: those of a known "UUID" are changed, the others
/// added, all with the present time as their date, and none is removed. One save, no undo. Runs on
/// the thread that starts it, which is to be the main thread.
class ZYMCachingModelDataStoreImportOperation final : public NSOperation {
 public:
  ZYMCachingModelDataStoreImportOperation(PlistDictionary records, std::string_view entityClass)
      : storeToImport_(std::move(records)), entityClass_(entityClass) {}

  /// Records by any key.
  [[nodiscard]] const PlistDictionary& storeToImport() const noexcept { return storeToImport_; }
  [[nodiscard]] const std::string& entityClass() const noexcept { return entityClass_; }
  [[nodiscard]] bool started() const noexcept { return started_; }
  /// Always false.
  [[nodiscard]] bool paused() const noexcept { return paused_; }
  /// Stays 0.
  [[nodiscard]] double percentDone() const noexcept { return percentDone_; }
  [[nodiscard]] bool isExecuting() const noexcept { return executing_; }
  [[nodiscard]] bool isFinished() const noexcept { return finished_; }

  void main() override;

 private:
  PlistDictionary storeToImport_;
  std::string entityClass_;
  bool started_ = false;
  bool paused_ = false;
  bool executing_ = false;
  bool finished_ = false;
  double percentDone_ = 0;
};

}  // namespace zym
