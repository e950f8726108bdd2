#include "panels/one_port_search.h"

#include "simulation/simulated_line.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

using std::chrono::milliseconds;

struct Outcome {
  std::vector<std::string> Texts;
  OnePortResult Result;
  Microseconds Took{};
};

// Until it has finished, or the texts are as many as `stopAfter`.
Outcome Search(SerialPort& port, VirtualTime& time, std::size_t stopAfter = 100) {
  Outcome outcome;
  const Microseconds start = time.Now();
  OnePortSearch search(port, time, [&](const std::string& text) { outcome.Texts.push_back(text); });
  while (!search.Finished()) {
    time.Yield(search.NextTime());
    search.Advance();
    if (outcome.Texts.size() >= stopAfter) search.Stop();
  }
  EXPECT_FALSE(port.IsOpen());
  outcome.Result = search.Result();
  outcome.Took = time.Now() - start;
  return outcome;
}

Outcome SearchFor(Identification who, const char* settings, const char* fault = nullptr) {
  VirtualTime time;
  SimulatedPanel panel({.Panel = who, .Settings = settings, .Faults = {}});
  if (fault) panel = SimulatedPanel({.Panel = who, .Settings = settings, .Faults = {ParsePanelFault(fault)}});
  SimulatedLine line(&panel, time);
  return Search(line, time);
}

TEST(OnePortSearch, StopsAtTheSettingThatAnswers) {
  const Outcome found = SearchFor({1, 1, 3}, "19200,e,8,2");
  EXPECT_EQ(found.Result.Panel, (Identification{1, 1, 3}));
  EXPECT_EQ(found.Result.Settings, "19200,e,8,2");
  EXPECT_THAT(found.Texts, testing::ElementsAre("Search 9K6,none", "Search 9K6,even", "Search 9K6,odd",
                                                "Search 19K2,none", "Search 19K2,even", "QDM7 1.3"));
  EXPECT_GE(found.Took, milliseconds(4000));
  EXPECT_LT(found.Took, milliseconds(4100)) << "an answer ends the wait";
}

TEST(OnePortSearch, TakesNothingButTheRightReply) {
  for (const char* fault : {"wrong-ident", "long-ident", "noise-ident", "lose-ident", "late-ident:1:1200"}) {
    const Outcome none = SearchFor({1, 1, 3}, "9600,n,8,2", fault);
    EXPECT_EQ(none.Result.Panel, std::nullopt) << fault;
    EXPECT_EQ(none.Texts.size(), kLineSettings + 1) << fault;
    EXPECT_EQ(none.Texts.back(), "No QDM found") << fault;
  }
  EXPECT_TRUE(SearchFor({1, 1, 3}, "9600,n,8,2", "late-ident:1:900").Result.Panel);
  EXPECT_EQ(SearchFor({4, 2, 10}, "9600,n,8,2").Texts.back(), "2.10") << "an amplifier has no name here";
}

TEST(OnePortSearch, EndsAtOnceWhenStoppedOrUnplugged) {
  VirtualTime time;
  SimulatedLine line(nullptr, time);
  const Outcome stopped = Search(line, time, 3);
  EXPECT_THAT(stopped.Texts,
              testing::ElementsAre("Search 9K6,none", "Search 9K6,even", "Search 9K6,odd", "No QDM found"));
  EXPECT_EQ(stopped.Took, milliseconds(2000));

  line.UnplugAt(time.Now() + milliseconds(300));
  const Outcome unplugged = Search(line, time);
  EXPECT_EQ(unplugged.Took, milliseconds(300));
  EXPECT_EQ(unplugged.Texts.back(), "No QDM found");
}

}  // namespace
}  // namespace qdm
