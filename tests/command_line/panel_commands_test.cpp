// find and download, in process, on simulated ports in virtual time.
#include "support/qdm_runner.h"

namespace qdm {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct PanelCommands : testing::Test {
  SimulatedPanel& Attach(int number, std::uint8_t model, const std::string& settings,
                         const std::vector<std::string>& faults = {}, std::uint8_t minor = 3) {
    SimulatedPanel::Description description{.Panel = {.Model = model, .Major = 1, .Minor = minor},
                                            .Settings = settings};
    for (const std::string& fault : faults) description.Faults.push_back(ParsePanelFault(fault));
    return qdm.Ports.AttachPanel(number, "ttySIM" + std::to_string(number), SimulatedPanel(description));
  }
  Outcome Download(std::int16_t type = kQdm7, std::vector<std::string> more = {}) {
    const std::string room = qdm.Write("room.BVC", UsableConfiguration(type));
    more.insert(more.begin(), {"download", room});
    return qdm.Run(more);
  }

  QdmRunner qdm;
};

TEST_F(PanelCommands, FindListsPortsThatAreThereAndRestartsWhatAnswered) {
  SimulatedPanel& panel = Attach(2, 1, "19200,e,8,2");
  SimulatedPanel& amplifier = Attach(3, 4, "9600,n,8,2");
  qdm.Ports.AttachLine(7, "ttySIM7");
  const std::string lines = "COM2\tQDM7 1.3\t19200,e,8,2\nCOM3\tTL-VOX 1.3\t9600,n,8,2\nCOM7\tNo QDM found\n";
  EXPECT_THAT(qdm.Run({"find"}), Answers(0, lines, ""));
  EXPECT_EQ(panel.Restarts(), 1);
  EXPECT_EQ(amplifier.Restarts(), 1);
  EXPECT_THAT(qdm.Run({"find", "--type", "qdm7"}), Answers(0, lines, ""));
  EXPECT_THAT(qdm.Run({"find", "--type", "QDM 6"}), Answers(1, lines, ""));
  EXPECT_THAT(qdm.Run({"find", "--port", "com3", "--port", "COM9", "--port", "COM3"}),
              Answers(0, "COM3\tTL-VOX 1.3\t9600,n,8,2\nCOM9\tNo Port\n", ""));
}

TEST_F(PanelCommands, DownloadProgramsTheOnePanelOfTheType) {
  SimulatedPanel& panel = Attach(4, 1, "38400,o,8,2");
  Attach(5, 2, "9600,n,8,2");
  const Outcome outcome = Download();
  EXPECT_THAT(outcome, Answers(0,
                               AllOf(HasSubstr("QDM7 1.3 on COM4 at 38400,o,8,2\n"),
                                     HasSubstr("The QDM panel has been programed\n"),
                                     HasSubstr("64 of 64 records, 0 retries, ")),
                               ""));
  EXPECT_EQ(panel.Memory(), BuildPanelImage(UsableConfiguration()));
  EXPECT_EQ(panel.Restarts(), 2);  // after the search, after programming
}

TEST_F(PanelCommands, DownloadTellsEveryEndOfTheProcedure) {
  struct Case {
    std::vector<std::string> Faults;
    int Status;
    std::vector<std::string> Out;
    std::string Err;
  };
  const std::vector<Case> cases = {
      {{"lose-ack:5", "corrupt:20"}, 0, {"has been programed", "64 of 64 records, 2 retries"}, ""},
      {{"die:10"},
       1,
       {"failed to program", "failed to restart", "9 of 64 records, 5 retries"},
       "failed after 9 of 64"},
      {{"lose-restart"}, 1, {"has been programed", "The QDM panel failed to restart"}, "did not restart"},
      {{"lose-ident:2"}, 0, {"has been programed"}, ""},
  };
  for (const Case& c : cases) {
    qdm.Ports.AttachLine(1, "ttySIM1");
    Attach(1, 1, "9600,n,8,2", c.Faults);
    const Outcome outcome = Download();
    EXPECT_EQ(outcome.Status, c.Status) << testing::PrintToString(outcome);
    for (const std::string& line : c.Out) EXPECT_THAT(outcome.Out, HasSubstr(line));
    EXPECT_THAT(outcome.Err, c.Err.empty() ? testing::Matcher<std::string>("") : HasSubstr(c.Err));
  }
}

TEST_F(PanelCommands, DownloadLeavesEveryPanelRunningWhenItCannotChoose) {
  SimulatedPanel& first = Attach(1, 1, "9600,n,8,2");
  SimulatedPanel& second = Attach(2, 1, "19200,n,8,2");
  EXPECT_THAT(Download(), Answers(1,
                                  "COM1\tQDM7 1.3\t9600,n,8,2\nCOM2\tQDM7 1.3\t19200,n,8,2\n"
                                  "Choose one with --port\n",
                                  HasSubstr("room.BVC: 2 of type QDM 7 found")));
  EXPECT_THAT(Download(kQdm4),
              Answers(1, "No QDM found\n", HasSubstr("no QDM 4 found; QDM7 1.3 is on COM1; ")));
  EXPECT_EQ(first.Restarts(), 2);
  EXPECT_EQ(second.Restarts(), 2);
  EXPECT_EQ(first.RecordsSeen() + second.RecordsSeen(), 0);

  EXPECT_EQ(Download(kQdm7, {"--port", "COM2"}).Status, 0);
  EXPECT_EQ(second.RecordsWritten(), 64);
  EXPECT_EQ(first.Restarts(), 2);  // nobody asked it
}

TEST_F(PanelCommands, DownloadRefusesWhatTheEditorRefuses) {
  SimulatedPanel& amplifier = Attach(1, 4, "9600,n,8,2", {}, 2);
  EXPECT_THAT(
      Download(kTlVox),
      Answers(1, AllOf(HasSubstr("operate with TL-VOX firmware 1.3 or higher\n"), Not(HasSubstr("\r"))),
              HasSubstr("the firmware of TL-VOX 1.2 is too old")));
  EXPECT_EQ(amplifier.RecordsSeen(), 0);
  EXPECT_EQ(amplifier.Restarts(), 1);

  EXPECT_THAT(
      qdm.Run({"download", qdm.Write("new.BVC", PanelConfiguration{})}),
      Answers(1, "Cannot proceed, no projector has been defined!\n", HasSubstr("refused by the check")));
  PanelConfiguration wide = UsableConfiguration();
  wide.RoomTimeout = 300;
  EXPECT_THAT(qdm.Run({"download", qdm.Write("wide.BVC", wide)}),
              Answers(1, "", HasSubstr("RoomTimeout = 300")));
  EXPECT_EQ(amplifier.Restarts(), 1);  // found out before the search
}

TEST_F(PanelCommands, AStopLeavesThePanelRestartedAndSaysWhereItStood) {
  SimulatedPanel& panel = Attach(1, 1, "9600,n,8,2", {"late-ack:%1:100"});
  qdm.Time.At(qdm.Time.Now() + milliseconds(4000), [this] { qdm.Stop.Set(); });
  EXPECT_THAT(Download(),
              Answers(1, HasSubstr("The QDM panel failed to program\n"), HasSubstr("interrupted after ")));
  EXPECT_GT(panel.RecordsWritten(), 0);
  EXPECT_LT(panel.RecordsWritten(), 64);
  EXPECT_EQ(panel.Restarts(), 2);

  // While it searches: whoever has answered by then is restarted.
  qdm.Stop.Clear();
  qdm.Ports.AttachLine(2, "ttySIM2");
  qdm.Time.At(qdm.Time.Now() + milliseconds(700), [this] { qdm.Stop.Set(); });
  EXPECT_THAT(Download(), Answers(1, "", HasSubstr("interrupted, nothing was programmed")));
  EXPECT_EQ(panel.Restarts(), 3);
  EXPECT_THAT(qdm.Run({"find"}), Answers(1, HasSubstr("COM1\tNo QDM found"), "qdm: find: interrupted\n"));
}

TEST_F(PanelCommands, ProgressIsForTerminalsOnly) {
  Attach(1, 1, "9600,n,8,2");
  EXPECT_EQ(Download().Err, "");
  qdm.OnTerminal = true;
  const Outcome outcome = Download();
  EXPECT_THAT(outcome.Err, AllOf(HasSubstr("\rSearch 9K6,none"), HasSubstr("\rProgramming: 64 of 64 records"),
                                 testing::EndsWith(" \r")));
  EXPECT_THAT(outcome.Out, Not(HasSubstr("Programming")));
}

}  // namespace
}  // namespace qdm
