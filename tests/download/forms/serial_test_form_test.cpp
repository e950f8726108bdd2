#include "download/forms/serial_test_form.h"

#include "app/globals.h"
#include "serial_io/port_list.h"
#include "serial_io/pseudo_terminal.h"
#include "serial_strings/forms/serial_string_display.h"
#include "support/event_loop.h"
#include "support/fake_prompts.h"
#include "support/form_time.h"
#include "support/simulated_projector.h"
#include "support/strings.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <gmock/gmock.h>

namespace qdm {
namespace {

using enum ByteKind;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A line with a projector at the other end; knows when each byte was written.
struct Line {
  explicit Line(const ProjectorDefinition& definition) : Projector(definition) {}

  SimulatedProjector Projector;
  bool Present = true;
  std::string Settings;
  Bytes Waiting;
  std::vector<Microseconds> WrittenAt;
};

class LinePort : public SerialPort {
 public:
  LinePort(Line& line, qdm::Waiting& time) : line_(line), time_(time) {}

  void SetSettings(std::string_view settings) override { line_.Settings = settings; }
  bool Open() override { return open_ = line_.Present; }
  void Close() override { open_ = false; }
  bool IsOpen() const override { return open_ && line_.Present; }
  std::size_t BytesWaiting() override { return line_.Waiting.size(); }
  Bytes ReadAll() override { return std::exchange(line_.Waiting, {}); }
  bool Write(ByteView bytes) override {
    line_.WrittenAt.insert(line_.WrittenAt.end(), bytes.size(), time_.Now());
    const Bytes reply = line_.Projector.Receive(bytes);
    line_.Waiting.insert(line_.Waiting.end(), reply.begin(), reply.end());
    return true;
  }

 private:
  Line& line_;
  qdm::Waiting& time_;
  bool open_ = false;
};

// The line is COM2; no other port exists.
class LinePorts : public SerialPorts {
 public:
  LinePorts(Line& line, qdm::Waiting& time) : line_(line), time_(time), none_({}) { none_.Present = false; }
  std::string DeviceName(int number) const override { return number == 2 && line_.Present ? "ttyUSB0" : ""; }
  std::unique_ptr<SerialPort> Port(int number) override {
    return std::make_unique<LinePort>(number == 2 ? line_ : none_, time_);
  }

 private:
  Line& line_;
  qdm::Waiting& time_;
  Line none_;
};

ProjectorDefinition Definition() {
  ProjectorDefinition projector;
  projector.Baudrate = 1;
  projector.InterByteDelay = 10;
  projector.Strings[1] = String({{'P'}, {'W'}, {'R'}, {13, CNT}});
  projector.Strings[11] = String({{'O'}, {'K'}, {'7', IGN}, {13, CNT}});
  projector.Strings[6] = String({{'V'}, {0, VAR}, {13, CNT}});
  projector.Strings[23] = Characters("V2");
  projector.MaximumLevel = 20;
  projector.LevelStep = 5;
  projector.FixedStartLevel = 12;
  projector.MessageFormat = 2;
  return projector;
}

class SerialTest : public testing::Test {
 protected:
  void Open(int slot) {
    shared_.CurrentSlot = static_cast<std::int16_t>(slot);
    form_ = std::make_unique<SerialTestForm>(shared_, ports_, time_, prompts_, settings_);
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
  QTimer* Timer1() const { return Child<QTimer>("Timer1"); }
  void SendAndTake() {
    Click("Send");
    form_->Timer1_Timer();
  }
  std::string Cells() const {
    std::string cells;
    for (int i = 0; i < 31; ++i) {
      const auto* cell = form_->findChild<QToolButton*>(QStringLiteral("Ignore_%1").arg(i));
      if (!cell->isHidden()) cells += cell->text().toStdString() + (cell->isChecked() ? "* " : " ");
    }
    return cells;
  }
  SerialString& Reply() { return shared_.ReceivedReply; }

  QTemporaryDir folder_;
  QSettings settings_{folder_.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat};
  Globals shared_;
  FakePrompts prompts_;
  FormTime time_;
  Line line_{Definition()};
  LinePorts ports_{line_, time_};
  std::unique_ptr<SerialTestForm> form_;

  SerialTest() { shared_.CurrentProjector = Definition(); }
};

TEST_F(SerialTest, OpensThePresentPortAtTheProjectorsSettings) {
  shared_.CurrentProjector.Parity = 2;
  Open(1);
  EXPECT_EQ(Text("LineSettings"), "19200,0,8,1");
  EXPECT_EQ(line_.Settings, "19200,0,8,1");
  const auto* port = Child<QComboBox>("Port");
  ASSERT_EQ(port->count(), 16);
  EXPECT_EQ(port->currentText(), QStringLiteral("COM2 (ttyUSB0)"));
  EXPECT_EQ(port->itemText(2), QStringLiteral("COM3 (absent)"));
  EXPECT_TRUE(Child<QGroupBox>("VolumeFrame")->isHidden());
  EXPECT_EQ(Timer1()->interval(), 1000);
}

TEST_F(SerialTest, SendsWithPausesAndShowsTheReply) {
  Open(1);
  line_.Waiting = {'o', 'l', 'd'};
  bool sendWasEnabled = true;
  const Microseconds start = time_.Now();
  time_.Plan(25ms, [&] { sendWasEnabled = Enabled("Send"); });
  Click("Send");
  EXPECT_FALSE(sendWasEnabled);
  EXPECT_THAT(line_.WrittenAt, ElementsAre(start, start + 10ms, start + 20ms, start + 30ms));
  EXPECT_EQ(time_.Elapsed(), 40ms);
  EXPECT_FALSE(Enabled("Send"));
  EXPECT_FALSE(Enabled("Copy"));
  EXPECT_TRUE(Timer1()->isActive());

  form_->Timer1_Timer();
  EXPECT_FALSE(Timer1()->isActive());
  EXPECT_EQ(Reply(), Characters("OK7\r"));
  EXPECT_EQ(Child<SerialStringDisplay>("SerialStringDisplay2")->String(), Reply());
  EXPECT_EQ(Text("Status"), "Reply of 4 bytes.");
  EXPECT_TRUE(Enabled("Send"));
  Click("Copy");
  EXPECT_EQ(shared_.ClipboardString, Reply());

  Click("Send");
  EXPECT_EQ(Reply().Count, 0) << "a new test forgets the reply";
  EXPECT_FALSE(Enabled("Copy"));
  EXPECT_EQ(Cells(), "");
  EXPECT_THAT(prompts_.Shown, IsEmpty());
}

TEST_F(SerialTest, TakesTheReplyAsExpectedWithItsIgnoredBytes) {
  shared_.CurrentProjector.Strings[11] = {};
  Open(1);
  SendAndTake();
  EXPECT_EQ(Cells(), "4F 4B 37 0D ");
  ClickOption("Option2_1");
  Click("Ignore_2");
  EXPECT_EQ(Cells(), "4F 4B 37* 0D ");
  ClickOption("Option2_2");  // leaves what is ignored alone
  const SerialString taken = String({{'O', DEC}, {'K', DEC}, {'7', IGN}, {13, DEC}});
  EXPECT_EQ(Child<SerialStringDisplay>("SerialStringDisplay2")->String(), taken);
  EXPECT_EQ(shared_.CurrentProjector.Strings[11].Count, 0);
  Click("UseAsReply");
  EXPECT_EQ(shared_.CurrentProjector.Strings[11], taken);
  EXPECT_EQ(shared_.CurrentProjector.RequiresReply[1], -1);
  EXPECT_EQ(Text("Status"), "The reply is now \"Power on reply\".");

  Child<QToolButton>("Ignore_2")->setFocus();
  QTest::keyClick(Child<QToolButton>("Ignore_2"), Qt::Key_Space);
  EXPECT_EQ(Reply().Kinds[2], static_cast<std::uint8_t>(DEC));
}

TEST_F(SerialTest, CommandsWithoutExpectedReplyOfferNone) {
  Open(23);
  line_.Present = true;
  Click("Send");
  line_.Waiting = {'?'};
  form_->Timer1_Timer();
  EXPECT_EQ(Text("Status"), "Reply of 1 byte.");
  EXPECT_TRUE(Enabled("Copy"));
  EXPECT_FALSE(Enabled("UseAsReply"));
  EXPECT_THAT(Child<QPushButton>("UseAsReply")->toolTip().toStdString(), HasSubstr("Video 2"));
}

TEST_F(SerialTest, VolumeCommandsSendTheLevelInPlaceOfTheirVariableByte) {
  Open(6);
  ASSERT_FALSE(Child<QGroupBox>("VolumeFrame")->isHidden());
  EXPECT_EQ(Text("DemoText"), "12 or 0C");
  Click("Send");
  EXPECT_THAT(line_.Projector.Received, ElementsAre('V', 12, 13));
  form_->Timer1_Timer();
  EXPECT_EQ(Text("Status"), "No reply.");

  const std::pair<const char*, int> steps[] = {{"Up", 17}, {"Up", 20}, {"Down", 15}, {"PowerUp", 12}};
  for (const auto& [button, level] : steps) {
    Click(button);
    line_.Projector.Received.clear();
    SendAndTake();
    EXPECT_THAT(line_.Projector.Received, ElementsAre('V', level, 13)) << button;
  }

  shared_.CurrentProjector.UsePowerDown = -1;
  shared_.CurrentProjector.MinimumLevel = 2;
  Open(6);
  EXPECT_EQ(Text("DemoText"), "2 or 02") << "the level at power-down is not known here";
  EXPECT_FALSE(Enabled("PowerUp"));
  shared_.CurrentProjector.LevelStep = 0;
  Open(6);
  EXPECT_EQ(Text("DemoText"), "ERROR");
  EXPECT_EQ(Text("Label4"), "Error Volume Step = 0");
}

TEST_F(SerialTest, MissingPortIsToldQuietlyAndTriedAgain) {
  line_.Present = false;
  settings_.setValue(QStringLiteral("SerialTest/Port"), 2);
  Open(1);
  EXPECT_EQ(Text("Status"), "This computer has no such port.");
  Click("Send");
  EXPECT_THAT(line_.WrittenAt, IsEmpty());
  EXPECT_TRUE(Timer1()->isActive());
  form_->Timer1_Timer();
  EXPECT_EQ(Text("Status"), "This computer has no such port.");

  line_.Present = true;  // plugged in
  SendAndTake();
  EXPECT_EQ(Reply().Count, 4);
  EXPECT_EQ(Child<QComboBox>("Port")->currentText(), QStringLiteral("COM2 (ttyUSB0)"));
  EXPECT_THAT(prompts_.Shown, IsEmpty());
}

TEST_F(SerialTest, KeepsThePortThatWasChosen) {
  Open(1);
  auto* port = Child<QComboBox>("Port");
  port->setFocus();
  QTest::keyClick(port, Qt::Key_End);
  EXPECT_EQ(Text("Status"), "This computer has no such port.");
  Open(1);
  EXPECT_EQ(Child<QComboBox>("Port")->currentText(), QStringLiteral("COM16 (absent)"));
}

TEST_F(SerialTest, ClosingInTheMiddleStopsSending) {
  Open(1);
  time_.Plan(15ms, [&] { QTest::keyClick(form_.get(), Qt::Key_Escape); });
  Click("Send");
  EXPECT_EQ(line_.WrittenAt.size(), 2U);
  EXPECT_FALSE(form_->isVisible());
  EXPECT_FALSE(Timer1()->isActive());
}

#ifndef _WIN32  // over a device of the system

// The system's ports; knows the one that was made last.
struct WatchedPorts : SerialPorts {
  std::unique_ptr<SerialPorts> System = MakeSystemPorts();
  SerialPort* Last = nullptr;

  std::string DeviceName(int number) const override { return System->DeviceName(number); }
  std::unique_ptr<SerialPort> Port(int number) override {
    auto port = System->Port(number);
    Last = port.get();
    return port;
  }
};

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

  void OpenAndSend() {
    shared_.CurrentSlot = 1;
    form_ = std::make_unique<SerialTestForm>(shared_, system_, wall_, prompts_, settings_);
    form_->show();
    ASSERT_THAT(Text("Status"), HasSubstr("is open"));
    Click("Send");
  }
  // Bytes take a moment to pass through the system.
  void WaitForReply(int length) {
    const std::size_t command = shared_.CurrentProjector.Strings[1].BytesInUse();
    ASSERT_TRUE(Eventually(wall_, [&] {
      return projector_.Received.size() >= command &&
             system_.Last->BytesWaiting() == static_cast<std::size_t>(length);
    }));
  }

  EventLoopWaiting wall_;
  PseudoTerminal terminal_;
  QSocketNotifier sent_{terminal_.Descriptor(), QSocketNotifier::Read};
  WatchedPorts system_;
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
    OpenAndSend();
    EXPECT_GE(wall_.Now() - start, 40ms) << "four bytes with 10 ms behind each";
    EXPECT_EQ(terminal_.Settings().Speed, 19200);
    WaitForReply(length);
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
