#include "forms/editor/configuration_history.h"

#include "support/distinct_configuration.h"
#include "support/seeded_random.h"
#include "support/undo_walk.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

TEST(ConfigurationHistory, GoesBackAndForthThroughAnyEdits) {
  SeededRandom random;
  PanelConfiguration now;
  ConfigurationHistory history([&now](const PanelConfiguration& past) { now = past; });
  history.Begin(now);
  std::vector<PanelConfiguration> states{now};
  for (int edit = 0; edit < 10'000; ++edit) {
    if (edit % 50 == 0) {
      now.Projector.InterByteDelay = static_cast<std::int16_t>(random());
    } else {
      now.*kConfigurationWords[random() % kConfigurationWords.size()].Member =
          static_cast<std::int16_t>(random());
    }
    history.Note(now, ConfigurationHistory::Change::Step);
    if (now != states.back()) states.push_back(now);
  }
  ExpectBackAndForth(
      states, [&] { history.Undo(); }, [&] { history.Redo(); }, [&] { return now; });
  EXPECT_FALSE(history.Steps().canRedo());
}

}  // namespace
}  // namespace qdm
