// Search and programming as the programs run them: through a real serial port, with a simulated panel behind
// a pseudo-terminal at its other end.
#include "panels/frame.h"
#include "panels/panel_search.h"
#include "serial_io/port_list.h"
#include "serial_io/pseudo_terminal_panel.h"
#include "support/event_loop.h"
#include "support/programming_recorder.h"
#include "support/scaled_waiting.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

using std::chrono::milliseconds;

// The procedures' half second takes a twentieth of one here.
constexpr int kFaster = 10;
constexpr int kType = 0;

// Every value, FF and FE among them.
PanelImage VariedImage() {
  PanelImage image;
  for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(255 - i * 7 % 256);
  return image;
}

struct PanelOnPseudoTerminal : testing::Test {
  void Attach(const std::vector<std::string>& faults = {}, const char* settings = "9600,n,8,2",
              Pacing pacing = Pacing::None) {
    SimulatedPanel::Description description;
    description.Settings = settings;
    for (const std::string& text : faults) {
      description.Faults.push_back(ParsePanelFault(text));
      description.Faults.back().Delay /= kFaster;
    }
    panel.emplace(description);
    device = std::make_unique<PseudoTerminalPanel>(*panel, wall, pacing);
    port = PortAt(device->Device());
  }

  ProgrammingResult Program(Waiting& time) {
    user.Told.clear();
    return ProgramPanel(*port, "9600,n,8,2", kType, image, time, stop.get_token(), user);
  }

  std::string Texts() const {
    std::string texts;
    for (const Message& message : user.Told) texts += message.Text + "|";
    return texts;
  }

  EventLoopWaiting wall;
  ScaledWaiting scaled{wall, kFaster};
  std::stop_source stop;
  std::optional<SimulatedPanel> panel;
  std::unique_ptr<PseudoTerminalPanel> device;
  std::unique_ptr<SerialPort> port;
  const PanelImage image = VariedImage();
  ProgrammingRecorder user;
};

TEST_F(PanelOnPseudoTerminal, IsFoundAtItsSpeedWhateverElseIsOnThePorts) {
  Attach({}, "38400,n,8,2");
  const PseudoTerminal nobody;
  std::vector<SearchSlot> slots(3);
  slots[0].Port = PortAt(nobody.Device());
  slots[1].Port = PortAt("/dev/missing");
  slots[2].Port = PortAt(device->Device());
  SearchAllPorts(slots, kType, scaled, stop.get_token(), [](std::size_t) {});
  EXPECT_EQ(StatusText(slots[0]), "No QDM found");
  EXPECT_EQ(StatusText(slots[1]), "No Port");
  EXPECT_EQ(StatusText(slots[2]), "QDM7 1.3");
  EXPECT_EQ(slots[2].Settings(), "38400,n,8,2");
  EXPECT_THAT(RestartFoundPanels(slots, scaled, stop.get_token()), testing::IsEmpty());
  EXPECT_EQ(panel->Restarts(), 1);
  for (const SearchSlot& slot : slots) EXPECT_FALSE(slot.Port->IsOpen());
}

TEST_F(PanelOnPseudoTerminal, IsFoundLaterWhenAnAnswerIsSpoilt) {
  const struct {
    const char* Fault;
    const char* FoundAt;
  } cases[] = {{"wrong-ident:1", "9600,e,8,2"},
               {"lose-ident:1", "9600,e,8,2"},
               {"noise-ident:1", "9600,e,8,2"},
               {"long-ident:1", "9600,e,8,2"},
               // Not taken for the answer at the next setting either.
               {"late-ident:1:700", "9600,o,8,2"}};
  for (const auto& [fault, foundAt] : cases) {
    Attach({fault});
    std::vector<SearchSlot> slots(1);
    slots[0].Port = PortAt(device->Device());
    SearchAllPorts(slots, kType, scaled, stop.get_token(), [](std::size_t) {});
    EXPECT_EQ(slots[0].Settings(), foundAt) << fault;
  }
}

TEST_F(PanelOnPseudoTerminal, TakesAWholeImageAtTheTrueSpeedOfItsLine) {
  Attach({}, "9600,n,8,2", Pacing::TrueByteTime);
  std::size_t bytes = 0;
  for (int record = 0; record < kRecords; ++record) bytes += ProgramRecord(image, record).size() + 1;
  const Microseconds start = wall.Now();
  const ProgrammingResult result = Program(wall);
  EXPECT_TRUE(result.Programmed && result.Restarted);
  EXPECT_EQ(result.Retries, 0);
  EXPECT_EQ(panel->Memory(), image);
  EXPECT_EQ(Texts(), "The QDM panel has been programed|");
  EXPECT_GT(wall.Now() - start, TimeOfBytes(bytes, ParseLineSettings("9600,n,8,2")));
}

TEST_F(PanelOnPseudoTerminal, IsProgrammedThroughPassingFaults) {
  for (const char* fault : {"lose-ack:5", "lose-ack:%25", "wrong-ack:7", "noise:4", "late-ack:6:1200",
                            "late-ack:%30:1200", "corrupt:3", "corrupt:11:12:128", "drop:20", "drop:1:0"}) {
    Attach({fault});
    const ProgrammingResult result = Program(scaled);
    EXPECT_TRUE(result.Programmed && result.Restarted) << fault;
    EXPECT_EQ(result.Records, kRecords) << fault;
    EXPECT_GE(result.Retries, 1) << fault;
    EXPECT_EQ(panel->Memory(), image) << fault;
    EXPECT_EQ(Texts(), "The QDM panel has been programed|") << fault;
  }
}

TEST_F(PanelOnPseudoTerminal, ThatDiesAtRecordFortyFailsToProgramAndToRestart) {
  Attach({"die:40"});
  const ProgrammingResult result = Program(scaled);
  EXPECT_TRUE(result.Connected);
  EXPECT_EQ(result.Records, 39);
  EXPECT_EQ(Texts(), "The QDM panel failed to program|The QDM panel failed to restart|");
  EXPECT_FALSE(port->IsOpen());
}

TEST_F(PanelOnPseudoTerminal, UnpluggedInTheMiddleFailsWithoutWaitingForIt) {
  Attach();
  user.WhenAcknowledged = [this](int records) {
    if (records == 20) device.reset();
  };
  const ProgrammingResult result = Program(scaled);
  EXPECT_FALSE(result.Programmed);
  EXPECT_EQ(result.Records, 20);
  EXPECT_THAT(Texts(), testing::HasSubstr("The QDM panel failed to program|"));
  EXPECT_FALSE(port->IsOpen());
}

}  // namespace
}  // namespace qdm
