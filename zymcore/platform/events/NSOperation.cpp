#include "zymcore/platform/events/NSOperation.h"

#include "zymcore/platform/values/NSException.h"

namespace zym {

void NSOperation::start() {
  State expected = State::Ready;
  if (!state_.compare_exchange_strong(expected, State::Executing)) {
    throw NSException(NSInvalidArgumentException, "an operation runs once");
  }
  struct Finish {
    std::atomic<State>& state;
    ~Finish() { state = State::Finished; }
  } const finish{state_};
  if (!isCancelled()) main();
}

}  // namespace zym
