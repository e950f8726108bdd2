// One installer's morning in one seed: panels behind adapters, a library that a second program saves too, a
// work log, and a user who presses Stop and pulls adapters. What must never happen is written down in
// `Wrong`.
#pragma once

#include "base/file_access.h"
#include "config/panel_configuration.h"
#include "projector_bench/stand_in.h"
#include "projectors/library_file.h"
#include "simulation/panel_buttons.h"
#include "support/distinct_projector.h"
#include "support/panel_descriptions.h"
#include "support/temp_folder.h"
#include "work_log/room_programming.h"
#include "world/world_line.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace qdm {

class World : public SerialPorts, private RoomObserver {
 public:
  using Names = std::set<std::string>;

  explicit World(Chances& chances);

  // Whatever comes next, and what must hold after it.
  void Step();
  // A save of the library in which anything may go wrong at each call.
  void SaveLibrary();
  // Nothing goes wrong with files from now on.
  void LeaveAlone() { disturbed_ = false; }
  // Of the library and of whatever was left beside it.
  Names Files() const;

  std::vector<std::string> Wrong;
  int Programmed = 0;   // how often that was told
  ProtocolLimits Seen;  // that have made it untrue

 private:
  struct Adapter {
    int Number;  // 1..16; 0 while it is pulled out
    std::unique_ptr<SimulatedPanel> Panel;
    int Plugged = 0;  // how often
  };

  std::string DeviceName(int number) const override { return AdapterAt(number) != nullptr ? "adapter" : ""; }
  std::unique_ptr<SerialPort> Port(int number) override;
  void Connecting() override {}
  void RecordsAcknowledged(int) override {}
  void Tell(const Message& message) override { told_.push_back(message.Text); }
  void StillWaiting(std::size_t) override {}
  void Found(const Identification&, const std::string&) override { found_ = true; }

  const Adapter* AdapterAt(int number) const;
  int FreeNumber();
  void PlugInAnother();
  void PutBack();
  PanelConfiguration AnyRoom();
  void ProgramRoomInIt();
  void PlanInterruptions(std::stop_source stop);
  void CheckDownload(const RoomToProgram& room, bool done, bool killed, std::size_t logged);
  void CheckProgrammed(const RoomToProgram& room, bool done);
  void CheckButtons(const RoomToProgram& room, const SimulatedPanel& panel);
  void SecondProgramSaves();
  int WhatHappensAt(FileStep step);
  Names OnDisk();
  void CheckLibrary(bool saved);
  bool ToldThat(std::string_view text) const { return std::count(told_.begin(), told_.end(), text) > 0; }
  void Demand(bool holds, std::string what) {
    if (!holds) Wrong.push_back(std::move(what));
  }

  Chances& chances_;
  TempFolder folder_;
  VirtualTime time_;
  LineFaults faults_;
  std::vector<Adapter> adapters_;
  WorkLog log_{folder_.Path()};
  ProjectorLibrary library_;  // as the first program has it
  Names onDisk_;              // the models in the library's file, before the save that runs
  Names added_;               // what the first program has not saved yet
  Names removed_;
  Names unsettled_;  // removed after a save of theirs had failed: whether that had come through is not known
  Names theirs_;     // what the second one saved during that
  int named_ = 0;
  bool disturbed_ = true;
  bool dead_ = false;      // nothing that the first program does reaches a file any more
  bool diskFull_ = false;  // nor as long as that lasts
  std::vector<std::string> told_;
  bool found_ = false;
  std::optional<Microseconds> stopped_;
  ProtocolLimits limits_;  // of the download that runs
};

}  // namespace qdm
