// The "QDM download" window: builds the memory image, searches all 16 ports, lets the user click the panel to
// program, and programs it. Opened modally with a configuration that has been checked.
// A panel that the work log knows is offered at once and asked before the first search, which follows only
// where it does not answer.
// While something is under way, Stop and Escape end it, and closing the window ends it too: the window goes
// away when the exchange has ended and the panel is restarted. Even a form that is deleted meanwhile leaves
// the procedure whole: what it works on belongs to it as much as to the form.
#pragma once

#include "forms/download/download_words.h"
#include "panels/programming.h"

#include <QDialog>

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class QTimer;

namespace Ui {
class Download;
}

namespace qdm {

struct Globals;
struct PanelConfiguration;
class PortRow;
struct FinishedDownload;
struct KnownPanel;
class UserPrompts;

class Download : public QDialog {
  Q_OBJECT

 public:
  // All of them must outlive the window; only `globals.Image` is written to.
  Download(Globals& globals, const PanelConfiguration& configuration, SerialPorts& ports, Waiting& time,
           UserPrompts& prompts, QWidget* parent = nullptr);
  ~Download() override;

  // To be called before the window is shown.
  void Offer(const KnownPanel& known);
  // Told after each programming, with success or without, what happened and where.
  void TellFinished(std::function<void(const FinishedDownload&)> told) { finished_ = std::move(told); }

  void Timer1_Timer();
  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  enum class Stage { Loading, Asking, Searching, Restarting, Choice, Connecting, Programming, NoImage };
  struct Work;
  class Progress;

  void Form_Load();
  void Find_Click();
  void Stopper_Click();
  void Stop_Click();
  void Option1_Click(std::size_t slot);
  void ProgramNow_Click(std::size_t slot);
  void Identify_Click(std::size_t slot);
  void FindPanel_Click();

  void Search();
  void ProgramSlot(std::size_t slot, bool answering = false);
  void BeginWork();
  void EndWork();
  bool MayBeStopped();
  void RequestStop();
  void TellFailedRestarts(const std::vector<std::size_t>& slots);
  void Show(const Message& message);

  void ShowStage(Stage stage);
  void ShowInstruction();
  void ShowPortHint();
  void ShowSearchProgress(const SearchSlot& slot);
  void ShowSlots();
  void ShowSlot(std::size_t slot);
  QString RowNoteOf(const SearchSlot& slot, bool searching) const;
  void MoveFocus(std::size_t from, int direction);
  bool IsFinding() const { return stage_ == Stage::Asking || stage_ == Stage::Searching; }
  // Where the log knows a panel that has not been asked yet.
  std::optional<std::size_t> OfferedSlot() const;
  QString CaptionOf(std::size_t slot) const;

  std::unique_ptr<Ui::Download> ui_;
  Globals& globals_;
  const PanelConfiguration& configuration_;
  SerialPorts& ports_;
  Waiting& time_;
  UserPrompts& prompts_;
  std::shared_ptr<Work> work_;
  std::array<PortRow*, kPortSlots> rows_{};
  QTimer* Timer1;
  QTimer* paintRecords_;
  Stage stage_ = Stage::Loading;
  int records_ = 0;                         // acknowledged
  QString workedOn_;                        // the port that was clicked last, "COM3 (ttyUSB0)"
  QString outcome_;                         // what became of it
  std::map<std::string, QString> notes_;    // what was done in this window, by device
  std::optional<std::size_t> programNext_;  // once the search has ended
  std::unique_ptr<KnownPanel> known_;       // until it has been asked
  Microseconds focused_{};                  // when the end of a search moved the focus to a panel
  bool closing_ = false;
  bool unattended_ = false;  // closed by the program: nobody would answer a box
  std::function<void(const FinishedDownload&)> finished_;
};

}  // namespace qdm
