#include "forms/bench/serial_test_form.h"

#include "forms/shared/globals.h"
#include "serial_io/port_list.h"
#include "serial_io/pseudo_terminal.h"
#include "serial_strings/serial_string.h"
#include "support/event_loop.h"
#include "support/fake_prompts.h"
#include "support/form_time.h"
#include "support/simulated_projector.h"
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

// A line with a projector at the other end.
struct Line {
  explicit Line(const ProjectorDefinition& definition) : Projector(definition) {}

  SimulatedProjector Projector;
  bool Present = true;
  std::string Settings;
  Bytes Waiting;
  std::vector<LineParameter> Refused;
};

class LinePort : public SerialPort {
 public:
  explicit LinePort(Line& line) : line_(line) {}

  void SetSettings(std::string_view settings) override { line_.Settings = settings; }
  std::vector<LineParameter> RefusedSettings() const override { return line_.Refused; }
  bool Open() override { return open_ = line_.Present; }
  void Close() override { open_ = false; }
  bool IsOpen() const override { return open_ && line_.Present; }
  std::size_t BytesWaiting() override { return line_.Waiting.size(); }
  Bytes ReadAll() override { return std::exchange(line_.Waiting, {}); }
  bool Write(ByteView bytes) override {
    const Bytes reply = line_.Projector.Receive(bytes);
    line_.Waiting.insert(line_.Waiting.end(), reply.begin(), reply.end());
    return true;
  }

 private:
  Line& line_;
  bool open_ = false;
};

// The line is COM2, the only port.
class LinePorts : public SerialPorts {
 public:
  explicit LinePorts(Line& line) : line_(line) {}
  std::string DeviceName(int number) const override { return number == 2 && line_.Present ? "ttyUSB0" : ""; }
  std::unique_ptr<SerialPort> Port(int) override { return std::make_unique<LinePort>(line_); }

 private:
  Line& line_;
};

ProjectorDefinition Definition() {
  ProjectorDefinition projector;
  projector.Baudrate = 1;
  projector.InterByteDelay = 10;
  projector.Strings[1] = String({{'P'}, {'W'}, {'R'}, {13, CNT}});
  projector.Strings[11] = String({{'O'}, {'K'}, {'7', IGN}, {13, CNT}});
  projector.Strings[6] = String({{'V'}, {0, VAR}, {13, CNT}});
  projector.MaximumLevel = 20;
  projector.LevelStep = 5;
  projector.FixedStartLevel = 12;
  projector.MessageFormat = 2;
  return projector;
}

class SerialTest : public testing::Test {
 protected:
  void Open(int slot) { Open(slot, ports_, time_); }
  void Open(int slot, SerialPorts& ports, Waiting& time) {
    shared_.CurrentSlot = static_cast<std::int16_t>(slot);
    form_ = std::make_unique<SerialTestForm>(shared_, ports, time, prompts_, settings_);
    form_->show();
    form_->activateWindow();
    QCoreApplication::processEvents();
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
  Line line_{Definition()};
  LinePorts ports_{line_};
  std::unique_ptr<SerialTestForm> form_;

  SerialTest() { shared_.CurrentProjector = Definition(); }
};

TEST_F(SerialTest, TakesTheReplyAsExpectedAndForgetsItOnTheNextTest) {
  shared_.CurrentProjector.Strings[11] = {};
  Open(1);
  EXPECT_EQ(line_.Settings, "19200,n,8,1");
  EXPECT_EQ(form_->findChild<QTimer*>(QStringLiteral("Timer1"))->interval(), 1000);
  line_.Waiting = {'o', 'l', 'd'};
  Click("Send");
  EXPECT_FALSE(Enabled("Send"));
  form_->Timer1_Timer();
  EXPECT_EQ(Reply(), Characters("OK7\r"));
  EXPECT_TRUE(Enabled("Send"));
  Click("Copy");
  EXPECT_EQ(CompactText(shared_.ClipboardString), "OK7,CRc") << "no invisible character is kept";

  ClickOption("Option2_1");
  Click("Ignore_2");
  ClickOption("Option2_2");  // leaves what is ignored alone
  Click("UseAsReply");
  EXPECT_EQ(shared_.CurrentProjector.Strings[11], String({{'O', DEC}, {'K', DEC}, {'7', IGN}, {13, DEC}}));
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
    line_.Projector.Received.clear();
    SendAndTake();
    EXPECT_THAT(line_.Projector.Received, ElementsAre('V', level, 13)) << button;
  }
  EXPECT_EQ(Text("Status"), "No reply.");
  line_.Present = false;
  SendAndTake();
  EXPECT_EQ(Text("Status"), "This computer has no such port.");
  line_.Present = true;  // plugged in
  SendAndTake();
  EXPECT_EQ(line_.Projector.Received.size(), 6U);
  EXPECT_THAT(prompts_.Shown, testing::IsEmpty());
}

TEST_F(SerialTest, VolumeFormatInErrorIsNotSent) {
  shared_.CurrentProjector.LevelStep = 0;
  Open(6);
  Click("Send");
  EXPECT_EQ(Text("Status"), "Not sent, the volume format is wrong: Error Volume Step = 0.");
  EXPECT_THAT(line_.Projector.Received, testing::IsEmpty());
  EXPECT_TRUE(Enabled("Send"));
}

TEST_F(SerialTest, OddParityIsReallySetAndARefusalToldBesideIt) {
  shared_.CurrentProjector.Parity = 2;
  line_.Refused = {LineParameter::Parity, LineParameter::StopBits};
  Open(1);
  EXPECT_EQ(Text("LineSettings"), "19200,0,8,1");
  EXPECT_EQ(line_.Settings, "19200,o,8,1");
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
  line_.Waiting = Bytes(40, 0xFF);
  form_->TraceTimer_Timer();
  const auto* trace = Child<QTreeWidget>("Trace");
  QStringList rows;
  for (int i = 0; i < trace->topLevelItemCount(); ++i) {
    const QTreeWidgetItem* row = trace->topLevelItem(i);
    rows << row->text(0) + u' ' + row->text(1) + u' ' + row->text(3);
  }
  EXPECT_EQ(rows.join(u'|').toStdString(),
            "0.000 sent P|0.010 sent W|0.020 sent R|0.030 sent .|"
            "0.040 received OK7.|2.040 received " +
                std::string(40, '.'));
  Open(1);
  EXPECT_EQ(form_->findChild<QTimer*>(QStringLiteral("Timer1"))->interval(), 5000);
}

TEST_F(SerialTest, ClosingInTheMiddleStopsSending) {
  Open(1);
  time_.Plan(15ms, [&] { QTest::keyClick(form_.get(), Qt::Key_Escape); });
  Click("Send");
  EXPECT_EQ(line_.Projector.Received.size(), 2U);
  EXPECT_FALSE(form_->isVisible());
}

#ifndef _WIN32  // over a device of the system

class SerialTestOnPseudoTerminal : public SerialTest {
 protected:
  SerialTestOnPseudoTerminal() {
    qputenv("QDM_PORTS", terminal_.Device().c_str());
    QObject::connect(&sent_, &QSocketNotifier::activated, &sent_, [this] {
      const Bytes bytes = terminal_.Read();
      terminal_.Write(projector_.Receive(bytes));
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
  SimulatedProjector projector_{ProjectorDefinition()};
};

TEST_F(SerialTestOnPseudoTerminal, AnswersOfEveryLengthArriveOrAreDroppedWhole) {
  for (const int length : {0, 1, 31, 32}) {
    ProjectorDefinition definition = Definition();
    SerialString& reply = definition.Strings[11];
    reply = {};
    reply.Count = static_cast<std::int16_t>(length);
    for (std::size_t i = 0; i < reply.BytesInUse(); ++i) reply.Values[i] = static_cast<std::uint8_t>(255 - i);
    projector_ = SimulatedProjector(definition);

    const Microseconds start = wall_.Now();
    Open(1, *system_, wall_);
    ASSERT_THAT(Text("Status"), HasSubstr("is open"));
    Click("Send");
    EXPECT_GE(wall_.Now() - start, 40ms) << "four bytes with 10 ms behind each";
    EXPECT_EQ(terminal_.Settings().Speed, 19200);
    ASSERT_TRUE(Eventually(wall_, [&] {  // bytes take a moment to pass through the system
      return projector_.Received.size() >= 4 && BytesReceived() == reply.BytesInUse();
    }));
    EXPECT_THAT(projector_.Received, ElementsAre('P', 'W', 'R', 13));
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
