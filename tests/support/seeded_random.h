// The numbers of a random test, from QDM_TEST_SEED, or a seed that differs from run to run, or what the test
// names where it needs the same families every time. The seed is always printed, and again with what fails.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <random>
#include <string>

namespace qdm {

class SeededRandom : public std::mt19937 {
 public:
  explicit SeededRandom(std::optional<unsigned> usual = {}) : SeededRandom(Chosen(usual), nullptr) {}
  unsigned Seed() const { return seed_; }

 private:
  SeededRandom(unsigned seed, std::nullptr_t) : std::mt19937(seed), seed_(seed) {
    std::cout << "QDM_TEST_SEED=" << seed << "\n";
  }
  static unsigned Chosen(std::optional<unsigned> usual) {
    const char* given = std::getenv("QDM_TEST_SEED");
    if (given != nullptr) return static_cast<unsigned>(std::strtoul(given, nullptr, 10));
    return usual ? *usual : std::random_device{}();
  }
  const unsigned seed_;
  const testing::ScopedTrace trace_{__FILE__, __LINE__, "QDM_TEST_SEED=" + std::to_string(seed_)};
};

}  // namespace qdm
