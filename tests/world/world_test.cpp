// Worlds in which everything happens that may happen, at random and every way in turn. script/world runs more
// of them, and one again.
#include "world/world.h"

#include "support/programming_recorder.h"
#include "support/seeded_random.h"

#include <gmock/gmock.h>

#include <iostream>
#include <map>
#include <memory>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

#ifndef _WIN32
// Thousands of saves, each flushed to the disk: to memory, where there is some.
const bool kInMemory = access("/dev/shm", W_OK) == 0 && setenv("TMPDIR", "/dev/shm", 0) == 0;
#endif

int FromEnvironment(const char* name, int otherwise) {
  const char* given = std::getenv(name);
  return given != nullptr ? std::atoi(given) : otherwise;
}

std::string NamesOf(const ProtocolLimits& limits) {
  return std::string(limits.LateReply ? " late reply" : "") + (limits.ChangedReply ? " changed reply" : "") +
         (limits.CheckSum ? " check sum" : "");
}

// The world of a seed, when all that happens in it has happened.
std::unique_ptr<World> Lived(std::uint64_t seed) {
  SeededChances chances(seed);
  auto world = std::make_unique<World>(chances);
  for (int steps = chances.Between(2, 5); steps > 0; --steps) world->Step();
  return world;
}

TEST(Worlds, KeepWhatMustHoldWhateverHappens) {
  const SeededRandom first;
  const int worlds = FromEnvironment("QDM_WORLDS", 300);
  int programmed = 0;
  std::map<std::string, int> untrue;
  for (int i = 0; i < worlds; ++i) {
    const std::uint64_t seed = first.Seed() + static_cast<std::uint64_t>(i);
    const std::unique_ptr<World> world = Lived(seed);
    ASSERT_THAT(world->Wrong, IsEmpty()) << "script/world --seed " << seed;
    programmed += world->Programmed;
    if (!world->Seen.Any()) continue;
    ++untrue[NamesOf(world->Seen)];
    std::cout << "seed " << seed << ": \"programed\" was untrue:" << NamesOf(world->Seen) << "\n";
  }
  std::cout << worlds << " worlds from seed " << first.Seed() << ", \"programed\" " << programmed << " times";
  for (const auto& [why, times] : untrue) std::cout << ", untrue by" << why << " " << times;
  std::cout << "\n";
}

#ifndef _WIN32  // where files are called otherwise, so that a seed is another world
// What no program can tell, with a world for each; ARCHITECTURE.md says how often that is.
TEST(Worlds, ShowTheLimitsOfTheProtocol) {
  EXPECT_EQ(NamesOf(Lived(1000164)->Seen), " late reply");
  EXPECT_EQ(NamesOf(Lived(1000770)->Seen), " check sum");
}
#endif

TEST(Worlds, EveryThreeFaultsOfARecordsExchangeFoolNobodyButByTheKnownLimits) {
  PanelImage image;
  for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(i * 37 + 1);
  EveryChance chances(FromEnvironment("QDM_WORLD_DEPTH", 3));
  int runs = 0;
  std::map<std::string, int> fooled;
  do {
    VirtualTime time;
    SimulatedPanel panel(Described(kQdm7, "9600,n,8,2"));
    ProtocolLimits limits;
    WorldLine line(&panel, time, chances, {.EveryByte = false}, limits, [] { return true; });
    std::stop_source stop;
    ProgrammingRecorder observer;
    observer.WhenAcknowledged = [&](int records) {
      if (records < 2) return;
      stop.request_stop();
      line.LeaveAlone();
    };
    ProgramAnsweringPanel(line, image, time, stop.get_token(), observer);
    const bool held = std::equal(image.begin(), image.begin() + kRecordDataBytes * observer.Progress.back(),
                                 panel.Memory().begin());
    ASSERT_TRUE(held || limits.Any()) << "run " << runs;
    if (!held) ++fooled[NamesOf(limits)];
    ++runs;
  } while (chances.Next());
  std::cout << runs << " exchanges, fooled by" << testing::PrintToString(fooled) << "\n";
}

TEST(Worlds, EveryThreeThingsAtTheCallsOfASaveLeaveTheOldOrTheNewLibrary) {
  EveryChance chances(FromEnvironment("QDM_WORLD_DEPTH", 3));
  int runs = 0;
  do {
    World world(chances);
    world.SaveLibrary();
    world.LeaveAlone();
    world.SaveLibrary();
    ASSERT_THAT(world.Wrong, IsEmpty()) << "run " << runs;
    ASSERT_THAT(world.Files(), ElementsAre("Projectors.BAK", "Projectors.DEF")) << "run " << runs;
    ++runs;
  } while (chances.Next());
  std::cout << runs << " saves\n";
}

}  // namespace
}  // namespace qdm
