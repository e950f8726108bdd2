#include "forms/bench/serial_test_form.h"

#include "forms/shared/globals.h"
#include "serial_io/port_list.h"
#include "serial_io/pseudo_terminal.h"
#include "serial_strings/serial_string.h"
#include "support/bench_lines.h"
#include "support/dialog_script.h"
#include "support/distinct_projector.h"
#include "support/event_loop.h"
#include "support/fake_prompts.h"
#include "support/form_time.h"
#include "support/strings.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QRadioButton>
#include <QSettings>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gmock/gmock.h>

namespace qdm {
namespace {

using enum ByteKind;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

ProjectorDefinition TestedDefinition() {
  ProjectorDefinition projector;
  projector.Baudrate = 1;
  projector.InterByteDelay = 10;
  Define(projector, 1, String({{'P'}, {'W'}, {'R'}, {13, CNT}}));
  Define(projector, 11, String({{'O'}, {'K'}, {'7', IGN}, {13, CNT}}));
  Define(projector, 6, String({{'V'}, {0, VAR}, {13, CNT}}));
  projector.MaximumLevel = 20;
  projector.LevelStep = 5;
  projector.FixedStartLevel = 12;
  projector.MessageFormat = 2;
  return projector;
}

// COM2, the only port: the projector is at the other end.
struct OnePort : SerialPorts {
  explicit OnePort(Waiting& time) : Time(time) {}

  std::string DeviceName(int number) const override { return number == 2 && Present ? "ttyUSB0" : ""; }
  std::unique_ptr<SerialPort> Port(int) override {
    auto line = std::make_unique<BenchLine>(Time, [this](std::uint8_t byte, const std::string& settings) {
      Received.push_back(byte);
      return AnswersOf(Projector, Time)(byte, settings);
    });
    line->Present = Present;
    line->Refused = Refused;
    Line = line.get();
    return line;
  }
  void Unplug() { Line->Present = Present = false; }

  Waiting& Time;
  StandIn Projector{TestedDefinition()};
  Bytes Received;  // by the projector
  bool Present = true;
  std::vector<LineParameter> Refused;
  BenchLine* Line = nullptr;  // the last one
};

class SerialTest : public testing::Test {
 protected:
  void Open(int slot) { Open(slot, ports_, time_); }
  void Open(int slot, SerialPorts& ports, Waiting& time) {
    shared_.CurrentSlot = static_cast<std::int16_t>(slot);
    form_ = std::make_unique<SerialTestForm>(shared_, ports, time, prompts_, settings_);
    ShowActive(*form_);
  }
  template <class Widget>
  Widget* Child(const char* name) const {
    return form_->findChild<Widget*>(QLatin1String(name));
  }
  void Click(const char* button) { QTest::mouseClick(Child<QAbstractButton>(button), Qt::LeftButton); }
  void ClickOption(const char* option) {
    QTest::mouseClick(Child<QRadioButton>(option), Qt::LeftButton, {}, QPoint(8, 8));
  }
  std::string Text(const char* label) const { return Child<QLabel>(label)->text().toStdString(); }
  bool Enabled(const char* button) const { return Child<QAbstractButton>(button)->isEnabled(); }
  void SendAndTake() {
    Click("Send");
    form_->Timer1_Timer();
  }
  SerialString& Reply() { return shared_.ReceivedReply; }

  QTemporaryDir folder_;
  QSettings settings_{folder_.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat};
  Globals shared_;
  FakePrompts prompts_;
  FormTime time_;
  OnePort ports_{time_};
  std::unique_ptr<SerialTestForm> form_;

  SerialTest() { shared_.CurrentProjector = TestedDefinition(); }
};

TEST_F(SerialTest, TakesTheReplyAsExpectedAndForgetsItOnTheNextTest) {
  shared_.CurrentProjector.Strings[11] = {};
  Open(1);
  EXPECT_EQ(ports_.Line->Settings, "19200,n,8,1");
  EXPECT_EQ(form_->findChild<QTimer*>(QStringLiteral("Timer1"))->interval(), 1000);
  ports_.Line->Hear("old");
  Click("Send");
  EXPECT_FALSE(Enabled("Send"));
  form_->Timer1_Timer();
  EXPECT_EQ(Reply(), StringOf(Bytes{'O', 'K', 0, 13})) << "what is ignored comes as 00";
  EXPECT_TRUE(Enabled("Send"));
  Click("Copy");
  EXPECT_EQ(CompactText(shared_.ClipboardString), "OK,NULc,CRc") << "no invisible character is kept";

  ClickOption("Option2_1");
  Click("Ignore_2");
  ClickOption("Option2_2");  // leaves what is ignored alone
  Click("UseAsReply");
  EXPECT_EQ(shared_.CurrentProjector.Strings[11], String({{'O', DEC}, {'K', DEC}, {0, IGN}, {13, DEC}}));
  EXPECT_EQ(shared_.CurrentProjector.RequiresReply[1], -1);
  Click("Send");
  EXPECT_EQ(Reply().Count, 0) << "a new test forgets the reply";
  EXPECT_FALSE(Enabled("Copy"));
}

TEST_F(SerialTest, VolumeCommandsSendTheLevelAndAMissingPortIsToldQuietly) {
  Open(6);
  const std::pair<const char*, int> steps[] = {{"Up", 17}, {"Up", 20}, {"Down", 15}, {"PowerUp", 12}};
  for (const auto& [button, level] : steps) {
    Click(button);
    ports_.Received.clear();
    SendAndTake();
    EXPECT_THAT(ports_.Received, ElementsAre('V', level, 13)) << button;
  }
  EXPECT_EQ(Text("Status"), "No reply.");
  ports_.Unplug();
  SendAndTake();
  EXPECT_EQ(Text("Status"), "This computer has no such port.");
  ports_.Present = true;  // plugged in
  SendAndTake();
  EXPECT_EQ(ports_.Received.size(), 6U);
  EXPECT_THAT(prompts_.Shown, testing::IsEmpty());
}

TEST_F(SerialTest, VolumeFormatInErrorIsNotSent) {
  shared_.CurrentProjector.LevelStep = 0;
  Open(6);
  Click("Send");
  EXPECT_EQ(Text("Status"), "Not sent, the volume format is wrong: Error Volume Step = 0.");
  EXPECT_THAT(ports_.Received, testing::IsEmpty());
  EXPECT_TRUE(Enabled("Send"));
}

TEST_F(SerialTest, OddParityIsReallySetAndARefusalToldBesideIt) {
  shared_.CurrentProjector.Parity = 2;
  ports_.Refused = {LineParameter::Parity, LineParameter::StopBits};
  Open(1);
  EXPECT_EQ(Text("LineSettings"), "19200,0,8,1");
  EXPECT_EQ(ports_.Line->Settings, "19200,o,8,1");
  EXPECT_EQ(Text("RefusedSettings"), "The port refuses: parity, stop bits");
  const QAccessibleInterface* shown = QAccessible::queryAccessibleInterface(Child<QLabel>("LineSettings"));
  EXPECT_EQ(shown->text(QAccessible::Name), QStringLiteral("19200,0,8,1")) << "no name hides it";
}

TEST_F(SerialTest, TraceShowsLateBytesAndTheReplyTimeIsKept) {
  Open(1);
  auto* replyTime = Child<QDoubleSpinBox>("ReplyTime");
  EXPECT_EQ(replyTime->value(), 1.0);
  replyTime->setValue(9);
  SendAndTake();
  time_.Yield(time_.Now() + 2s);
  ports_.Line->Hear(std::string(40, '\xFF'));
  form_->TraceTimer_Timer();
  const auto* trace = Child<QTreeWidget>("Trace");
  QStringList rows;
  for (int i = 0; i < trace->topLevelItemCount(); ++i) {
    const QTreeWidgetItem* row = trace->topLevelItem(i);
    rows << row->text(0) + u' ' + row->text(1) + u' ' + row->text(3);
  }
  EXPECT_EQ(rows.join(u'|').toStdString(),
            "0.000 sent P|0.010 sent W|0.020 sent R|0.030 sent .|"
            "0.040 received OK..|2.040 received " +
                std::string(40, '.'));
  Open(1);
  EXPECT_EQ(form_->findChild<QTimer*>(QStringLiteral("Timer1"))->interval(), 5000);
}

TEST_F(SerialTest, ClosingInTheMiddleStopsSending) {
  Open(1);
  time_.Plan(15ms, [&] { QTest::keyClick(form_.get(), Qt::Key_Escape); });
  Click("Send");
  EXPECT_EQ(ports_.Received.size(), 2U);
  EXPECT_FALSE(form_->isVisible());
}

#ifndef _WIN32  // over a device of the system

class SerialTestOnPseudoTerminal : public SerialTest {
 protected:
  SerialTestOnPseudoTerminal() {
    qputenv("QDM_PORTS", terminal_.Device().c_str());
    QObject::connect(&sent_, &QSocketNotifier::activated, &sent_, [this] {
      const Bytes bytes = terminal_.Read();
      projector_->Receive(bytes, wall_.Now());
      received_.insert(received_.end(), bytes.begin(), bytes.end());
      terminal_.Write(projector_->TakeAnswers(wall_.Now()));
    });
  }
  ~SerialTestOnPseudoTerminal() override { qunsetenv("QDM_PORTS"); }

  // As the trace shows them.
  std::size_t BytesReceived() const {
    std::size_t bytes = 0;
    for (const auto* row : Child<QTreeWidget>("Trace")->findItems(QStringLiteral("received"), {}, 1)) {
      bytes += static_cast<std::size_t>(row->text(2).split(u' ').size());
    }
    return bytes;
  }

  EventLoopWaiting wall_;
  PseudoTerminal terminal_;
  QSocketNotifier sent_{terminal_.Descriptor(), QSocketNotifier::Read};
  std::unique_ptr<SerialPorts> system_ = MakeSystemPorts();
  std::optional<StandIn> projector_;
  Bytes received_;  // by the projector
};

TEST_F(SerialTestOnPseudoTerminal, AnswersOfEveryLengthArriveOrAreDroppedWhole) {
  for (const int length : {0, 1, 31, 32}) {
    ProjectorDefinition definition = TestedDefinition();
    SerialString& reply = definition.Strings[11];
    reply = StringOf(Bytes(static_cast<std::size_t>(length), 0xFE));
    projector_.emplace(definition);
    received_.clear();

    const Microseconds start = wall_.Now();
    Open(1, *system_, wall_);
    ASSERT_THAT(Text("Status"), HasSubstr("is open"));
    Click("Send");
    EXPECT_GE(wall_.Now() - start, 40ms) << "four bytes with 10 ms behind each";
    EXPECT_EQ(terminal_.Settings().Speed, 19200);
    ASSERT_TRUE(Eventually(wall_, [&] {  // bytes take a moment to pass through the system
      return received_.size() >= 4 && BytesReceived() == reply.BytesInUse();
    }));
    EXPECT_THAT(received_, ElementsAre('P', 'W', 'R', 13));
    form_->Timer1_Timer();
    if (length == 0 || length == 32) {
      EXPECT_EQ(Reply().Count, 0) << length;
      EXPECT_FALSE(Enabled("Copy"));
    } else {
      EXPECT_EQ(Reply(), reply);
    }
    form_->close();
  }
}

#endif

}  // namespace
}  // namespace qdm
