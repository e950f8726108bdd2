// The strings of the definition in work, a row for each command: its name, the box that shows it, the string,
// and the reply that is expected after it. Boxes and strings change Globals::CurrentProjector at once.
#pragma once

#include "projectors/definition_setup.h"

#include <QWidget>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

class QCheckBox;
class QGridLayout;
class QLabel;
class QToolButton;

namespace qdm {

struct Globals;
class SerialStringDisplay;
class UserPrompts;

class StringRows : public QWidget {
  Q_OBJECT

 public:
  // Both must outlive the rows.
  StringRows(Globals& globals, UserPrompts& prompts, QWidget* parent = nullptr);

  // Shows boxes and strings of the definition as it is now.
  void Load();
  // Gives the string of the slot the focus; its display.
  QWidget* FocusSlot(std::size_t slot);
  // The last place of the Tab key.
  QWidget* LastTabStop() const;

 Q_SIGNALS:
  // A box or a string has changed.
  void Changed();
  // The slot is to be edited, beginning with that byte (-1: the first).
  void EditRequest(int slot, int byte);
  void TestRequest(int slot);

 private:
  struct Row;
  struct FlagBox {
    QCheckBox* Box;
    std::int16_t* Flag;  // in the definition
  };
  struct Cell {
    SerialStringDisplay* Display = nullptr;
    QToolButton* Edit = nullptr;
    QToolButton* Test = nullptr;      // commands only
    QCheckBox* ReplyCheck = nullptr;  // commands with a reply only
    QLabel* Name = nullptr;           // not of replies
    QLabel* Hint = nullptr;           // in place of a string that another row's box shows
  };

  static const std::array<Row, 14>& Rows();
  static const Row& RowOf(std::size_t slot);
  // What to tick for the string to be shown: "Volume down: tick Available at Volume up".
  static QString WhyHidden(const Row& row);

  void MakeRow(const Row& row, int line);
  void MakeReply(std::size_t command, const QString& caption, int line);
  void MakeDisplay(std::size_t slot, const QString& name, int line, int column);
  QToolButton* MakeButton(const char* name, std::size_t slot, const QString& caption, const QString& toolTip);
  QCheckBox* MakeBox(const QString& name, const QString& caption, const QString& meaning, std::int16_t& flag);
  void ShowStrings();
  void MarkFlagged();

  Globals& globals_;
  UserPrompts& prompts_;
  QGridLayout* grid_;
  std::array<Cell, kCommandSlots> cells_;
  std::vector<FlagBox> boxes_;
  QCheckBox* UseLevelsCheck = nullptr;
};

}  // namespace qdm
