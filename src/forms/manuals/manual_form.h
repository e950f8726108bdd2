// The window "From a manual": on the left the text of a projector's manual, coloured by what was understood,
// on the right the strings that could be taken from it, below them the line settings. Done takes over what is
// ticked. The text is read again whenever it has rested for a moment.
#pragma once

#include "projectors/manual_draft.h"

#include <QDialog>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>

class QCheckBox;
class QMenu;
class QTimer;

namespace Ui {
class ManualForm;
}

namespace qdm {

class PageReader;
class UserPrompts;

class ManualForm : public QDialog {
  Q_OBJECT

 public:
  explicit ManualForm(UserPrompts& prompts, QWidget* parent = nullptr);
  ~ManualForm() override;

  // How long a PDF may take.
  void SetTimeLimit(std::chrono::milliseconds limit);
  // What is ticked.
  ManualChoices Choices() const;

  // The definition with what the user took over; nothing when the window was left in another way.
  static std::optional<ProjectorDefinition> Fill(const ProjectorDefinition& projector, UserPrompts& prompts,
                                                 QWidget* parent);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void ConnectControls();
  void MakeSlotMenu();
  void AddSlots(QMenu* menu, bool received);

  void PageText_TextChanged();
  void PageText_PieceEntered(int piece);
  void AddPage_Click();
  void OpenFile_Click();
  void AddPage(const QString& text);
  void ReadFiles(const QStringList& files);
  void ReadFirstFile();
  void FileIsRead();
  void MarkAs(std::size_t slot);

  // Reads the text if it has changed since.
  void ReadNow();
  void ShowDraft();
  void ShowLine();
  void ShowLineBox(QCheckBox* box, const QString& caption, bool usable);
  void ShowDone();
  void PointOut(std::optional<std::size_t> slot, bool scrollText);
  void Say(const QString& text);

  std::unique_ptr<Ui::ManualForm> ui_;
  UserPrompts& prompts_;
  PageReader* reader_;
  QTimer* ReadTimer;
  QMenu* SlotMenu;
  QStringList files_;  // the one that is being read, and those behind it
  ManualDraft draft_;
};

}  // namespace qdm
