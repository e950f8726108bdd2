// The framed groups of the main window in which every option of a configuration is shown and edited. Shows a
// record and stores into one; owns nothing but its controls. Records may hold any bits: a choice that no
// button stands for shows as nothing chosen, a number outside its range as the nearest that is within.
#pragma once

#include <QWidget>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class QButtonGroup;
class QCheckBox;
class QLabel;

namespace Ui {
class OptionControls;
}

namespace qdm {

class Buttons;
class IntegerEntry;
enum OutputsOptionValue : std::int16_t;
class SpinEntry;
struct OptionSelections;
struct OptionStates;
struct OutputTimeLabels;
struct PanelConfiguration;

class OptionControls : public QWidget {
  Q_OBJECT

 public:
  explicit OptionControls(QWidget* parent = nullptr);
  ~OptionControls() override;

  // Writes the editor's version into the record before it looks whether an editor of the 1.1 series wrote it,
  // in the established order: so audio routings that such an editor stored are shown as they stand.
  void ShowRecordInControls(PanelConfiguration& record);
  // Typed but not yet entered numbers included. A use of the outputs or of the control input that is not
  // chosen stays as it is in the record; a controller type that is not chosen is stored as "TL-VOX".
  void StoreControlsToRecord(PanelConfiguration& record) const;
  // Brings what is visible and enabled in line with what is selected.
  void UpdateOptionStates();
  // Places the frames side by side in as many columns as that width takes: three, two or one. Gives the width
  // that they need at least.
  int FitColumns(int width);

 Q_SIGNALS:
  void ControllerTypeChosen(int type);
  // The user has chosen something.
  void Changed();
  // The user is typing or stepping a number.
  void Typed();

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Entry {
    IntegerEntry* Control;
    std::int16_t PanelConfiguration::*Field;
  };
  struct Check {
    QCheckBox* Control;
    std::int16_t PanelConfiguration::*Field;
  };
  // The two entries of one use of the outputs; all of them show the same two fields.
  struct TimePair {
    OutputsOptionValue Use;
    IntegerEntry* Up;
    IntegerEntry* Down;
  };

  // What is enabled or not as a whole, labels included.
  struct Dependent {
    QWidget* Control;
    bool OptionStates::*State;
  };

  struct Frame {
    QWidget* Box;
    std::array<std::size_t, 3> Column;  // of one, two and three columns
  };

  int WidthOf(std::size_t columns) const;
  void PlaceFrames();
  void MakeTypeButtons();
  void ListControls();
  void ListDependents();
  void NameControls();
  void ConnectControls();

  void Option2_Click(int type);
  void OutputsOption_Click();
  void Time_Change(const TimePair& changed);
  void BindTimesAs(const TimePair& changed);

  void ShowAudioRouting(std::int16_t routing);
  std::int16_t SelectedAudioRouting() const;
  void BindTimes(int up, int down, const OutputTimeLabels& labels);
  const TimePair& CurrentTimes() const;
  OptionSelections Selections() const;
  void ApplyLayout(const OptionStates& states);
  void MarkSequence();

  std::unique_ptr<Ui::OptionControls> ui_;
  QButtonGroup* Option2;  // ids are controller types
  std::vector<Frame> frames_;
  std::size_t columns_ = 3;
  std::vector<Entry> entries_;
  std::vector<Check> checks_;
  std::array<TimePair, 3> times_{};
  std::vector<Dependent> dependents_;
  std::array<Buttons*, 4> sequence_{};
  std::array<QLabel*, 4> marks_{};  // what is wrong with a step
  std::array<QButtonGroup*, 3> audio_{};
};

}  // namespace qdm
