#include "panels/programming.h"

#include "config/panel_configuration.h"
#include "panels/frame.h"
#include "panels/panel_in_hand.h"
#include "simulation/simulated_line.h"
#include "support/panel_descriptions.h"
#include "support/programming_recorder.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <numeric>

namespace qdm {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;

const Message kDone{"The QDM panel has been programed", "Done!", MessageIcon::None};
const Message kFailed{"The QDM panel failed to program", "Error!", MessageIcon::Exclamation};
const Message kNotConnected{"Could not connect to QDM panel", "Error!", MessageIcon::Exclamation};
const Message kNotRestarted{"The QDM panel failed to restart", "Error!", MessageIcon::Exclamation};

// Bytes of every value, among them those that are escaped.
PanelImage SomeImage() {
  PanelImage image;
  for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(i * 37 + i / 100);
  image[11] = 0x02;  // as a panel's line: 38400,n
  return image;
}

// A QDM 7 at 19200,e on a simulated line, with faults.
class Download : public testing::Test {
 protected:
  void PanelWith(const std::vector<std::string>& faults, std::string settings = "19200,e,8,2") {
    panel = std::make_unique<SimulatedPanel>(Described(kQdm7, std::move(settings), faults));
    line = std::make_unique<SimulatedLine>(panel.get(), time, Pacing::TrueByteTime);
  }
  void Program(const std::string& settings = "19200,e,8,2", int controllerType = kQdm7) {
    user.Told.clear();
    const Microseconds start = time.Now();
    result = ProgramPanel(*line, settings, controllerType, image, time, stop.get_token(), user);
    took = time.Now() - start;
    EXPECT_FALSE(line->IsOpen());
  }
  bool MemoryIsImage() const { return panel->Memory() == image; }

  VirtualTime time;
  PanelImage image = SomeImage();
  std::unique_ptr<SimulatedPanel> panel;
  std::unique_ptr<SimulatedLine> line;
  std::stop_source stop;
  ProgrammingRecorder user;
  ProgrammingResult result;
  Microseconds took{};
};

TEST_F(Download, ProgramsEveryByteAndRestartsThePanel) {
  PanelWith({});
  Program("9600,n,8,2");  // where the panel is not found: every other setting is tried
  EXPECT_TRUE(MemoryIsImage());
  EXPECT_THAT(user.Told, ElementsAre(kDone));
  std::vector<int> everyRecord(kRecords + 1);
  std::iota(everyRecord.begin(), everyRecord.end(), 0);
  EXPECT_EQ(user.Progress, everyRecord);
  EXPECT_TRUE(result.Connected && result.Programmed && result.Restarted);
  EXPECT_EQ(result.Records, kRecords);
  EXPECT_EQ(result.Retries, 0);
  EXPECT_EQ(panel->Restarts(), 1);
  EXPECT_EQ(panel->OwnSettings().Speed, 38400) << "listens where its new memory says";
}

TEST_F(Download, DoesNotConnectToAnotherTypeOrToNothing) {
  PanelWith({});
  Program("19200,e,8,2", kQdm6);
  EXPECT_THAT(user.Told, ElementsAre(kNotConnected));
  EXPECT_EQ(took, milliseconds(16 * 500));
  EXPECT_EQ(panel->RecordsSeen(), 0);
  EXPECT_EQ(panel->Restarts(), 0);
}

TEST_F(Download, RepeatsWhatGoesWrongOnTheWay) {
  const std::vector<std::string> faults = {"lose-ack:3",  "wrong-ack:7",      "noise:2",
                                           "long-ack:2",  "late-ack:5:1500",  "late-ack:64:1999",
                                           "drop:9",      "drop:9:0",         "drop:9:1",
                                           "corrupt:9",   "corrupt:9:0:128",  "corrupt:64:12:255",
                                           "restart:10",  "lose-restart:1",   "late-restart:1:700",
                                           "lose-ack:%7", "late-ack:%9:2000", "drop:1:2"};
  for (const std::string& fault : faults) {
    SCOPED_TRACE(fault);
    PanelWith({fault});
    Program();
    EXPECT_THAT(user.Told, ElementsAre(kDone));
    EXPECT_TRUE(MemoryIsImage());
    EXPECT_EQ(result.Retries, panel->RecordsSeen() - kRecords);
    EXPECT_LT(took, seconds(7) + result.Retries * milliseconds(3200)) << "late replies are waited for once";
  }
}

TEST_F(Download, GivesUpAfterSixSilences) {
  PanelWith({"die:40"});
  Program();
  EXPECT_THAT(user.Told, ElementsAre(kFailed, kNotRestarted));
  EXPECT_EQ(result.Records, 39);
  EXPECT_EQ(result.Retries, 5);

  PanelWith({"lose-ack"});
  Program();
  EXPECT_THAT(user.Told, ElementsAre(kFailed));
  EXPECT_EQ(panel->RecordsSeen(), 6);
  EXPECT_EQ(panel->Restarts(), 1) << "partly written, but running";

  PanelWith({"late-ack:64:1900", "lose-restart"});
  Program();
  EXPECT_THAT(user.Told, ElementsAre(kDone, kNotRestarted)) << "what comes late confirms no restart";
  EXPECT_TRUE(result.Programmed);
  EXPECT_FALSE(result.Restarted);
}

// The acknowledgement of attempt 1 of record 10 comes 1.9 s late, while record 11 is lost on its way six
// times.
TEST_F(Download, ALateAcknowledgementConfirmsNoLaterRecord) {
  for (const int late : {600, 1000, 1500, 1900, 2000}) {
    SCOPED_TRACE(late);
    PanelWith({"late-ack:10:" + std::to_string(late), "drop:12", "drop:13", "drop:14", "drop:15", "drop:16",
               "drop:17"});
    Program();
    EXPECT_THAT(user.Told, ElementsAre(kFailed));
    EXPECT_EQ(result.Records, 10);
  }
}

TEST_F(Download, AStopRequestEndsItAsFailedAndRestartsThePanel) {
  PanelWith({});
  time.At(time.Now() + milliseconds(800), [this] { stop.request_stop(); });
  Program();
  EXPECT_THAT(user.Told, ElementsAre(kFailed));
  EXPECT_GT(result.Records, 0);
  EXPECT_LT(result.Records, kRecords);
  EXPECT_EQ(panel->Restarts(), 1);
  EXPECT_LT(took, seconds(1));

  PanelWith({});
  Program();
  EXPECT_THAT(user.Told, ElementsAre(kNotConnected)) << "stopped before it began";
  EXPECT_EQ(took, Microseconds(0));
}

TEST_F(Download, WhoEndsTheProgramInTheMiddleRestartsThePanelAndTheProcedureKnows) {
  PanelWith({});
  const Microseconds end = time.Now() + milliseconds(812);  // a frame is on the line
  time.At(end, [this, end] {
    RestartPanelsInHand(time);
    EXPECT_EQ(panel->Restarts(), 1);
    EXPECT_LE(time.Now(), end + seconds(1));
    RestartPanelsInHand(time);
  });
  Program();
  EXPECT_THAT(user.Told, ElementsAre(kFailed));
  EXPECT_GT(result.Records, 0);
  EXPECT_TRUE(result.Restarted);
  EXPECT_EQ(panel->Restarts(), 1);
  RestartPanelsInHand(time);
  EXPECT_EQ(panel->Restarts(), 1) << "nobody is in hand any more";
}

TEST_F(Download, AnAdapterThatIsPulledOutEndsItAtOnce) {
  for (const int after : {100, 600, 900}) {
    SCOPED_TRACE(after);
    PanelWith({});
    line->UnplugAt(time.Now() + milliseconds(after));
    Program();
    EXPECT_EQ(took, milliseconds(after));
    if (after < 500) {
      EXPECT_THAT(user.Told, ElementsAre(kNotConnected));
    } else {
      EXPECT_THAT(user.Told, ElementsAre(kFailed, kNotRestarted));
    }
  }
}

TEST_F(Download, RestartsEveryPanelThatAnsweredWhateverItsType) {
  SimulatedPorts ports(time);
  ports.AttachPanel(1, "simulated", SimulatedPanel(Described(kQdm7, "9600,n,8,2")));
  ports.AttachPanel(2, "simulated", SimulatedPanel(Described(kQdm6, "9600,n,8,2", {"no-restart-ack"})));
  ports.AttachPanel(3, "simulated", SimulatedPanel(Described(kTlVox, "9600,n,8,2")));
  ports.AttachLine(4, "silent");
  std::vector<SearchSlot> slots = AllSlots(ports);
  SearchAllPorts(slots, kQdm7, time, stop.get_token(), nullptr);
  for (const int number : {1, 2, 3}) EXPECT_TRUE(ports.PanelAt(number)->InSetUpMode());
  EXPECT_THAT(RestartFoundPanels(slots, time, stop.get_token()), ElementsAre(1));
  EXPECT_EQ(ports.PanelAt(2)->Restarts(), 6);
  for (const int number : {1, 2, 3}) EXPECT_FALSE(ports.PanelAt(number)->InSetUpMode());
}

// Three that do not answer take as long as one, and a stop ends it with the attempt that has begun.
TEST_F(Download, RestartsSideBySideAndStopsWithinASecond) {
  SimulatedPorts ports(time);
  for (const int number : {1, 2, 3}) {
    ports.AttachPanel(number, "simulated",
                      SimulatedPanel(Described(kQdm7, "9600,n,8,2", {"no-restart-ack"})));
  }
  std::vector<SearchSlot> slots = AllSlots(ports);
  SearchAllPorts(slots, kQdm7, time, stop.get_token(), nullptr);
  Microseconds start = time.Now();
  EXPECT_THAT(RestartFoundPanels(slots, time, stop.get_token()), testing::SizeIs(3));
  EXPECT_EQ(time.Now() - start, milliseconds(6 * 500 + 2100));
  start = time.Now();
  time.At(start + milliseconds(700), [this] { stop.request_stop(); });
  EXPECT_THAT(RestartFoundPanels(slots, time, stop.get_token()), testing::SizeIs(3));
  EXPECT_EQ(time.Now() - start, seconds(1));
  EXPECT_EQ(ports.PanelAt(1)->Restarts(), 6 + 2);
}

// Noise keeps it in the wait for late replies.
TEST_F(Download, ALineThatNeverFallsSilentIsGivenUpAndAStopEndsThatWaitToo) {
  for (const bool stopped : {false, true}) {
    PanelWith({"lose-ack:3"});
    for (int i = 0; i < 200; ++i) line->NoiseAt(time.Now() + milliseconds(1000 + 100 * i), Bytes{0x55});
    if (stopped) time.At(time.Now() + seconds(3), [this] { stop.request_stop(); });
    Program();
    EXPECT_EQ(user.Told.front(), kFailed);
    EXPECT_FALSE(MemoryIsImage());
    EXPECT_EQ(took <= seconds(4), stopped);
    EXPECT_FALSE(panel->InSetUpMode());
  }
}

TEST(FirmwareGate, RefusesAmplifiersBefore13) {
  using Panel = Identification;
  for (const Panel refused : {Panel{4, 1, 0}, Panel{4, 1, 1}, Panel{4, 1, 2}, Panel{4, 11, 2}}) {
    const std::optional<Message> message = FirmwareGate(refused);
    ASSERT_TRUE(message) << IdentificationText(refused);
    EXPECT_EQ(message, (Message{message->Text, "Sorry", MessageIcon::Exclamation}))
        << "the text is among the established";
  }
  for (const Panel passed : {Panel{4, 1, 3}, Panel{4, 2, 0}, Panel{4, 1, 12}, Panel{4, 0, 2}, Panel{1, 1, 2},
                             Panel{3, 1, 0}, Panel{0, 1, 2}, Panel{5, 1, 2}}) {
    EXPECT_FALSE(FirmwareGate(passed)) << IdentificationText(passed);
  }
}

}  // namespace
}  // namespace qdm
