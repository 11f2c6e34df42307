#include "zymcore/platform/values/PlistKey.h"

#include <array>

namespace zym {

// A table that only grows, so that any thread may look without a lock. Where too many hashes fall
// together, by chance or by somebody's will, the text isn't shared.
PlistKey::Text* PlistKey::interned(KeyName name) {
  constexpr std::size_t slots = 4096;
  constexpr std::size_t mostKeys = 2048;
  constexpr std::size_t mostProbes = 16;
  constexpr std::size_t longestKey = 64;
  static std::array<std::atomic<Text*>, slots> table{};
  static std::atomic<std::size_t> keys{0};

  if (name.text().size() > longestKey) return nullptr;
  for (std::size_t probe = 0; probe < mostProbes; ++probe) {
    std::atomic<Text*>& slot = table[(name.hash() + probe) % slots];
    Text* text = slot.load(std::memory_order_acquire);
    if (!text) {
      if (keys.load(std::memory_order_relaxed) >= mostKeys) return nullptr;
      Text* fresh = new Text{std::string(name.text()), name.hash(), true};
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

void PlistKey::release() noexcept {
  if (text_->holders.fetch_sub(1, std::memory_order_acq_rel) == 1) delete text_;
}

}  // namespace zym
