#include "work_log/known_panel.h"

#include "simulation/simulated_line.h"
#include "support/panel_descriptions.h"
#include "support/programming_recorder.h"
#include "support/virtual_time.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

WorkLogEntry Answered(const std::string& room, const std::string& port, const std::string& listens,
                      std::uint8_t model = 1) {
  WorkLogEntry entry;
  entry.File = room;
  entry.Port = port;
  entry.Listens = listens;
  entry.Panel.Model = model;
  return entry;
}

TEST(KnownPanels, AreTheRoomsOwnOrElseTheNewestOfTheTypeOnAPortThatIsThere) {
  const std::vector<WorkLogEntry> newestFirst = {
      Answered("c", "COM9", "9600,n,8,2"), Answered("b", "COM3", "38400,e,8,2"),
      Answered("d", "COM3", "57600,e,8,2", 4), Answered("a", "COM4", "19200,e,8,2")};
  const auto found = [&](int type, const std::string& room) {
    const auto known =
        KnownPanelFor(newestFirst, type, room, [](const std::string& port) { return port != "COM9"; });
    return known ? known->Port + " " + known->Settings : "";
  };
  EXPECT_EQ(found(kQdm7, "a"), "COM4 19200,e,8,2");
  EXPECT_EQ(found(kQdm7, "c"), "COM3 38400,e,8,2") << "its own port is gone";
  EXPECT_EQ(found(kQdm7, ""), "COM3 38400,e,8,2");
  EXPECT_EQ(found(kTlVox, "a"), "COM3 57600,e,8,2");
  EXPECT_EQ(found(kQdm4, "a"), "");
}

struct AskingFirst : testing::Test {
  VirtualTime time;
  SimulatedPanel panel{Described(kQdm7, "115200,o,8,2")};
  SearchSlot slot;

  bool AskAt(const std::string& settings, int type = kQdm7) {
    slot = SearchSlot();
    slot.Port = std::make_unique<SimulatedLine>(&panel, time, Pacing::TrueByteTime);
    return AskKnownPanel(slot, settings, type, time);
  }
};

TEST_F(AskingFirst, TakesOneExchangeUntilRecordsFlow) {
  const Microseconds start = time.Now();
  ASSERT_TRUE(AskAt("115200,o,8,2"));
  EXPECT_EQ(time.Now() - start, kReplyTimeout);
  EXPECT_EQ(slot.Settings(), "115200,o,8,2");

  ProgrammingRecorder observer;
  PanelImage image{};
  image[11] = 0x21;
  const ProgrammingResult result = ProgramAnsweringPanel(*slot.Port, image, time, {}, observer);
  EXPECT_TRUE(result.Connected && result.Programmed && result.Restarted);
  EXPECT_EQ(observer.Told.at(0).Text, "The QDM panel has been programed");
  EXPECT_EQ(panel.Memory(), image);
  EXPECT_FALSE(slot.Port->IsOpen());
}

TEST_F(AskingFirst, LeavesTheSlotToTheSearchWhereNoPanelOfTheTypeAnswers) {
  for (const auto& [settings, type] :
       {std::pair{"9600,n,8,2", kQdm7}, {"115200,o,8,2", kQdm6}, {"300,n,8,2", kQdm7}, {"", kQdm7}}) {
    EXPECT_FALSE(AskAt(settings, type)) << settings;
    EXPECT_FALSE(slot.Choosable());
    EXPECT_FALSE(slot.Port->IsOpen());
  }
}

}  // namespace
}  // namespace qdm
