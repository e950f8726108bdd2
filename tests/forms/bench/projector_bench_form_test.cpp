// The pages of the bench, each used once on a line in virtual time.
#include "forms/bench/projector_bench_form.h"

#include "support/bench_lines.h"
#include "support/distinct_projector.h"
#include "support/fake_prompts.h"
#include "support/form_time.h"
#include "support/strings.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>

namespace qdm {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

ProjectorDefinition Definition() {
  ProjectorDefinition projector;
  Define(projector, kPowerOnSlot, Characters("ON\r"));
  Define(projector, kPowerOnReplySlot, Characters("OK"));
  Define(projector, kPowerOffSlot, Characters("OFF\r"));
  Define(projector, kData1Slot, Characters("IN1\r"));
  Define(projector, kData2Slot, Characters("IN2"));
  Define(projector, kVideoSlot, Characters("IN3\r"));
  return projector;
}

// COM1, with a panel or a projector at the other end; COM2 with nothing; COM3 that somebody else has open.
struct Ports : SerialPorts {
  Ports(Waiting& time, BenchLine::Far far) : Time(time), Far(std::move(far)) {}

  std::string DeviceName(int number) const override {
    return number <= 3 ? "ttyUSB" + std::to_string(number - 1) : "";
  }
  std::optional<OpenFailure> WhyClosed(int number) const override {
    if (number == 3) return OpenFailure{OpenFailure::Reason::Held, "minicom (4711)"};
    return std::nullopt;
  }
  std::unique_ptr<SerialPort> Port(int number) override {
    const auto nobody = [](std::uint8_t, const std::string&) { return std::pair(Bytes(), Microseconds(0)); };
    auto line = std::make_unique<BenchLine>(Time, number == 1 ? Far : nobody);
    line->Present = number < 3;
    if (number == 1) Last = line.get();
    return line;
  }

  Waiting& Time;
  BenchLine::Far Far;
  BenchLine* Last = nullptr;
};

struct ProjectorBenchForm : testing::Test {
  template <class Widget>
  Widget* Child(const char* name) {
    return form.findChild<Widget*>(QLatin1String(name));
  }
  void Click(const char* button) { Child<QAbstractButton>(button)->click(); }
  std::string Cell(const char* table, int row, int column) {
    const QTableWidgetItem* item = Child<QTableWidget>(table)->item(row, column);
    return item != nullptr ? item->text().toStdString() : "";
  }
  std::string Text(const char* label) { return Child<QLabel>(label)->text().toStdString(); }

  QTemporaryDir folder;
  QSettings settings{folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat};
  FakePrompts prompts;
  FormTime time;
  Bytes received;
  // Answers power on at 38400 even alone.
  Ports ports{time, [this](std::uint8_t byte, const std::string& at) {
                received.push_back(byte);
                const bool on = byte == 13 && received.size() >= 3 && at.starts_with("38400,e");
                return std::pair(on ? Bytes{'O', 'K'} : Bytes(), Microseconds(10ms));
              }};
  ProjectorDefinition projector = Definition();
  ProjectorBench form{projector, ports, time, prompts, settings};
};

TEST_F(ProjectorBenchForm, FindsTheSettingsAndUsesThemOnlyWhenTold) {
  EXPECT_THAT(Text("FinderHint"),
              HasSubstr("Sends \"Power on\" (4F 4E 0D) at each of the 30 settings: it switches"));
  Click("FindSettings");
  EXPECT_EQ(Cell("FinderGrid", 2, 2), "reply\n4F 4B");
  EXPECT_EQ(Cell("FinderGrid", 0, 0), "nothing");
  EXPECT_EQ(Text("FoundSettings"), "COM1 (ttyUSB0) at 38400,e,8,1: reply 4F 4B");
  EXPECT_EQ(projector, Definition());
  Click("UseSettings");
  EXPECT_EQ(projector.Baudrate, 2);
  EXPECT_EQ(projector.Parity, 1);
  EXPECT_THAT(Text("ProjectorName"), HasSubstr("at 38400,e,8,1"));
}

TEST_F(ProjectorBenchForm, AsksEveryPortAndSaysWhichOneAnsweredAndWhichCouldNotBeAsked) {
  Child<QComboBox>("Port")->setCurrentIndex(1);
  Click("EveryPort");
  Click("FindSettings");
  EXPECT_EQ(Cell("FinderGrid", 2, 2), "COM1: reply\n4F 4B");
  EXPECT_EQ(Cell("FinderGrid", 2, 0), "nothing");
  EXPECT_THAT(Text("Status"), HasSubstr("Not asked: COM3 (ttyUSB2): In use by minicom (4711)"));
  Click("UseSettings");
  EXPECT_EQ(Child<QComboBox>("Port")->currentIndex(), 0);
}

TEST_F(ProjectorBenchForm, SaysWhatToCheckWhenAllIsSilentAndWhereItWasStopped) {
  Child<QComboBox>("Port")->setCurrentIndex(1);
  Click("FindSettings");
  EXPECT_EQ(Text("Status"), "Everything is silent.");
  EXPECT_THAT(Text("FoundSettings"), HasSubstr("null-modem (crossed) or a straight cable"));
  EXPECT_FALSE(Child<QAbstractButton>("UseSettings")->isEnabled());
  time.Plan(1700ms, [&] { Click("Stopper"); });
  Click("FindSettings");
  EXPECT_EQ(Text("Status"), "Stopped.");
  EXPECT_EQ(Cell("FinderGrid", 2, 0), "nothing") << "likely ones first";
  EXPECT_EQ(Cell("FinderGrid", 3, 0), "");
}

TEST_F(ProjectorBenchForm, SendsATypedQueryOnlyWhenItCanBeReadInOneWay) {
  Child<QLineEdit>("Query")->setText("50 57");
  EXPECT_FALSE(Child<QAbstractButton>("FindSettings")->isEnabled());
  EXPECT_THAT(Text("FinderHint"), HasSubstr("can be read as 50 57 (bytes in hexadecimal) or as 32 39"));
  Child<QLineEdit>("Query")->setText("?<CR>");
  EXPECT_EQ(Text("FinderHint"), "Sends 3F 0D (characters and codes) at each of the 30 settings.");
  Click("FindSettings");
  EXPECT_EQ(received.size(), 60U);
  EXPECT_EQ(received[0], '?');
}

TEST_F(ProjectorBenchForm, ListensUntilItIsStoppedAndClosesThen) {
  projector.InterCommandDelay = 250;
  time.Plan(1s, [&] { ports.Last->Hear("ON\r"); });
  time.Plan(2s, [&] { ports.Last->Hear("PN\r"); });
  time.Plan(2100ms, [&] { ports.Last->Hear("ON\r"); });
  time.Plan(3s, [&] { form.close(); });
  form.show();
  Click("Listen");
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(Cell("HeardList", 0, 2), "Power on");
  EXPECT_EQ(Cell("HeardList", 0, 5), "4F 4B");
  EXPECT_EQ(Cell("HeardList", 1, 2), "unknown");
  EXPECT_EQ(Cell("HeardList", 1, 6), "nearest is \"Power on\": byte 1 is 50 instead of 4F");
  const QTableWidgetItem* gap = Child<QTableWidget>("HeardList")->item(2, 1);
  EXPECT_GT(gap->foreground().color().red(), 2 * gap->foreground().color().green());
  EXPECT_EQ(Cell("HeardList", 2, 6), "too soon after the command before");
  EXPECT_THAT(Text("Checklist"), HasSubstr("1 of 5 heard, still missing: Data 1, "));
}

TEST_F(ProjectorBenchForm, CorrectsWhatTheCodeCheckFinds) {
  EXPECT_EQ(Cell("Findings", 0, 0), "Data 2: does not end with 0D, as the other four do");
  EXPECT_FALSE(Child<QAbstractButton>("Correct")->isEnabled());
  Child<QTableWidget>("Findings")->setCurrentCell(0, 0);
  Click("Correct");
  EXPECT_EQ(projector.Strings[kData2Slot].Count, 4);
  EXPECT_EQ(Child<QTableWidget>("Findings")->rowCount(), 0);
}

TEST_F(ProjectorBenchForm, ComputesTheCheckSumOfACommandThatBreaksTheFamily) {
  for (const Slot slot : {kPowerOnSlot, kPowerOffSlot, kData1Slot, kData2Slot, kVideoSlot, kBlankSlot}) {
    const auto code = static_cast<std::uint8_t>(slot * 29 + 7);
    const auto sum = static_cast<std::uint8_t>(0x02 + code + (slot == kBlankSlot ? 1 : 0));
    Define(projector, slot, String({{0x02}, {code}, {sum}}));
  }
  ProjectorBench bench(projector, ports, time, prompts, settings);
  auto* findings = bench.findChild<QTableWidget*>(QStringLiteral("Findings"));
  ASSERT_EQ(findings->rowCount(), 1);
  findings->setCurrentCell(0, 0);
  bench.findChild<QAbstractButton*>(QStringLiteral("ComputeSum"))->click();
  EXPECT_EQ(projector.Strings[kBlankSlot].Values[2], 0x02 + kBlankSlot * 29 + 7);
  EXPECT_EQ(findings->rowCount(), 0);
}

TEST_F(ProjectorBenchForm, MeasuresAndTakesItWithAMargin) {
  projector.Baudrate = 2;
  projector.Parity = 1;
  Click("MeasureDelay");
  EXPECT_EQ(Cell("Timings", 2, 2), "0.0");
  projector.InterCommandDelay = 77;
  Click("UseTiming");
  EXPECT_EQ(projector.InterCommandDelay, 0);
  Child<QComboBox>("Port")->setCurrentIndex(5);
  Click("MeasureWarmUp");
  EXPECT_EQ(Text("Status"), "This computer has no such port.");
  Child<QComboBox>("Port")->setCurrentIndex(2);
  Click("Listen");
  EXPECT_EQ(Text("Status"), "COM3 (ttyUSB2): In use by minicom (4711)");
  Child<QComboBox>("Port")->setCurrentIndex(0);
  time.Plan(2s, [&] { Click("Stopper"); });
  Child<QLineEdit>("TimingQuery")->setText("?<CR>");
  Child<QLineEdit>("TimingReply")->setText("READY");
  Click("MeasureCoolDown");
  EXPECT_EQ(Text("Status"), "Stopped.");
  EXPECT_EQ(received[received.size() - 2], '?');
}

}  // namespace
}  // namespace qdm
