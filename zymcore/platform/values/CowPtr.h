#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace zym {

/// Base of what a `CowPtr` holds.
struct CowStorage {
  CowStorage() = default;
  CowStorage(const CowStorage&) noexcept {}
  CowStorage& operator=(const CowStorage&) = delete;

  std::atomic<std::uint32_t> holders{1};
};

/// Storage that copies share until one of them writes. Empty storage takes no memory.
template <class Storage>
class CowPtr {
 public:
  constexpr CowPtr() noexcept = default;
  CowPtr(const CowPtr& other) noexcept : storage_(other.storage_) {
    if (storage_) storage_->holders.fetch_add(1, std::memory_order_relaxed);
  }
  CowPtr(CowPtr&& other) noexcept : storage_(std::exchange(other.storage_, nullptr)) {}
  CowPtr& operator=(CowPtr other) noexcept {
    std::swap(storage_, other.storage_);
    return *this;
  }
  ~CowPtr() {
    if (storage_ && storage_->holders.fetch_sub(1, std::memory_order_acq_rel) == 1) delete storage_;
  }

  /// Null while nothing was ever written.
  [[nodiscard]] const Storage* get() const noexcept { return storage_; }

  /// Storage that nobody else sees.
  [[nodiscard]] Storage& writable() {
    if (!storage_) {
      storage_ = new Storage();
    } else if (storage_->holders.load(std::memory_order_acquire) != 1) {
      *this = CowPtr(new Storage(*storage_));
    }
    return *storage_;
  }

 private:
  explicit CowPtr(Storage* storage) noexcept : storage_(storage) {}

  Storage* storage_ = nullptr;
};

}  // namespace zym
