// The pages of the bench, each used once on a line in virtual time.
#include "forms/bench/projector_bench_form.h"

#include "support/bench_lines.h"
#include "support/fake_prompts.h"
#include "support/form_time.h"
#include "support/strings.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
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
  const auto set = [&](Slot slot, const char* text) {
    projector.Strings[slot] = Characters(text);
    projector.Available[slot] = kFlagSet;
  };
  set(kPowerOnSlot, "ON\r");
  set(kPowerOnReplySlot, "OK");
  set(kPowerOffSlot, "OFF\r");
  set(kData1Slot, "IN1\r");
  set(kData2Slot, "IN2");
  set(kVideoSlot, "IN3\r");
  return projector;
}

// COM1, with a panel or a projector at the other end.
struct Ports : SerialPorts {
  Ports(Waiting& time, BenchLine::Far far) : Time(time), Far(std::move(far)) {}

  std::string DeviceName(int number) const override { return number == 1 ? "ttyUSB0" : ""; }
  std::unique_ptr<SerialPort> Port(int number) override {
    auto line = std::make_unique<BenchLine>(Time, Far);
    line->Present = number == 1;
    Last = line.get();
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
  Click("FindSettings");
  EXPECT_EQ(Cell("FinderGrid", 2, 2), "reply");
  EXPECT_EQ(Cell("FinderGrid", 0, 0), "nothing");
  EXPECT_EQ(projector, Definition());
  Child<QTableWidget>("FinderGrid")->setCurrentCell(2, 2);
  Click("UseSettings");
  EXPECT_EQ(projector.Baudrate, 2);
  EXPECT_EQ(projector.Parity, 1);
}

TEST_F(ProjectorBenchForm, ListensUntilItIsStoppedAndClosesThen) {
  time.Plan(1s, [&] { ports.Last->Hear("ON\r"); });
  time.Plan(2s, [&] { ports.Last->Hear("NO\r"); });
  time.Plan(3s, [&] { form.close(); });
  form.show();
  Click("Listen");
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(Cell("HeardList", 0, 2), "Power on");
  EXPECT_EQ(Cell("HeardList", 0, 5), "4F 4B");
  EXPECT_EQ(Cell("HeardList", 1, 2), "unknown");
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

TEST_F(ProjectorBenchForm, MeasuresAndTakesItWithAMargin) {
  projector.Baudrate = 2;
  projector.Parity = 1;
  Click("MeasureDelay");
  EXPECT_EQ(Cell("Timings", 2, 2), "0.0");
  Child<QTableWidget>("Timings")->setCurrentCell(2, 0);
  projector.InterCommandDelay = 77;
  Click("UseTiming");
  EXPECT_EQ(projector.InterCommandDelay, 0);
  Child<QComboBox>("Port")->setCurrentIndex(5);
  Click("MeasureWarmUp");
  EXPECT_EQ(Text("Status"), "This computer has no such port.");
}

}  // namespace
}  // namespace qdm
