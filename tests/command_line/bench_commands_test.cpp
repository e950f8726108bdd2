// projector, probe and what describe tells of the codes; in process, in virtual time.
#include "support/bench_lines.h"
#include "support/qdm_runner.h"
#include "support/strings.h"

namespace qdm {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

struct BenchCommands : testing::Test {
  BenchCommands() {
    qdm.PortAt = [this](const std::string& device) {
      auto line = std::make_unique<BenchLine>(qdm.Time, far);
      line->Present = device == "bench";
      opened = line.get();
      return line;
    };
  }
  static ProjectorDefinition Definition() {
    ProjectorDefinition projector = NamedProjector("ACME", "X 100");
    Define(projector, kPowerOnSlot, Characters("ON\r"));
    Define(projector, kPowerOnReplySlot, String({{'O'}, {'K'}, {'7', ByteKind::IGN}}));
    Define(projector, kVolumeUpSlot, String({{'V'}, {0, ByteKind::VAR}, {13}}));
    projector.MessageFormat = 1;
    projector.NumberOfBytes = 2;
    projector.MaximumLevel = 60;
    projector.WarmUpTime = 30;
    projector.InterCommandDelay = 500;
    return projector;
  }
  void Say(Microseconds after, const std::string& text) {
    qdm.Time.At(qdm.Time.Now() + after, [this, text] { opened->Hear(text); });
  }

  QdmRunner qdm;
  std::string file = qdm.Write("X.BVD", std::vector{Definition()});
  Bytes written;
  BenchLine::Far far = [this](std::uint8_t byte, const std::string&) {
    written.push_back(byte);
    return std::pair(Bytes(), Microseconds(0));
  };
  BenchLine* opened = nullptr;
};

TEST_F(BenchCommands, ProjectorAnswersAndTellsWhatItHears) {
  Say(1s, "ON\r");
  Say(2s, "V42\r");
  Say(2100ms, "ON\r");
  qdm.Time.At(qdm.Time.Now() + 4s, [&] { qdm.Stop.request_stop(); });
  const Outcome heard =
      qdm.Run({"projector", file, "--port", "bench", "--wrong", "--busy", "BUSY<CR>", "--remarks"});
  EXPECT_THAT(heard, Answers(0,
                             "1000\t-\tPower on\t4F 4E 0D\n2000\t1000\tVolume up\t56 34 32 0D\n"
                             "2100\t100\tPower on\t4F 4E 0D\n",
                             "Volume up: level 42\n"
                             "Power on: too soon after the command before; busy: warming up or cooling down\n"
                             "Press each button: 2 of 2 heard\n"));
  EXPECT_EQ(written, (Bytes{'O', 'K' ^ 1, 0, 'B', 'U', 'S', 'Y', '\r'}));
}

TEST_F(BenchCommands, ProjectorSaysWhyItCannotOrNoLongerListen) {
  EXPECT_THAT(qdm.Run({"projector", file, "--port", "gone"}),
              Answers(1, "", SaysInOneLine("gone: there is no such port")));
  EXPECT_THAT(qdm.Run({"projector", file, "--busy", "50 57"}), IsUnusable("--busy: can be read as 50 57"));
  EXPECT_THAT(qdm.Run({"projector", file, "--model", "Y"}),
              Answers(1, "", SaysInOneLine("there is no such projector")));
  Say(1s, "ON\r");
  qdm.Time.At(qdm.Time.Now() + 2s, [&] { opened->Present = false; });
  EXPECT_THAT(qdm.Run({"projector", file, "--port", "bench", "--silent"}),
              Answers(1, "1000\t-\tPower on\t4F 4E 0D\n", SaysInOneLine("bench: the port is gone")));
  EXPECT_TRUE(written.empty());
}

TEST_F(BenchCommands, ProbeFindsTheSettingsOrSaysWhatToCheck) {
  far = [](std::uint8_t byte, const std::string& at) {
    return std::pair(byte == 13 && at == "19200,e,8,2" ? Bytes{'O', 'K', '!'} : Bytes(), Microseconds(9ms));
  };
  const Outcome found = qdm.Run({"probe", file, "--slot", "power ON", "--port", "bench"});
  EXPECT_THAT(
      found,
      Answers(0, AllOf(StartsWith("9600,n,8,1\t-\tnothing\n"), HasSubstr("\n19200,e,8,2\t4F 4B 21\treply\n")),
              ""));
  EXPECT_EQ(std::count(found.Out.begin(), found.Out.end(), '\n'), 30);

  qdm.Ports.AttachLine(2, "ttySIM2");
  qdm.Ports.AttachLine(4, "ttySIM4");
  EXPECT_THAT(qdm.Run({"probe", file, "--send", "?<CR>"}),
              Answers(1, StartsWith("COM2\t9600,n,8,1\t-\tnothing\nCOM4\t9600,n,8,1\t-\tnothing\n"),
                      AllOf(HasSubstr("everything is silent"), HasSubstr("null-modem (crossed)"))));
  EXPECT_THAT(qdm.Run({"probe", file, "--send", "50 57"}), IsUnusable("can be read as 50 57"));
  EXPECT_THAT(qdm.Run({"probe", file}), IsUnusable("--slot NAME or --send TEXT"));
  EXPECT_THAT(qdm.Run({"probe", file, "--slot", "Blank"}), Answers(1, "", SaysInOneLine("no bytes")));
  qdm.Time.At(qdm.Time.Now() + 700ms, [&] { opened->Present = false; });
  EXPECT_THAT(qdm.Run({"probe", file, "--slot", "Power on", "--port", "bench"}),
              Answers(1, "9600,n,8,1\t-\tnothing\n", SaysInOneLine("bench: the port is gone")));
}

TEST_F(BenchCommands, DescribeTellsWhatTheCodesHaveInCommonAndWhichBreakIt) {
  PanelConfiguration configuration = UsableConfiguration();
  for (const Slot slot : {kPowerOnSlot, kPowerOffSlot, kData1Slot, kData2Slot, kVideoSlot, kBlankSlot}) {
    const auto code = static_cast<std::uint8_t>(slot * 29 + 7);
    const auto sum = static_cast<std::uint8_t>(0x02 + code + (slot == kBlankSlot ? 1 : 0));
    Define(configuration.Projector, slot, String({{0x02}, {code}, {sum}}));
  }
  EXPECT_THAT(qdm.Run({"describe", qdm.Write("room.BVC", configuration)}),
              Answers(0,
                      AllOf(HasSubstr("\nIt drives the projector ACME X 100.\n"),
                            HasSubstr("\nAll six commands begin with 02.\n"),
                            HasSubstr("\nNote: Blank: last byte is 9B, the other five make it 9A.\n")),
                      ""));
}

}  // namespace
}  // namespace qdm
