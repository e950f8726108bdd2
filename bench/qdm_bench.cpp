// `qdm` in loops: the processor time of its processes against those of a static program that reads the files.
#include "config/configuration_file.h"
#include "measure.h"
#include "processes.h"
#include "support/distinct_projector.h"
#include "support/temp_folder.h"

#include <string>
#include <vector>

namespace qdm::bench {
namespace {

constexpr int kProcesses = 1000;
constexpr int kFiles = 1000;

PanelConfiguration Room() {
  PanelConfiguration room;
  room.ControllerType = kQdm7;
  room.Projector = NamedProjector("ACME", "X 100");
  room.Projector.VolumeBytePosition = 0;
  room.Projector.Available[1] = kFlagSet;
  room.Projector.Strings[1].Count = 3;
  return room;
}

std::vector<std::string> WriteRooms(const TempFolder& folder) {
  std::vector<std::string> files;
  for (int i = 0; i < kFiles; ++i) {
    files.push_back((folder / ("room " + std::to_string(i) + ".BVC")).string());
    WriteConfiguration(files.back(), Room(), OldTail::Dropped);
  }
  return files;
}

Turns Checks(const std::vector<std::string>& files, int turns) {
  std::vector<std::string> check = {QDM_PROGRAM, "check"};
  std::vector<std::string> read = {QDM_FILE_READER};
  check.insert(check.end(), files.begin(), files.end());
  read.insert(read.end(), files.begin(), files.end());
  return TakeTurns(
      turns, [&] { return ProcessorTimeOf(check); }, [&] { return ProcessorTimeOf(read); });
}

}  // namespace

void MeasureQdm(Table& table) {
  const TempFolder folder;
  const std::vector<std::string> files = WriteRooms(folder);
  table.Ratio("qdm check, 1,000 processes (processor time)", "static C program",
              Checks({files.front()}, kProcesses), 2);
  table.Ratio("qdm check, 1,000 files (processor time)", "static C program", Checks(files, 100), 2);
}

}  // namespace qdm::bench
