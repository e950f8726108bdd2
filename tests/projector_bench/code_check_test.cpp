#include "projector_bench/code_check.h"

#include "projector_bench/command_pattern.h"
#include "serial_strings/sum_search.h"
#include "support/distinct_projector.h"
#include "support/seeded_random.h"
#include "support/strings.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <random>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr Slot kPlaces[] = {kSerialEnableSlot, kPowerOnSlot, kData1Slot,    kData2Slot,
                            kVideoSlot,        kBlankSlot,   kVolumeUpSlot, kVolumeDownSlot,
                            kPowerOffSlot,     kVideo2Slot,  kBlankOffSlot, kSerialDisableSlot};

ProjectorDefinition DefinitionOf(const std::vector<Bytes>& commands) {
  ProjectorDefinition projector;
  for (std::size_t i = 0; i < commands.size(); ++i) Define(projector, kPlaces[i], StringOf(commands[i]));
  return projector;
}

ProjectorDefinition Texts(const std::vector<std::string>& commands) {
  std::vector<Bytes> bytes;
  for (const std::string& command : commands) bytes.emplace_back(command.begin(), command.end());
  return DefinitionOf(bytes);
}

std::vector<std::string> FindingTexts(const CodeCheckResult& result) {
  std::vector<std::string> texts;
  for (const CodeFinding& finding : result.Findings) texts.push_back(finding.Text);
  return texts;
}

Bytes BytesOf(const SerialString& string) {
  return Bytes(string.Values.begin(), string.Values.begin() + string.Count);
}

// Chance makes one in some ten thousand families look faulty: a seed that differs would fail now and then.
class RandomFamilies {
 public:
  explicit RandomFamilies(unsigned usual) : random_(usual) {}

  int Number(int lowest, int highest) { return std::uniform_int_distribution(lowest, highest)(random_); }
  Bytes Data(int length, int lowest = 0, int highest = 255) {
    Bytes bytes(static_cast<std::size_t>(length));
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(Number(lowest, highest));
    return bytes;
  }
  // Different commands: head, data, perhaps a sum by `rule`, tail. What the rule does not cover before its
  // sum is the same in all of them.
  std::vector<Bytes> Family(std::size_t members, const Bytes& head, int dataBytes, const SumRule* rule,
                            const Bytes& tail, int lowest = 0, int highest = 255) {
    std::vector<Bytes> family;
    while (family.size() < members) {
      Bytes command = head;
      const Bytes data = Data(dataBytes, lowest, highest);
      command.insert(command.end(), data.begin(), data.end());
      if (rule != nullptr && !rule->InFront) command.insert(command.end(), rule->Uncovered, 0x03);
      const auto sumAt = rule != nullptr && rule->InFront ? static_cast<std::ptrdiff_t>(rule->Place)
                                                          : static_cast<std::ptrdiff_t>(command.size());
      if (rule != nullptr) command.insert(command.begin() + sumAt, rule->Width(), 0);
      command.insert(command.end(), tail.begin(), tail.end());
      if (rule != nullptr) {
        const Bytes sum = *ComputedSum(*rule, command);
        std::copy(sum.begin(), sum.end(),
                  command.begin() + static_cast<std::ptrdiff_t>(PartsOf(*rule, command.size())->SumAt));
      }
      if (std::find(family.begin(), family.end(), command) == family.end()) family.push_back(command);
    }
    return family;
  }

 private:
  SeededRandom random_;
};

std::vector<SumForm> FormsOf(int bits) {
  using enum SumForm::Digits;
  if (bits == 8) return {{Raw}, {UpperCase}, {LowerCase}};
  return {{Raw}, {Raw, true}, {UpperCase}, {LowerCase}};
}

// Any byte of any command, mistyped: the command is found, and what is offered keeps the family's rule.
TEST(CodeCheck, FindsOneMistypedByteInFamiliesOfEverySum) {
  RandomFamilies random(1);
  for (const SumMethod& method : SumMethods()) {
    for (const SumForm& form : FormsOf(method.Bits)) {
      for (const int tailBytes : {0, 1, 2}) {
        SumRule rule{.Method = method, .Form = form};
        rule.Place = static_cast<std::size_t>(tailBytes);
        rule.Start = static_cast<std::size_t>(random.Number(0, 2));
        rule.Uncovered = static_cast<std::size_t>(random.Number(0, 1));
        // The high byte of a wide sum hardly varies: in front it could as well be one of the frame.
        if (random.Number(0, 3) == 0 && (method.Bits == 8 || method.Kind == SumKind::Crc)) {
          rule.InFront = true;
          rule.Place = 1;
          rule.Start = 1 + rule.Width();
          rule.Uncovered = static_cast<std::size_t>(tailBytes);
        }
        const auto members = static_cast<std::size_t>(random.Number(7, 12));
        std::vector<Bytes> family = random.Family(members, random.Data(2), random.Number(2, 4), &rule,
                                                  random.Data(tailBytes, 0x80, 0xFF));
        const auto odd = static_cast<std::size_t>(random.Number(0, static_cast<int>(members) - 1));
        const auto at = static_cast<std::size_t>(random.Number(0, static_cast<int>(family[odd].size()) - 1));
        family[odd][at] = static_cast<std::uint8_t>(family[odd][at] ^ random.Number(1, 255));
        const CodeCheckResult result = CheckCodes(DefinitionOf(family));
        const std::string what = method.Name() + " " + form.Name() + ", byte " + std::to_string(at + 1);
        ASSERT_EQ(result.Findings.size(), 1U) << what;
        EXPECT_EQ(result.Findings[0].Place, kPlaces[odd]) << what;
        ASSERT_TRUE(result.Findings[0].Corrected) << what;
        // Digits that are no letters do not say in which case they would be.
        Bytes corrected = BytesOf(*result.Findings[0].Corrected);
        Bytes sum = *ComputedSum(rule, corrected);
        const std::size_t sumAt = PartsOf(rule, corrected.size())->SumAt;
        if (form.As != SumForm::Digits::Raw) {
          for (Bytes* bytes : {&corrected, &sum}) {
            for (std::uint8_t& byte : *bytes) byte |= 0x20;
          }
        }
        EXPECT_TRUE(
            std::equal(sum.begin(), sum.end(), corrected.begin() + static_cast<std::ptrdiff_t>(sumAt)))
            << what << ": " << result.Findings[0].Text;
      }
    }
  }
}

#ifdef __SANITIZE_ADDRESS__  // which looks for other faults, and takes ten times as long for it
constexpr int kFaultless = 1'000;
#else
constexpr int kFaultless = 10'000;
#endif

TEST(CodeCheck, NeverAccusesAFamilyWithoutAFault) {
  RandomFamilies random(2);
  const std::vector<SumMethod>& methods = SumMethods();
  for (int i = 0; i < kFaultless; ++i) {
    SumRule rule{
        .Method = methods[static_cast<std::size_t>(random.Number(0, static_cast<int>(methods.size()) - 1))],
        .Form = {}};
    const std::vector<SumForm> forms = FormsOf(rule.Method.Bits);
    rule.Form = forms[static_cast<std::size_t>(random.Number(0, static_cast<int>(forms.size()) - 1))];
    const bool text = random.Number(0, 2) == 0;
    const Bytes tail = text ? Bytes{0x0D} : random.Data(random.Number(0, 2));
    rule.Place = tail.size();
    const bool summed = random.Number(0, 1) == 0;
    const bool digits = random.Number(0, 3) == 0;  // values that hardly vary
    const auto family = random.Family(static_cast<std::size_t>(random.Number(2, 12)),
                                      random.Data(random.Number(0, 3), '!', '~'), random.Number(2, 5),
                                      summed ? &rule : nullptr, tail,
                                      digits ? '0'
                                      : text ? '!'
                                             : 0,
                                      digits ? '9'
                                      : text ? '~'
                                             : 255);
    ASSERT_THAT(FindingTexts(CheckCodes(DefinitionOf(family))), IsEmpty()) << "family " << i;
  }
}

TEST(CodeCheck, SaysWhatTheFamilyHasInCommonAndWhoBreaksIt) {
  std::vector<Bytes> commands;
  for (const int code : {0x10, 0x11, 0x21, 0x22, 0x28, 0x35, 0x36, 0x40, 0x41})
    commands.push_back({0xA5, 0x02, static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(0xA7 ^ code)});
  commands[5][3] = 0x14;
  const CodeCheckResult result = CheckCodes(DefinitionOf(commands));
  EXPECT_THAT(FindingTexts(result), ElementsAre("Blank: last byte is 14, the other eight make it 92"));
  EXPECT_THAT(FamilyText(result.Family), ElementsAre("All nine commands begin with A5 02.",
                                                     "In each command the last byte is the exclusive or of "
                                                     "the bytes before it; eight commands prove it."));
  EXPECT_EQ(BytesOf(*WithSum(String({{0xA5}, {0x02}, {0x50}, {0}}), *result.Family.Sum)),
            (Bytes{0xA5, 0x02, 0x50, 0xF7}));
}

TEST(CodeCheck, SeesWhatPeopleForgetInTexts) {
  const struct {
    std::vector<std::string> Commands;
    const char* Finding;
    const char* Corrected;
  } cases[] = {
      {{"EN\r", "ON\r", "RGB1", "RGB2\r", "VIDEO\r"},
       "Data 1: does not end with 0D, as the other four do",
       "RGB1\r"},
      {{"EN\r\n", "ON\r\n", "RGB1\r", "RGB2\r\n"}, "Data 1: does not end with 0D 0A", "RGB1\r\n"},
      {{"EN\r", "ON \r", "RGB1\r", "RGB2\r"}, "Power on: a blank stands at the end", "ON\r"},
      {{"EN\r", "ON\r", "RGB\r", "RGB\r"}, "Data 2: the same as Data 1", nullptr},
      {{"EN\r", "ON\r", "A\r", "B\r", "C\r", "D\r", "E\r", "F\r", "ON\r"},
       "Power off: the same as Power on",
       nullptr},
  };
  for (const auto& [commands, finding, corrected] : cases) {
    const CodeCheckResult result = CheckCodes(Texts(commands));
    ASSERT_THAT(FindingTexts(result), ElementsAre(HasSubstr(finding)));
    EXPECT_EQ(result.Findings[0].Corrected.has_value(), corrected != nullptr) << finding;
    if (corrected == nullptr) continue;
    const std::string wanted = corrected;
    EXPECT_EQ(BytesOf(*result.Findings[0].Corrected), Bytes(wanted.begin(), wanted.end()));
  }
  EXPECT_EQ(CheckCodes(Texts(cases[4].Commands)).Findings[0].Fault, CodeFault::SameOnAndOff);
}

TEST(CodeCheck, TakesLevelsAndLongRepliesForWhatTheyAre) {
  ProjectorDefinition projector = Texts({"EN\r", "ON\r", "A\r", "B\r"});
  for (const Slot slot : {kVolumeUpSlot, kVolumeDownSlot})
    Define(projector, slot, String({{'V'}, {0, ByteKind::VAR}, {13}}));
  EXPECT_THAT(FindingTexts(CheckCodes(projector)), IsEmpty());
  projector.RequiresReply[ReceivedIndex(kPowerOnReplySlot)] = kFlagSet;
  projector.Strings[kPowerOnReplySlot].Count = 32;
  EXPECT_THAT(FindingTexts(CheckCodes(projector)),
              ElementsAre("Power on reply: a reply of 32 bytes is longer than can be waited for (31)"));
}

}  // namespace
}  // namespace qdm
