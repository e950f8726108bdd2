#include "world/world.h"

#include "panels/image_reading.h"
#include "projector_bench/bench_line.h"
#include "support/no_patience.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace qdm {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr const char* kProgramed = "The QDM panel has been programed";
constexpr const char* kFailed = "The QDM panel failed to program";
constexpr const char* kNotConnected = "Could not connect to QDM panel";
constexpr const char* kNotRestarted = "The QDM panel failed to restart";

}  // namespace

World::World(Chances& chances) : chances_(chances) {
  constexpr std::array kRarities = {60, 300, 1000, 5000, 1'000'000};
  faults_.Rarity = chances.OneOf(kRarities);
  // Worse than the program promises to see through.
  if (chances.OneIn(10)) faults_.LatestReply = 5000;
  if (chances.OneIn(10)) faults_.KillRarity = 100;
  PlugInAnother();
  for (const char* model : {"First", "Second"}) library_.Append(NamedProjector("ACME", model));
  SaveProjectorDatabase(folder_.Path(), library_, NoPatience());
  onDisk_ = OnDisk();
}

const World::Adapter* World::AdapterAt(int number) const {
  const auto found = std::find_if(adapters_.begin(), adapters_.end(),
                                  [number](const Adapter& adapter) { return adapter.Number == number; });
  return number == 0 || found == adapters_.end() ? nullptr : &*found;
}

int World::FreeNumber() {
  int number = chances_.Between(1, 4);
  while (AdapterAt(number) != nullptr) ++number;
  return number;
}

void World::PlugInAnother() {
  SimulatedPanel::Description panel =
      Described(chances_.Between(kQdm7, kTlVox), std::string(chances_.OneOf(LineSettingsTable).Settings));
  panel.Panel.Major = 1;
  panel.Panel.Minor = static_cast<std::uint8_t>(chances_.OneIn(10) ? 2 : 3);
  if (chances_.OneIn(6))
    panel.Faults.push_back({.What = PanelFault::Kind::Restart, .Number = chances_.Between(1, 70)});
  if (chances_.OneIn(12))
    panel.Faults.push_back({.What = PanelFault::Kind::Die, .Number = chances_.Between(1, 70)});
  if (adapters_.size() == 2 || (adapters_.size() == 1 && !chances_.OneIn(6)))
    adapters_.erase(adapters_.begin());
  adapters_.push_back({FreeNumber(), std::make_unique<SimulatedPanel>(std::move(panel))});
}

void World::PutBack() {
  Adapter& adapter = adapters_.back();
  if (adapter.Number != 0) return;
  adapter.Number = FreeNumber();
  ++adapter.Plugged;
}

std::unique_ptr<SerialPort> World::Port(int number) {
  const Adapter* const adapter = AdapterAt(number);
  SimulatedPanel* const panel = adapter != nullptr ? adapter->Panel.get() : nullptr;
  const int plugged = adapter != nullptr ? adapter->Plugged : 0;
  return std::make_unique<WorldLine>(
      panel, time_, chances_, faults_, limits_, [this, number, panel, plugged] {
        const Adapter* const now = AdapterAt(number);
        return now != nullptr && now->Panel.get() == panel && now->Plugged == plugged;
      });
}

void World::Step() {
  switch (chances_.Between(0, 3)) {
    case 0:
      return SaveLibrary();
    case 1:
      PlugInAnother();
      [[fallthrough]];
    default:
      return ProgramRoomInIt();
  }
}

// Among the bytes of its strings, those with a meaning on the wire are frequent.
PanelConfiguration World::AnyRoom() {
  constexpr std::array<std::uint8_t, 6> kSpecial = {0xFF, 0xFE, 0xFD, 0xF0, 0x22, 0x44};
  PanelConfiguration room;
  const std::int16_t present = static_cast<std::int16_t>(adapters_.back().Panel->Panel().Model - 1);
  room.ControllerType = chances_.OneIn(8) ? static_cast<std::int16_t>(kQdm7) : present;
  room.Projector.VolumeBytePosition = 0;
  for (const Slot slot : {kPowerOnSlot, kPowerOffSlot, kData1Slot, kPowerOnReplySlot}) {
    room.Projector.Available[slot] = kFlagSet;
    SerialString& string = room.Projector.Strings[slot];
    string.Count = static_cast<std::int16_t>(chances_.Between(2, 32));
    string.Values[0] = static_cast<std::uint8_t>(slot);
    for (std::size_t i = 1; i < string.BytesInUse(); ++i)
      string.Values[i] =
          chances_.OneIn(2) ? chances_.OneOf(kSpecial) : static_cast<std::uint8_t>(chances_.Between(0, 255));
  }
  return room;
}

// The user's hands, and a stop in the end: a walk waits for its panel for ever.
void World::PlanInterruptions(std::stop_source stop) {
  const auto later = [this](int most) { return time_.Now() + milliseconds(chances_.Between(0, most)); };
  const auto pressStop = [this, stop]() mutable {
    if (stop.request_stop()) stopped_ = time_.Now();
  };
  time_.At(time_.Now() + seconds(chances_.Between(60, 300)), pressStop);
  if (chances_.OneIn(4)) time_.At(later(20'000), pressStop);
  if (!chances_.OneIn(3)) return;
  time_.At(later(20'000), [this] { adapters_.back().Number = 0; });
  if (chances_.OneIn(4)) return;
  time_.At(later(40'000), [this] { PutBack(); });
}

void World::ProgramRoomInIt() {
  const RoomToProgram room{folder_ / "Room.BVC", AnyRoom()};
  const std::size_t logged = log_.Entries().size();
  told_.clear();
  found_ = false;
  stopped_.reset();
  limits_ = {};
  std::stop_source stop;
  PlanInterruptions(stop);
  bool done = false;
  bool killed = false;
  try {
    done = ProgramRoom(room, *this, log_, time_, stop.get_token(), *this);
  } catch (const Killed&) {
    killed = true;
  }
  if (stopped_ && !killed)
    Demand(time_.Now() - *stopped_ <= milliseconds(1100),
           "a stop ends it with the step that has begun: " +
               std::to_string((time_.Now() - *stopped_).count()) + " us");
  stop.request_stop();
  CheckDownload(room, done, killed, logged);
  PutBack();
}

void World::CheckDownload(const RoomToProgram& room, bool done, bool killed, std::size_t logged) {
  const auto results = std::count_if(told_.begin(), told_.end(), [](const std::string& text) {
    return text == kProgramed || text == kFailed || text == kNotConnected;
  });
  const bool refused = found_ && results == 0 && told_.size() == 1;
  Demand(killed || results == (found_ && !refused ? 1 : 0), "one result is told of what was found");
  Demand(killed || done == (ToldThat(kProgramed) && !ToldThat(kNotRestarted)), "done is what was told");
  if (ToldThat(kProgramed)) CheckProgrammed(room, done);

  const std::vector<WorkLogEntry> entries = log_.Entries();
  Demand(entries.size() == logged + (results == 1 && !killed ? 1 : 0), "a download is written down once");
  if (killed || results == 0) return;
  Demand((entries.front().Outcome == DownloadOutcome::Done) == done, "the log says what was told");
  Demand(log_.ConfigurationOf(entries.front().Number) == Encode(room.Configuration),
         "the log has what was sent");
}

void World::CheckProgrammed(const RoomToProgram& room, bool done) {
  ++Programmed;
  const PanelImage image = BuildPanelImage(room.Configuration);
  const auto holder = std::find_if(adapters_.begin(), adapters_.end(),
                                   [&](const Adapter& adapter) { return adapter.Panel->Memory() == image; });
  if (holder == adapters_.end()) {
    Seen.LateReply |= limits_.LateReply;
    Seen.ChangedReply |= limits_.ChangedReply;
    Seen.CheckSum |= limits_.CheckSum;
    return Demand(limits_.Any(), "programed means equal memory");
  }
  if (!limits_.Any()) Demand(!done || !holder->Panel->InSetUpMode(), "a panel that was restarted runs");
  CheckButtons(room, *holder->Panel);
}

// The panel's buttons reach the projector as the definition has them.
void World::CheckButtons(const RoomToProgram& room, const SimulatedPanel& panel) {
  const auto programmed = ProjectorInImage(panel.Memory(), room.Configuration.ControllerType);
  if (!programmed) return Demand(false, "a programmed panel has its strings");
  StandIn projector(room.Configuration.Projector);
  for (const Slot slot : {kPowerOnSlot, kData1Slot}) {
    projector.Receive(BytesOnLine(TrialOf(*programmed, programmed->Strings[slot])), time_.Now());
    projector.Advance(time_.Now() + seconds(2));
    time_.Yield(time_.Now() + seconds(3));
    Demand(!projector.Heard().empty() && projector.Heard().back().Command == slot,
           "a button's command arrives");
  }
}

void World::SecondProgramSaves() {
  const FileStepHookScope undisturbed([](FileStep, const std::filesystem::path&) { return 0; });
  ProjectorLibrary second;
  const std::string model = "Theirs " + std::to_string(++named_);
  try {
    LoadProjectorDatabase(folder_.Path(), second, NoPatience());
    second.Append(NamedProjector("ACME", model));
    SaveProjectorDatabase(folder_.Path(), second, NoPatience());
    theirs_.insert(model);
  } catch (const InUseError&) {
  }
}

// A full disk stays full; who is dead reaches no file any more.
int World::WhatHappensAt(FileStep step) {
  if (dead_) throw Killed();
  const bool needsRoom = step == FileStep::Create || step == FileStep::Write || step == FileStep::Flush;
  if (diskFull_ && needsRoom) return ENOSPC;
  switch (disturbed_ ? chances_.Fault(4, 30) : 0) {
    case 1:
      return EIO;
    case 2:
      diskFull_ = true;
      return needsRoom ? ENOSPC : 0;
    case 3:
      dead_ = true;
      throw Killed();
    case 4:
      SecondProgramSaves();
      return 0;
    default:
      return 0;
  }
}

void World::SaveLibrary() {
  const std::string model = "Ours " + std::to_string(++named_);
  library_.Append(NamedProjector("ACME", model));
  added_.insert(model);
  if (library_.Size() > 2) {
    const std::string gone = library_[0].Model.TrimmedUtf8();
    (added_.erase(gone) == 0 ? removed_ : unsettled_).insert(gone);
    library_.Remove(0);
  }
  theirs_.clear();
  bool saved = false;
  try {
    const FileStepHookScope hook(
        [this](FileStep step, const std::filesystem::path&) { return WhatHappensAt(step); });
    saved = SaveProjectorDatabase(folder_.Path(), library_, NoPatience()).Conflicts.empty();
    Demand(saved, "changes of different definitions are no conflict");
  } catch (const FileError& error) {
    Demand(std::string_view(error.what()).find("Projectors.") != std::string_view::npos,
           "trouble names its file");
    Demand(error.Code().value() == EIO || error.Code().value() == ENOSPC, "trouble names its reason");
  } catch (const Killed&) {
  }
  CheckLibrary(saved);
  diskFull_ = false;
  if (!saved && !dead_) return;
  if (std::exchange(dead_, false)) LoadProjectorDatabase(folder_.Path(), library_, NoPatience());
  added_.clear();
  removed_.clear();
  unsettled_.clear();
}

World::Names World::OnDisk() {
  ProjectorLibrary read;
  Demand(LoadProjectorDatabase(folder_.Path(), read, NoPatience()).empty(), "a library is never damaged");
  Names names;
  for (const ProjectorDefinition& projector : read.Elements()) names.insert(projector.Model.TrimmedUtf8());
  Demand(names.size() == read.Size(), "nothing is there twice");
  return names;
}

World::Names World::Files() const {
  Names names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.Path()))
    names.insert(entry.path().filename().string());
  return names;
}

// The old or the new library, each with what the second program saved.
void World::CheckLibrary(bool saved) {
  Names old = onDisk_;
  old.insert(theirs_.begin(), theirs_.end());
  Names fresh = old;
  fresh.insert(added_.begin(), added_.end());
  for (const std::string& gone : removed_) fresh.erase(gone);
  onDisk_ = OnDisk();
  Names settled = onDisk_;
  for (Names* names : {&old, &fresh, &settled})
    for (const std::string& name : unsettled_) names->erase(name);
  Demand(settled == fresh || (!saved && settled == old),
         "the library is the old, the new or the merged one: " + testing::PrintToString(settled) + " after " +
             testing::PrintToString(old) + ", to be " + testing::PrintToString(fresh));
}

}  // namespace qdm
