#include "zymcore/platform/objects/internal/SQLiteDatabase.h"

#include <sqlite3.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <utility>

#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

constexpr std::size_t mostStatements = 256;

std::int64_t cocoaCode(int code) {
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return NSPersistentStoreTimeoutError;
    case SQLITE_FULL:
      return NSFileWriteOutOfSpaceError;
    case SQLITE_READONLY:
      return NSFileWriteNoPermissionError;
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return NSFileReadNoPermissionError;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return NSFileReadCorruptFileError;
    case SQLITE_CANTOPEN:
      return NSFileReadUnknownError;
    default:
      return NSFileWriteUnknownError;
  }
}

bool isOutOfSpace(int systemError) noexcept {
  return systemError == ENOSPC || systemError == EDQUOT || systemError == EFBIG;
}

[[noreturn]] void failWith(sqlite3* database, int code) {
  const bool isFull = (code & 0xFF) == SQLITE_IOERR && isOutOfSpace(sqlite3_system_errno(database));
  throw StoreFailure{errorForSQLite(isFull ? SQLITE_FULL : code, sqlite3_errmsg(database))};
}

}  // namespace

NSError errorForSQLite(int code, const std::string& message) {
  const char* const meaning =
      (code & 0xFF) == SQLITE_BUSY   ? "The store is in use by another process"
      : (code & 0xFF) == SQLITE_FULL ? "There is no space left for the store"
                                     : "The store can't be used";
  return {NSCocoaErrorDomain,
          cocoaCode(code),
          std::string(meaning) + " (" + message + ").",
          {{KeyName("NSSQLiteErrorDomain"), code}},
          {}};
}

SQLiteStatement::~SQLiteStatement() {
  if (!statement_) return;
  sqlite3_reset(statement_.get());
  sqlite3_clear_bindings(statement_.get());
}

void SQLiteStatement::check(int code) const {
  if (code != SQLITE_OK) failWith(database_, code);
}

void SQLiteStatement::bind(int parameter, std::int64_t value) {
  check(sqlite3_bind_int64(statement_.get(), parameter, value));
}

void SQLiteStatement::bind(int parameter, std::string_view text) {
  check(sqlite3_bind_text64(statement_.get(), parameter, text.empty() ? "" : text.data(),
                            text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void SQLiteStatement::bind(int parameter, const NSData& data) {
  const void* const bytes = data.length() == 0 ? "" : static_cast<const void*>(data.bytes().data());
  check(sqlite3_bind_blob64(statement_.get(), parameter, bytes, data.length(), SQLITE_STATIC));
}

void SQLiteStatement::bind(int parameter, const PlistValue* value) {
  if (!value) {
    check(sqlite3_bind_null(statement_.get(), parameter));
  } else if (const std::string* text = value->string()) {
    bind(parameter, std::string_view(*text));
  } else if (const NSData* data = value->data()) {
    bind(parameter, *data);
  } else if (const double* real = value->real()) {
    check(sqlite3_bind_double(statement_.get(), parameter, *real));
  } else if (const NSDate* date = value->date()) {
    check(sqlite3_bind_double(statement_.get(), parameter, date->timeIntervalSinceReferenceDate()));
  } else {
    bind(parameter, value->integerValue());
  }
}

void SQLiteStatement::addColumn(const SQLiteStatement& other, int column) {
  check(sqlite3_bind_value(statement_.get(), ++bound_,
                           sqlite3_column_value(other.statement_.get(), column)));
}

bool SQLiteStatement::step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) failWith(database_, code);
  return false;
}

void SQLiteStatement::run() {
  const int code = sqlite3_step(statement_.get());
  sqlite3_reset(statement_.get());
  bound_ = 0;
  if (code != SQLITE_DONE && code != SQLITE_ROW) failWith(database_, code);
}

bool SQLiteStatement::isNull(int column) const noexcept {
  return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

std::int64_t SQLiteStatement::integer(int column) const noexcept {
  return sqlite3_column_int64(statement_.get(), column);
}

double SQLiteStatement::real(int column) const noexcept {
  return sqlite3_column_double(statement_.get(), column);
}

std::string_view SQLiteStatement::text(int column) const noexcept {
  const auto* const bytes =
      reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
  const int length = sqlite3_column_bytes(statement_.get(), column);
  return bytes ? std::string_view(bytes, static_cast<std::size_t>(length)) : std::string_view();
}

NSData SQLiteStatement::data(int column) const {
  const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  const int length = sqlite3_column_bytes(statement_.get(), column);
  return NSData(bytes ? std::string_view(bytes, static_cast<std::size_t>(length))
                      : std::string_view());
}

SQLiteDatabase::SQLiteDatabase(const std::filesystem::path& path, Access access,
                               double secondsToWait) {
  int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  flags |= access == Access::ReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  if (access == Access::Create) flags |= SQLITE_OPEN_CREATE;
  const std::string name = path.empty() ? ":memory:" : std::filesystem::absolute(path).string();
  const int code = sqlite3_open_v2(name.c_str(), &database_, flags, nullptr);
  if (code != SQLITE_OK) {
    NSError error = errorForSQLite(code, database_ ? sqlite3_errmsg(database_) : "no memory");
    const int reason = database_ ? sqlite3_system_errno(database_) : 0;
    if (reason == EACCES || reason == EPERM) error.code = NSFileReadNoPermissionError;
    if (reason == EROFS) error.code = NSFileWriteNoPermissionError;
    sqlite3_close_v2(database_);
    throw StoreFailure{std::move(error)};
  }
  if (access != Access::ReadOnly && sqlite3_db_readonly(database_, "main") == 1) {
    sqlite3_close_v2(database_);
    throw StoreFailure{errorForSQLite(SQLITE_READONLY, "the file is read-only")};
  }
  const double seconds = std::isfinite(secondsToWait) ? std::clamp(secondsToWait, 0.0, 3600.0) : 0;
  sqlite3_busy_timeout(database_, static_cast<int>(seconds * 1000));
  // The file may come from anywhere: its schema gets no say beyond tables and indexes.
  sqlite3_db_config(database_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(database_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(database_, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(database_, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

SQLiteDatabase::~SQLiteDatabase() {
  statements_.clear();
  sqlite3_close_v2(database_);
}

SQLiteStatement SQLiteDatabase::statement(std::string_view sql) {
  const auto known = statements_.find(sql);
  // One that somebody holds is in the middle of its rows or has parameters of its own.
  if (known != statements_.end() && known->second.use_count() == 1) {
    return {database_, known->second};
  }
  if (statements_.size() >= mostStatements) statements_.clear();
  sqlite3_stmt* prepared = nullptr;
  const int code = sqlite3_prepare_v3(database_, sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
  if (code != SQLITE_OK) failWith(database_, code);
  const std::shared_ptr<sqlite3_stmt> statement(prepared, &sqlite3_finalize);
  statements_.emplace(sql, statement);
  return {database_, statement};
}

void SQLiteDatabase::execute(const std::string& sql) {
  const int code = sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) failWith(database_, code);
}

std::int64_t SQLiteDatabase::integer(const std::string& sql) {
  SQLiteStatement query = statement(sql);
  return query.step() ? query.integer(0) : 0;
}

std::int64_t SQLiteDatabase::changes() const noexcept {
  return sqlite3_changes64(database_);
}

void SQLiteDatabase::beginMoment() {
  if (sqlite3_get_autocommit(database_) != 0) statement("BEGIN").run();
}

void SQLiteDatabase::endMoment() {
  const bool isOpen = sqlite3_get_autocommit(database_) == 0;
  if (isOpen && sqlite3_txn_state(database_, "main") != SQLITE_TXN_WRITE) {
    statement("ROLLBACK").run();
  }
}

SQLiteTransaction::SQLiteTransaction(SQLiteDatabase& database) : database_(database) {
  database_.endMoment();
  database_.statement("BEGIN IMMEDIATE").run();
}

SQLiteTransaction::~SQLiteTransaction() {
  if (!open_) return;
  try {
    database_.statement("ROLLBACK").run();
  } catch (const StoreFailure&) {
    // SQLite has rolled back by itself, as it does when the disk is full.
  }
}

void SQLiteTransaction::commit() {
  database_.statement("COMMIT").run();
  open_ = false;
}

}  // namespace zym
