#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// The settings of the user, looked up in three layers: arguments of this run, over what was set
/// and is kept on disk, over initial values registered by the host. Any thread.
///
/// What is kept is a property list, read when first needed and written as a whole on every change.
/// Changes that another process wrote in the meantime stay, key by key; a lock beside the file
/// keeps two from writing at once. What is read and is no property list counts as empty and is
/// moved aside. A file that can't be read at all is left alone, and nothing is written until it
/// can.
class NSUserDefaults {
 public:
  /// Kept in "<identifier of the main bundle>/Preferences.plist" in the user's configuration folder
  /// unless the host chooses a place; in memory only while there is neither.
  [[nodiscard]] static NSUserDefaults& standardUserDefaults();

  NSUserDefaults() = default;
  NSUserDefaults(const NSUserDefaults&) = delete;
  NSUserDefaults& operator=(const NSUserDefaults&) = delete;

  /// The file that keeps what is set, read anew; its folder is made when first written. An empty
  /// path keeps everything in memory.
  void setPersistentFile(std::string path);
  /// Where the persistent domain is kept now.
  [[nodiscard]] std::string persistentFile() const;
  /// Forgets all three layers and the file's place. What is on disk stays.
  void reset();

  // Reads: what the topmost layer that has the key says.

  [[nodiscard]] std::optional<PlistValue> objectForKey(KeyName key) const;
  /// The text of a string, or of a number as the platform describes one; absent for other kinds.
  [[nodiscard]] std::optional<std::string> stringForKey(KeyName key) const;
  /// A text reads as its leading number; 0 when absent.
  [[nodiscard]] std::int64_t integerForKey(KeyName key) const;
  [[nodiscard]] float floatForKey(KeyName key) const;
  [[nodiscard]] double doubleForKey(KeyName key) const;
  /// True for a number other than 0 and for a text that begins with a number other than 0 or, in
  /// either case, with a "Y" or a "T".
  [[nodiscard]] bool boolForKey(KeyName key) const;

  // Writes.

  /// Sets the key in the layer that is kept.
  void setObject_forKey(PlistValue value, KeyName key);
  /// Removes the key from the layer that is kept; the other layers may still have it.
  void removeObjectForKey(KeyName key);
  /// Adds initial values to those registered before; of equal keys the last wins.
  void registerDefaults(const PlistDictionary& values);
  /// Replaces the layer of arguments.
  void setArguments(PlistDictionary values);

  /// Writes what could not be written before and reads what other processes wrote. False when the
  /// file can't be read or written; nothing is lost by that, and the next change or call tries
  /// again.
  bool synchronize();

 private:
  /// All layers in one, as this thread may look at them until its next call.
  [[nodiscard]] const PlistDictionary& current() const;
  void change(KeyName key, std::optional<PlistValue> value);
  // These want the lock.
  bool exchangeWithDisk() const;
  bool mergeWithFile(const std::string& file) const;
  bool mergeUnderLock(const std::string& file) const;
  void layChangesOver() const;
  void publish() const;
  [[nodiscard]] std::string fileInUse() const;

  mutable std::mutex mutex_;
  mutable std::atomic<std::uint64_t> version_{0};  // of `merged_`; 0 before the first read
  mutable PlistDictionary merged_;
  mutable PlistDictionary persistent_;
  mutable std::map<std::string, std::optional<PlistValue>> unwritten_;  // absent: to be removed
  PlistDictionary registered_;
  PlistDictionary arguments_;
  std::optional<std::string> chosenFile_;
};

}  // namespace zym
