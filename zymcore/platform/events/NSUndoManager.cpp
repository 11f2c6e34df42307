#include "zymcore/platform/events/NSUndoManager.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {

struct NSUndoManager::Group {
  struct Entry {
    std::uint64_t number;
    Action action;
  };

  std::string name;
  std::vector<Entry> entries;
  /// It becomes a step even if it stays empty.
  bool isStep = true;
  /// It goes by event.
  bool isAutomatic = false;
};

struct NSUndoManager::State : std::enable_shared_from_this<State> {
  std::vector<Group> undoStack;
  std::vector<Group> redoStack;
  /// From the outermost.
  std::vector<Group> open;
  std::uint64_t lastNumber = 0;
  int depthOfTurn = 0;
  bool groupsByEvent = true;
  bool isUndoing = false;
  bool isRedoing = false;
  bool awaitsEndOfTurn = false;

  void openByEvent();
  void awaitEndOfTurn();
  void turnEnded();
  void close();
  void take(std::vector<Group>& stack, bool State::*flag);
};

namespace {

[[noreturn]] void inconsistent(const char* reason) {
  throw NSException(NSInternalInconsistencyException, reason);
}

}  // namespace

void NSUndoManager::State::openByEvent() {
  if (!groupsByEvent || isUndoing || isRedoing) return;
  if (open.empty()) {
    open.push_back({{}, {}, false, true});
    depthOfTurn = NSRunLoop::mainRunLoop().depth();
  }
  awaitEndOfTurn();
}

void NSUndoManager::State::awaitEndOfTurn() {
  if (awaitsEndOfTurn || open.empty() || !open.front().isAutomatic) return;
  awaitsEndOfTurn = true;
  NSRunLoop::mainRunLoop().performAtEndOfTurn([weak = weak_from_this()] {
    if (const auto state = weak.lock()) state->turnEnded();
  });
}

// In a loop nested in the callback that opened the groups, that callback will end its own ones.
void NSUndoManager::State::turnEnded() {
  awaitsEndOfTurn = false;
  if (open.empty() || !open.front().isAutomatic) return;
  const bool isOwnTurn = NSRunLoop::mainRunLoop().depth() < std::max(depthOfTurn, 1);
  if (!isOwnTurn && open.size() > 1) return;
  while (!open.empty()) close();
}

void NSUndoManager::State::close() {
  Group group = std::move(open.back());
  open.pop_back();
  if (!open.empty()) {
    Group& outer = open.back();
    if (!group.name.empty()) outer.name = std::move(group.name);
    outer.isStep = outer.isStep || group.isStep;
    std::move(group.entries.begin(), group.entries.end(), std::back_inserter(outer.entries));
    return;
  }
  if (!group.isStep && group.entries.empty()) return;
  (isUndoing ? redoStack : undoStack).push_back(std::move(group));
}

void NSUndoManager::State::take(std::vector<Group>& stack, bool State::*flag) {
  Group group = std::move(stack.back());
  stack.pop_back();
  this->*flag = true;
  open.push_back({group.name, {}, true, false});
  struct Ended {
    State& state;
    bool State::*flag;
    ~Ended() {
      while (!state.open.empty()) state.close();
      state.*flag = false;
    }
  } const ended{*this, flag};
  std::for_each(group.entries.rbegin(), group.entries.rend(),
                [](const Group::Entry& entry) { entry.action(); });
}

NSUndoManager::NSUndoManager() : state_(std::make_shared<State>()) {}
NSUndoManager::~NSUndoManager() = default;

void NSUndoManager::beginUndoGrouping() {
  state_->openByEvent();
  state_->open.emplace_back();
}

void NSUndoManager::endUndoGrouping() {
  if (state_->open.empty()) inconsistent("endUndoGrouping called with no matching begin");
  state_->close();
  state_->awaitEndOfTurn();
}

std::size_t NSUndoManager::groupingLevel() const noexcept {
  return state_->open.size();
}

void NSUndoManager::setGroupsByEvent(bool flag) noexcept {
  state_->groupsByEvent = flag;
}

bool NSUndoManager::groupsByEvent() const noexcept {
  return state_->groupsByEvent;
}

std::uint64_t NSUndoManager::registerUndo(Action action) {
  state_->openByEvent();
  if (state_->open.empty()) inconsistent("must begin a group before registering undo");
  if (!state_->isUndoing && !state_->isRedoing) state_->redoStack.clear();
  state_->open.back().entries.push_back({++state_->lastNumber, std::move(action)});
  return state_->lastNumber;
}

bool NSUndoManager::isLatestAction(std::uint64_t action) const noexcept {
  return !state_->open.empty() && !state_->open.back().entries.empty() &&
         state_->open.back().entries.back().number == action;
}

std::uint64_t NSUndoManager::latestAction() const noexcept {
  return state_->lastNumber;
}

void NSUndoManager::removeActionsSince(std::uint64_t action) {
  for (Group& group : state_->open) {
    std::erase_if(group.entries, [&](const Group::Entry& entry) { return entry.number > action; });
  }
}

void NSUndoManager::setActionName(std::string_view name) {
  if (!state_->open.empty()) {
    state_->open.back().name = name;
  } else if (!state_->undoStack.empty()) {
    state_->undoStack.back().name = name;
  }
}

std::string NSUndoManager::undoActionName() const {
  if (!state_->open.empty()) return state_->open.front().name;
  return state_->undoStack.empty() ? std::string() : state_->undoStack.back().name;
}

std::string NSUndoManager::redoActionName() const {
  return state_->redoStack.empty() ? std::string() : state_->redoStack.back().name;
}

bool NSUndoManager::canUndo() const noexcept {
  return !state_->undoStack.empty() ||
         std::any_of(state_->open.begin(), state_->open.end(),
                     [](const Group& group) { return group.isStep || !group.entries.empty(); });
}

bool NSUndoManager::canRedo() const noexcept {
  return !state_->redoStack.empty();
}
bool NSUndoManager::isUndoing() const noexcept {
  return state_->isUndoing;
}
bool NSUndoManager::isRedoing() const noexcept {
  return state_->isRedoing;
}

void NSUndoManager::undo() {
  if (isUndoing() || isRedoing()) inconsistent("undo was called inside an undo or redo");
  if (groupingLevel() > 1) inconsistent("undo was called with too many nested undo groups");
  if (groupingLevel() == 1) state_->close();
  if (state_->undoStack.empty()) return;
  state_->take(state_->undoStack, &State::isUndoing);
  NSNotificationCenter::defaultCenter().postNotificationName_object(
      NSUndoManagerDidUndoChangeNotification, this);
}

void NSUndoManager::redo() {
  if (isUndoing() || isRedoing()) inconsistent("redo was called inside an undo or redo");
  if (groupingLevel() > 1) inconsistent("redo was called with too many nested undo groups");
  if (groupingLevel() == 1) state_->close();
  if (state_->redoStack.empty()) return;
  state_->take(state_->redoStack, &State::isRedoing);
  NSNotificationCenter::defaultCenter().postNotificationName_object(
      NSUndoManagerDidRedoChangeNotification, this);
}

void NSUndoManager::removeAllActions() {
  state_->undoStack.clear();
  state_->redoStack.clear();
  for (Group& group : state_->open) group = {{}, {}, false, group.isAutomatic};
}

}  // namespace zym
