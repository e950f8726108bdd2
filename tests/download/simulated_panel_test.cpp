#include "download/simulated_panel.h"

#include "download/simulated_line.h"
#include "support/panel_descriptions.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <set>

namespace qdm {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
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

Bytes Joined(const std::vector<Bytes>& pieces) {
  Bytes all;
  for (const Bytes& piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
  return all;
}

TEST(SimulatedPanel, TakesEveryRecordAndHasItInItsMemory) {
  SimulatedPanel panel(Described(kQdm7, "9600,n,8,2"));
  EXPECT_THAT(panel.Memory(), testing::Each(0xFF));
  const PanelImage image = Counting();
  for (int record = 0; record < kRecords; ++record) {
    EXPECT_THAT(Say(panel, ProgramRecord(image, record)), ElementsAre(kAcknowledge)) << record;
  }
  EXPECT_EQ(panel.Memory(), image);
}

TEST(SimulatedPanel, IsAskedAtItsOwnSettingsAndProgrammedAtItsOwnOrNot) {
  const LineSettings own = ParseLineSettings("19200,e,8,2");
  SimulatedPanel panel(Described(kQdm6, "19200,e,8,2"));
  EXPECT_THAT(Say(panel, SearchRequest), IsEmpty());
  EXPECT_THAT(Say(panel, SearchRequest, ParseLineSettings("19200,o,8,2")), IsEmpty());
  EXPECT_THAT(Say(panel, SearchRequest, ParseLineSettings("19200,e,8,1")), ElementsAre(2, 1, 3, 0xFB));
  EXPECT_THAT(Say(panel, SearchRequest, {.Speed = 19200, .Parity = {}, .DataBits = {}, .StopBits = {}}),
              ElementsAre(2, 1, 3, 0xFB));
  EXPECT_THAT(Say(panel, ProgramRecord(Counting(), 0), own), IsEmpty());
  EXPECT_THAT(Say(panel, ProgramRecord(Counting(), 0)), ElementsAre(kAcknowledge));
}

TEST(SimulatedPanel, FindsTheRequestInsideOtherBytes) {
  SimulatedPanel panel(Described(kQdm7, "9600,n,8,2"));
  const Bytes request(SearchRequest.begin(), SearchRequest.end());
  EXPECT_THAT(Say(panel, Joined({{'Q', 'D', 'M', 'Q'}, request})), ElementsAre(1, 1, 3, 0xFC));
  EXPECT_THAT(Say(panel, Joined({{'Q', 'Q'}, request, {'P'}})), ElementsAre(1, 1, 3, 0xFC));
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

TEST(SimulatedPanel, ListensWhereItsMemorySaysAfterARestart) {
  struct Case {
    int ControllerType;
    std::size_t Byte;
    std::uint8_t Value;
    const char* Settings;
  };
  const Case cases[] = {{kQdm7, 11, 0x00, "9600,n,8,1"},  {kQdm4, 11, 0x54, "115200,e,8,2"},
                        {kTlVox, 6, 0x21, "19200,o,8,1"}, {kTlVox, 11, 0x21, "38400,e,8,2"},
                        {kQdm7, 11, 0xFF, "38400,e,8,2"}, {kQdm7, 11, 0x05, "38400,e,8,2"},
                        {kQdm7, 11, 0x30, "38400,e,8,2"}};
  for (const Case& c : cases) {
    PanelImage memory;
    memory.fill(0xFF);
    memory[c.Byte] = c.Value;
    SimulatedPanel panel(Described(c.ControllerType, "38400,e,8,2"), memory);
    EXPECT_EQ(panel.OwnSettings(), ParseLineSettings("38400,e,8,2"));
    EXPECT_THAT(Say(panel, RestartCommand), ElementsAre(kAcknowledge));
    EXPECT_EQ(panel.OwnSettings(), ParseLineSettings(c.Settings)) << c.Settings << " " << int{c.Value};
    EXPECT_EQ(panel.Restarts(), 1);
  }
}

TEST(PanelFaults, AreReadFromText) {
  using Kind = PanelFault::Kind;
  using Target = PanelFault::Target;
  struct Case {
    const char* Text;
    PanelFault Fault;
  };
  const Case cases[] = {
      {"lose-ack:3", {.What = Kind::Lose, .Where = Target::Acknowledge, .Number = 3}},
      {"lose-ack:%5", {.What = Kind::Lose, .Where = Target::Acknowledge, .Number = 5, .Every = true}},
      {"wrong-ident", {.What = Kind::Wrong, .Where = Target::Identification, .Number = 1, .Every = true}},
      {"noise:2", {.What = Kind::Noise, .Where = Target::Acknowledge, .Number = 2}},
      {"late-restart:1:1500",
       {.What = Kind::Late, .Where = Target::RestartAcknowledge, .Number = 1, .Delay = milliseconds(1500)}},
      {"drop:9", {.What = Kind::Drop, .Where = Target::Record, .Number = 9}},
      {"corrupt:9:0:255",
       {.What = Kind::Corrupt, .Where = Target::Record, .Number = 9, .Byte = 0, .Mask = 255}},
      {"die:40", {.What = Kind::Die, .Where = Target::Record, .Number = 40}},
      {"no-restart-ack",
       {.What = Kind::Lose, .Where = Target::RestartAcknowledge, .Number = 1, .Every = true}},
  };
  for (const Case& c : cases) EXPECT_EQ(ParsePanelFault(c.Text), c.Fault) << c.Text;
}

TEST(PanelFaults, ABadTextIsRefusedWithTheReason) {
  struct Case {
    const char* Text;
    const char* Reason;
  };
  const Case cases[] = {{"", "there are lose-ident, "},
                        {"loose-ack:3", "there are lose-ident, "},
                        {"lose-ack:", "\"\" is not a count, 1..1000000"},
                        {"lose-ack:0", "\"0\" is not a count"},
                        {"lose-ack:%0", "\"0\" is not a count"},
                        {"lose-ack:3x", "\"3x\" is not a count"},
                        {"lose-ack:3:4", "too many numbers"},
                        {"late-ack:3", "a number is missing"},
                        {"late-ack:3:99999", "\"99999\" is not a delay, 0..60000"},
                        {"corrupt:1:23", "\"23\" is not a byte of a record, 0..22"},
                        {"corrupt:1:2:0", "\"0\" is not a mask, 1..255"},
                        {"no-restart-ack:1", "too many numbers"}};
  for (const Case& c : cases) {
    try {
      ParsePanelFault(c.Text);
      ADD_FAILURE() << c.Text << " was taken";
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(c.Reason));
      EXPECT_THAT(error.what(), HasSubstr("fault \"" + std::string(c.Text) + "\": "));
    }
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

class Line : public testing::Test {
 protected:
  VirtualTime time;
  SimulatedPanel panel{Described(kQdm7, "19200,n,8,2")};
};

TEST_F(Line, TakesTheTrueTimeOfItsBytes) {
  EXPECT_EQ(TimeOfBytes(96, ParseLineSettings("9600,n,8,2")), milliseconds(110));
  EXPECT_EQ(TimeOfBytes(96, ParseLineSettings("9600,e,8,2")), milliseconds(120));
  EXPECT_EQ(TimeOfBytes(192, ParseLineSettings("19200,o,8,1")), milliseconds(110));

  SimulatedLine line(&panel, time, Pacing::TrueByteTime);
  ASSERT_TRUE(AskForIdentification(line, "19200,n,8,2"));
  const Microseconds start = time.Now();
  EXPECT_EQ(line.BytesWaiting(), 0u);
  WaitUntil(time, milliseconds(500), [&line] { return line.BytesWaiting() == 4; });
  EXPECT_NEAR(static_cast<double>((time.Now() - start).count()), 12 * 11 * 1e6 / 19200, 2);
}

TEST_F(Line, HearsNothingOfAnotherParityAndGarbageOfAnotherSpeed) {
  SimulatedLine line(&panel, time, Pacing::TrueByteTime);
  AskForIdentification(line, "19200,n,8,2");
  line.SetSettings("19200,e,8,2");
  WaitUntil(time, milliseconds(20), [] { return false; });
  EXPECT_THAT(line.ReadAll(), IsEmpty());
  AskForIdentification(line, "19200,n,8,2");
  line.SetSettings("9600,n,8,2");
  WaitUntil(time, milliseconds(20), [] { return false; });
  EXPECT_EQ(line.BytesWaiting(), 4u);
  EXPECT_FALSE(AnswerWaiting(line));
}

TEST_F(Line, WhatArrivesWhileThePortIsClosedIsLost) {
  SimulatedLine line(nullptr, time);
  line.NoiseAt(time.Now() + milliseconds(10), Bytes{1});
  line.NoiseAt(time.Now() + milliseconds(30), Bytes{2});
  WaitUntil(time, milliseconds(20), [] { return false; });
  ASSERT_TRUE(line.Open());
  EXPECT_FALSE(line.BytesWaiting());
  WaitUntil(time, milliseconds(20), [] { return false; });
  EXPECT_THAT(line.ReadAll(), ElementsAre(2));
}

TEST_F(Line, AnUnpluggedPortIsClosedAndDoesNotOpen) {
  SimulatedLine line(&panel, time);
  line.UnplugAt(time.Now() + milliseconds(10));
  ASSERT_TRUE(line.Open());
  EXPECT_TRUE(line.Write(Bytes{1}));
  WaitUntil(time, milliseconds(20), [&line] { return !line.IsOpen(); });
  EXPECT_FALSE(line.IsOpen());
  EXPECT_FALSE(line.Write(Bytes{1}));
  line.Close();
  EXPECT_FALSE(line.Open());
}

TEST_F(Line, TheDemonstrationHasOnePanelOfEachType) {
  const std::unique_ptr<SimulatedPorts> ports = DemonstrationPorts(time);
  std::vector<SearchSlot> slots = AllSlots(*ports);
  SearchAllPorts(slots, std::nullopt, time, StopRequest(), nullptr);
  const std::vector<std::string> texts = {"QDM7 1.3", "QDM6 1.3", "QDM4 1.3", "TL-VOX 1.3"};
  std::set<std::string> settings;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(slots[i].Status, texts[i]);
    settings.insert(slots[i].Settings);
  }
  EXPECT_EQ(settings.size(), texts.size());
  EXPECT_EQ(ports->DeviceName(1), "demo QDM 7");
  EXPECT_EQ(ports->DeviceName(5), "");
  EXPECT_FALSE(ports->Port(5)->Open());
}

}  // namespace
}  // namespace qdm
