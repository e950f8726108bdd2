#include "projector_bench/string_trial.h"

#include "serial_strings/serial_string.h"
#include "support/bench_lines.h"
#include "support/strings.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <chrono>

namespace qdm {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

// Keeps what was written, and when.
struct RecordedLine {
  explicit RecordedLine(Waiting& clock, std::size_t gone = 99) : Time(clock), Gone(gone) {}

  Waiting& Time;
  std::size_t Gone;  // after that many bytes
  Microseconds Start = Time.Now();
  Bytes Sent;
  std::vector<std::chrono::milliseconds> SentAt;
  BenchLine Port{
      Time, [this](std::uint8_t byte, const std::string&) {
        Sent.push_back(byte);
        SentAt.push_back(std::chrono::duration_cast<std::chrono::milliseconds>(Time.Now() - Start));
        Port.Present = Sent.size() < Gone;
        return std::pair(Bytes(), Microseconds(0));
      }};
};

TEST(StringTrial, SettingsFollowTheDefinitionAndWriteOddParityWithAZero) {
  struct Case {
    int Baudrate, Parity, Stopbits;
    const char* Settings;
  };
  for (const Case& c :
       {Case{0, 0, 1, "9600,n,8,2"}, Case{1, 1, 0, "19200,e,8,1"}, Case{2, 2, -1, "38400,0,8,2"},
        Case{3, 7, 0, "57600,1"}, Case{4, 0, 0, "115200,n,8,1"}, Case{-5, 0, 0, "9600,n,8,1"}}) {
    ProjectorDefinition projector;
    projector.Baudrate = static_cast<std::int16_t>(c.Baudrate);
    projector.Parity = static_cast<std::int16_t>(c.Parity);
    projector.Stopbits = static_cast<std::int16_t>(c.Stopbits);
    EXPECT_EQ(TrialLineSettings(projector), c.Settings);
    const std::string port = c.Parity == 2 ? "38400,o,8,2" : c.Settings;
    EXPECT_EQ(TrialPortSettings(projector), port) << "odd parity is really set";
  }
}

TEST(StringTrial, PausesAfterEachByteAndAfterEachCharacterOfTheLevel) {
  VirtualTime time;
  RecordedLine line(time);
  const SerialString string = String({{'V'}, {0, ByteKind::VAR}, {13}});
  ASSERT_EQ(VariableBytePositionOf(string), 2);
  SendString(line.Port, {string, 2, Bytes{'0', '7'}, 10ms}, time, {});
  EXPECT_THAT(line.Sent, ElementsAre('V', '0', '7', 13));
  EXPECT_THAT(line.SentAt, ElementsAre(0ms, 10ms, 20ms, 40ms));
}

TEST(StringTrial, EndsQuietlyWhenThePortGoesAwayOrTheUserStops) {
  VirtualTime time;
  RecordedLine line(time, 2);
  SendString(line.Port, {StringOf(Bytes{1, 2, 3, 4}), 0, std::nullopt, 1ms}, time, {});
  EXPECT_THAT(line.Sent, ElementsAre(1, 2));

  std::stop_source stop;
  RecordedLine other(time);
  time.At(time.Now() + 15ms, [&stop] { stop.request_stop(); });
  SendString(other.Port, {StringOf(Bytes{1, 2, 3, 4}), 0, std::nullopt, 10ms}, time, stop.get_token());
  EXPECT_THAT(other.Sent, ElementsAre(1, 2));
}

TEST(StringTrial, TakesRepliesOfOneTo31Bytes) {
  VirtualTime time;
  RecordedLine line(time);
  EXPECT_FALSE(TakeReply(line.Port, ByteKind::HEX));
  line.Port.Hear(std::string(32, 'x'));
  EXPECT_FALSE(TakeReply(line.Port, ByteKind::HEX));
  EXPECT_TRUE(line.Port.ReadAll().empty()) << "a reply that is too long must not come back with the next";
  line.Port.Hear(std::string(31, 'x'));
  const auto reply = TakeReply(line.Port, ByteKind::HEX);
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->Count, 31);
  EXPECT_EQ(reply->Values[30], 'x');
  EXPECT_EQ(reply->Kinds[30], 1);
  EXPECT_EQ(reply->Kinds[31], 0);
}

TEST(StringTrial, KeepsControlCodesOfATextByTheirNames) {
  const SerialString reply = String({{'O'}, {13}, {10}, {13, ByteKind::IGN}});
  EXPECT_EQ(CompactText(ReplyToKeep(reply)), "O,CRc,LFc,Ignore");
}

}  // namespace
}  // namespace qdm
