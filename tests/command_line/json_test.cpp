#include "command_line/json_reader.h"
#include "command_line/json_writer.h"
#include "support/distinct_configuration.h"
#include "support/random_seed.h"

#include <gmock/gmock.h>

#include <random>

namespace qdm {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string Configured(const std::string& fields) {
  return R"({"format": "qdm-configuration", "version": 1, "configuration": {)" + fields + "}}";
}
std::string InString(const std::string& members) {
  std::string strings = "{" + members + "}";
  for (int i = 1; i < 25; ++i) strings += ",{}";
  return Configured(R"("Projector": {"Strings": [)" + strings + "]}");
}
PanelConfiguration ReadConfigured(const std::string& fields) {
  return std::get<PanelConfiguration>(ReadJson(Configured(fields)));
}
std::string RefusalOf(const std::string& text) {
  try {
    ReadJson(text);
  } catch (const JsonError& error) {
    return error.what();
  }
  return "accepted";
}

TEST(JsonText, ShowsEveryFieldInRecordOrder) {
  const std::string json = ConfigurationToJson(DistinctConfiguration());
  std::size_t at = json.find("\"configuration\"");
  for (const char* key : {"ControllerType", "ThresholdVoltage", "Projector", "Manufacturer", "Notes",
                          "Available", "RequiresReply", "Strings", "MaximumLevel", "Reserved", "Stopbits",
                          "LockOnFrontPanel", "LockSequence", "LockOnNoButton", "Spare"}) {
    const std::size_t found = json.find("\"" + std::string(key) + "\": ", at);
    ASSERT_NE(found, std::string::npos) << key;
    at = found;
  }
}

TEST(JsonText, WritesAStringWithItsTextAndListsWithoutTrailingZeros) {
  PanelConfiguration configuration;
  SerialString& string = configuration.Projector.Strings[0];
  string.Count = 4;
  string.Values = {'P', 'W', 'R', 13};
  string.Kinds = {0, 0, 0, 4};
  configuration.Projector.Strings[1].Kinds[2] = 9;  // beyond the count, and no kind at all
  const std::string json = ConfigurationToJson(configuration);
  EXPECT_THAT(json, HasSubstr(R"({"Text": "PWR,CRc", "Count": 4, "Values": [80,87,82,13], )"
                              R"("Kinds": ["ASC","ASC","ASC","CNT"]})"));
  EXPECT_THAT(json, HasSubstr(R"({"Text": "", "Count": 0, "Values": [], "Kinds": ["ASC","ASC",9]})"));
}

TEST(JsonText, WritesTextsAndFlagsAndSpareBytesAsTheyAre) {
  PanelConfiguration configuration;
  configuration.UsePC1 = 7;
  configuration.Spare[1] = 0xAB;
  configuration.Projector.Notes = FixedText<256>(u"a\"\\\n\u20AC\u0081 b");
  const std::string json = ConfigurationToJson(configuration);
  for (const char* expected :
       {R"("UsePC1": 7)", R"("UsePC2": true)", R"("LockOnNoButton": false)", R"("Spare": "00ab")",
        "\"Notes\": \"a\\\"\\\\\\u000a\xE2\x82\xAC\xC2\x81 b\","}) {
    EXPECT_THAT(json, HasSubstr(expected));
  }
}

// In runs of 8 bytes: random, zeros or blanks. One record in 16 is random throughout.
Bytes RandomRecord(std::size_t size, std::mt19937& random) {
  Bytes stored(size);
  const bool throughout = random() % 16 == 0;
  for (std::size_t at = 0; at < size; at += 8) {
    const auto kind = throughout ? 0 : random() % 8;
    for (std::size_t i = at; i < std::min(at + 8, size); ++i) {
      if (kind < 2) stored[i] = static_cast<std::uint8_t>(kind == 0 ? random() : ' ');
    }
  }
  return stored;
}

TEST(JsonText, GivesTenThousandRandomRecordsBackBitForBit) {
  const RandomSeed seed;
  SCOPED_TRACE(seed.Text());
  std::mt19937 random(seed.Value());
  constexpr int kBatches = 100;
  for (int batch = 0; batch < kBatches; ++batch) {
    std::vector<ProjectorDefinition> definitions(99);
    for (auto& definition : definitions) Decode(RandomRecord(kStoredProjectorSize, random), definition);
    ASSERT_EQ(std::get<1>(ReadJson(ProjectorsToJson(definitions))), definitions);

    const Bytes stored = RandomRecord(kStoredConfigurationSize, random);
    PanelConfiguration configuration;
    Decode(stored, configuration);
    ASSERT_EQ(Encode(std::get<0>(ReadJson(ConfigurationToJson(configuration)))), stored);
  }
}

TEST(JsonText, LeftOutKeysHaveTheValuesOfANewRecord) {
  PanelConfiguration expected;
  expected.RoomTimeout = 30;
  expected.Projector.Model.AssignUtf8("X");
  expected.Projector.Strings[0].Count = -5;
  EXPECT_EQ(ReadConfigured(R"("RoomTimeout": 30, "Projector": {"Model": "X", "Strings": [{"Count": -5})" +
                           [] {
                             std::string rest;
                             for (int i = 1; i < 25; ++i) rest += ",{}";
                             return rest;
                           }() +
                           "]}"),
            expected);
  EXPECT_THAT(std::get<1>(ReadJson(R"({"projectors": [{}], "version": 1, "format": "qdm-projectors"})")),
              testing::ElementsAre(ProjectorDefinition{}));
}

TEST(JsonText, ReadsBothFormsOfFlagsAndKindsAndIgnoresTheTextOfAString) {
  const PanelConfiguration read = ReadConfigured(
      R"("UsePC1": -1, "UsePC2": false, "UseVideo": 2, "LockOnNoButton": true, "Spare": "0A0b")");
  EXPECT_EQ(read.UsePC1, -1);
  EXPECT_EQ(read.UsePC2, 0);
  EXPECT_EQ(read.UseVideo, 2);
  EXPECT_EQ(read.LockOnNoButton, -1);
  EXPECT_EQ(read.Spare[1], 0x0B);
  const auto string =
      std::get<0>(ReadJson(InString(R"("Text": [{"x": null}, 1.5], "Kinds": [6, "VAR", 255])")));
  EXPECT_THAT(Bytes(string.Projector.Strings[0].Kinds.begin(), string.Projector.Strings[0].Kinds.begin() + 4),
              testing::ElementsAre(6, 5, 255, 0));
}

TEST(JsonText, RefusesWithPathAndReasonWhatNoRecordCanHold) {
  const std::string flags24 = [] {
    std::string flags = "true";
    for (int i = 1; i < 24; ++i) flags += ",true";
    return flags;
  }();
  const std::string thirtyThree = [] {
    std::string zeros = "0";
    for (int i = 1; i < 33; ++i) zeros += ",0";
    return zeros;
  }();
  const std::string path = "configuration.Projector.Strings[0]";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {Configured(R"("UpTime": 32768)"), "configuration.UpTime: 32768 is not a whole number"},
      {Configured(R"("UpTime": -32769)"), "configuration.UpTime: -32769 is not"},
      {Configured(R"("UpTime": 99999999999999999999)"), "configuration.UpTime: 99999999999999999999 is not"},
      {Configured(R"("UpTime": 1.0)"), "configuration.UpTime: 1.0 is not"},
      {Configured(R"("UpTime": 1e2)"), "configuration.UpTime: 1e2 is not"},
      {Configured(R"("UpTime": "5")"), "configuration.UpTime: \"5\" is not"},
      {Configured(R"("UpTime": true)"), "configuration.UpTime: true is not"},
      {Configured(R"("UpTime": null)"), "configuration.UpTime: null is not"},
      {Configured(R"("UpTime": [1])"), "configuration.UpTime: a list is not"},
      {Configured(R"("UpTime": {})"), "configuration.UpTime: an object is not"},
      {Configured(R"("UsePC1": "true")"), "configuration.UsePC1: \"true\" is not true, false or"},
      {Configured(R"("UpTim": 1)"), "configuration.UpTim: unknown key"},
      {Configured(R"("a\nb": 1)"), "configuration.\"a\\u000ab\": unknown key"},
      {Configured(R"("UpTime": 1, "UpTime": 1)"), "configuration.UpTime: the key is there twice"},
      {Configured(R"("LockSequence": [1,2,3])"), "configuration.LockSequence: 3 entries instead of 4"},
      {Configured(R"("LockSequence": [1,2,3,4,5])"), "configuration.LockSequence: more than 4 entries"},
      {Configured(R"("LockSequence": [1,2,"3",4])"), "configuration.LockSequence[2]: \"3\" is not"},
      {Configured(R"("LockSequence": 1)"), "configuration.LockSequence: 1 is not a list"},
      {Configured(R"("Projector": {"Available": [)" + flags24 + "]}"),
       "configuration.Projector.Available: 24 entries instead of 25"},
      {Configured(R"("Projector": [])"), "configuration.Projector: a list is not an object"},
      {Configured(R"("Projector": {"Strings": [{}]})"), "Projector.Strings: 1 entries instead of 25"},
      {Configured(R"("Projector": {"Model": "123456789012345678901234567890123"})"),
       "configuration.Projector.Model: 33 characters, there is room for 32"},
      {Configured(R"("Projector": {"Model": "\u0416"})"),
       "Model: the character \"\xD0\x96\" is not in the code page"},
      {Configured(R"("Projector": {"Model": "a\ud83d\ude00"})"),
       "Model: the character \"\xF0\x9F\x98\x80\" is not"},
      {Configured(R"("Spare": "abc")"), "configuration.Spare: half a hexadecimal pair"},
      {Configured(R"("Spare": "0g")"), "configuration.Spare: \"0g\" is not a hexadecimal pair"},
      {Configured(R"("Spare": ")" + std::string(2016, '0') + "\""),
       "configuration.Spare: 1008 bytes, there is room for 1007"},
      {InString(R"("Values": [)" + thirtyThree + "]"), path + ".Values: more than 32 entries"},
      {InString(R"("Values": [256])"), path + ".Values[0]: 256 is not"},
      {InString(R"("Values": [-1])"), path + ".Values[0]: -1 is not"},
      {InString(R"("Values": ["ASC"])"), path + ".Values[0]: \"ASC\" is not"},
      {InString(R"("Kinds": [0, "XYZ"])"), path + ".Kinds[1]: \"XYZ\" is not"},
      {InString(R"("Kinds": "ASC")"), path + ".Kinds: \"ASC\" is not a list"},
      {InString(R"("Length": 1)"), path + ".Length: unknown key"},
      {R"({"format": "qdm-projectors", "version": 1, "projectors": [{}, {"Modell": ""}]})",
       "projectors[1].Modell: unknown key"},
      {R"({"format": "qdm-projectors", "version": 1, "configuration": {}})",
       "configuration: does not belong"},
      {R"({"format": "qdm-projectors", "version": 1})", "projectors: missing"},
      {R"({"format": "qdm", "version": 1, "projectors": []})", "format: \"qdm\" is not"},
      {R"({"format": 1})", "format: 1 is not"},
      {R"({"version": 1, "projectors": []})", "format: missing"},
      {R"({"format": "qdm-projectors", "projectors": []})", "version: missing"},
      {R"({"format": "qdm-projectors", "version": 2, "projectors": []})", "version: 2 is not 1"},
      {R"({"format": "qdm-projectors", "version": "1", "projectors": []})", "version: \"1\" is not 1"},
      {R"({"format": "qdm-projectors", "version": 1, "projectors": [], "extra": 1})", "extra: unknown key"},
      {"[]", "a list is not an object"},
      {"7", "7 is not an object"},
      {"", "not JSON: parse error at line 1, column 1"},
      {Configured(R"("UpTime": 1,)"), "not JSON: parse error"},
      {Configured("") + "x", "not JSON: parse error"},
      {Configured(R"("Projector": {"Model": ")"
                  "\xFF"
                  R"("})"),
       "not JSON: parse error"},
  };
  for (const auto& [text, why] : cases) EXPECT_THAT(RefusalOf(text), HasSubstr(why)) << text.substr(0, 200);
}

TEST(JsonText, KeepsMessagesShortWhateverTheTextHolds) {
  EXPECT_LT(RefusalOf(Configured(R"("UpTime": ")" + std::string(100'000, 'x') + "\"")).size(), 250U);
  EXPECT_LT(RefusalOf(Configured(R"("UpTime": )" + std::string(100'000, '9'))).size(), 250U);
  EXPECT_THAT(RefusalOf(std::string(100'000, '[')), Not(HasSubstr("accepted")));
}

}  // namespace
}  // namespace qdm
