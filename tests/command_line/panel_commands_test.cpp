// find and download, in process, on simulated ports in virtual time.
#include "support/panel_descriptions.h"
#include "support/qdm_runner.h"

namespace qdm {
namespace {

using testing::AllOf;
using testing::HasSubstr;

struct PanelCommands : testing::Test {
  SimulatedPanel& Attach(int number, int type, const std::string& settings,
                         const std::vector<std::string>& faults = {}) {
    return qdm.Ports.AttachPanel(number, "ttySIM" + std::to_string(number),
                                 SimulatedPanel(Described(type, settings, faults)));
  }
  Outcome Download(std::int16_t type = kQdm7, const std::vector<std::string>& port = {}) {
    std::vector<std::string> arguments = {"download", qdm.Write("room.BVC", UsableConfiguration(type))};
    arguments.insert(arguments.end(), port.begin(), port.end());
    return qdm.Run(arguments);
  }

  QdmRunner qdm;
};

TEST_F(PanelCommands, FindListsPortsThatAreThereAndRestartsWhatAnswered) {
  SimulatedPanel& panel = Attach(2, kQdm7, "19200,e,8,2");
  SimulatedPanel& amplifier = Attach(3, kTlVox, "9600,n,8,2");
  qdm.Ports.AttachLine(7, "ttySIM7");
  const std::string lines = "COM2\tQDM7 1.3\t19200,e,8,2\nCOM3\tTL-VOX 1.3\t9600,n,8,2\nCOM7\tNo QDM found\n";
  EXPECT_THAT(qdm.Run({"find"}), Answers(0, lines, ""));
  EXPECT_FALSE(panel.InSetUpMode() || amplifier.InSetUpMode());
  EXPECT_THAT(qdm.Run({"find", "--type", "QDM 6"}), Answers(1, lines, ""));
  EXPECT_THAT(
      qdm.Run({"find", "--port", "com3", "--port", "COM9", "--port", "COM3"}),
      Answers(0, "COM3\tTL-VOX 1.3\t9600,n,8,2\nCOM9\tNo Port\n", "qdm: COM9: there is no such port\n"));
}

TEST_F(PanelCommands, DownloadProgramsTheOnePanelOfTheTypeAndShowsATerminalHow) {
  SimulatedPanel& panel = Attach(4, kQdm7, "38400,o,8,2");
  Attach(5, kQdm6, "9600,n,8,2");
  const auto done = AllOf(HasSubstr("QDM7 1.3 on COM4 at "), HasSubstr("The QDM panel has been programed\n"),
                          HasSubstr("64 of 64 records, 0 retries, "));
  EXPECT_THAT(Download(), Answers(0, done, ""));
  EXPECT_EQ(panel.Memory(), BuildPanelImage(UsableConfiguration()));
  EXPECT_EQ(panel.Restarts(), 2);  // after the search, after programming
  qdm.OnTerminal = true;
  EXPECT_THAT(Download(), Answers(0, done, HasSubstr("\rProgramming: 64 of 64 records")));
}

TEST_F(PanelCommands, DownloadTellsThatThePanelDidNotRestart) {
  Attach(1, kQdm7, "9600,n,8,2", {"lose-restart"});
  EXPECT_THAT(Download(), Answers(1, AllOf(HasSubstr("has been programed"), HasSubstr("failed to restart")),
                                  HasSubstr("did not restart")));
}

TEST_F(PanelCommands, DownloadLeavesEveryPanelRunningWhenItCannotChoose) {
  SimulatedPanel& first = Attach(1, kQdm7, "9600,n,8,2");
  SimulatedPanel& second = Attach(2, kQdm7, "19200,n,8,2");
  EXPECT_THAT(Download(), Answers(1,
                                  "COM1\tQDM7 1.3\t9600,n,8,2\nCOM2\tQDM7 1.3\t19200,n,8,2\n"
                                  "Choose one with --port\n",
                                  HasSubstr("room.BVC: 2 of type QDM 7 found")));
  EXPECT_THAT(Download(kQdm4), Answers(1, "No QDM found\n", HasSubstr("no QDM 4 found; QDM7 1.3 is on")));
  EXPECT_EQ(first.Restarts() + second.Restarts(), 4);
  EXPECT_EQ(Download(kQdm7, {"--port", "COM2"}).Status, 0);
  EXPECT_EQ(first.RecordsSeen(), 0);
  EXPECT_EQ(second.RecordsSeen(), 64);
}

TEST_F(PanelCommands, AStopLeavesThePanelRestartedAndSaysWhereItStood) {
  SimulatedPanel& panel = Attach(1, kQdm7, "9600,n,8,2", {"late-ack:%1:100"});
  qdm.Time.At(qdm.Time.Now() + std::chrono::seconds(4), [this] { qdm.Stop.request_stop(); });
  EXPECT_THAT(Download(), Answers(1, HasSubstr("failed to program\n"), HasSubstr("interrupted after ")));
  EXPECT_GT(panel.RecordsWritten(), 0);
  EXPECT_LT(panel.RecordsWritten(), 64);
  EXPECT_EQ(panel.Restarts(), 2);
}

}  // namespace
}  // namespace qdm
