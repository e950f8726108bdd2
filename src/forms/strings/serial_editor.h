// Edits one string slot of the definition in work byte by byte, or as a line of text that is read while it is
// typed: the slot that Globals::CurrentSlot names. Every change can be undone; the slot is written on Done.
// While a test runs it holds what the editor shows, and gets its own string back afterwards. Keeps
// Globals::VariableBytePosition up to date.
#pragma once

#include "serial_strings/string_edit.h"
#include "serial_strings/text_parser.h"

#include <QDialog>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QLineEdit;
class QUndoStack;

namespace Ui {
class SerialEditor;
}

namespace qdm {

class ByteValueControl;
struct Globals;
struct ProjectorDefinition;
struct SerialString;
class UserPrompts;

class SerialEditor : public QDialog {
  Q_OBJECT

 public:
  // Opens the test console on the current slot and returns when it is closed.
  using ConsoleOpener = std::function<void(QWidget* parent)>;

  SerialEditor(Globals& globals, UserPrompts& prompts, ConsoleOpener openConsole, QWidget* parent = nullptr);
  ~SerialEditor() override;

  // Where editing begins; a byte that is not in use, or -1, is the first one.
  void FocusByte(int index);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeCells();
  void MakeCommands();
  void SetTabOrder();
  void ConnectControls();
  void ConnectCell(ByteValueControl& cell);
  void Form_Load();
  void KeepWithDefinition();

  void NumberOfBytes1_Change();
  void ByteValueControl1_VariableChanged(const ByteValueControl& cell);
  void Command_TextEdited();
  void Command_EditingFinished();
  void OtherReadings_Click();
  void InsertByte_Click();
  void DeleteByte_Click();
  void Undo_Click();
  void Done_Click();
  void Test_Click();
  void PasteCommand_Click();

  void ChooseKind(ByteValueControl& cell);
  void ChooseValue(ByteValueControl& cell);
  void EditVolumeFormat();
  enum class Rest { Kept, Dropped };  // of the string behind what is pasted
  void PasteAt(std::size_t first, Rest rest);
  void MoveFrom(int index, int step);
  // The cell that has the focus; -1 when none has.
  int FocusedByte() const;

  // A step of the user's. What is typed into one entry while it has the focus is one step.
  enum class Typing { No, Yes };
  void Change(const StringEdit& after, const QString& what, Typing typing = Typing::No);
  void Show(const StringEdit& edit);
  void ShowCells();
  void ShowNotes();
  void ShowCommandText();
  void ShowReading();

  std::size_t BytesInUse() const { return edit_.Count(); }
  SerialString& Slot();
  const SerialString& Slot() const;
  SerialString EditedString() const { return edit_.StoredOver(Slot()); }
  // Why the text in `Command` is not what the cells hold; empty when it is.
  QString CommandProblem() const;
  // What cannot be stored gets the focus.
  bool RefuseUnstorable();

  std::unique_ptr<Ui::SerialEditor> ui_;
  Globals& globals_;
  UserPrompts& prompts_;
  ConsoleOpener openConsole_;
  std::vector<ByteValueControl*> ByteValueControl1;
  QLineEdit* CountText;
  QUndoStack* UndoStack;

  std::function<std::optional<ProjectorDefinition>()> unstoredOutside_;
  StringEdit edit_;
  ParsedText reading_;         // of what was typed into `Command`
  bool commandTyped_ = false;  // the text in `Command` is the user's own
  int typingRound_ = 0;        // another for each stay of the focus in an entry
};

}  // namespace qdm
