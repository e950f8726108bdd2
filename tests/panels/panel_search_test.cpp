#include "panels/panel_search.h"

#include "config/panel_configuration.h"
#include "simulation/simulated_line.h"
#include "support/panel_descriptions.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <map>

namespace qdm {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

Bytes VectorOf(const std::array<std::uint8_t, 4>& bytes) { return {bytes.begin(), bytes.end()}; }

TEST(Identification, RepliesSumToOneAndNothingElseIsAReply) {
  const Identification panel{.Model = 1, .Major = 1, .Minor = 3};
  const Bytes reply = VectorOf(IdentReplyOf(panel));
  EXPECT_THAT(reply, ElementsAre(0x01, 0x01, 0x03, 0xFC));
  EXPECT_EQ(ParseIdentReply(reply), panel);

  const std::vector<Bytes> refused = {
      {}, {1, 1, 3}, {1, 1, 3, 0xFD}, {1, 1, 3, 0xFB}, {1, 1, 3, 0xFC, 0}, {0, 0, 0, 0}};
  for (const Bytes& bytes : refused) EXPECT_FALSE(ParseIdentReply(bytes)) << testing::PrintToString(bytes);
}

// Slots with simulated lines, in virtual time.
class PanelSearch : public testing::Test {
 protected:
  SimulatedPanel& Attach(SimulatedPanel::Description description) {
    return ports.AttachPanel(++attached, "simulated", SimulatedPanel(std::move(description)));
  }
  void Search(std::optional<int> controllerType = std::nullopt) {
    slots = AllSlots(ports);
    const Microseconds start = time.Now();
    SearchAllPorts(slots, controllerType, time, stop.get_token(),
                   [this](std::size_t slot) { shown[slot].push_back(StatusText(slots[slot])); });
    took = time.Now() - start;
  }

  VirtualTime time;
  SimulatedPorts ports{time};
  std::stop_source stop;
  std::vector<SearchSlot> slots;
  std::map<std::size_t, std::vector<std::string>> shown;
  Microseconds took{};
  int attached = 0;
};

TEST_F(PanelSearch, FindsAPanelAtEachOfTheLineSettings) {
  for (std::size_t i = 0; i < LineSettingsTable.size(); ++i) {
    const std::string settings(LineSettingsTable[i].Settings);
    attached = 0;
    Attach(Described(kQdm7, settings));
    Search();
    EXPECT_EQ(slots[0].Settings(), settings);
    EXPECT_EQ(StatusText(slots[0]), "QDM7 1.3");
    EXPECT_EQ(took, milliseconds(500) * (i + 1));
  }
}

TEST_F(PanelSearch, ShowsEachSettingAndLeavesEveryPortClosed) {
  Attach(Described(kQdm7, "19200,e,8,2"));
  for (int number = 2; number < kPortSlots; ++number) ports.AttachLine(number, "silent");
  Search();
  EXPECT_THAT(shown[0], ElementsAre("Search 9K6,none", "Search 9K6,even", "Search 9K6,odd",
                                    "Search 19K2,none", "Search 19K2,even", "QDM7 1.3"));
  EXPECT_EQ(shown[1].size(), 16u);
  EXPECT_EQ(shown[1].back(), "No QDM found");
  EXPECT_THAT(shown[15], ElementsAre("No Port"));
  EXPECT_FALSE(slots[15].Present());
  EXPECT_EQ(took, milliseconds(15 * 500)) << "all ports are asked at once";
  for (const SearchSlot& slot : slots) EXPECT_FALSE(slot.Port->IsOpen());
}

TEST_F(PanelSearch, WhateverIsNotExactlyOneReplyIsNoAnswer) {
  // The first exchange at 9600,n fails and the panel is never asked there again.
  for (const char* fault :
       {"wrong-ident:1", "long-ident:1", "noise-ident:1", "lose-ident:1", "late-ident:1:501"}) {
    SCOPED_TRACE(fault);
    attached = 0;
    Attach(Described(kQdm7, "9600,n,8,2", {fault}));
    Search();
    EXPECT_FALSE(slots[0].Panel);
    EXPECT_FALSE(slots[0].Choosable());
    EXPECT_EQ(StatusText(slots[0]), "No QDM found");
    EXPECT_EQ(took, milliseconds(15 * 500));
  }
  attached = 0;
  Attach(Described(kQdm7, "9600,n,8,2", {"late-ident:1:499"}));
  Search();
  EXPECT_EQ(StatusText(slots[0]), "QDM7 1.3");
}

TEST_F(PanelSearch, StopsBeforeTheNextSettingAndKeepsWhatAnswered) {
  Attach(Described(kQdm7, "9600,e,8,2"));
  Attach(Described(kQdm6, "9600,o,8,2"));
  time.At(time.Now() + milliseconds(700), [this] { stop.request_stop(); });
  Search(kTlVox);
  EXPECT_EQ(took, milliseconds(1000));
  EXPECT_EQ(StatusText(slots[0]), "QDM7 1.3");
  EXPECT_TRUE(slots[0].Panel);
  EXPECT_FALSE(slots[0].Choosable()) << "is of another type";
  EXPECT_EQ(StatusText(slots[1]), "No QDM found");
}

}  // namespace
}  // namespace qdm
