#pragma once

#include <cstddef>
#include <string_view>

namespace zym {

/// The shape of every change that the user sees: an undo group that is opened before the first
/// change of the store and, at the end, named and closed, whereupon the store is saved. Left by an
/// exception it is closed without a name or a save. A run of the loop meanwhile may close it early,
/// with the turn; what is changed later is then a step of its own. Main thread.
class ZYMUndoGroup {
 public:
  ZYMUndoGroup();
  ~ZYMUndoGroup();
  ZYMUndoGroup(const ZYMUndoGroup&) = delete;
  ZYMUndoGroup& operator=(const ZYMUndoGroup&) = delete;

  /// Names the group in the user's language, closes it and saves.
  void closeAndSave(std::string_view actionName);

 private:
  void close();

  std::size_t level_;  // with this group
  bool open_ = true;
};

}  // namespace zym
