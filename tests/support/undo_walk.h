// All that was done is undone and done again, one state after the other.
#pragma once

#include <gtest/gtest.h>

#include <vector>

namespace qdm {

template <class State, class Undo, class Redo, class Now>
void ExpectBackAndForth(const std::vector<State>& states, const Undo& undo, const Redo& redo,
                        const Now& now) {
  for (std::size_t step = states.size() - 1; step-- > 0;) {
    undo();
    ASSERT_TRUE(now() == states[step]) << "undone to " << step;
  }
  for (std::size_t step = 1; step < states.size(); ++step) {
    redo();
    ASSERT_TRUE(now() == states[step]) << "done again to " << step;
  }
}

}  // namespace qdm
