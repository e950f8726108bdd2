// The "QDM download" window: builds the memory image, searches all 16 ports, lets the user click the panel to
// program, and programs it. Opened modally with a configuration that has been checked.
// While a search or a programming is under way the window does not go away: closing it asks the procedure to
// stop, and the window closes when that has ended. Even a form that is deleted meanwhile leaves the
// procedure whole: what it works on belongs to it as much as to the form.
#pragma once

#include "panels/programming.h"

#include <QDialog>

#include <array>
#include <memory>

class QLabel;
class QRadioButton;
class QTimer;

namespace Ui {
class Download;
}

namespace qdm {

struct Globals;
struct PanelConfiguration;
class UserPrompts;

class Download : public QDialog {
  Q_OBJECT

 public:
  // All of them must outlive the window; only `globals.Image` is written to.
  Download(Globals& globals, const PanelConfiguration& configuration, SerialPorts& ports, Waiting& time,
           UserPrompts& prompts, QWidget* parent = nullptr);
  ~Download() override;

  void Timer1_Timer();
  void reject() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Stage { Loading, Searching, Restarting, Choice, Connecting, Programming, NoImage };
  struct Work;
  class Progress;

  struct SlotRow {
    QRadioButton* Option1 = nullptr;
    QLabel* Device = nullptr;
    QLabel* Label1 = nullptr;
  };

  void Form_Load();
  void Find_Click();
  void Stopper_Click();
  void Option1_Click(std::size_t slot);
  void FindPanel_Click();

  void MakeRow(std::size_t slot);
  void Search();
  void ProgramSlot(std::size_t slot);
  void BeginWork();
  void EndWork();

  void ShowStage(Stage stage);
  void ShowInstruction();
  void ShowPortHint();
  void ShowSlots();
  void ShowSlot(std::size_t slot);
  QString WhyNotChoosable(const SearchSlot& slot, int number) const;
  QString ChoiceInstruction() const;

  std::unique_ptr<Ui::Download> ui_;
  Globals& globals_;
  const PanelConfiguration& configuration_;
  SerialPorts& ports_;
  Waiting& time_;
  UserPrompts& prompts_;
  std::shared_ptr<Work> work_;
  std::array<SlotRow, kPortSlots> rows_;
  QTimer* Timer1;
  Stage stage_ = Stage::Loading;
  QString programmedPort_;  // the one that was clicked last, "COM3"
  QString outcome_;         // what became of it
  bool closing_ = false;
};

}  // namespace qdm
