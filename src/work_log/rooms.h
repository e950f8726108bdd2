// A folder of configurations as rooms: what each is for and how far it is, which is next, and a changed
// definition of the library taken into all that use it.
#pragma once

#include "projectors/projector_library.h"
#include "work_log/room_status.h"
#include "work_log/work_log.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

struct Room {
  std::filesystem::path File;
  std::string Name;     // the file's, without the ending
  std::string Trouble;  // why the file cannot be read; the rest means nothing then
  PanelConfiguration Configuration;
  RoomStatus Status;

  // May be sent, and has to be.
  bool IsDue() const { return Trouble.empty() && !Status.Check && Status.State != RoomState::Current; }
};

// The *.BVC files of the folder, in either case, by name. FileError when the folder cannot be read.
std::vector<Room> RoomsIn(const std::filesystem::path& folder, const RoomHistories& histories);

// The first room that is due behind that one, beginning anew at the end; nothing when none is.
std::optional<std::size_t> NextDue(const std::vector<Room>& rooms, std::optional<std::size_t> behind);

// A room whose projector differs from the library's of the same names.
struct OutdatedRoom {
  std::size_t Room;
  std::size_t Element;               // of the library
  std::vector<std::string> Changes;  // in words
};
std::vector<OutdatedRoom> OutdatedRooms(const std::vector<Room>& rooms, const ProjectorLibrary& library);

// Takes the library's definition into the room's file, unless that was changed since it was read: FileError.
void TakeDefinition(Room& room, const ProjectorDefinition& projector);

}  // namespace qdm
