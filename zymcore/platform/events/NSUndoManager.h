#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zym {

/// Posted, with the undo manager as object, after an undo and after a redo.
inline constexpr const char* NSUndoManagerDidUndoChangeNotification =
    "NSUndoManagerDidUndoChangeNotification";
inline constexpr const char* NSUndoManagerDidRedoChangeNotification =
    "NSUndoManagerDidRedoChangeNotification";

/// What can be taken back, in groups: one undo reverses one outermost group.
///
/// By default groups go by event: the first group or action of a turn of the main run loop opens an
/// outermost group that closes when the turn ends, so that all groups of one turn are nested in it
/// and are undone together. `undo` closes it early, and so does an `endUndoGrouping` without a
/// beginning of its own. Whatever other group is still open at the end of the turn is closed too,
/// unless the turn is one of a loop nested in the callback that opened it.
///
/// A group that was opened by its name and stayed empty is an undo step like any other. Main thread
/// only.
class NSUndoManager {
 public:
  using Action = std::function<void()>;

  NSUndoManager();
  ~NSUndoManager();
  NSUndoManager(const NSUndoManager&) = delete;
  NSUndoManager& operator=(const NSUndoManager&) = delete;

  void beginUndoGrouping();
  /// Closes the innermost group. Throws `NSInternalInconsistencyException` when none is open.
  void endUndoGrouping();
  /// How many groups are open.
  [[nodiscard]] std::size_t groupingLevel() const noexcept;

  /// True at first. Without it every group is opened and closed by its name.
  void setGroupsByEvent(bool flag) noexcept;
  [[nodiscard]] bool groupsByEvent() const noexcept;

  /// Adds an action to the innermost open group: to be redone while an undo is running, else to be
  /// undone, and then nothing can be redone any more unless a redo is running. Throws
  /// `NSInternalInconsistencyException` when no group is open and none opens by event. Answers a
  /// number for `isLatestAction`.
  std::uint64_t registerUndo(Action action);
  /// Whether the action with that number is the last that happened to the innermost open group.
  [[nodiscard]] bool isLatestAction(std::uint64_t action) const noexcept;

  /// The number of the action that was registered last.
  [[nodiscard]] std::uint64_t latestAction() const noexcept;
  /// Forgets the actions that were registered after that one in groups still open, for who has
  /// taken back by other means what they would undo.
  void removeActionsSince(std::uint64_t action);

  /// Names the innermost open group, or, when none is open, the step that `undo` would reverse. A
  /// nested group passes its name on to the one around it when it closes. An empty name is no name.
  void setActionName(std::string_view name);
  /// The name of the step that `undo` or `redo` would take; empty when there is none.
  [[nodiscard]] std::string undoActionName() const;
  [[nodiscard]] std::string redoActionName() const;

  [[nodiscard]] bool canUndo() const noexcept;
  [[nodiscard]] bool canRedo() const noexcept;
  [[nodiscard]] bool isUndoing() const noexcept;
  [[nodiscard]] bool isRedoing() const noexcept;

  /// Closes the outermost group if it alone is open, runs the actions of the latest group backwards
  /// and makes what they register the group to redo, under the same name; then posts
  /// `NSUndoManagerDidUndoChangeNotification`. Nothing when there is nothing to undo. Throws
  /// `NSInternalInconsistencyException` inside nested groups and inside an undo or redo.
  void undo();
  /// The same the other way, with `NSUndoManagerDidRedoChangeNotification`.
  void redo();

  /// Forgets all steps, and what open groups hold. Those groups stay open, for their ends to match,
  /// and leave no step behind unless something is added to them later.
  void removeAllActions();

 private:
  struct Group;
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace zym
