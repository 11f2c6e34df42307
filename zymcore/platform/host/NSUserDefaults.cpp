#include "zymcore/platform/host/NSUserDefaults.h"

#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/host/FileLock.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/host/NSSearchPath.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

constexpr std::size_t mostBytes = 16U << 20U;
constexpr double secondsToWait = 5;  // for another process that writes

// What a thread saw last, so that a read costs no lock and shares nothing while nothing changes.
struct Snapshot {
  std::uint64_t version = 0;
  PlistDictionary values;
};

// Never the same twice, not even of two objects, so that no snapshot passes for another's.
std::uint64_t nextVersion() noexcept {
  static std::atomic<std::uint64_t> version{0};
  return ++version;
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

bool logged(const std::string& failure) {
  NSLog(failure);
  return false;
}

// Answers false when the file can be neither used nor moved out of the way.
bool moveAside(const std::string& file, const std::string& reason) {
  std::string aside = file + ".damaged";
  for (int i = 2; NSFileManager::fileExistsAtPath(aside); ++i) {
    aside = file + ".damaged-" + std::to_string(i);
  }
  const bool moved = NSFileManager::moveItemAtPath_toPath(file, aside);
  NSLog("Preferences " + file + (moved ? " are moved aside. " : " can't be used. ") + reason);
  return moved;
}

enum class Reading { Done, Damaged, Refused };

// Leaves the values as they are unless it is done.
Reading readFile(const std::string& file, PlistDictionary& values, std::string& reason) {
  NSError error;
  const std::optional<std::string> bytes = NSFileManager::contentsAtPath(file, mostBytes, &error);
  const bool isAbsent = !bytes && error.code == NSFileNoSuchFileError;
  const auto read = bytes ? NSPropertyListSerialization::propertyListWithData(*bytes, &error)
                          : std::optional<PlistValue>(PlistDictionary());
  reason = error.localizedDescription;
  if (!bytes && !isAbsent) return Reading::Refused;
  if (!read || !read->dictionary()) return Reading::Damaged;
  values = *read->dictionary();
  return Reading::Done;
}

bool writeFile(const std::string& file, const PlistDictionary& values) {
  NSError error;
  const auto bytes = NSPropertyListSerialization::dataWithPropertyList_format(
      values, NSPropertyListFormat::XMLFormat_v1_0, &error);
  if (bytes && NSFileManager::writeData_toPath(*bytes, file, &error)) return true;
  return logged("Preferences can't be written. " + error.localizedDescription);
}

void laidOver(PlistDictionary& values, const PlistDictionary& upper) {
  for (const PlistEntry& entry : upper) values.set(entry.key, entry.value);
}

bool meansYes(const std::string& text) noexcept {
  std::string_view rest = withoutLeadingWhiteSpace(text);
  if (rest.starts_with('+') || rest.starts_with('-')) rest.remove_prefix(1);
  while (rest.starts_with('0')) rest.remove_prefix(1);
  constexpr std::string_view yes = "123456789YyTt";
  return !rest.empty() && yes.find(rest.front()) != std::string_view::npos;
}

}  // namespace

NSUserDefaults& NSUserDefaults::standardUserDefaults() {
  static NSUserDefaults defaults;
  static TearDownPlace place([] { defaults.reset(); });
  place.take();
  return defaults;
}

const PlistDictionary& NSUserDefaults::current() const {
  thread_local Snapshot snapshot;
  if (snapshot.version == 0 || snapshot.version != version_.load(std::memory_order_acquire)) {
    const std::lock_guard lock(mutex_);
    if (version_.load(std::memory_order_relaxed) == 0) exchangeWithDisk();
    snapshot = {version_.load(std::memory_order_relaxed), merged_};
  }
  return snapshot.values;
}

void NSUserDefaults::setPersistentFile(std::string path) {
  const std::lock_guard lock(mutex_);
  chosenFile_ = std::move(path);
  persistent_.clear();
  unwritten_.clear();
  version_.store(0, std::memory_order_release);
}

void NSUserDefaults::reset() {
  const std::lock_guard lock(mutex_);
  chosenFile_.reset();
  persistent_.clear();
  unwritten_.clear();
  registered_.clear();
  arguments_.clear();
  version_.store(0, std::memory_order_release);
}

std::optional<PlistValue> NSUserDefaults::objectForKey(KeyName key) const {
  const PlistValue* value = current().find(key);
  if (!value) return std::nullopt;
  return *value;
}

std::optional<std::string> NSUserDefaults::stringForKey(KeyName key) const {
  const PlistValue* value = current().find(key);
  if (!value) return std::nullopt;
  if (value->string()) return *value->string();
  if (value->real()) return shortestNumberText(*value->real());
  if (value->isNumber()) return std::to_string(value->integerValue());
  return std::nullopt;
}

std::int64_t NSUserDefaults::integerForKey(KeyName key) const {
  return current().integerValue(key);
}

float NSUserDefaults::floatForKey(KeyName key) const {
  return current().floatValue(key);
}

double NSUserDefaults::doubleForKey(KeyName key) const {
  return current().doubleValue(key);
}

bool NSUserDefaults::boolForKey(KeyName key) const {
  const PlistValue* value = current().find(key);
  if (!value) return false;
  return value->string() ? meansYes(*value->string()) : value->doubleValue() != 0;
}

void NSUserDefaults::setObject_forKey(PlistValue value, KeyName key) {
  change(key, std::move(value));
}

void NSUserDefaults::removeObjectForKey(KeyName key) {
  change(key, std::nullopt);
}

void NSUserDefaults::registerDefaults(const PlistDictionary& values) {
  const std::lock_guard lock(mutex_);
  laidOver(registered_, values);
  if (version_.load(std::memory_order_relaxed) != 0) publish();
}

void NSUserDefaults::setArguments(PlistDictionary values) {
  const std::lock_guard lock(mutex_);
  arguments_ = std::move(values);
  if (version_.load(std::memory_order_relaxed) != 0) publish();
}

bool NSUserDefaults::synchronize() {
  const std::lock_guard lock(mutex_);
  return exchangeWithDisk();
}

void NSUserDefaults::change(KeyName key, std::optional<PlistValue> value) {
  const std::lock_guard lock(mutex_);
  unwritten_[std::string(key.text())] = std::move(value);
  exchangeWithDisk();
}

bool NSUserDefaults::exchangeWithDisk() const {
  const std::string file = fileInUse();
  const bool isDone = file.empty() || mergeWithFile(file);
  layChangesOver();
  if (isDone) unwritten_.clear();
  publish();
  return isDone;
}

bool NSUserDefaults::mergeWithFile(const std::string& file) const {
  std::string reason;
  const Reading reading = readFile(file, persistent_, reason);
  if (reading == Reading::Done && unwritten_.empty()) return true;
  if (reading != Reading::Refused) return mergeUnderLock(file);
  return logged("Preferences " + file + " can't be read. " + reason);
}

// What is to be written or moved is read under the lock, so that no other's change is lost.
bool NSUserDefaults::mergeUnderLock(const std::string& file) const {
  NSError error;
  if (!NSFileManager::createDirectoryAtPath(folderOf(file), &error)) {
    return logged("Preferences can't be written. " + error.localizedDescription);
  }
  const FileLock lock = FileLock::ofFile(file + ".lock", secondsToWait);
  if (lock.state() == FileLock::State::NotOpened) {
    return logged("Preferences can't be written. " + file + ".lock can't be opened");
  }
  if (lock.state() == FileLock::State::InUse) {
    return logged("Preferences can't be written. Another process holds " + file + ".lock");
  }
  std::string reason;
  const Reading reading = readFile(file, persistent_, reason);
  if (reading == Reading::Refused) {
    return logged("Preferences " + file + " can't be read. " + reason);
  }
  if (reading == Reading::Damaged) {
    if (!moveAside(file, reason)) return false;
    persistent_.clear();
  }
  layChangesOver();
  return unwritten_.empty() || writeFile(file, persistent_);
}

void NSUserDefaults::layChangesOver() const {
  for (const auto& [key, value] : unwritten_) {
    persistent_.setOrRemove(KeyName(key), value ? &*value : nullptr);
  }
}

void NSUserDefaults::publish() const {
  merged_ = registered_;
  laidOver(merged_, persistent_);
  laidOver(merged_, arguments_);
  version_.store(nextVersion(), std::memory_order_release);
}

std::string NSUserDefaults::persistentFile() const {
  const std::lock_guard lock(mutex_);
  return fileInUse();
}

std::string NSUserDefaults::fileInUse() const {
  if (chosenFile_) return *chosenFile_;
  const std::string identifier = NSBundle::mainBundle().bundleIdentifier();
  if (identifier.empty()) return "";
  return NSSearchPathForDirectory(NSSearchPathDirectory::ConfigurationDirectory) + '/' +
         identifier + "/Preferences.plist";
}

}  // namespace zym
