#include "zymcore/platform/host/NSAlert.h"

#include "zymcore/platform/values/NSLog.h"

namespace zym {
namespace {

NSAlert::Presenter& hostsPresenter() {
  static NSAlert::Presenter instance;
  return instance;
}

}  // namespace

void NSAlert::setPresenter(Presenter presenter) {
  hostsPresenter() = std::move(presenter);
}

std::size_t NSAlert::runModal() const {
  // A copy: what it calls may set another.
  if (const Presenter presenter = hostsPresenter()) return presenter(*this);
  NSLog(messageText_);
  NSLog(informativeText_);
  return 0;
}

}  // namespace zym
