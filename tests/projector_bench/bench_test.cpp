// The stand-in, the settings finder and the timing, in virtual time.
#include "projector_bench/bench_line.h"
#include "projector_bench/settings_finder.h"
#include "projector_bench/stand_in.h"
#include "projector_bench/timing.h"
#include "projector_bench/wrong_settings.h"
#include "support/bench_lines.h"
#include "support/distinct_projector.h"
#include "support/files.h"
#include "support/seeded_random.h"
#include "support/strings.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <random>

namespace qdm {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

Bytes BytesOf(std::string_view text) { return Bytes(text.begin(), text.end()); }

ProjectorDefinition Definition() {
  ProjectorDefinition projector;
  Define(projector, kPowerOnSlot, Characters("ON\r"));
  Define(projector, kPowerOnReplySlot, String({{'O'}, {'K'}, {'7', ByteKind::IGN}}));
  Define(projector, kPowerOffSlot, Characters("OFF\r"));
  Define(projector, kData1Slot, Characters("IN1\r"));
  Define(projector, kData1ReplySlot, Characters("ok"));
  Define(projector, kVideoSlot, Characters("IN"));  // the beginning of another
  Define(projector, kVolumeUpSlot, String({{'V'}, {0, ByteKind::VAR}, {13}}));
  projector.Baudrate = 1;
  projector.MessageFormat = 1;
  projector.NumberOfBytes = 3;
  projector.MaximumLevel = 100;
  projector.InterCommandDelay = 100;
  projector.InterByteDelay = 5;
  projector.WarmUpTime = 30;
  return projector;
}

struct StandInTest : testing::Test {
  // Byte by byte, so far apart.
  void Say(std::string_view text, Microseconds apart = 5ms) {
    for (const char c : text) {
      const auto byte = static_cast<std::uint8_t>(c);
      standIn.Receive({&byte, 1}, now += apart);
    }
  }
  void Silence(Microseconds period) { standIn.Advance(now += period); }
  const HeardCommand& Last() const { return standIn.Heard().back(); }

  Microseconds now = 1h;
  StandIn standIn{Definition()};
};

TEST_F(StandInTest, NamesAnswersAndTicksWhatItHears) {
  Say("ON\r");
  EXPECT_EQ(standIn.TakeAnswers(now), (Bytes{'O', 'K', 0}));
  Silence(100ms);
  Say("V042\r");
  EXPECT_EQ(Last().Level, 42);
  Silence(100ms);
  Say("IN");
  EXPECT_EQ(standIn.Heard().size(), 2U) << "it may still become another";
  Silence(50ms);
  EXPECT_EQ(Last().Command, kVideoSlot);
  Silence(100ms);
  Say("INOFF\r");  // what came first is known as soon as it goes on otherwise
  EXPECT_EQ(standIn.Heard().size(), 5U);
  EXPECT_EQ(Last().Command, kPowerOffSlot);
  EXPECT_EQ(ChecklistText(standIn), "Press each button: 4 of 5 heard, still missing: Data 1");
  EXPECT_EQ(ListLine(standIn.Heard()[1], 1h), "120\t105\tVolume up\t56 30 34 32 0D");
}

TEST_F(StandInTest, ShowsDelaysThatWereNotKept) {
  Say("ON\r");
  EXPECT_FALSE(Last().Gap);
  Silence(90ms);
  Say("OFF\r");
  EXPECT_TRUE(Last().TooSoon);
  EXPECT_FALSE(Last().BytesTooClose);
  Silence(100ms);
  Say("ON\r", 3ms);
  EXPECT_FALSE(Last().TooSoon);
  EXPECT_TRUE(Last().BytesTooClose);
  // What an adapter hands over at once has been on the line for some time.
  Silence(90ms);
  standIn.Receive(BytesOf("ON\r"), now);
  EXPECT_FALSE(Last().TooSoon || Last().BytesTooClose);
  Silence(80ms);
  standIn.Receive(BytesOf("V100\r"), now);
  EXPECT_TRUE(Last().TooSoon && Last().BytesTooClose);
}

TEST_F(StandInTest, SaysWhatUnknownBytesAreNearestTo) {
  const struct {
    const char* Bytes;
    const char* Remark;
  } cases[] = {
      {"PN\r", "nearest is \"Power on\": byte 1 is 50 instead of 4F"},
      {"OFFF\r", "nearest is \"Power off\": byte 4 (46) is one too many"},
      {"OFF", "nearest is \"Power off\": byte 4 (0D) is missing"},
      {"\xCF\x46\xC6\x8D", "looks like \"Power off\" at 7 data bits with parity"},
      {"\x80\xF0\x81", "looks like a wrong speed or parity"},
      {"hello", ""},
  };
  for (const auto& [bytes, remark] : cases) {
    Say(bytes);
    Silence(500ms);
    EXPECT_FALSE(Last().Command) << bytes;
    EXPECT_EQ(standIn.RemarksOn(Last()), remark);
  }
  const LineSettings sent = ParseLineSettings("9600,n,8,1");
  standIn.Receive(HeardAs(BytesOf("ON\r"), sent, ParseLineSettings("19200,n,8,1")), now += 1s);
  Silence(500ms);
  EXPECT_THAT(standIn.RemarksOn(Last()), HasSubstr("looks like \"Power on\" at 9600,"));
}

TEST_F(StandInTest, IsBusyLateWrongOrSilentOnRequest) {
  standIn.Switches.Power = WhileBusy::AnswerBusy;
  Say("ON\r");
  Silence(29s);
  standIn.TakeAnswers(now);
  Say("ON\r");
  EXPECT_EQ(standIn.TakeAnswers(now), BytesOf("BUSY\r"));
  Silence(1s);
  standIn.Switches.AnswerWrong = true;
  standIn.Switches.Delay = 200ms;
  Say("ON\r");
  EXPECT_TRUE(standIn.TakeAnswers(now).empty());
  EXPECT_EQ(standIn.NextTime(), now + 200ms);
  EXPECT_EQ(standIn.TakeAnswers(now + 200ms), (Bytes{'O', 'K' ^ 1, 0}));
  standIn.Switches.Silent = true;
  Say("IN1\r");
  EXPECT_TRUE(standIn.TakeAnswers(now + 1s).empty());
}

// What people read of the bench: golden/texts.txt.
TEST_F(StandInTest, TellsEverythingInItsWords) {
  std::string told;
  Say("ON\r");
  Say("V042\r", 2ms);
  Say("xyz");
  Silence(500ms);
  told += ListText(standIn, 1h);
  for (const SlotFacts& slot : kSlots) {
    if (slot.Role == SlotRole::Command)
      told.append(NameOfSlot(slot.Place)).append(" ").append(EffectOf(slot.Place)) += '\n';
  }
  for (int i = 0; i < 4; ++i) told.append(NameOf(static_cast<ProbeVerdict>(i))) += '\n';
  told.append(WhatToCheckWhenSilent()) += '\n';
  ExpectGolden("projector_bench/golden/texts.txt", told);
}

TEST(SettingsFinder, AProjectorIsFoundAtEachOfTheThirtySettings) {
  const ProjectorDefinition definition = Definition();
  const std::vector<ProbeSetting> settings = SettingsToProbe(definition);
  ASSERT_EQ(settings.size(), 30U);
  EXPECT_EQ(settings.front().Text(), "19200,n,8,1") << "its own first";
  for (const ProbeSetting& own : settings) {
    VirtualTime time;
    std::vector<std::unique_ptr<SerialPort>> ports;
    ports.push_back(std::make_unique<BenchLine>(time, [&](std::uint8_t byte, const std::string& at) {
      const bool done = byte == 13 && at == own.Text();
      return std::pair(done ? BytesOf("OK!") : Bytes(), Microseconds(100ms));
    }));
    std::vector<std::string> replied;
    ProbeSettings(ports, QuestionOf(definition, kPowerOnSlot), settings, time, {},
                  {[&](const ProbeResult& result) {
                    if (result.Verdict == ProbeVerdict::Reply) replied.push_back(result.Setting.Text());
                  }});
    EXPECT_THAT(replied, ElementsAre(own.Text()));
    ProjectorDefinition used = definition;
    UseSettings(used, own);
    EXPECT_EQ(BenchLineSettings(used), own.Text());
  }
}

TEST(SettingsFinder, AsksAllPortsAtOnceUntilItIsStoppedOrNoneIsLeft) {
  const ProjectorDefinition definition = Definition();
  VirtualTime time;
  std::vector<std::unique_ptr<SerialPort>> ports;
  for (int i = 0; i < 3; ++i) {
    ports.push_back(std::make_unique<BenchLine>(time, [i](std::uint8_t byte, const std::string& at) {
      const bool done = i == 1 && byte == 13 && at == "9600,n,8,1";
      return std::pair(done ? BytesOf("OK!") : Bytes(), Microseconds(10ms));
    }));
  }
  std::stop_source stop;
  const Microseconds start = time.Now();
  time.At(start + 700ms, [&] { static_cast<BenchLine&>(*ports[0]).Present = false; });
  std::vector<std::size_t> told;
  const auto probe = [&] {
    told.clear();
    ProbeSettings(ports, QuestionOf(definition, kPowerOnSlot), SettingsToProbe(definition), time,
                  stop.get_token(), {[&](const ProbeResult& result) {
                    told.push_back(result.Port);
                    if (result.Verdict == ProbeVerdict::Reply) stop.request_stop();
                    EXPECT_EQ(result.Verdict == ProbeVerdict::Reply,
                              result.Port == 1 && result.Setting.Text() == "9600,n,8,1");
                  }});
  };
  probe();
  EXPECT_THAT(told, ElementsAre(0, 1, 2, 1, 2)) << "its own setting first, then the commonest";
  EXPECT_LT(time.Now() - start, 1200ms);
  for (const auto& port : ports) static_cast<BenchLine&>(*port).Present = false;
  stop = {};
  probe();
  EXPECT_TRUE(told.empty());
  EXPECT_LT(time.Now() - start, 1200ms);
}

TEST(SettingsFinder, JudgesWhatComesBack) {
  const ProjectorDefinition definition = Definition();
  const ProbeQuestion question = QuestionOf(definition, kPowerOnSlot);
  const std::pair<const char*, ProbeVerdict> cases[] = {
      {"", ProbeVerdict::Nothing},   {"ON\r", ProbeVerdict::Echo},       {"ON\rOK?", ProbeVerdict::Reply},
      {">OK?", ProbeVerdict::Reply}, {"ON\r?", ProbeVerdict::Something}, {"ok", ProbeVerdict::Something}};
  for (const auto& [bytes, verdict] : cases) EXPECT_EQ(Judge(question, BytesOf(bytes)), verdict) << bytes;
  EXPECT_EQ(Judge(QuestionOf(definition, Characters("?\r")), BytesOf("ok")), ProbeVerdict::Reply)
      << "a query of one's own is answered by anything that the definition knows";
}

// Deaf for a time after a power command, and while a command comes too soon after another. Bytes take their
// time on the line: the pause counts from the last bit of a command to the first of the next.
class TimedProjector {
 public:
  TimedProjector(Waiting& time, Microseconds transition, Microseconds pause)
      : time_(time), transition_(transition), pause_(pause) {}

  std::pair<Bytes, Microseconds> operator()(std::uint8_t byte, const std::string& settings) {
    const Microseconds begin = std::max(time_.Now(), lastEnd_);
    if (command_.empty()) tooSoon_ = begin - lastEnd_ < pause_;
    command_.push_back(byte);
    lastEnd_ = begin + TimeOfBytes(1, ParseLineSettings(settings));
    if (byte != 13) return {};
    const Microseconds after = lastEnd_ - time_.Now() + 20ms;
    const Bytes command = std::exchange(command_, {});
    if (tooSoon_ || (command != power_ && lastEnd_ < readyAt_)) return {};
    const bool power = command == BytesOf("ON\r") || command == BytesOf("OFF\r");
    if (power && lastEnd_ >= readyAt_) {
      readyAt_ = lastEnd_ + transition_;
      power_ = command;
    }
    if (command == BytesOf("OFF\r")) return {};
    return {BytesOf(power ? "OK1" : "ok"), after};
  }

 private:
  Waiting& time_;
  Microseconds transition_;
  Microseconds pause_;
  Microseconds readyAt_{};
  Microseconds lastEnd_{};
  Bytes power_;  // that it is busy with
  Bytes command_;
  bool tooSoon_ = false;
};

void ExpectWithinTwoPercent(std::optional<Microseconds> measured, Microseconds truth,
                            const std::string& what) {
  ASSERT_TRUE(measured) << what;
  EXPECT_NEAR(static_cast<double>(measured->count()), static_cast<double>(truth.count()),
              0.02 * static_cast<double>(truth.count()))
      << what;
}

TEST(Timing, ComesWithinTwoPercentOfTheTruth) {
  SeededRandom random;
  const auto number = [&](int lowest, int highest) {
    return std::uniform_int_distribution(lowest, highest)(random);
  };
  for (int i = 0; i < 12; ++i) {
    ProjectorDefinition definition = Definition();
    definition.InterCommandDelay = 10;
    definition.InterByteDelay = static_cast<std::int16_t>(number(0, 10));
    definition.Baudrate = static_cast<std::int16_t>(number(0, 4));
    VirtualTime time;
    const TimingQuestion query = TimingQuestionOf(definition, Characters("IN1\r"), Characters("ok"));
    const TimingQuestion powerOn = *TimingQuestionOf(definition, kPowerOnSlot);
    const Microseconds transition = 1ms * number(5'000, 250'000);
    // The first are as short as delays are.
    const Microseconds pause = i < 4 ? 1ms * (1 + i * 7 / 3) : 10us * number(800, 90'000);
    for (const bool off : {false, true}) {
      BenchLine line(time, TimedProjector(time, transition, 0ms));
      line.Settings = BenchLineSettings(definition);
      ExpectWithinTwoPercent(
          MeasureTransition({line, definition, time, {}}, off ? kPowerOffSlot : kPowerOnSlot,
                            off ? powerOn : query, [](auto) {}),
          transition, off ? "cool-down" : "warm-up");
    }
    BenchLine line(time, TimedProjector(time, 0ms, pause));
    line.Settings = BenchLineSettings(definition);
    ExpectWithinTwoPercent(MeasureCommandDelay({line, definition, time, {}}, query, [](auto) {}), pause,
                           std::to_string(pause.count()) + " us, " +
                               std::to_string(definition.InterByteDelay) + " ms between bytes");
  }
  EXPECT_FALSE(TimingQuestionOf(Definition(), kPowerOffSlot)) << "no reply to wait for";
  EXPECT_EQ(SecondsWithMargin(40s), 48);
  EXPECT_EQ(MillisecondsWithMargin(33ms), 40);
}

TEST(Timing, StopsAndGivesUp) {
  const ProjectorDefinition definition = Definition();
  const TimingQuestion question = *TimingQuestionOf(definition, kData1Slot);
  VirtualTime time;
  BenchLine hasty(time, TimedProjector(time, 0s, 2s));
  BenchLine line(time, TimedProjector(time, 1000s, 0s));
  std::stop_source stop;
  EXPECT_FALSE(MeasureCommandDelay({hasty, definition, time, {}}, question, [](auto) {}));
  EXPECT_FALSE(MeasureTransition({line, definition, time, {}}, kPowerOnSlot, question, [](auto) {}));
  const Microseconds start = time.Now();
  time.At(start + 7s, [&] { stop.request_stop(); });
  EXPECT_FALSE(
      MeasureTransition({line, definition, time, stop.get_token()}, kPowerOnSlot, question, [](auto) {}));
  EXPECT_LT(time.Now() - start, 8s);
}

}  // namespace
}  // namespace qdm
