#include "zymcore/platform/PlistKey.h"

#include <array>
#include <atomic>
#include <string>
#include <utility>

namespace zym {

struct PlistKey::Text {
  std::string text;
  std::uint32_t hash;
  bool immortal;
  std::atomic<std::uint32_t> holders{1};
};

PlistKey::Text* PlistKey::allocate(KeyName name, bool immortal) {
  return new Text{std::string(name.text()), name.hash(), immortal};
}

// A table that only grows, so that any thread may look without a lock.
PlistKey::Text* PlistKey::interned(KeyName name) {
  constexpr std::size_t slots = 4096;
  constexpr std::size_t mostKeys = 2048;
  constexpr std::size_t longestKey = 64;
  static std::array<std::atomic<Text*>, slots> table{};
  static std::atomic<std::size_t> keys{0};

  if (name.text().size() > longestKey) return nullptr;
  for (std::size_t probe = 0; probe < slots; ++probe) {
    std::atomic<Text*>& slot = table[(name.hash() + probe) % slots];
    Text* text = slot.load(std::memory_order_acquire);
    if (!text) {
      if (keys.load(std::memory_order_relaxed) >= mostKeys) return nullptr;
      Text* fresh = allocate(name, true);
      if (slot.compare_exchange_strong(text, fresh, std::memory_order_acq_rel)) {
        keys.fetch_add(1, std::memory_order_relaxed);
        return fresh;
      }
      delete fresh;
    }
    if (text->hash == name.hash() && text->text == name.text()) return text;
  }
  return nullptr;
}

PlistKey::PlistKey(KeyName name) : text_(interned(name)) {
  if (!text_) text_ = allocate(name, false);
}

PlistKey::PlistKey(const PlistKey& other) noexcept : text_(other.text_) {
  if (text_ && !text_->immortal) text_->holders.fetch_add(1, std::memory_order_relaxed);
}

PlistKey::PlistKey(PlistKey&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}

PlistKey& PlistKey::operator=(PlistKey other) noexcept {
  std::swap(text_, other.text_);
  return *this;
}

PlistKey::~PlistKey() {
  if (!text_ || text_->immortal) return;
  if (text_->holders.fetch_sub(1, std::memory_order_acq_rel) == 1) delete text_;
}

std::string_view PlistKey::text() const noexcept {
  return text_->text;
}
std::uint32_t PlistKey::hash() const noexcept {
  return text_->hash;
}

}  // namespace zym
