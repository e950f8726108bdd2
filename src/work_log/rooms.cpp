#include "work_log/rooms.h"

#include "base/file_access.h"
#include "base/words.h"
#include "config/configuration_file.h"
#include "config/configuration_words.h"
#include "projectors/field_captions.h"
#include "projectors/record_difference.h"

#include <algorithm>
#include <cstddef>
#include <system_error>

namespace qdm {
namespace {

namespace fs = std::filesystem;

bool IsConfiguration(const fs::path& file) { return UpperCase(file.extension().u16string()) == u".BVC"; }

// "Room 9" before "Room 10", in either case: numbers are compared with zeros in front.
std::u16string SortKey(const Room& room) {
  constexpr std::size_t kDigits = 12;
  std::u16string key, number;
  for (const char16_t c : UpperCase(FromUtf8(room.Name)) + u' ') {
    if (c >= u'0' && c <= u'9') {
      number += c;
      continue;
    }
    if (!number.empty()) key.append(kDigits - std::min(kDigits, number.size()), u'0').append(number);
    number.clear();
    key += c;
  }
  return key;
}

Room RoomOf(const fs::path& file, const RoomHistories& histories) {
  Room room;
  room.File = file;
  room.Name = PathToUtf8(file.stem());
  try {
    room.Configuration = ReadConfiguration(file);
    room.Status = StatusOf(room.Configuration, RoomOfFile(file), histories);
  } catch (const FileError& error) {
    room.Trouble = error.Reason();
  }
  return room;
}

}  // namespace

std::vector<Room> RoomsIn(const fs::path& folder, const RoomHistories& histories) {
  std::vector<Room> rooms;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (IsConfiguration(entry->path())) rooms.push_back(RoomOf(entry->path(), histories));
  }
  if (error) throw FileError(folder, "read", error);
  std::sort(rooms.begin(), rooms.end(),
            [](const Room& first, const Room& second) { return SortKey(first) < SortKey(second); });
  return rooms;
}

std::optional<std::size_t> NextDue(const std::vector<Room>& rooms, std::optional<std::size_t> behind) {
  const std::size_t first = behind ? *behind + 1 : 0;
  for (std::size_t i = 0; i < rooms.size(); ++i) {
    const std::size_t room = (first + i) % rooms.size();
    if (rooms[room].IsDue()) return room;
  }
  return std::nullopt;
}

std::vector<OutdatedRoom> OutdatedRooms(const std::vector<Room>& rooms, const ProjectorLibrary& library) {
  std::vector<OutdatedRoom> outdated;
  for (std::size_t i = 0; i < rooms.size(); ++i) {
    const ProjectorDefinition& projector = rooms[i].Configuration.Projector;
    if (!rooms[i].Trouble.empty() || !HasBothNames(projector)) continue;
    const std::optional<std::size_t> element = library.FindProjector(projector);
    if (!element || ProjectorsEqual(projector, library[*element])) continue;
    OutdatedRoom& room = outdated.emplace_back(OutdatedRoom{i, *element, {}});
    for (const DifferenceText& difference : DifferencesInWords(projector, library[*element])) {
      room.Changes.push_back(LineOf(difference));
    }
  }
  return outdated;
}

void TakeDefinition(Room& room, const ProjectorDefinition& projector) {
  if (ReadConfiguration(room.File) != room.Configuration) {
    throw FileError(room.File, "change", Say("it was changed meanwhile; read the folder again"));
  }
  PanelConfiguration changed = room.Configuration;
  changed.Projector = projector;
  WriteConfiguration(room.File, changed, OldTail::Dropped);
  room.Configuration = changed;
}

}  // namespace qdm
