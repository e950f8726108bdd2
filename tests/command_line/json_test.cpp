#include "command_line/json_reader.h"
#include "command_line/json_writer.h"
#include "support/files.h"
#include "support/seeded_random.h"

#include <gmock/gmock.h>

#include <random>

namespace qdm {
namespace {

using testing::HasSubstr;

std::string Configured(const std::string& fields) {
  return R"({"format": "qdm-configuration", "version": 1, "configuration": {)" + fields + "}}";
}
std::string Repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}
std::string InString(const std::string& members) {
  return Configured(R"("UsePC1": true, "UsePC2": false, "UseVideo": 2, "Projector": {"Strings": [{)" +
                    members + "}" + Repeated(",{}", 24) + "]}");
}

TEST(JsonText, WritesEveryFieldInRecordOrderAsItIs) {
  PanelConfiguration configuration;
  configuration.UsePC1 = 7;
  configuration.Spare[1] = 0xAB;
  configuration.Projector.Notes = FixedText<256>(u"a\"\\\n\u20AC\u0081 b");
  SerialString& string = configuration.Projector.Strings[0];
  string.Count = 4;
  string.Values = {'P', 'W', 'R', 13};
  string.Kinds = {0, 0, 0, 4};
  configuration.Projector.Strings[1].Kinds[2] = 9;  // beyond the count, and no kind at all
  const std::string json = ConfigurationToJson(configuration);
  std::size_t at = 0;
  for (const char* expected :
       {R"("configuration": {)", R"("ControllerType": )", R"("Projector": {)",
        "\"Notes\": \"a\\\"\\\\\\u000a\xE2\x82\xAC\xC2\x81 b\",", R"("Available": [)", R"("Strings": [)",
        R"({"Text": "PWR,CRc", "Count": 4, "Values": [80,87,82,13], "Kinds": ["ASC","ASC","ASC","CNT"]})",
        R"({"Text": "", "Count": 0, "Values": [], "Kinds": ["ASC","ASC",9]})", R"("Stopbits": )",
        R"("UsePC1": 7)", R"("UsePC2": true)", R"("LockOnNoButton": false)", R"("Spare": "00ab")"}) {
    const std::size_t found = json.find(expected, at);
    ASSERT_NE(found, std::string::npos) << expected;
    at = found;
  }
}

// Half of it zeros, a quarter blanks.
Bytes RandomRecord(std::size_t size, std::mt19937& random) {
  Bytes stored(size);
  for (std::uint8_t& byte : stored) {
    const auto kind = random() % 4;
    if (kind < 2) byte = static_cast<std::uint8_t>(kind == 0 ? random() : ' ');
  }
  return stored;
}

TEST(JsonText, GivesTenThousandRandomRecordsBackBitForBit) {
  SeededRandom random;
  for (int batch = 0; batch < 100; ++batch) {
    std::vector<ProjectorDefinition> definitions(99);
    for (auto& definition : definitions) Decode(RandomRecord(kStoredProjectorSize, random), definition);
    ASSERT_EQ(std::get<1>(ReadJson(ProjectorsToJson(definitions))), definitions);

    const Bytes stored = RandomRecord(kStoredConfigurationSize, random);
    PanelConfiguration configuration;
    Decode(stored, configuration);
    ASSERT_EQ(Encode(std::get<0>(ReadJson(ConfigurationToJson(configuration)))), stored);
  }
}

TEST(JsonText, ReadsEveryFormOfAValueAndTakesANewRecordsForWhatIsLeftOut) {
  PanelConfiguration expected;
  expected.UsePC1 = -1;
  expected.UsePC2 = 0;
  expected.UseVideo = 2;
  expected.Projector.Strings[0].Count = -5;
  expected.Projector.Strings[0].Kinds = {6, 5, 255};
  EXPECT_EQ(std::get<0>(ReadJson(InString(R"("Text": [1.5], "Count": -5, "Kinds": [6, "VAR", 255])"))),
            expected);
}

TEST(JsonText, RefusesWithPathAndReasonWhatNoRecordCanHold) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {Configured(R"("UpTime": 32768)"), "configuration.UpTime: 32768 is not a whole number"},
      {Configured(R"("a\nb": 1)"), "configuration.\"a\\u000ab\": unknown key"},
      {Configured(R"("UpTime": 1, "UpTime": 1)"), "configuration.UpTime: the key is there twice"},
      {Configured(R"("LockSequence": [1,2,3])"), "configuration.LockSequence: 3 entries instead of 4"},
      {InString(R"("Values": [)" + Repeated("0,", 32) + "0]"),
       "Projector.Strings[0].Values: more than 32 entries"},
      {InString(R"("Kinds": [0, "XYZ"])"), "Projector.Strings[0].Kinds[1]: \"XYZ\" is not"},
      {R"({"format": "qdm-projectors", "version": 1, "projectors": [{"a": 1}]})", "projectors[0].a: unknown"},
      {Configured("\"\xFF\": 1"), "not JSON: parse error"},
      {std::string(100'000, '['), "a list is not an object"},
  };
  for (const auto& c : cases) EXPECT_THAT(FailureOf([&c] { ReadJson(c.first); }), HasSubstr(c.second));
}

}  // namespace
}  // namespace qdm
