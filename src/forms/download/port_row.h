// What the download window shows of one port: the option button that chooses it, its device, its status text,
// the line setting of the panel there, a note (why nothing can be chosen, what was done) and the buttons that
// belong to that panel alone.
#pragma once

#include <QObject>
#include <QString>

class QGridLayout;
class QLabel;
class QRadioButton;
class QToolButton;

namespace qdm {

class ElidedLabel;
struct SearchSlot;

// What the window adds to what is known of the port.
struct PortRowState {
  QString Note;
  bool Ended = false;    // the search: a port that was not asked has no status any more
  bool Enabled = false;  // a panel here can be chosen now
  bool ProgramNow = false;
  bool MayProgramNow = false;
  bool Identify = false;
};

class PortRow : public QObject {
  Q_OBJECT

 public:
  // Adds the controls of slot 0..15 to that line of the grid.
  PortRow(int slot, QGridLayout& grid, QWidget* parent);

  void Show(const SearchSlot& slot, const PortRowState& state);
  void Uncheck();

  bool eventFilter(QObject* watched, QEvent* event) override;

  QRadioButton* Option1;
  ElidedLabel* Device;
  QLabel* Label1;
  QLabel* Setting;
  ElidedLabel* Note;
  QToolButton* ProgramNow;
  QToolButton* Identify;

 Q_SIGNALS:
  void Moved(int direction);  // an arrow key on the option button: -1 or 1

 private:
  void ShowNote(const QString& note, bool panel);
  bool KeyPressed(int key);

  QGridLayout& grid_;
  int slot_;
};

}  // namespace qdm
