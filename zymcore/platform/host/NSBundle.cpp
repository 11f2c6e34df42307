#include "zymcore/platform/host/NSBundle.h"

#include <map>
#include <mutex>
#include <utility>

#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

bool leadsOut(std::string_view path) noexcept {
  if (path.starts_with('/') || path.find('\0') != std::string_view::npos) return true;
  while (!path.empty()) {
    const std::size_t end = path.find('/');
    if (path.substr(0, end) == "..") return true;
    if (end == std::string_view::npos) break;
    path.remove_prefix(end + 1);
  }
  return false;
}

PlistDictionary stringTable(const std::string& path) {
  constexpr std::size_t mostBytes = 32U << 20U;
  NSError error;
  const std::optional<std::string> bytes = NSFileManager::contentsAtPath(path, mostBytes, &error);
  if (bytes) {
    const std::optional<PlistValue> table =
        NSPropertyListSerialization::propertyListWithData(*bytes, &error);
    if (table && table->dictionary()) return *table->dictionary();
  }
  NSLog("String table " + path + " can't be used. " + error.localizedDescription);
  return {};
}

}  // namespace

struct NSBundle::Content {
  std::string resourcePath;
  std::string identifier;
  std::string version;

  std::mutex mutex;
  std::map<std::pair<std::string, std::string>, PlistDictionary> tables;  // by locale, table
};

namespace {

struct MainBundle {
  std::mutex mutex;
  NSBundle bundle;

  void set(NSBundle other) {
    const std::lock_guard lock(mutex);
    std::swap(bundle, other);
  }
};

MainBundle& holder() {
  static MainBundle main;
  return main;
}

}  // namespace

NSBundle::NSBundle(std::string resourcePath, std::string identifier, std::string version)
    : content_(std::make_shared<Content>()) {
  content_->resourcePath = std::move(resourcePath);
  content_->identifier = std::move(identifier);
  content_->version = std::move(version);
}

NSBundle NSBundle::mainBundle() {
  const std::lock_guard lock(holder().mutex);
  return holder().bundle;
}

void NSBundle::setMainBundle(NSBundle bundle) {
  static TearDownPlace place([] { holder().set({}); });
  place.take();
  holder().set(std::move(bundle));
}

const std::string& NSBundle::resourcePath() const noexcept {
  return content_->resourcePath;
}
const std::string& NSBundle::bundleIdentifier() const noexcept {
  return content_->identifier;
}
const std::string& NSBundle::version() const noexcept {
  return content_->version;
}

std::optional<std::string> NSBundle::pathForResource_ofType(std::string_view name,
                                                            std::string_view type) const {
  return pathForResource_ofType_inDirectory(name, type, "");
}

std::optional<std::string> NSBundle::pathForResource_ofType_inDirectory(
    std::string_view name, std::string_view type, std::string_view directory) const {
  if (content_->resourcePath.empty() || name.empty()) return std::nullopt;
  std::string inside(directory);
  if (!inside.empty()) inside += '/';
  inside += name;
  if (!type.empty()) inside.append(".").append(type);
  if (leadsOut(inside)) return std::nullopt;
  std::string path = content_->resourcePath + '/' + inside;
  if (!NSFileManager::fileExistsAtPath(path)) return std::nullopt;
  return path;
}

// The more special a language, the more it has to say.
PlistDictionary NSBundle::translations(const NSLocale& locale, const std::string& table) const {
  const std::vector<std::string> languages = locale.languageIdentifiers();
  PlistDictionary result;
  for (auto language = languages.rbegin(); language != languages.rend(); ++language) {
    const auto path = pathForResource_ofType_inDirectory(table, "strings", *language + ".lproj");
    if (!path) continue;
    for (const PlistEntry& entry : stringTable(*path)) {
      if (entry.value.string()) result.set(entry.key, entry.value);
    }
  }
  return result;
}

std::string NSBundle::localizedStringForKey_value_table(std::string_view key,
                                                        std::string_view value,
                                                        std::string_view table) const {
  const NSLocale locale = NSLocale::currentLocale();
  const std::lock_guard lock(content_->mutex);
  auto [entry, isNew] = content_->tables.try_emplace(
      {locale.localeIdentifier(), std::string(table.empty() ? "Localizable" : table)});
  if (isNew) entry->second = translations(locale, entry->first.second);
  if (const std::string* text = entry->second.string(KeyName(key))) return *text;
  return std::string(value.empty() ? key : value);
}

}  // namespace zym
