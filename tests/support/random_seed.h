// The seed of a random test: QDM_TEST_SEED, or one that differs from run to run. Named in the failure.
#pragma once

#include <cstdlib>
#include <random>
#include <string>

namespace qdm {

class RandomSeed {
 public:
  unsigned Value() const { return value_; }
  std::string Text() const { return "QDM_TEST_SEED=" + std::to_string(value_); }

 private:
  static unsigned Chosen() {
    const char* given = std::getenv("QDM_TEST_SEED");
    return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10))
                            : std::random_device{}();
  }
  unsigned value_ = Chosen();
};

}  // namespace qdm
