#include "forms/strings/edit_step.h"

#include "support/seeded_random.h"
#include "support/strings.h"
#include "support/undo_walk.h"

#include <QUndoStack>

#include <gtest/gtest.h>

#include <random>

namespace qdm {
namespace {

TEST(EditStep, TenThousandRandomEditsAreUndoneAndRedoneByteForByte) {
  SeededRandom random;
  const auto below = [&random](std::size_t end) { return random() % end; };
  const auto kind = [&] { return static_cast<std::uint8_t>(below(kByteKinds)); };
  const auto text = [&] {
    SerialString string = Characters("text that is written over others");  // 32
    string.Count = static_cast<std::int16_t>(below(33));
    for (std::uint8_t& each : string.Kinds) each = kind();
    return string;
  };
  const std::function<void(StringEdit&)> edits[] = {
      [&](StringEdit& s) { s.SetValue(below(32), static_cast<std::int16_t>(below(1000))); },
      [&](StringEdit& s) { s.SetCount(below(33)); },
      [&](StringEdit& s) { s.SetKind(below(32), kind()); },
      [&](StringEdit& s) { s.MakeAllAscii(); },
      [&](StringEdit& s) { s.Replace(text()); },
      [&](StringEdit& s) { s.Insert(below(32)); },
      [&](StringEdit& s) { s.Remove(below(32)); },
  };

  QUndoStack stack;
  StringEdit now(text());
  std::vector<StringEdit> states = {now};
  for (int i = 0; i < 10'000; ++i) {
    StringEdit after = now;
    const std::size_t which = below(std::size(edits));
    edits[which](after);
    const int round = which == 0 ? i / 10 : EditStep::kNoTyping;
    stack.push(new EditStep(QString(), round, now, after, [&now](const StringEdit& edit) { now = edit; }));
    ASSERT_EQ(now, after);
    states.resize(static_cast<std::size_t>(stack.count()));  // one less when the steps were merged
    states.push_back(now);
  }
  ASSERT_EQ(states.size(), static_cast<std::size_t>(stack.count()) + 1);
  ExpectBackAndForth(
      states, [&] { stack.undo(); }, [&] { stack.redo(); }, [&] { return now; });
}

}  // namespace
}  // namespace qdm
