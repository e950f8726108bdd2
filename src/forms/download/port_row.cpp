#include "forms/download/port_row.h"

#include "forms/shared/elided_label.h"
#include "forms/shared/port_words.h"
#include "panels/panel_search.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRadioButton>
#include <QToolButton>

namespace qdm {
namespace {

enum PortColumn { kOptionColumn, kDeviceColumn, kStatusColumn, kSettingColumn, kNoteColumn, kButtonColumn };

// In pixels; a device by-id has 70 letters and more.
constexpr int kNarrowestDevice = 56;
constexpr int kNarrowestNote = 90;

QLabel* PlainLabel(const QString& name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

QToolButton* RowButton(const QString& name, const QString& text, const QString& tip, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setObjectName(name);
  button->setText(text);
  button->setToolTip(tip);
  button->setFocusPolicy(Qt::StrongFocus);
  button->hide();
  return button;
}

}  // namespace

PortRow::PortRow(int slot, QGridLayout& grid, QWidget* parent)
    : QObject(parent),
      Option1(new QRadioButton(PortName(slot + 1), parent)),
      Device(new ElidedLabel(kNarrowestDevice, Qt::ElideMiddle, parent)),
      Label1(PlainLabel(QStringLiteral("Label1_%1").arg(slot), parent)),
      Setting(PlainLabel(QStringLiteral("Setting_%1").arg(slot), parent)),
      Note(new ElidedLabel(kNarrowestNote, Qt::ElideRight, parent)),
      ProgramNow(RowButton(QStringLiteral("ProgramNow_%1").arg(slot), tr("Program now"),
                           tr("Stops finding and programs this panel"), parent)),
      Identify(RowButton(QStringLiteral("Identify_%1").arg(slot), tr("Identify"),
                         tr("Restarts this panel, so that its lights tell which one it is"), parent)),
      grid_(grid),
      slot_(slot) {
  Option1->setObjectName(QStringLiteral("Option1_%1").arg(slot));
  Note->setObjectName(QStringLiteral("Note_%1").arg(slot));
  Label1->setMargin(2);
  Label1->setMinimumWidth(Label1->fontMetrics().horizontalAdvance(QStringLiteral("Search 115K2,none ")));
  Option1->installEventFilter(this);
  Label1->installEventFilter(this);
  ProgramNow->setAccessibleName(tr("Program now, %1").arg(PortName(slot + 1)));
  Identify->setAccessibleName(tr("Identify, %1").arg(PortName(slot + 1)));

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(ProgramNow);
  buttons->addWidget(Identify);
  grid.addWidget(Option1, slot, kOptionColumn);
  grid.addWidget(Device, slot, kDeviceColumn);
  grid.addWidget(Label1, slot, kStatusColumn);
  grid.addWidget(Setting, slot, kSettingColumn);
  grid.addWidget(Note, slot, kNoteColumn);
  grid.addLayout(buttons, slot, kButtonColumn);
  grid.setColumnStretch(kDeviceColumn, 1);
  grid.setColumnStretch(kNoteColumn, 3);
  grid.setRowMinimumHeight(slot, ProgramNow->sizeHint().height());  // no jump when it appears
}

void PortRow::Show(const SearchSlot& slot, const PortRowState& state) {
  const bool choosable = slot.Choosable();
  Device->ShowText(OwnName(slot.Device, slot_ + 1));
  const bool left = state.Ended && slot.State == SlotState::Waiting;
  Label1->setText(left ? QString() : QString::fromStdString(StatusText(slot)));
  Label1->setAutoFillBackground(choosable);
  Label1->setBackgroundRole(QPalette::Highlight);
  Label1->setForegroundRole(choosable ? QPalette::HighlightedText : QPalette::WindowText);
  Label1->setEnabled(slot.Present());
  Setting->setText(slot.Panel ? QString(QLatin1String(slot.Setting->Settings)) : QString());
  ShowNote(state.Note, slot.Panel.has_value());
  Option1->setEnabled(state.Enabled);
  Option1->setAccessibleName(tr("%1, %2").arg(PortName(slot_ + 1), Label1->text()));
  Option1->setAccessibleDescription(Note->text());
  ProgramNow->setVisible(state.ProgramNow);
  ProgramNow->setEnabled(state.MayProgramNow);
  Identify->setVisible(state.Identify);
}

// A note on a port without a panel has the room of what only panels have.
void PortRow::ShowNote(const QString& note, bool panel) {
  Note->ShowText(note);
  if (Setting->isHidden() == !panel) return;
  Setting->setVisible(panel);
  grid_.removeWidget(Note);
  if (panel) {
    grid_.addWidget(Note, slot_, kNoteColumn);
  } else {
    grid_.addWidget(Note, slot_, kSettingColumn, 1, kButtonColumn - kSettingColumn + 1);
  }
}

// One of a choice stays checked by itself.
void PortRow::Uncheck() {
  Option1->setAutoExclusive(false);
  Option1->setChecked(false);
  Option1->setAutoExclusive(true);
}

// Enter on the option button is a click on it, and so is a click on the panel's name.
bool PortRow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == Option1 && event->type() == QEvent::KeyPress) {
    return KeyPressed(static_cast<QKeyEvent*>(event)->key());
  }
  const bool nameClicked = watched == Label1 && event->type() == QEvent::MouseButtonRelease &&
                           static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  if (nameClicked) Option1->click();
  return nameClicked;
}

bool PortRow::KeyPressed(int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Option1->click();
      return true;
    // A click programs the panel, so the arrow keys must only move the focus.
    case Qt::Key_Up:
    case Qt::Key_Left:
      Q_EMIT Moved(-1);
      return true;
    case Qt::Key_Down:
    case Qt::Key_Right:
      Q_EMIT Moved(1);
      return true;
    default:
      return false;
  }
}

}  // namespace qdm
