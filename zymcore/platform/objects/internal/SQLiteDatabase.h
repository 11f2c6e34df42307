#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistValue.h"

struct sqlite3;
struct sqlite3_stmt;

namespace zym {

/// Thrown inside the store where it can't go on, and answered as its error where the store ends.
struct StoreFailure {
  NSError error;
};

/// A prepared statement while it is used: it is ready for its next use when this ends. Columns are
/// counted from 0, parameters from 1. Everything throws `StoreFailure` when SQLite fails.
class SQLiteStatement {
 public:
  /// Shares the statement with the cache that it may be dropped from meanwhile.
  SQLiteStatement(sqlite3* database, std::shared_ptr<sqlite3_stmt> statement) noexcept
      : database_(database), statement_(std::move(statement)) {}
  ~SQLiteStatement();
  SQLiteStatement(SQLiteStatement&&) noexcept = default;
  SQLiteStatement& operator=(SQLiteStatement&&) = delete;

  // What is bound must stay as it is until the statement has been stepped.
  void bind(int parameter, std::int64_t value);
  void bind(int parameter, std::string_view text);
  void bind(int parameter, const NSData& data);
  void bind(int parameter, const PlistValue* value);
  /// Binds the next parameter after the last that was bound.
  template <class Value>
  void add(const Value& value) {
    bind(++bound_, value);
  }

  /// Binds the next parameter to what the other statement found in that column.
  void addColumn(const SQLiteStatement& other, int column);

  /// Goes to the next row; false after the last.
  [[nodiscard]] bool step();
  /// Runs a statement that has no rows, and makes it ready for new parameters.
  void run();

  [[nodiscard]] bool isNull(int column) const noexcept;
  [[nodiscard]] std::int64_t integer(int column) const noexcept;
  [[nodiscard]] double real(int column) const noexcept;
  [[nodiscard]] std::string_view text(int column) const noexcept;
  [[nodiscard]] NSData data(int column) const;

 private:
  void check(int code) const;

  sqlite3* database_;
  std::shared_ptr<sqlite3_stmt> statement_;
  int bound_ = 0;
};

/// One connection to a SQLite file. It belongs to whoever holds its `mutex`.
class SQLiteDatabase {
 public:
  enum class Access { ReadOnly, ReadWrite, Create };

  /// Opens the file, or a database in memory for an empty path. Throws `StoreFailure`.
  SQLiteDatabase(const std::filesystem::path& path, Access access, double secondsToWait);
  ~SQLiteDatabase();
  SQLiteDatabase(const SQLiteDatabase&) = delete;
  SQLiteDatabase& operator=(const SQLiteDatabase&) = delete;

  /// The statement, prepared at its first use.
  [[nodiscard]] SQLiteStatement statement(std::string_view sql);
  /// Runs statements without parameters, once.
  void execute(const std::string& sql);
  /// The first column of the first row; 0 without one.
  [[nodiscard]] std::int64_t integer(const std::string& sql);
  /// How many rows the last statement changed.
  [[nodiscard]] std::int64_t changes() const noexcept;
  /// From here to `endMoment` all is read as it stood at one moment, and the file is locked once
  /// and not for each statement. Nothing within a transaction or another moment.
  void beginMoment();
  /// Nothing without a moment, which a transaction may have ended.
  void endMoment();

  std::recursive_mutex mutex;

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
      return std::hash<std::string_view>()(text);
    }
  };

  sqlite3* database_ = nullptr;
  std::unordered_map<std::string, std::shared_ptr<sqlite3_stmt>, TextHash, std::equal_to<>>
      statements_;
};

/// All or nothing: takes the right to write at once, and gives everything back unless `commit` was
/// reached. Ends a moment that was being read, for it may be past.
class SQLiteTransaction {
 public:
  explicit SQLiteTransaction(SQLiteDatabase& database);
  ~SQLiteTransaction();
  SQLiteTransaction(const SQLiteTransaction&) = delete;
  SQLiteTransaction& operator=(const SQLiteTransaction&) = delete;

  void commit();

 private:
  SQLiteDatabase& database_;
  bool open_ = true;
};

/// A store's file is in use, full, damaged, or not there: what SQLite says, as an error.
[[nodiscard]] NSError errorForSQLite(int code, const std::string& message);

}  // namespace zym
