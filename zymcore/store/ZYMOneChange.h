#pragma once

#include <cstddef>

namespace zym {

/// Makes several changes of the store one: as long as it lives nothing is saved, whatever asks for
/// it; `save` writes all of it in one transaction, and one undo takes all of it back, under the
/// name of the last. Left by an exception, the store stays and the context returns to what was
/// saved, so that half a change never reaches the disk. May be nested; the outermost saves. Main
/// thread.
class ZYMOneChange {
 public:
  ZYMOneChange();
  ~ZYMOneChange();
  ZYMOneChange(const ZYMOneChange&) = delete;
  ZYMOneChange& operator=(const ZYMOneChange&) = delete;

  void save();

  /// Whether there is one, so that saves wait for its end.
  [[nodiscard]] static bool isOpen() noexcept;

 private:
  void close();

  std::size_t level_;  // with this group
  bool open_ = true;
};

}  // namespace zym
