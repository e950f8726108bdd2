// The seed of a random test: QDM_TEST_SEED, or one that differs from run to run, or what the test names where
// it needs the same families every time. Always printed.
#pragma once

#include <cstdlib>
#include <iostream>
#include <optional>
#include <random>
#include <string>

namespace qdm {

class RandomSeed {
 public:
  explicit RandomSeed(std::optional<unsigned> usual = {}) : value_(Chosen(usual)) {
    std::cout << Text() << "\n";
  }
  unsigned Value() const { return value_; }
  std::string Text() const { return "QDM_TEST_SEED=" + std::to_string(value_); }

 private:
  static unsigned Chosen(std::optional<unsigned> usual) {
    const char* given = std::getenv("QDM_TEST_SEED");
    if (given != nullptr) return static_cast<unsigned>(std::strtoul(given, nullptr, 10));
    return usual ? *usual : std::random_device{}();
  }
  unsigned value_;
};

}  // namespace qdm
