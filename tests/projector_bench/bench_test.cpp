// The stand-in, the settings finder and the timing, in virtual time.
#include "projector_bench/bench_line.h"
#include "projector_bench/settings_finder.h"
#include "projector_bench/stand_in.h"
#include "projector_bench/timing.h"
#include "projector_bench/wrong_settings.h"
#include "support/bench_lines.h"
#include "support/strings.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

Bytes BytesOf(std::string_view text) { return Bytes(text.begin(), text.end()); }

ProjectorDefinition Definition() {
  ProjectorDefinition projector;
  const auto set = [&](Slot slot, const SerialString& string) {
    projector.Strings[slot] = string;
    projector.Available[slot] = kFlagSet;
  };
  set(kPowerOnSlot, Characters("ON\r"));
  set(kPowerOnReplySlot, String({{'O'}, {'K'}, {'7', ByteKind::IGN}}));
  set(kPowerOffSlot, Characters("OFF\r"));
  set(kData1Slot, Characters("IN1\r"));
  set(kData1ReplySlot, Characters("ok"));
  set(kVideoSlot, Characters("IN"));  // the beginning of another
  set(kVolumeUpSlot, String({{'V'}, {0, ByteKind::VAR}, {13}}));
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
    EXPECT_EQ(Last().Remark, remark);
  }
  const LineSettings sent = ParseLineSettings("9600,n,8,1");
  standIn.Receive(HeardAs(BytesOf("ON\r"), sent, ParseLineSettings("19200,n,8,1")), now += 1s);
  Silence(500ms);
  EXPECT_THAT(Last().Remark, HasSubstr("looks like \"Power on\" at 9600,"));
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
                  [&](const ProbeResult& result) {
                    if (result.Verdict == ProbeVerdict::Reply) replied.push_back(result.Setting.Text());
                  });
    EXPECT_THAT(replied, ElementsAre(own.Text()));
    ProjectorDefinition used = definition;
    UseSettings(used, own);
    EXPECT_EQ(BenchLineSettings(used), own.Text());
  }
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

// Deaf for a time after a power command, and while a command comes too soon after another.
class TimedProjector {
 public:
  TimedProjector(Waiting& time, Microseconds transition, Microseconds pause)
      : time_(time), transition_(transition), pause_(pause) {}

  std::pair<Bytes, Microseconds> operator()(std::uint8_t byte, const std::string&) {
    if (command_.empty()) tooSoon_ = time_.Now() - lastEnd_ < pause_;
    command_.push_back(byte);
    if (byte != 13) return {};
    const Bytes command = std::exchange(command_, {});
    lastEnd_ = time_.Now();
    if (tooSoon_) return {};
    if (command == BytesOf("ON\r")) readyAt_ = time_.Now() + transition_;
    if (command == BytesOf("ON\r")) return {BytesOf("OK1"), 20ms};
    if (time_.Now() < readyAt_) return {};
    return {BytesOf("ok"), 20ms};
  }

 private:
  Waiting& time_;
  Microseconds transition_;
  Microseconds pause_;
  Microseconds readyAt_{};
  Microseconds lastEnd_{};
  Bytes command_;
  bool tooSoon_ = false;
};

TEST(Timing, ComesWithinTwoPercentOfTheTruth) {
  ProjectorDefinition definition = Definition();
  definition.InterCommandDelay = 10;
  definition.InterByteDelay = 0;
  const TimingQuestion question = *TimingQuestionOf(definition, kData1Slot);
  EXPECT_FALSE(TimingQuestionOf(definition, kPowerOffSlot)) << "no reply to wait for";
  for (const auto seconds : {5, 12, 45, 180}) {
    VirtualTime time;
    const Microseconds truth = std::chrono::seconds(seconds);
    BenchLine line(time, TimedProjector(time, truth, 0ms));
    const auto measured =
        MeasureTransition({line, definition, time, {}}, kPowerOnSlot, question, [](auto) {});
    ASSERT_TRUE(measured);
    EXPECT_NEAR(static_cast<double>(measured->count()), static_cast<double>(truth.count()),
                0.02 * static_cast<double>(truth.count()));
  }
  for (const Microseconds truth :
       {Microseconds(8ms), Microseconds(60ms), Microseconds(333ms), Microseconds(900ms)}) {
    VirtualTime time;
    BenchLine line(time, TimedProjector(time, 0ms, truth));
    const auto measured = MeasureCommandDelay({line, definition, time, {}}, question, [](auto) {});
    ASSERT_TRUE(measured);
    // The time of the first byte is not part of the pause, which unpaced bytes do not take.
    EXPECT_GE(*measured + 3ms, truth);
    EXPECT_LE(*measured, truth + truth / 50);
  }
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
