#include "zymcore/platform/events/NSNotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace zym {

struct NSNotificationCenter::Registration {
  std::weak_ptr<State> state;
  std::string name;
  const void* object;
  Observer observer;
  std::atomic<bool> active{true};
};

struct NSNotificationCenter::State {
  using Registrations = std::vector<std::shared_ptr<Registration>>;

  std::mutex mutex;
  std::map<std::string, Registrations, std::less<>> registrations;

  [[nodiscard]] Registrations observersOf(const NSNotification& notification) {
    const std::lock_guard lock(mutex);
    Registrations observers;
    const auto found = registrations.find(notification.name);
    if (found == registrations.end()) return observers;
    for (const auto& registration : found->second) {
      if (!registration->object || registration->object == notification.object) {
        observers.push_back(registration);
      }
    }
    return observers;
  }

  void remove(const std::shared_ptr<Registration>& registration) {
    const std::lock_guard lock(mutex);
    const auto found = registrations.find(registration->name);
    if (found == registrations.end()) return;
    std::erase(found->second, registration);
    if (found->second.empty()) registrations.erase(found);
  }
};

NSNotificationCenter::Token::Token(std::shared_ptr<Registration> registration) noexcept
    : registration_(std::move(registration)) {}

NSNotificationCenter::Token& NSNotificationCenter::Token::operator=(Token&& other) noexcept {
  if (this != &other) {
    remove();
    registration_ = std::move(other.registration_);
  }
  return *this;
}

NSNotificationCenter::Token::~Token() {
  remove();
}

// The registration goes last and outside the lock: what its observer holds may have tokens too.
void NSNotificationCenter::Token::remove() noexcept {
  const std::shared_ptr<Registration> registration = std::move(registration_);
  if (!registration) return;
  registration->active = false;
  if (const std::shared_ptr<State> state = registration->state.lock()) state->remove(registration);
}

NSNotificationCenter::NSNotificationCenter() : state_(std::make_shared<State>()) {}
NSNotificationCenter::~NSNotificationCenter() = default;

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  static NSNotificationCenter center;
  return center;
}

NSNotificationCenter::Token NSNotificationCenter::addObserverForName_object(std::string name,
                                                                            const void* object,
                                                                            Observer observer) {
  auto registration = std::make_shared<Registration>();
  registration->state = state_;
  registration->name = std::move(name);
  registration->object = object;
  registration->observer = std::move(observer);
  const std::lock_guard lock(state_->mutex);
  state_->registrations[registration->name].push_back(registration);
  return Token(std::move(registration));
}

void NSNotificationCenter::postNotification(const NSNotification& notification) {
  for (const auto& registration : state_->observersOf(notification)) {
    if (registration->active) registration->observer(notification);
  }
}

void NSNotificationCenter::postNotificationName_object(std::string_view name, const void* object) {
  postNotificationName_object_userInfo(name, object, {});
}

void NSNotificationCenter::postNotificationName_object_userInfo(std::string_view name,
                                                                const void* object,
                                                                PlistDictionary userInfo) {
  postNotification({std::string(name), object, std::move(userInfo)});
}

}  // namespace zym
