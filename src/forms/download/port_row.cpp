#include "forms/download/port_row.h"

#include "forms/shared/port_words.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRadioButton>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace qdm {
namespace {

// In pixels; a device by-id has 70 letters and more.
constexpr int kNarrowestDevice = 56;
constexpr int kWidestDevice = 180;
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

ElidedLabel::ElidedLabel(int narrowest, QWidget* parent) : QLabel(parent), narrowest_(narrowest) {
  setTextFormat(Qt::PlainText);
}

void ElidedLabel::ShowText(const QString& text) {
  setText(text);
  setToolTip(text);
}

QSize ElidedLabel::sizeHint() const {
  return QLabel::sizeHint().boundedTo(QSize(kWidestDevice, QWIDGETSIZE_MAX));
}

QSize ElidedLabel::minimumSizeHint() const {
  return QLabel::minimumSizeHint().boundedTo(QSize(narrowest_, QWIDGETSIZE_MAX));
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
  style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                        foregroundRole());
}

PortRow::PortRow(int slot, QGridLayout& grid, QWidget* parent)
    : QObject(parent),
      Option1(new QRadioButton(PortName(slot + 1), parent)),
      Device(new ElidedLabel(kNarrowestDevice, parent)),
      Label1(PlainLabel(QStringLiteral("Label1_%1").arg(slot), parent)),
      Setting(PlainLabel(QStringLiteral("Setting_%1").arg(slot), parent)),
      Note(new ElidedLabel(kNarrowestNote, parent)),
      ProgramNow(RowButton(QStringLiteral("ProgramNow_%1").arg(slot), tr("Program now"),
                           tr("Stops finding and programs this panel"), parent)),
      Identify(RowButton(QStringLiteral("Identify_%1").arg(slot), tr("Identify"),
                         tr("Restarts this panel, so that its lights tell which one it is"), parent)) {
  Option1->setObjectName(QStringLiteral("Option1_%1").arg(slot));
  // A click programs the panel, so the arrow keys must only move the focus.
  Option1->setAutoExclusive(false);
  Device->setForegroundRole(QPalette::PlaceholderText);
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
  int column = 0;
  for (QWidget* widget :
       {static_cast<QWidget*>(Option1), static_cast<QWidget*>(Device), static_cast<QWidget*>(Label1),
        static_cast<QWidget*>(Setting), static_cast<QWidget*>(Note)}) {
    grid.addWidget(widget, slot, column++);
  }
  grid.addLayout(buttons, slot, column);
}

// Enter on the option button is a click on it, and so is a click on the panel's name.
bool PortRow::eventFilter(QObject* watched, QEvent* event) {
  const auto isEnter = [event] {
    const int key = static_cast<QKeyEvent*>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
  };
  const bool enter = watched == Option1 && event->type() == QEvent::KeyPress && isEnter();
  const bool nameClicked = watched == Label1 && event->type() == QEvent::MouseButtonRelease &&
                           static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  if (!enter && !nameClicked) return QObject::eventFilter(watched, event);
  Option1->click();
  return true;
}

}  // namespace qdm
