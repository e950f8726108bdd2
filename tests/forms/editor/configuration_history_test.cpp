#include "forms/editor/configuration_history.h"

#include "support/distinct_configuration.h"
#include "support/random_seed.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

TEST(ConfigurationHistory, GoesBackAndForthThroughAnyEdits) {
  const RandomSeed seed;
  SCOPED_TRACE(seed.Text());
  std::mt19937 random(seed.Value());
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
  for (std::size_t i = states.size() - 1; i-- > 0;) {
    history.Undo();
    ASSERT_TRUE(now == states[i]) << i;
  }
  EXPECT_FALSE(history.Steps().canUndo());
  while (history.Steps().canRedo()) history.Redo();
  EXPECT_TRUE(now == states.back());
}

}  // namespace
}  // namespace qdm
