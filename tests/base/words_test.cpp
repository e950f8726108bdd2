#include "base/words.h"

#include <gtest/gtest.h>

#include <string>

namespace qdm {
namespace {

// Another language: the places the other way round, and a form for each count.
std::string Look(std::string_view english, int count) {
  if (english == "%1 of %2") return "%2: %1";
  if (count >= 0) return count == 2 ? "two of %1" : "%n of %1";
  return "[" + std::string(english) + "]";
}

struct Words : testing::Test {
  Words() { SetDictionary(Look); }
  ~Words() override { SetDictionary(nullptr); }
};

TEST_F(Words, FillsThePlacesOfWhatTheDictionaryHas) {
  EXPECT_EQ(Say("%1 of %2", {"%2", "a"}), "a: %2") << "what stands in a place has no places";
  EXPECT_EQ(Say("50 % of %3", {"a"}), "[50 % of %3]");
  EXPECT_EQ(SayCount("%n records of %1", 2, {"a"}), "two of a");
  EXPECT_EQ(SayCount("%n records of %1", 5, {"a"}), "5 of a");
  EXPECT_EQ(SayEach("bytes, all lines"), "[bytes], [all lines]");
}

TEST_F(Words, StaysEnglishForFilesAndWithoutADictionary) {
  {
    const InEnglish asFile;
    EXPECT_EQ(Say("%1 of %2", {"1", "2"}), "1 of 2");
  }
  EXPECT_EQ(Say("Sorry"), "[Sorry]");
  SetDictionary(nullptr);
  EXPECT_EQ(SayCount("%n records", 3), "3 records");
}

}  // namespace
}  // namespace qdm
