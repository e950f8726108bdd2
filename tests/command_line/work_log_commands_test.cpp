// log, status, describe, and what download writes down and asks first; in process, in virtual time.
#include "support/panel_descriptions.h"
#include "support/qdm_runner.h"
#include "work_log/work_log.h"

namespace qdm {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;

struct WorkLogCommands : testing::Test {
  SimulatedPanel& Attach(int number, const std::vector<std::string>& faults = {}) {
    return qdm.Ports.AttachPanel(number, "ttySIM", SimulatedPanel(Described(kQdm7, "115200,o,8,2", faults)));
  }
  Microseconds TimeOf(const std::vector<std::string>& command, int status = 0) {
    const Microseconds start = qdm.Time.Now();
    EXPECT_EQ(qdm.Run(command).Status, status);
    return qdm.Time.Now() - start;
  }

  QdmRunner qdm;
  std::string room = qdm.Write("Room 1.BVC", UsableConfiguration());
};

TEST_F(WorkLogCommands, ShowWhatWasSentAndHowFarTheRoomIs) {
  EXPECT_THAT(qdm.Run({"log"}), Answers(0, "", ""));
  EXPECT_THAT(qdm.Run({"status", room}), Answers(1, room + "\tok\t-\tnever\n", ""));
  Attach(3);
  EXPECT_EQ(qdm.Run({"download", room}).Status, 0);
  const std::string digits = HexDigits(Sha256(BuildPanelImage(UsableConfiguration()))).substr(0, 12);
  const std::string line =
      "....-..-..T..:..:..Z\tRoom 1\tQDM7 1.3\tCOM3\t115200,o,8,2\t64\t0\tdone\t" + digits + "\n";
  EXPECT_THAT(qdm.Run({"log"}), Answers(0, MatchesRegex(line), ""));
  EXPECT_THAT(qdm.Run({"log", qdm.Path("other.BVC")}), Answers(0, "", ""));
  EXPECT_THAT(qdm.Run({"log", room, "--json"}),
              Answers(0, AllOf(HasSubstr("\"device\": \"ttySIM\""), HasSubstr("\"outcome\": \"done\"")), ""));
  EXPECT_THAT(qdm.Run({"status", room}), Answers(0, MatchesRegex(".*\tok\t.*Z\tcurrent\n"), ""));

  PanelConfiguration changed = UsableConfiguration();
  changed.RoomTimeout = 5;
  qdm.Write("Room 1.BVC", changed);
  EXPECT_THAT(qdm.Run({"status", room}), Answers(1, MatchesRegex(".*\tok\t.*Z\tchanged\n"), ""));
  Attach(3, {"die:20"});
  EXPECT_EQ(qdm.Run({"download", room}).Status, 1);
  EXPECT_THAT(qdm.Run({"status", room, qdm.Path("none.BVC")}),
              Answers(2, MatchesRegex(".*\tunfinished\n"), SaysInOneLine("none.BVC")));
}

TEST_F(WorkLogCommands, DownloadAsksTheOnePortFirstWhereItsPanelListens) {
  SimulatedPanel& panel = Attach(3);
  const Microseconds searched = TimeOf({"download", room});
  const Microseconds asked = TimeOf({"download", room, "--port", "COM3"});
  EXPECT_EQ(panel.Restarts(), 3) << "after the search, and after each programming";
  EXPECT_EQ(searched - asked, std::chrono::milliseconds(15 * 500))
      << "the search at 15 settings and the second exchange became one";
  // A panel elsewhere may be meant as well.
  Attach(4);
  EXPECT_EQ(qdm.Run({"download", room}).Status, 1);
  // Another panel on the cable: the search finds it as it always did.
  Attach(3);
  EXPECT_EQ(TimeOf({"download", room, "--port", "COM3"}), searched + std::chrono::milliseconds(500));
}

TEST_F(WorkLogCommands, ALogThatCannotBeWrittenIsToldOnceAndStopsNothing) {
  SimulatedPanel& panel = Attach(3);
  std::filesystem::create_directory(qdm.Folder / "WorkLog.db");
  EXPECT_THAT(qdm.Run({"download", room}),
              Answers(0, HasSubstr("has been programed"), SaysInOneLine("work log could not be written")));
  EXPECT_EQ(panel.RecordsWritten(), 64);
  std::filesystem::remove(qdm.Folder / "WorkLog.db");
  qdm.Write("WorkLog.db", Bytes(5000, 'x'));
  EXPECT_THAT(qdm.Run({"download", room}),
              Answers(0, HasSubstr("has been programed"), SaysInOneLine("a new one has been begun.")));
  EXPECT_EQ(qdm.Read("WorkLog.DAMAGED"), Bytes(5000, 'x'));
  EXPECT_THAT(qdm.Run({"log"}), Answers(0, HasSubstr("\tRoom 1\t"), ""));
}

}  // namespace
}  // namespace qdm
