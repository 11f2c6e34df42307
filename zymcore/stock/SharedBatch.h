#pragma once

#include <memory>
#include <utility>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// A batch that several have open at once: a copy of this is the same document, and what one holder
/// changes all others see. Every other document is its holder's own.
class SharedBatch {
 public:
  /// No batch.
  SharedBatch() = default;
  explicit SharedBatch(PlistDictionary batch)
      : batch_(std::make_shared<PlistDictionary>(std::move(batch))) {}

  [[nodiscard]] explicit operator bool() const noexcept { return batch_ != nullptr; }
  [[nodiscard]] PlistDictionary& operator*() const noexcept { return *batch_; }
  [[nodiscard]] PlistDictionary* operator->() const noexcept { return batch_.get(); }

 private:
  std::shared_ptr<PlistDictionary> batch_;
};

}  // namespace zym
