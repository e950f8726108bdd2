// The test console: sends the string in Globals::CurrentSlot of CurrentProjector over a serial port, at the
// projector's own line settings and inter-byte delay, and shows what comes back. The reply stands in
// Globals::ReceivedReply; it can be copied, or become the command's expected reply with some of its bytes
// ignored. Beside it stands every byte that went over the line, with its time. A port that is missing or in
// use is told in the status line, never in a box. Closing the window ends a sending in the middle.
#pragma once

#include "projector_bench/line_trace.h"
#include "projector_bench/string_trial.h"
#include "serial_strings/volume_format.h"

#include <QDialog>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>

class QButtonGroup;
class QSettings;
class QTimer;
class QToolButton;

namespace Ui {
class SerialTestForm;
}

namespace qdm {

struct Globals;
class UserPrompts;

class SerialTestForm : public QDialog {
  Q_OBJECT

 public:
  // All of them must outlive the window. The settings keep the port that was used last.
  SerialTestForm(Globals& globals, SerialPorts& ports, Waiting& time, UserPrompts& prompts,
                 QSettings& settings, QWidget* parent = nullptr);
  ~SerialTestForm() override;

  // The projector bench, on the definition whose string is tested; without it the button is not there.
  void SetBench(std::function<void(QWidget* parent)> bench);

  // Takes the reply in.
  void Timer1_Timer();
  // Takes in what has come and shows it in the trace.
  void TraceTimer_Timer();
  // Every way to close the window comes through here.
  void done(int result) override;

 private:
  void MakeIgnoreCells();
  void ConnectControls();
  void Form_Load();

  void Bench_Click();
  void Port_Click();
  void Send_Click();
  void Copy_Click();
  void UseAsReply_Click();
  void Option2_Click();
  void Ignore_Click(std::size_t index);
  void Level_Click(std::int16_t level);
  void ReplyTime_Change();

  const SerialString& Slot() const;
  int PortNumber() const;
  void FillPorts();
  void OpenPort();
  void ShowPort();
  void ShowRefused();
  void ShowTrace();
  void ShowLevel();
  void ForgetReply();
  void ShowReply();
  void ShowCell(std::size_t index, bool inReply);
  void SetBusy(bool busy);
  void SetStatus(const QString& text);
  bool SendsLevel() const;

  std::unique_ptr<Ui::SerialTestForm> ui_;
  Globals& globals_;
  SerialPorts& ports_;
  Waiting& time_;
  QSettings& settings_;
  QTimer* Timer1;
  QTimer* TraceTimer;
  QButtonGroup* Option2;  // ids are byte kinds
  std::array<QToolButton*, kMaximumStringBytes - 1> Ignore{};

  const std::size_t slot_;
  std::string lineSettings_;
  std::function<void(QWidget* parent)> bench_;
  const VolumeFormat format_;
  const std::int16_t variablePosition_;
  std::int16_t level_;
  LineTrace trace_;
  std::size_t traced_ = 0;  // bytes of the trace that are shown
  std::unique_ptr<TracedPort> port_;
  std::stop_source stop_;
  bool sendHadFocus_ = false;  // before it was disabled
};

}  // namespace qdm
