// The "Projector bench": what an installer does with a projector, or in its place, on a serial line. A page
// each for the stand-in, the settings finder, the code check and the timing. Works on the definition that it
// is given, and changes it only where a button that says so is pressed. What is going on can be stopped;
// closing the window in the middle stops it first. Ports that do not open, or are gone, are told in the
// status line, never in a box.
#pragma once

#include "projector_bench/code_check.h"
#include "projector_bench/settings_finder.h"
#include "projector_bench/stand_in.h"
#include "projector_bench/timing.h"

#include <QDialog>
#include <QStringList>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

class QComboBox;
class QLabel;
class QSettings;
class QTableWidget;
class QTableWidgetItem;

namespace Ui {
class ProjectorBench;
}

namespace qdm {

class UserPrompts;

class ProjectorBench : public QDialog {
  Q_OBJECT

 public:
  // All of them must outlive the window. The settings keep the port that was used last.
  ProjectorBench(ProjectorDefinition& projector, SerialPorts& ports, Waiting& time, UserPrompts& prompts,
                 QSettings& settings, QWidget* parent = nullptr);
  ~ProjectorBench() override;

  // Every way to close the window comes through here.
  void done(int result) override;

 private:
  struct AskedPorts {
    std::vector<std::unique_ptr<SerialPort>> Ports;
    std::vector<int> Numbers;
    QStringList NotAsked;  // why not
  };

  void ConnectControls();
  void Form_Load();
  void LoadStandIn();
  void LoadFinder();
  void LoadTiming();

  void Listen_Click();
  void SaveList_Click();
  void Switches_Change();
  void Question_Change();
  void FindSettings_Click();
  void UseSettings_Click();
  void Correct_Click();
  void ComputeSum_Click();
  void TimingQuery_Change();
  void MeasureTransition_Click(Slot power);
  void MeasureDelay_Click();
  void UseTiming_Click();

  int PortNumber() const;
  std::unique_ptr<SerialPort> OpenPort();
  AskedPorts OpenPortsToAsk();
  // Runs something on the line; only one at a time.
  void Run(const QString& status, const std::function<void()>& procedure);
  void SetStatus(const QString& text);
  void ShowName();
  void ShowReading(QLabel* label, const QString& text, bool refused);

  void ShowHeard();
  void ShowChecklist();
  QTableWidgetItem* CellOf(const ProbeSetting& setting);
  void ShowProbe(const ProbeResult& result);
  void ShowFoundSettings();
  void TellFound(const AskedPorts& asked);
  void ShowCodes();
  void ShowCorrections();
  void Correct(const SerialString& corrected);
  void ShowTimes();
  std::optional<ProbeQuestion> ChosenQuestion() const;
  std::optional<TimingQuestion> QuestionIn(const QComboBox* box) const;
  void Measure(
      int row, const std::optional<TimingQuestion>& question,
      const std::function<std::optional<Microseconds>(const TimingBench&, const TimingProgress&)>& measure);

  std::unique_ptr<Ui::ProjectorBench> ui_;
  ProjectorDefinition& projector_;
  SerialPorts& ports_;
  Waiting& time_;
  UserPrompts& prompts_;
  QSettings& settings_;

  std::unique_ptr<StandIn> standIn_;
  Microseconds listenedFrom_{};
  std::vector<int> askedPorts_;  // numbers, by ProbeResult::Port
  CodeCheckResult codes_;
  std::array<std::optional<Microseconds>, 3> measured_;  // by row of Timings

  std::stop_source stop_;
  bool running_ = false;
  std::optional<int> closing_;  // the result that the window closes with when the procedure has ended
};

}  // namespace qdm
