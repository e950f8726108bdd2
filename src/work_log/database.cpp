#include "work_log/database.h"

#include "base/file_access.h"

#include <sqlite3.h>

#include <cstddef>

namespace qdm {
namespace {

void Must(sqlite3* connection, int result) {
  if (result == SQLITE_OK) return;
  throw DatabaseError(result, connection != nullptr ? sqlite3_errmsg(connection) : sqlite3_errstr(result));
}

}  // namespace

// Our own statements are right: what they cannot be run on (SQLITE_ERROR, no such table) is not our layout.
DatabaseError DatabaseError::Damage(const std::string& reason) { return {SQLITE_CORRUPT, reason}; }

bool DatabaseError::IsDamage() const {
  const int primary = code_ & 0xFF;
  return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_ERROR;
}

void Database::Closer::operator()(sqlite3* connection) const { sqlite3_close(connection); }

Database::Database(const std::filesystem::path& file, Access access, std::chrono::milliseconds patience) {
  const int flags = SQLITE_OPEN_READWRITE | (access == Access::MayCreate ? SQLITE_OPEN_CREATE : 0);
  sqlite3* connection = nullptr;
  const int result = sqlite3_open_v2(PathToUtf8(file).c_str(), &connection, flags, nullptr);
  connection_.reset(connection);
  Must(connection, result);
  sqlite3_busy_timeout(connection, static_cast<int>(patience.count()));
}

void Database::Run(const std::string& sql) {
  Must(Get(), sqlite3_exec(Get(), sql.c_str(), nullptr, nullptr, nullptr));
}

void Database::DemandSound() const {
  Statement check(*this, "PRAGMA integrity_check(1)");
  check.Step();
  if (const std::string found = check.Text(); found != "ok") throw DatabaseError::Damage(found);
}

std::int64_t Database::LastInserted() const { return sqlite3_last_insert_rowid(Get()); }

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Statement::Statement(const Database& database, const std::string& sql) : database_(database) {
  sqlite3_stmt* statement = nullptr;
  Must(sqlite3_prepare_v2(database.Get(), sql.c_str(), static_cast<int>(sql.size()), &statement, nullptr));
  statement_.reset(statement);
}

void Statement::Must(int result) const { qdm::Must(database_.Get(), result); }

void Statement::Bind(std::int64_t value) { Must(sqlite3_bind_int64(statement_.get(), ++bound_, value)); }

void Statement::Bind(std::string_view text) {
  Must(sqlite3_bind_text(statement_.get(), ++bound_, text.data(), static_cast<int>(text.size()),
                         SQLITE_TRANSIENT));
}

void Statement::Bind(ByteView bytes) {
  Must(sqlite3_bind_blob(statement_.get(), ++bound_, bytes.data(), static_cast<int>(bytes.size()),
                         SQLITE_TRANSIENT));
}

bool Statement::Step() {
  column_ = 0;
  const int result = sqlite3_step(statement_.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) Must(result);
  return result == SQLITE_ROW;
}

std::int64_t Statement::Integer() { return sqlite3_column_int64(statement_.get(), column_++); }

std::string Statement::Text() {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column_));
  const int size = sqlite3_column_bytes(statement_.get(), column_++);
  return text == nullptr ? std::string() : std::string(text, static_cast<std::size_t>(size));
}

Bytes Statement::Blob() {
  const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_.get(), column_));
  const int size = sqlite3_column_bytes(statement_.get(), column_++);
  return bytes == nullptr ? Bytes() : Bytes(bytes, bytes + size);
}

Transaction::~Transaction() {
  if (open_) sqlite3_exec(database_.Get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
  database_.Run("COMMIT");
  open_ = false;
}

}  // namespace qdm
