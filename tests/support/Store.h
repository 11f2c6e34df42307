#pragma once

#include "tests/support/Defaults.h"
#include "tests/support/Json.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"
#include "zymcore/store/entities/ZYMHopEntity.h"
#include "zymcore/store/entities/ZYMImageEntity.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"
#include "zymcore/store/entities/ZYMProfileEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"

namespace zym::testing {

/// A store in a folder of its own, with the object model of the host.
class WithStore : public WithDefaults {
 protected:
  WithStore() { open(); }
  ~WithStore() override {
    ZYMCoreDataModel::tearDown();
    NSBundle::setMainBundle(NSBundle());
  }

  /// Saves, lets go of everything and opens the store again.
  void reopen() {
    ZYMCoreDataModel::tearDown();
    open();
  }
  static ZYMCoreDataModel& model() { return ZYMCoreDataModel::sharedInstance(); }
  static NSManagedObjectContext& context() { return *model().mainObjectContext(); }
  static NSUndoManager& undoManager() { return *context().undoManager(); }

  static std::vector<std::string> texts(const PlistArray* records, KeyName key) {
    std::vector<std::string> result;
    for (const PlistDictionary& record : PlistRows(records)) {
      result.emplace_back(record.stringValue(key));
    }
    return result;
  }
  static std::vector<std::string> texts(const std::optional<PlistArray>& records, KeyName key) {
    return texts(records ? &*records : nullptr, key);
  }
  static std::vector<std::string> namesOf(const std::vector<ZYMSummary>& rows) {
    std::vector<std::string> result;
    for (const ZYMSummary& row : rows) result.push_back(row.name);
    return result;
  }
  static std::vector<std::string> uuidsOf(const std::vector<ZYMSummary>& rows) {
    std::vector<std::string> result;
    for (const ZYMSummary& row : rows) result.push_back(row.uuid.value());
    return result;
  }
  /// The texts of a record, "-" for none.
  static std::string shown(const PlistDictionary& record, std::initializer_list<KeyName> keys) {
    std::string result;
    for (const KeyName key : keys) {
      const std::string* const text = record.string(key);
      result += (result.empty() ? "" : " ") + (text ? *text : "-");
    }
    return result;
  }
  /// One of the documents among the fixtures.
  static PlistDictionary document(const std::string& name) {
    const std::string text = zym::bytesOf(std::string(ZYM_FIXTURES "/") + name);
    return operator""_json(text.data(), text.size());
  }
  /// What can be undone, once the turn has ended.
  static std::string undoName() {
    endTurn();
    return undoManager().undoActionName();
  }

  /// Ends the turn of the run loop, and with it the undo step of all that was done in it.
  static void endTurn() { NSRunLoop::mainRunLoop().runUntilDate(NSDate::date()); }

  const TemporaryFolder folder;

 private:
  void open() {
    NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.tests", "1"));
    model().setDataFolder(folder / "data");
  }
};

/// The names of the notifications posted while it lives, in order.
class Posts {
 public:
  explicit Posts(std::initializer_list<const char*> watched) {
    for (const char* name : watched) {
      tokens_.push_back(NSNotificationCenter::defaultCenter().addObserverForName_object(
          name, nullptr, [this](const NSNotification& n) { names.push_back(n.name); }));
    }
  }
  std::vector<std::string> names;

 private:
  std::vector<NSNotificationCenter::Token> tokens_;
};

}  // namespace zym::testing
