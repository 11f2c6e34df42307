#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "zymcore/platform/events/NSNotification.h"

namespace zym {

/// Hands news to those who asked for it. Posting and observing are allowed on any thread; an
/// observer runs on the thread that posts.
class NSNotificationCenter {
 public:
  using Observer = std::function<void(const NSNotification&)>;
  struct Registration;

  /// Keeps an observer registered for as long as it lives. An observer that is gone is not called
  /// any more, not even for a post that is under way on the same thread.
  class Token {
   public:
    Token() noexcept = default;
    explicit Token(std::shared_ptr<Registration> registration) noexcept;
    Token(Token&&) noexcept = default;
    Token& operator=(Token&& other) noexcept;
    ~Token();

    /// Ends the registration. Without one, nothing.
    void remove() noexcept;

   private:
    std::shared_ptr<Registration> registration_;
  };

  NSNotificationCenter();
  ~NSNotificationCenter();
  NSNotificationCenter(const NSNotificationCenter&) = delete;
  NSNotificationCenter& operator=(const NSNotificationCenter&) = delete;

  /// The one centre of the process.
  [[nodiscard]] static NSNotificationCenter& defaultCenter();

  /// Calls the observer with each notification of that name, from that object or, for null, from
  /// any. The centre must outlive the token.
  [[nodiscard]] Token addObserverForName_object(std::string name, const void* object,
                                                Observer observer);

  /// Calls, one after the other in the order of their registration, the observers that are
  /// registered at this moment; one that is added meanwhile waits for the next post. What an
  /// observer throws goes on to the caller, and the observers after it aren't called.
  void postNotification(const NSNotification& notification);
  void postNotificationName_object(std::string_view name, const void* object);
  void postNotificationName_object_userInfo(std::string_view name, const void* object,
                                            PlistDictionary userInfo);

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace zym
