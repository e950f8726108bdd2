#include "work_log/work_log.h"

#include "base/file_access.h"
#include "config/configuration_file.h"
#include "panels/panel_image.h"
#include "support/temp_folder.h"
#include "work_log/known_panel.h"
#include "work_log/room_status.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <thread>

#ifndef _WIN32
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

WorkLogEntry EntryFor(const std::string& room, DownloadOutcome outcome = DownloadOutcome::Done) {
  WorkLogEntry entry;
  entry.Began = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + std::chrono::hours(16);
  entry.Title = room;
  entry.File = "/rooms/" + room;
  entry.Panel = {.Model = 2, .Major = 1, .Minor = 3};
  entry.Port = "COM3";
  entry.Device = "ttyUSB0";
  entry.Settings = "9600,n,8,2";
  entry.Listens = "19200,e,8,2";
  entry.Records = 64;
  entry.Retries = 2;
  entry.Duration = std::chrono::milliseconds(4711);
  entry.Outcome = outcome;
  entry.Image = Sha256(Bytes{1, 2, 3});
  return entry;
}

Bytes ConfigurationNumbered(int number) {
  PanelConfiguration configuration;
  configuration.Reserved1 = static_cast<std::int16_t>(number);
  return Encode(configuration);
}

struct WorkLogs : testing::Test {
  TempFolder Folder;
  WorkLog Log{Folder.Path()};

  std::vector<std::string> Titles() {
    std::vector<std::string> titles;
    for (const WorkLogEntry& entry : Log.Entries()) titles.push_back(entry.Title);
    return titles;
  }
};

TEST_F(WorkLogs, GiveBackEveryFieldAndTheConfigurationNewestFirst) {
  EXPECT_THAT(Log.Entries(), IsEmpty());
  EXPECT_FALSE(FileExists(Log.File())) << "looking makes no file";
  const std::int64_t first = Log.Add(EntryFor("101"), ConfigurationNumbered(1));
  Log.Add(EntryFor("102", DownloadOutcome::Interrupted), ConfigurationNumbered(2));
  const std::vector<WorkLogEntry> entries = Log.Entries();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_THAT(Titles(), ElementsAre("102", "101"));
  EXPECT_EQ(entries[0].Outcome, DownloadOutcome::Interrupted);
  const WorkLogEntry written = EntryFor("101");
  const WorkLogEntry& read = entries[1];
  EXPECT_EQ(read.Number, first);
  EXPECT_EQ(Iso8601(read.Began), "2026-11-21T16:00:00Z");
  EXPECT_EQ(read.Panel, written.Panel);
  EXPECT_EQ(std::tie(read.File, read.Port, read.Device, read.Settings, read.Listens, read.Records,
                     read.Retries, read.Duration, read.Image),
            std::tie(written.File, written.Port, written.Device, written.Settings, written.Listens,
                     written.Records, written.Retries, written.Duration, written.Image));
  EXPECT_EQ(Log.ConfigurationOf(first), ConfigurationNumbered(1));
  EXPECT_EQ(Log.ConfigurationOf(99), std::nullopt);
}

// A text file, the beginning and the end of a log, another database, a page of zeros in the middle.
TEST_F(WorkLogs, DamagedOnesAreSetAsideWholeAndBegunAnew) {
  Log.Add(EntryFor("101"), ConfigurationNumbered(1));
  const Bytes whole = ReadWholeFile(Log.File());
  const auto cut = [&whole](std::size_t from, std::size_t to) {
    return Bytes(whole.begin() + static_cast<std::ptrdiff_t>(from),
                 whole.begin() + static_cast<std::ptrdiff_t>(to));
  };
  Bytes zeroed = whole;
  std::fill(zeroed.begin() + 4096, zeroed.begin() + 8192, std::uint8_t{0});
  std::fill(zeroed.begin() + 100, zeroed.begin() + 4096, std::uint8_t{0});
  Bytes otherLayout = whole;
  std::string text(otherLayout.begin(), otherLayout.end());
  for (std::size_t at = 0; (at = text.find("retries", at)) != std::string::npos; ++at) otherLayout[at] = 'X';
  Bytes noKey = whole;  // configurations get no number any more
  noKey[text.find("PRIMARY KEY", text.find("configuration(id"))] = 0xBB;
  Bytes lost = whole;
  lost[4096 + 4] = 0;  // the number of rows of the table that comes first
  int asides = 0;
  for (const Bytes& damaged : {Bytes(5000, 'x'), cut(4096, whole.size()), zeroed, otherLayout, noKey, lost}) {
    WriteFileSafely(Log.File(), damaged);
    Log.Add(EntryFor("102"), ConfigurationNumbered(2));
    EXPECT_THAT(Titles(), ElementsAre("102")) << asides;
    const std::optional<Message> message = Log.TakeMessage();
    ASSERT_TRUE(message) << asides;
    const std::string name = ++asides == 1 ? "WorkLog.DAMAGED" : "WorkLog.DAMAGED" + std::to_string(asides);
    EXPECT_THAT(message->Detail, HasSubstr(name));
    EXPECT_EQ(ReadWholeFile(Folder / name), damaged);
  }
  EXPECT_EQ(Log.TakeMessage(), std::nullopt) << "told once";
}

TEST_F(WorkLogs, AConfigurationThatHasRottenIsPutRightWhenItIsSentAgain) {
  const std::int64_t first = Log.Add(EntryFor("101"), ConfigurationNumbered(1));
  Bytes rotten = ReadWholeFile(Log.File());
  const Bytes configuration = ConfigurationNumbered(1);
  const auto place =
      std::search(rotten.begin(), rotten.end(), configuration.begin(), configuration.begin() + 64);
  ASSERT_NE(place, rotten.end());
  *place ^= 1;
  WriteFileSafely(Log.File(), rotten);
  EXPECT_FALSE(Log.ConfigurationOf(first));
  Log.Add(EntryFor("101"), configuration);
  EXPECT_EQ(Log.ConfigurationOf(first), configuration);
}

TEST_F(WorkLogs, OfALaterProgramAreLeftAlone) {
  Log.Add(EntryFor("101"), ConfigurationNumbered(1));
  Bytes later = ReadWholeFile(Log.File());
  later[63] = 2;  // user_version, big-endian at 60
  WriteFileSafely(Log.File(), later);
  EXPECT_THROW(Log.Entries(), FileError);
  EXPECT_THROW(Log.Add(EntryFor("102"), ConfigurationNumbered(2)), FileError);
  EXPECT_EQ(ReadWholeFile(Log.File()), later);
}

TEST_F(WorkLogs, ThatCannotBeMadeAreAFileError) {
  WriteFileSafely(Folder / "file", Bytes{1});
  EXPECT_THROW(WorkLog(Folder / "file").Add(EntryFor("101"), ConfigurationNumbered(1)), FileError);
}

#ifndef _WIN32
// Two programs write as fast as they can and are killed again and again. What Add has answered for is there,
// and at every moment the log can be read and written.
TEST_F(WorkLogs, OfTwoWritersSurviveAHundredKills) {
  std::array<int, 2> answered{};
  ASSERT_EQ(pipe(answered.data()), 0);
  const auto write = [&](const std::string& title) {
    const pid_t child = fork();
    if (child != 0) return child;
    for (int n = 0;; ++n) {
      const std::int64_t number = WorkLog(Folder.Path()).Add(EntryFor(title), ConfigurationNumbered(n));
      if (::write(answered[1], &number, sizeof number) < 0) _exit(1);
    }
  };
  std::array<pid_t, 2> writers = {write("a"), write("b")};
  std::map<std::int64_t, int> promised;
  for (int kills = 0; kills < 100; ++kills) {
    std::int64_t number = 0;
    for (int seen = 0; seen <= kills % 3; ++seen) {
      ASSERT_EQ(read(answered[0], &number, sizeof number), static_cast<ssize_t>(sizeof number));
      ++promised[number];
    }
    pid_t& victim = writers[static_cast<std::size_t>(kills % 2)];
    kill(victim, SIGKILL);
    waitpid(victim, nullptr, 0);
    victim = write(kills % 2 == 0 ? "a" : "b");
  }
  for (const pid_t writer : writers) {
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
  }
  close(answered[0]);
  close(answered[1]);
  for (const WorkLogEntry& entry : Log.Entries()) {
    promised.erase(entry.Number);
    ASSERT_TRUE(Log.ConfigurationOf(entry.Number)) << entry.Number;
  }
  EXPECT_THAT(promised, IsEmpty());
  EXPECT_EQ(Log.TakeMessage(), std::nullopt) << "nothing was damaged";
}
#endif

TEST(RoomStates, FollowTheNewestAttemptAndTheImage) {
  const PanelConfiguration sent =
      ReadConfiguration(PathFromUtf8(QDM_SOURCE_DIR "/examples/Boardroom QDM7.BVC"));
  PanelConfiguration configuration = sent;
  const std::string room = "/rooms/101";
  const auto stateAfter = [&](const std::vector<DownloadOutcome>& newestFirst) {
    std::vector<WorkLogEntry> entries;
    for (const DownloadOutcome outcome : newestFirst) {
      entries.push_back(EntryFor("101", outcome));
      entries.back().Image = Sha256(BuildPanelImage(sent));
    }
    entries.insert(entries.begin(), EntryFor("other", DownloadOutcome::Failed));
    const RoomHistories histories(entries);
    return StatusOf(configuration, room, histories);
  };
  using enum DownloadOutcome;
  EXPECT_EQ(stateAfter({}).State, RoomState::Never);
  EXPECT_EQ(stateAfter({}).LastSent, std::nullopt);
  EXPECT_TRUE(stateAfter({Done, Failed}).IsDone());
  EXPECT_TRUE(stateAfter({Done}).LastSent);
  for (const DownloadOutcome outcome : {NotRestarted, Failed, NotConnected, Interrupted}) {
    EXPECT_EQ(stateAfter({outcome, Done}).State, RoomState::Unfinished);
    EXPECT_TRUE(stateAfter({outcome, Done}).LastSent) << "that of the success";
  }
  configuration.UpTime = 77;
  configuration.OutputsOption = kOutputsScreen;
  EXPECT_EQ(stateAfter({Done}).State, RoomState::Changed);
  configuration.RoomTimeout = 400;  // no image
  EXPECT_EQ(stateAfter({Done}).State, RoomState::Changed);
  configuration.Projector.Model = {};
  EXPECT_FALSE(stateAfter({Done}).IsDone());
}

TEST(RoomStates, AndOutcomesHaveTheirWords) {
  std::string words;
  for (int i = 0; i < 4; ++i) words.append(StateText(static_cast<RoomState>(i))).append("; ");
  for (int i = 0; i < 6; ++i) words.append(OutcomeText(static_cast<DownloadOutcome>(i))).append("; ");
  EXPECT_EQ(words,
            "current; changed; never; unfinished; done; not restarted; failed; not connected; interrupted; "
            "unknown; ");
}

TEST(PortNumbers, AreThoseOfTheSixteenPorts) {
  const std::pair<const char*, int> cases[] = {{"COM1", 1},  {"COM16", 16}, {"COM17", 0}, {"COM0", 0},
                                               {"COM-1", 0}, {"COM", 0},    {"LPT1", 0},  {"", 0}};
  for (const auto& [port, number] : cases) EXPECT_EQ(PortNumberOf(port), number) << port;
}

}  // namespace
}  // namespace qdm
