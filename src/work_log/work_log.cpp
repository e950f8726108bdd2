#include "work_log/work_log.h"

#include "base/file_access.h"
#include "base/file_lock.h"
#include "base/file_system.h"
#include "base/words.h"
#include "work_log/database.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace qdm {
namespace {

namespace fs = std::filesystem;

// The layout's number. A program that finds a greater one leaves the file alone.
constexpr std::int64_t kLayout = 1;

// The columns of an entry, in one place for making the table, for writing and for reading.
// Stored on disk: never reorder.
template <class Visitor, class Entry>
void Columns(Visitor&& column, Entry& e) {
  column("began INTEGER", e.Began);  // seconds since 1970, UTC
  column("title TEXT", e.Title);
  column("file TEXT", e.File);
  column("type INTEGER", e.ControllerType);
  column("model INTEGER", e.Panel.Model);
  column("major INTEGER", e.Panel.Major);
  column("minor INTEGER", e.Panel.Minor);
  column("port TEXT", e.Port);
  column("device TEXT", e.Device);
  column("settings TEXT", e.Settings);
  column("listens TEXT", e.Listens);
  column("records INTEGER", e.Records);
  column("retries INTEGER", e.Retries);
  column("duration INTEGER", e.Duration);  // milliseconds
  column("outcome INTEGER", e.Outcome);
  column("image BLOB", e.Image);  // SHA-256
}

struct TableMaker {
  std::string Definition, Names, Places;

  template <class Value>
  void operator()(std::string_view column, const Value&) {
    Definition.append(", ").append(column).append(" NOT NULL");
    Names.append(", ").append(column.substr(0, column.find(' ')));
    Places += ", ?";
  }
};

TableMaker Table() {
  TableMaker table;
  const WorkLogEntry entry;
  Columns(table, entry);
  return table;
}

struct Writer {
  Statement& To;

  void operator()(std::string_view, std::chrono::sys_seconds time) {
    To.Bind(time.time_since_epoch().count());
  }
  void operator()(std::string_view, std::chrono::milliseconds period) { To.Bind(period.count()); }
  void operator()(std::string_view, const std::string& text) { To.Bind(std::string_view(text)); }
  void operator()(std::string_view, const Sha256Digest& digest) { To.Bind(ByteView(digest)); }
  template <class Number>
  void operator()(std::string_view, Number number) {
    To.Bind(static_cast<std::int64_t>(number));
  }
};

struct Reader {
  Statement& From;

  void operator()(std::string_view, std::chrono::sys_seconds& time) {
    time = std::chrono::sys_seconds(std::chrono::seconds(From.Integer()));
  }
  void operator()(std::string_view, std::chrono::milliseconds& period) {
    period = std::chrono::milliseconds(From.Integer());
  }
  void operator()(std::string_view, std::string& text) { text = From.Text(); }
  void operator()(std::string_view, Sha256Digest& digest) {
    const Bytes bytes = From.Blob();
    std::copy_n(bytes.begin(), std::min(bytes.size(), digest.size()), digest.begin());
  }
  template <class Number>
  void operator()(std::string_view, Number& number) {
    number = static_cast<Number>(From.Integer());
  }
};

std::int64_t LayoutOf(const Database& database) {
  Statement statement(database, "PRAGMA user_version");
  statement.Step();
  return statement.Integer();
}

void DemandKnownLayout(const Database& database, const fs::path& file, const char* operation) {
  if (LayoutOf(database) <= kLayout) return;
  throw FileError(file, operation, Say("a later version of the program made it"));
}

// Configurations stand apart from the downloads, each once, so that a list of downloads is read without them.
void MakeTables(Database& database) {
  Transaction transaction(database);
  if (LayoutOf(database) != 0) return;  // somebody else was faster
  database.Run(
      "CREATE TABLE configuration(id INTEGER PRIMARY KEY, hash BLOB NOT NULL UNIQUE, bytes BLOB NOT NULL)");
  database.Run(
      "CREATE TABLE download(number INTEGER PRIMARY KEY AUTOINCREMENT, configuration INTEGER NOT NULL" +
      Table().Definition + ")");
  database.Run("PRAGMA user_version = " + std::to_string(kLayout));
  transaction.Commit();
}

std::int64_t IdOfConfiguration(const Database& database, ByteView configuration) {
  const Sha256Digest hash = Sha256(configuration);
  // One whose bytes are no longer those of its hash is put right.
  Statement insert(database,
                   "INSERT INTO configuration(hash, bytes) VALUES(?, ?) "
                   "ON CONFLICT(hash) DO UPDATE SET bytes = excluded.bytes WHERE bytes <> excluded.bytes");
  insert.Bind(ByteView(hash));
  insert.Bind(configuration);
  insert.Step();
  Statement find(database, "SELECT id FROM configuration WHERE hash = ?");
  find.Bind(ByteView(hash));
  find.Step();
  return find.Integer();
}

// Nothing when there is none, or its bytes are no longer those of its hash.
std::optional<Bytes> StoredConfiguration(const Database& database, std::int64_t number) {
  Statement select(database,
                   "SELECT hash, bytes FROM configuration WHERE id = "
                   "(SELECT configuration FROM download WHERE number = ?)");
  select.Bind(number);
  if (!select.Step()) return std::nullopt;
  const Bytes hash = select.Blob();
  Bytes bytes = select.Blob();
  const Sha256Digest digest = Sha256(bytes);
  if (!std::equal(hash.begin(), hash.end(), digest.begin(), digest.end())) return std::nullopt;
  return bytes;
}

constexpr const char* kLockFile = "WorkLog.LCK";

}  // namespace

fs::path WorkLogFolder(const std::optional<fs::path>& named, const fs::path& userFolder) {
  return named.value_or(userFolder);
}

std::string RoomOfFile(const fs::path& file) {
  std::error_code error;
  const fs::path whole = fs::weakly_canonical(fs::absolute(file, error), error);
  return PathToUtf8(file_system::SpellingOf(error ? file : whole));
}

WorkLog::WorkLog(const fs::path& folder) : file_(folder / "WorkLog.db") {}

// Damage is looked at a second time under the lock, since another program may just have set the file aside.
template <class Work>
auto WorkLog::With(const char* operation, const Work& work) {
  try {
    try {
      return work();
    } catch (const DatabaseError& error) {
      if (!error.IsDamage()) throw;
    }
    const std::optional<FileLock> lock = FileLock::Try(file_.parent_path() / kLockFile);
    try {
      return work();
    } catch (const DatabaseError& error) {
      if (!error.IsDamage() || !lock) throw;
    }
    SetAside();
    return work();
  } catch (const DatabaseError& error) {
    throw FileError(file_, operation, error.what());
  }
}

void WorkLog::SetAside() {
  fs::path aside = file_;
  aside.replace_extension(".DAMAGED");
  for (int n = 2; FileExists(aside); ++n) aside.replace_extension(".DAMAGED" + std::to_string(n));
  RenameFile(file_, aside);
  // What a killed program had begun to write belongs to the damaged file.
  RemoveFile(PathFromUtf8(PathToUtf8(file_) + "-journal"));
  message_ =
      Message{Say("The work log was damaged, and a new one has been begun."), Say("Sorry"),
              MessageIcon::Exclamation, Say("Everything that it held is kept in %1", {PathToUtf8(aside)})};
}

std::int64_t WorkLog::Add(const WorkLogEntry& entry, ByteView configuration) {
  std::error_code error;
  fs::create_directories(file_.parent_path(), error);
  if (error) throw FileError(file_.parent_path(), "make the folder", error);
  return With("write", [&] {
    Database database(file_, Database::Access::MayCreate, kPatience);
    if (LayoutOf(database) == 0) MakeTables(database);
    DemandKnownLayout(database, file_, "write");
    Transaction transaction(database);
    const TableMaker table = Table();
    Statement insert(database,
                     "INSERT INTO download(configuration" + table.Names + ") VALUES(?" + table.Places + ")");
    insert.Bind(IdOfConfiguration(database, configuration));
    Columns(Writer{insert}, entry);
    insert.Step();
    const std::int64_t number = database.LastInserted();
    // In a damaged file the row may hang where nobody finds it, or a column may not be what it was made as.
    database.DemandSound();
    if (StoredConfiguration(database, number) != Bytes(configuration.begin(), configuration.end()))
      throw DatabaseError::Damage("what is written is not read back");
    transaction.Commit();
    return number;
  });
}

std::vector<WorkLogEntry> WorkLog::Entries(std::size_t atMost, std::chrono::milliseconds patience) {
  std::vector<WorkLogEntry> entries;
  if (!FileExists(file_)) return entries;
  return With("read", [&] {
    entries.clear();
    if (!FileExists(file_)) return entries;
    const Database database(file_, Database::Access::Existing, patience);
    if (LayoutOf(database) == 0) return entries;  // its maker was killed
    DemandKnownLayout(database, file_, "read");
    Statement select(database, "SELECT number" + Table().Names + " FROM download ORDER BY number DESC");
    while (entries.size() < atMost && select.Step()) {
      WorkLogEntry& entry = entries.emplace_back();
      entry.Number = select.Integer();
      Columns(Reader{select}, entry);
    }
    return entries;
  });
}

std::optional<Bytes> WorkLog::ConfigurationOf(std::int64_t number) {
  if (!FileExists(file_)) return std::nullopt;
  return With("read", [&]() -> std::optional<Bytes> {
    if (!FileExists(file_)) return std::nullopt;
    const Database database(file_, Database::Access::Existing, kPatience);
    DemandKnownLayout(database, file_, "read");
    return StoredConfiguration(database, number);
  });
}

std::optional<Message> WorkLog::TakeMessage() { return std::exchange(message_, std::nullopt); }

}  // namespace qdm
