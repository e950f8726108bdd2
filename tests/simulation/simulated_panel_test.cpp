#include "simulation/simulated_panel.h"

#include "config/panel_configuration.h"
#include "line/speeds_and_parities.h"
#include "panels/image_layout.h"
#include "panels/panel_search.h"
#include "simulation/simulated_line.h"
#include "support/panel_descriptions.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <set>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const LineSettings kProgramming = ParseLineSettings(kProgrammingSettings);

Bytes Say(SimulatedPanel& panel, ByteView bytes, const LineSettings& line = kProgramming) {
  std::vector<PanelReply> replies;
  for (const std::uint8_t byte : bytes) panel.Receive(byte, line, replies);
  Bytes said;
  for (const PanelReply& reply : replies) said.insert(said.end(), reply.Data.begin(), reply.Data.end());
  return said;
}

PanelImage Counting() {
  PanelImage image;
  for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(255 - i % 256);
  return image;
}

TEST(SimulatedPanel, IgnoresWhatIsNoFrameAndFindsTheNextOne) {
  const Bytes good = ProgramRecord(Counting(), 3);
  Bytes wrongCheck = good;
  wrongCheck.back() ^= 1;
  Bytes wrongEscape = ProgramRecord(Counting(), 0);  // begins FF 22 00 00 FE FE
  wrongEscape[5] = 0x01;
  const Bytes beyondMemory = {0xFF, 0x22, 0xF8, 0x02, 0, 0, 0, 0, 0, 0, 0, 0, 0xE5};
  const std::vector<Bytes> ignored = {wrongCheck,
                                      wrongEscape,
                                      beyondMemory,
                                      Bytes(good.begin(), good.end() - 1),
                                      Bytes(good.begin() + 1, good.end()),
                                      {0xFF, 0x44, 0xBC},
                                      {0xFF, 0x23},
                                      {0xFF},
                                      {0xF0, 0xFE, 0x22, 0x44}};
  for (const Bytes& bytes : ignored) {
    SimulatedPanel panel(Described(kQdm7, "9600,n,8,2"));
    EXPECT_THAT(Say(panel, bytes), IsEmpty()) << testing::PrintToString(bytes);
    EXPECT_EQ(panel.RecordsWritten(), 0);
    EXPECT_THAT(panel.Memory(), testing::Each(0xFF));
    EXPECT_THAT(Say(panel, good), ElementsAre(kAcknowledge)) << testing::PrintToString(bytes);
  }
}

TEST(SimulatedPanel, WaitsInSetUpModeFromItsIdentificationToItsRestart) {
  SimulatedPanel panel(Described(kQdm7, "19200,e,8,2"));
  Say(panel, SearchRequest);
  EXPECT_FALSE(panel.InSetUpMode()) << "was asked at other settings";
  EXPECT_THAT(Say(panel, SearchRequest, ParseLineSettings("19200,e,8,2")), testing::SizeIs(4));
  Say(panel, ProgramRecord(Counting(), 0));
  EXPECT_TRUE(panel.InSetUpMode());
  EXPECT_THAT(Say(panel, RestartCommand), ElementsAre(kAcknowledge));
  EXPECT_FALSE(panel.InSetUpMode());
}

TEST(SimulatedPanel, ListensAfterARestartWhereItsMemorySaysUnlessThatIsNoSetting) {
  const std::size_t place = OffsetOf(kQdmLayout, kProjectorLine);
  const auto listensAt = [place](int code) {
    PanelImage memory = Counting();
    memory[place] = static_cast<std::uint8_t>(code);
    SimulatedPanel panel(Described(kQdm7, "9600,e,8,2"), memory);
    Say(panel, RestartCommand);
    return panel.OwnSettings();
  };
  for (const LineSpeed& speed : LineSpeeds) {
    for (const ParityChoice& parity : LineParities) {
      const LineSettings own = listensAt(speed.Code | parity.Code << 4);
      EXPECT_EQ(own.Speed, speed.BitsPerSecond);
      EXPECT_EQ(own.Parity, parity.Parity);
    }
  }
  for (const int none : {5, 0x30, 0x80}) EXPECT_EQ(listensAt(none).Parity, LineParity::Even) << none;
}

TEST(PanelFaults, ABadTextIsRefused) {
  for (const char* text : {"", "loose-ack:3", "lose-ack:%0", "lose-ack:3:4", "late-ack:3", "late-ack:3:99999",
                           "corrupt:1:23", "corrupt:1:2:0", "no-restart-ack:1"}) {
    EXPECT_THROW(ParsePanelFault(text), std::invalid_argument) << text;
  }
}

TEST(PanelFaults, HitTheRecordsAndRepliesThatTheyName) {
  const Bytes record = ProgramRecord(Counting(), 1);
  struct Case {
    const char* Fault;
    std::vector<Bytes> Replies;  // to the same record, sent four times
  };
  const Bytes ack = {kAcknowledge};
  const Case cases[] = {{"lose-ack:2", {ack, {}, ack, ack}},
                        {"lose-ack:%2", {ack, {}, ack, {}}},
                        {"lose-ack", {{}, {}, {}, {}}},
                        {"wrong-ack:1", {{0xA5}, ack, ack, ack}},
                        {"noise:3", {ack, ack, {0xA5, 0xF0}, ack}},
                        {"long-ack:1", {{0xF0, 0xA5}, ack, ack, ack}},
                        {"drop:2:0", {ack, {}, ack, ack}},
                        {"corrupt:%3:1:128", {ack, ack, {}, ack}},
                        {"die:3", {ack, ack, {}, {}}},
                        {"restart:3", {ack, ack, {}, ack}},
                        {"lose-restart", {ack, ack, ack, ack}}};
  for (const Case& c : cases) {
    SimulatedPanel panel(Described(kQdm7, "9600,n,8,2", {c.Fault}));
    for (const Bytes& reply : c.Replies) EXPECT_EQ(Say(panel, record), reply) << c.Fault;
  }
}

TEST(SimulatedPorts, TheDemonstrationHasOnePanelOfEachType) {
  VirtualTime time;
  const std::unique_ptr<SimulatedPorts> ports = DemonstrationPorts(time);
  std::vector<SearchSlot> slots = AllSlots(*ports);
  SearchAllPorts(slots, std::nullopt, time, std::stop_token(), nullptr);
  const std::vector<std::string> texts = {"QDM7 1.3", "QDM6 1.3", "QDM4 1.3", "TL-VOX 1.3"};
  std::set<std::string> settings;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(StatusText(slots[i]), texts[i]);
    settings.emplace(slots[i].Settings());
  }
  EXPECT_EQ(settings.size(), texts.size());
  EXPECT_EQ(ports->DeviceName(1), "demo QDM 7");
  EXPECT_EQ(ports->DeviceName(5), "");
  EXPECT_FALSE(ports->Port(5)->Open());
}

}  // namespace
}  // namespace qdm
