// A work log whose file was damaged or cut: it is read, or told, or kept aside whole; and whatever it was,
// the next download can be written down.
#include "base/file_access.h"
#include "fuzz/fuzzing.h"
#include "support/temp_folder.h"
#include "work_log/work_log.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>

namespace qdm {
namespace {
namespace fs = std::filesystem;

WorkLogEntry EntryNamed(const std::string& title) {
  WorkLogEntry entry;
  entry.Title = title;
  entry.Settings = "9600,n,8,2";
  entry.Records = 64;
  return entry;
}

// The file of a log with three downloads of two configurations.
Bytes SoundFile(const fs::path& folder) {
  WorkLog log(folder);
  for (const char* title : {"One", "Two", "Three"})
    log.Add(EntryNamed(title), Bytes(title[0] == 'O' ? 40 : 50, 7));
  return ReadWholeFile(log.File());
}

void Empty(const fs::path& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) fs::remove(entry.path());
}

// Places at the heads of the pages are frequent: there a byte changes the tree.
void Damage(Bytes& file, FuzzedDataProvider& input) {
  if (input.ConsumeBool()) file.resize(input.ConsumeIntegralInRange<std::size_t>(0, file.size()));
  while (input.remaining_bytes() > 0 && !file.empty()) {
    const std::size_t page = input.ConsumeIntegralInRange<std::size_t>(0, 7) * 4096;
    const std::size_t at = page + (input.ConsumeBool() ? input.ConsumeIntegral<std::uint8_t>()
                                                       : input.ConsumeIntegralInRange<std::size_t>(0, 4095));
    file[at % file.size()] = input.ConsumeIntegral<std::uint8_t>();
  }
}

void Look(FuzzedDataProvider input) {
  static const TempFolder folder;
  static const Bytes sound = SoundFile(folder.Path());
  Empty(folder.Path());
  Bytes file = sound;
  Damage(file, input);
  WorkLog log(folder.Path());
  WriteAndFlush(log.File(), file);
  try {
    const std::vector<WorkLogEntry> before = log.Entries();
    if (file == sound) Demand(before.size() == 3 && !log.TakeMessage(), "a sound log is read whole");
    for (const WorkLogEntry& entry : before) static_cast<void>(log.ConfigurationOf(entry.Number));
    const bool setAside = fs::exists(folder / "WorkLog.DAMAGED");
    Demand(!setAside || log.TakeMessage(), "a log that was set aside is told");
    const std::int64_t number = log.Add(EntryNamed("Four"), Bytes(60, 7));
    Demand(log.ConfigurationOf(number) == Bytes(60, 7), "what was written is read back");
    const std::vector<WorkLogEntry> after = log.Entries();
    Demand(std::any_of(after.begin(), after.end(),
                       [](const WorkLogEntry& entry) { return entry.Title == "Four"; }),
           "the next download can be written down");
  } catch (const FileError& error) {
    Demand(std::string_view(error.what()).find("WorkLog.db") != std::string_view::npos,
           "trouble names its file");
  }
  if (fs::exists(folder / "WorkLog.DAMAGED"))
    Demand(!ReadWholeFile(folder / "WorkLog.DAMAGED").empty() || file.empty(), "a damaged log is kept");
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look(FuzzedDataProvider(data, size));
  return 0;
}
