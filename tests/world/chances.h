// What happens next in a world: drawn from a seed, or every way in turn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace qdm {

class Chances {
 public:
  virtual ~Chances() = default;

  // What goes wrong here, 1..kinds; 0: nothing, as in all but one of `rarity` cases.
  virtual int Fault(int kinds, int rarity) = 0;
  // Whatever else differs from world to world.
  virtual int Between(int lowest, int highest) = 0;

  bool OneIn(int n) { return Between(1, n) == 1; }
  template <class Choices>
  auto OneOf(const Choices& choices) {
    return choices[static_cast<std::size_t>(Between(0, static_cast<int>(std::size(choices)) - 1))];
  }
};

// The same for the same seed, on every machine.
class SeededChances : public Chances {
 public:
  explicit SeededChances(std::uint64_t seed) : numbers_(seed) {}

  int Fault(int kinds, int rarity) override { return OneIn(rarity) ? Between(1, kinds) : 0; }
  int Between(int lowest, int highest) override {
    const auto span = static_cast<std::uint64_t>(highest - lowest) + 1;
    return lowest + static_cast<int>(numbers_() % span);
  }

 private:
  std::mt19937_64 numbers_;
};

// All ways in which up to `depth` things go wrong, one a run; all else is as low as it can be.
class EveryChance : public Chances {
 public:
  explicit EveryChance(int depth) : depth_(depth) {}

  int Fault(int kinds, int) override {
    if (at_ == path_.size()) path_.push_back({0, kinds});
    return path_[at_++].Chosen;
  }
  int Between(int lowest, int) override { return lowest; }

  // The next run; false after the last one.
  bool Next() {
    path_.resize(at_);
    at_ = 0;
    int faults = 0;
    for (const Choice& choice : path_) faults += choice.Chosen != 0 ? 1 : 0;
    for (; !path_.empty(); path_.pop_back()) {
      Choice& last = path_.back();
      faults -= last.Chosen != 0 ? 1 : 0;
      if (last.Chosen == last.Kinds || faults == depth_) continue;
      ++last.Chosen;
      return true;
    }
    return false;
  }

 private:
  struct Choice {
    int Chosen;
    int Kinds;
  };

  int depth_;
  std::vector<Choice> path_;
  std::size_t at_ = 0;
};

}  // namespace qdm
