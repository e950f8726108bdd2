// The part of SQLite that the work log uses: one connection, prepared statements, values by position. Private
// to this folder; nothing else of the program knows what the log is kept in.
#pragma once

#include "base/record_codec.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace qdm {

// `what()` is SQLite's own reason.
class DatabaseError : public std::runtime_error {
 public:
  DatabaseError(int code, const std::string& reason) : std::runtime_error(reason), code_(code) {}

  // Of a file that says it is in order.
  static DatabaseError Damage(const std::string& reason);

  // The file is no database, a broken one, or one with another layout than its version says.
  bool IsDamage() const;

 private:
  int code_;
};

class Database {
 public:
  enum class Access { Existing, MayCreate };
  // Others that hold the file are waited for so long, at each statement. Nothing is read yet.
  Database(const std::filesystem::path& file, Access access, std::chrono::milliseconds patience);

  void Run(const std::string& sql);
  // DatabaseError where the file is not in order, whether or not anything failed so far.
  void DemandSound() const;
  // The number that the last inserted row was given.
  std::int64_t LastInserted() const;
  sqlite3* Get() const { return connection_.get(); }

 private:
  struct Closer {
    void operator()(sqlite3* connection) const;
  };
  std::unique_ptr<sqlite3, Closer> connection_;
};

class Statement {
 public:
  Statement(const Database& database, const std::string& sql);

  // The next "?".
  void Bind(std::int64_t value);
  void Bind(std::string_view text);
  void Bind(ByteView bytes);

  // True while there is a row; its columns are then taken from left to right.
  bool Step();
  std::int64_t Integer();
  std::string Text();
  Bytes Blob();

 private:
  void Must(int result) const;

  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const;
  };
  const Database& database_;
  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
  int bound_ = 0;
  int column_ = 0;
};

// All of it or, without a Commit, nothing. Nobody else writes meanwhile.
class Transaction {
 public:
  explicit Transaction(Database& database) : database_(database) { database_.Run("BEGIN IMMEDIATE"); }
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit();

 private:
  Database& database_;
  bool open_ = true;
};

}  // namespace qdm
