#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "bench/SampleDocument.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"

namespace zym {
namespace {

constexpr int recordCount = 10000;

constexpr KeyName uuid{"uuid"};
constexpr KeyName name{"name"};
constexpr KeyName changed{"changed"};
constexpr KeyName document{"document"};

std::string uuidOf(int number) {
  return "00000000-0000-4000-8000-" + std::to_string(100000000000 + number);
}

std::string nameOf(int number) {
  return "Record " + std::to_string((number * 7919) % recordCount) + " of some name";
}

std::shared_ptr<NSManagedObjectModel> model() {
  const PlistDictionary entity{
      {KeyName("attributes"),
       PlistDictionary{
           {uuid, "string"}, {name, "string"}, {changed, "date"}, {document, "document"}}}};
  return NSManagedObjectModel::initWithPropertyList(
      {{KeyName("entities"), PlistDictionary{{KeyName("Record"), entity}}}});
}

/// A folder that goes with the program.
const std::string& folder() {
  struct Folder {
    std::string path = (std::filesystem::temp_directory_path() / "zymbench.XXXXXX").string();
    Folder() {
      if (!::mkdtemp(path.data())) throw std::runtime_error("no temporary folder");
    }
    ~Folder() {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
  };
  static const Folder folder;
  return folder.path;
}

std::unique_ptr<NSManagedObjectContext> openContext(const std::string& path) {
  const auto coordinator = std::make_shared<NSPersistentStoreCoordinator>(model());
  NSError error;
  if (!coordinator->addPersistentStoreWithType_configuration_URL_options(
          NSSQLiteStoreType, std::nullopt, path, {}, &error)) {
    throw std::runtime_error(error.localizedDescription);
  }
  auto context = std::make_unique<NSManagedObjectContext>(NSMainQueueConcurrencyType);
  context->setPersistentStoreCoordinator(coordinator);
  return context;
}

void require(bool condition) {
  if (!condition) throw std::runtime_error("the benchmark's work failed");
}

void insertRecords(NSManagedObjectContext& context, int first, int count, const NSData* bytes) {
  for (int i = first; i < first + count; ++i) {
    NSManagedObject* const record = context.insertNewObjectForEntityForName("Record");
    record->setValue_forKey(PlistValue(uuidOf(i)), uuid);
    record->setValue_forKey(PlistValue(nameOf(i)), name);
    record->setValue_forKey(NSDate::dateWithTimeIntervalSinceReferenceDate(i), changed);
    if (bytes) record->setDocument_forKey(*bytes, document);
  }
}

const NSData& sampleBytes() {
  static const NSData bytes(BinaryPropertyList::write(sampleDocument(1)).value());
  return bytes;
}

/// The path of a store of all records with their documents.
const std::string& fullStore() {
  static const std::string path = [] {
    const std::string made = folder() + "/full.sqlite";
    const auto context = openContext(made);
    context->setUndoManager(nullptr);
    insertRecords(*context, 0, recordCount, &sampleBytes());
    require(context->save());
    return made;
  }();
  return path;
}

/// SQLite and nothing else, with the settings of a store.
class Bare {
 public:
  explicit Bare(const std::string& path) {
    require(sqlite3_open_v2(path.c_str(), &database_,
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                            nullptr) == SQLITE_OK);
    execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL");
  }
  ~Bare() { sqlite3_close_v2(database_); }
  Bare(const Bare&) = delete;
  Bare& operator=(const Bare&) = delete;

  void execute(const char* sql) {
    require(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) == SQLITE_OK);
  }
  [[nodiscard]] std::shared_ptr<sqlite3_stmt> prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) == SQLITE_OK);
    return {statement, sqlite3_finalize};
  }

 private:
  sqlite3* database_ = nullptr;
};

void bindText(sqlite3_stmt* statement, int parameter, const std::string& text) {
  sqlite3_bind_text(statement, parameter, text.data(), static_cast<int>(text.size()),
                    SQLITE_STATIC);
}

void bindBlob(sqlite3_stmt* statement, int parameter, const NSData& data) {
  sqlite3_bind_blob(statement, parameter, data.bytes().data(), static_cast<int>(data.length()),
                    SQLITE_STATIC);
}

std::string textIn(sqlite3_stmt* statement, int column) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

struct Row {
  std::string uuid;
  std::string name;
  double changed = 0;
};

std::vector<Row> bareNames(Bare& bare, const char* sql) {
  const auto select = bare.prepare(sql);
  std::vector<Row> rows;
  while (sqlite3_step(select.get()) == SQLITE_ROW) {
    rows.push_back({textIn(select.get(), 0), textIn(select.get(), 1)});
  }
  require(rows.size() == recordCount);
  return rows;
}

NSFetchRequest allRecords(bool isSorted) {
  NSFetchRequest request = NSFetchRequest::fetchRequestWithEntityName("Record");
  if (isSorted) request.setSortDescriptors({{name, true}});
  return request;
}

// The limit stays the plain walk over the table, also where the work sorts what it found.
constexpr const char* selectNames = "SELECT uuid, name FROM Record";

void openAndListNames(benchmark::State& state) {
  const std::string& path = fullStore();
  const bool isSorted = state.range(0) != 0;
  measureRatio(
      state, 3,
      [&] {
        const auto context = openContext(path);
        const auto rows = context->propertiesForFetchRequest(allRecords(isSorted), {uuid, name});
        require(rows && rows->size() == recordCount);
      },
      [&] {
        Bare bare(path);
        benchmark::DoNotOptimize(bareNames(bare, selectNames));
      });
}
BENCHMARK(openAndListNames)
    ->ArgName("sorted")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void listNames(benchmark::State& state) {
  const auto context = openContext(fullStore());
  Bare bare(fullStore());
  const bool isSorted = state.range(0) != 0;
  measureRatio(
      state, 3,
      [&] {
        const auto rows = context->propertiesForFetchRequest(allRecords(isSorted), {uuid, name});
        require(rows && rows->size() == recordCount);
      },
      [&] { benchmark::DoNotOptimize(bareNames(bare, selectNames)); });
}
BENCHMARK(listNames)->ArgName("sorted")->Arg(0)->Arg(1)->UseManualTime()->Unit(
    benchmark::kMillisecond);

void recordByUUID(benchmark::State& state) {
  const bool isWarm = state.range(0) != 0;
  std::unique_ptr<NSManagedObjectContext> context = openContext(fullStore());
  Bare bare(fullStore());
  const auto select = bare.prepare("SELECT uuid, name, changed FROM Record WHERE uuid = ?");
  int next = 0;
  std::string wanted;
  measureRatio(
      state, 3,
      [&] {
        if (isWarm) {
          next = (next + 1) % 100;
        } else if (++next == recordCount) {
          context = openContext(fullStore());
          next = 0;
        }
        wanted = uuidOf(next);
      },
      [&] {
        NSFetchRequest request = NSFetchRequest::fetchRequestWithEntityName("Record");
        request.setPredicate(NSPredicate::equal(uuid, wanted));
        const auto found = context->executeFetchRequest(request);
        require(found && found->size() == 1 && found->front()->stringForKey(name));
      },
      [&] {
        bindText(select.get(), 1, wanted);
        require(sqlite3_step(select.get()) == SQLITE_ROW);
        benchmark::DoNotOptimize(Row{textIn(select.get(), 0), textIn(select.get(), 1),
                                     sqlite3_column_double(select.get(), 2)});
        require(sqlite3_step(select.get()) == SQLITE_DONE);
        sqlite3_reset(select.get());
      });
}
BENCHMARK(recordByUUID)
    ->ArgName("warm")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

void readDocument(benchmark::State& state) {
  const auto context = openContext(fullStore());
  const auto records = context->executeFetchRequest(allRecords(false)).value();
  Bare bare(fullStore());
  const auto select = bare.prepare("SELECT value FROM \"Record.document\" WHERE _key = ?");
  std::size_t next = 0;
  measureRatio(
      state, 2.5, [&] { next = (next + 7919) % records.size(); },
      [&] { require(records[next]->documentForKey(document)->length() != 0); },
      [&] {
        sqlite3_bind_int64(select.get(), 1, static_cast<sqlite3_int64>(next) + 1);
        require(sqlite3_step(select.get()) == SQLITE_ROW);
        const auto* const bytes =
            static_cast<const std::uint8_t*>(sqlite3_column_blob(select.get(), 0));
        benchmark::DoNotOptimize(
            std::vector<std::uint8_t>(bytes, bytes + sqlite3_column_bytes(select.get(), 0)));
        sqlite3_reset(select.get());
      });
}
BENCHMARK(readDocument)->UseManualTime()->Unit(benchmark::kMicrosecond);

void saveOneEdit(benchmark::State& state) {
  const std::string ours = folder() + "/ours.sqlite";
  const std::string theirs = folder() + "/theirs.sqlite";
  for (const std::string& path : {ours, theirs}) {
    std::filesystem::copy_file(fullStore(), path,
                               std::filesystem::copy_options::overwrite_existing);
  }
  const auto context = openContext(ours);
  const auto records = context->executeFetchRequest(allRecords(false)).value();
  Bare bare(theirs);
  const auto updateRecord = bare.prepare(
      "UPDATE Record SET name = ?, changed = ?, _version = _version + 1 WHERE _key = ?");
  const auto updateDocument =
      bare.prepare("UPDATE \"Record.document\" SET value = ? WHERE _key = ?");
  std::size_t next = 0;
  int edits = 0;
  const auto run = [](sqlite3_stmt* statement) {
    require(sqlite3_step(statement) == SQLITE_DONE);
    sqlite3_reset(statement);
  };
  measureRatio(
      state, 1.3,
      [&] {
        next = (next + 7919) % records.size();
        ++edits;
      },
      [&] {
        NSManagedObject& record = *records[next];
        context->undoManager()->beginUndoGrouping();
        record.setValue_forKey(PlistValue("Edit " + std::to_string(edits)), name);
        record.setValue_forKey(NSDate::dateWithTimeIntervalSinceReferenceDate(edits), changed);
        record.setDocument_forKey(sampleBytes(), document);
        context->undoManager()->setActionName("Edit");
        context->undoManager()->endUndoGrouping();
        require(context->save());
      },
      [&] {
        const std::string text = "Edit " + std::to_string(edits);
        bare.execute("BEGIN IMMEDIATE");
        bindText(updateRecord.get(), 1, text);
        sqlite3_bind_double(updateRecord.get(), 2, edits);
        sqlite3_bind_int64(updateRecord.get(), 3, static_cast<sqlite3_int64>(next) + 1);
        run(updateRecord.get());
        bindBlob(updateDocument.get(), 1, sampleBytes());
        sqlite3_bind_int64(updateDocument.get(), 2, static_cast<sqlite3_int64>(next) + 1);
        run(updateDocument.get());
        bare.execute("COMMIT");
      });
}
BENCHMARK(saveOneEdit)->UseManualTime()->Unit(benchmark::kMicrosecond)->MinTime(2);

void insertAtOnce(benchmark::State& state) {
  const bool hasDocuments = state.range(0) != 0;
  const std::string ours = folder() + "/fresh.sqlite";
  const std::string theirs = folder() + "/bare.sqlite";
  std::unique_ptr<NSManagedObjectContext> context;
  std::unique_ptr<Bare> bare;
  const NSData* const bytes = hasDocuments ? &sampleBytes() : nullptr;
  measureRatio(
      state, 2.5,
      [&] {
        context.reset();
        bare.reset();
        for (const std::string& path : {ours, theirs}) {
          for (const char* const suffix : {"", "-wal", "-shm"}) {
            std::filesystem::remove(path + suffix);
          }
        }
        context = openContext(ours);
        bare = std::make_unique<Bare>(theirs);
        bare->execute(
            "CREATE TABLE Record(_key INTEGER PRIMARY KEY, _version INTEGER NOT NULL, uuid TEXT, "
            "name TEXT, changed REAL);"
            "CREATE INDEX Record_uuid ON Record(uuid);"
            "CREATE TABLE Record_document(_key INTEGER PRIMARY KEY, value BLOB NOT NULL)");
      },
      [&] {
        insertRecords(*context, 0, recordCount, bytes);
        require(context->save());
      },
      [&] {
        bare->execute("BEGIN IMMEDIATE");
        const auto insert = bare->prepare("INSERT INTO Record VALUES(?, 1, ?, ?, ?)");
        const auto insertDocument = bare->prepare("INSERT INTO Record_document VALUES(?, ?)");
        for (int i = 0; i < recordCount; ++i) {
          const Row row{uuidOf(i), nameOf(i), static_cast<double>(i)};
          sqlite3_bind_int64(insert.get(), 1, i + 1);
          bindText(insert.get(), 2, row.uuid);
          bindText(insert.get(), 3, row.name);
          sqlite3_bind_double(insert.get(), 4, row.changed);
          require(sqlite3_step(insert.get()) == SQLITE_DONE);
          sqlite3_reset(insert.get());
          if (!bytes) continue;
          sqlite3_bind_int64(insertDocument.get(), 1, i + 1);
          bindBlob(insertDocument.get(), 2, *bytes);
          require(sqlite3_step(insertDocument.get()) == SQLITE_DONE);
          sqlite3_reset(insertDocument.get());
        }
        bare->execute("COMMIT");
      });
}
BENCHMARK(insertAtOnce)
    ->ArgName("documents")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zym
