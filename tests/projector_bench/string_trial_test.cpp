#include "projector_bench/string_trial.h"

#include "serial_strings/serial_string.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <chrono>

namespace qdm {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

// Keeps what was written, and when.
class RecordingPort : public SerialPort {
 public:
  RecordingPort(Waiting& time, std::size_t gone) : time_(time), gone_(gone) {}

  void SetSettings(std::string_view) override {}
  bool Open() override { return true; }
  void Close() override {}
  bool IsOpen() const override { return Sent.size() < gone_; }
  std::size_t BytesWaiting() override { return Waiting_.size(); }
  Bytes ReadAll() override { return std::exchange(Waiting_, {}); }
  bool Write(ByteView bytes) override {
    for (const std::uint8_t byte : bytes) {
      Sent.push_back(byte);
      SentAt.push_back(std::chrono::duration_cast<std::chrono::milliseconds>(time_.Now() - start_));
    }
    return true;
  }

  Bytes Sent;
  std::vector<std::chrono::milliseconds> SentAt;
  Bytes Waiting_;

 private:
  Waiting& time_;
  Microseconds start_ = time_.Now();
  std::size_t gone_;  // after that many bytes
};

SerialString StringOf(const Bytes& values, std::size_t variable = 99) {
  SerialString string;
  string.Count = static_cast<std::int16_t>(values.size());
  std::copy(values.begin(), values.end(), string.Values.begin());
  if (variable < 32) string.Kinds[variable] = static_cast<std::uint8_t>(ByteKind::VAR);
  return string;
}

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
  RecordingPort port(time, 99);
  const SerialString string = StringOf({'V', 0, 13}, 1);
  ASSERT_EQ(VariableBytePositionOf(string), 2);
  SendString(port, {string, 2, Bytes{'0', '7'}, 10ms}, time, {});
  EXPECT_THAT(port.Sent, ElementsAre('V', '0', '7', 13));
  EXPECT_THAT(port.SentAt, ElementsAre(0ms, 10ms, 20ms, 40ms));
}

TEST(StringTrial, EndsQuietlyWhenThePortGoesAwayOrTheUserStops) {
  VirtualTime time;
  RecordingPort port(time, 2);
  SendString(port, {StringOf({1, 2, 3, 4}), 0, std::nullopt, 1ms}, time, {});
  EXPECT_THAT(port.Sent, ElementsAre(1, 2));

  std::stop_source stop;
  RecordingPort other(time, 99);
  time.At(time.Now() + 15ms, [&stop] { stop.request_stop(); });
  SendString(other, {StringOf({1, 2, 3, 4}), 0, std::nullopt, 10ms}, time, stop.get_token());
  EXPECT_THAT(other.Sent, ElementsAre(1, 2));
}

TEST(StringTrial, TakesRepliesOfOneTo31Bytes) {
  VirtualTime time;
  RecordingPort port(time, 99);
  EXPECT_FALSE(TakeReply(port, ByteKind::HEX));
  port.Waiting_ = Bytes(32, 'x');
  EXPECT_FALSE(TakeReply(port, ByteKind::HEX));
  EXPECT_TRUE(port.Waiting_.empty()) << "a reply that is too long must not come back with the next";
  port.Waiting_ = Bytes(31, 'x');
  const auto reply = TakeReply(port, ByteKind::HEX);
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->Count, 31);
  EXPECT_EQ(reply->Values[30], 'x');
  EXPECT_EQ(reply->Kinds[30], 1);
  EXPECT_EQ(reply->Kinds[31], 0);
}

TEST(StringTrial, KeepsControlCodesOfATextByTheirNames) {
  SerialString reply = StringOf({'O', 13, 10, 13});
  reply.Kinds[3] = static_cast<std::uint8_t>(ByteKind::IGN);
  EXPECT_EQ(CompactText(ReplyToKeep(reply)), "O,CRc,LFc,Ignore");
}

}  // namespace
}  // namespace qdm
