// What was sent to which panel and when: WorkLog.db in the user's data folder, written by every program that
// programs panels. Each call opens the file, does its work in one transaction and lets go of it, so that
// several programs, a folder on a server and a kill at any moment do no harm. Nothing is ever deleted from
// it: it is the backup of what was last sent.
// A file that is damaged is kept beside it as WorkLog.DAMAGED (.DAMAGED2, ...) and a new one begun. Other
// trouble is a FileError; it must never stop a download.
#pragma once

#include "base/message.h"
#include "work_log/work_log_entry.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

class Database;

// Where the log lives: the folder that the user named, else the user's own.
std::filesystem::path WorkLogFolder(const std::optional<std::filesystem::path>& named,
                                    const std::filesystem::path& userFolder);

// What makes two entries be of the same room: the configuration's file, by its whole path. UTF-8.
std::string RoomOfFile(const std::filesystem::path& file);

class WorkLog {
 public:
  // How long a program that holds the file is waited for.
  static constexpr std::chrono::milliseconds kPatience = std::chrono::seconds(5);

  explicit WorkLog(const std::filesystem::path& folder);

  const std::filesystem::path& File() const { return file_; }

  // `configuration` in its stored form. `entry.Number` is given by the log and answered.
  std::int64_t Add(const WorkLogEntry& entry, ByteView configuration);
  // Newest first, all or that many of them; none when there is no log yet.
  std::vector<WorkLogEntry> Entries(std::size_t atMost = std::numeric_limits<std::size_t>::max(),
                                    std::chrono::milliseconds patience = kPatience);
  // The configuration that was sent, in its stored form; nothing when the log has none such, or only bytes
  // that are no longer what was written.
  std::optional<Bytes> ConfigurationOf(std::int64_t number);

  // What the user must be told about the file, once.
  std::optional<Message> TakeMessage();

 private:
  template <class Work>
  auto With(const char* operation, const Work& work);
  void SetAside();

  std::filesystem::path file_;
  std::optional<Message> message_;
};

}  // namespace qdm
