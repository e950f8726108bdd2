#include "forms/strings/serial_string_display.h"

#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "forms/strings/string_access.h"
#include "forms/strings/string_clipboard.h"
#include "forms/strings/string_picture.h"
#include "serial_strings/serial_string.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>
#include <cstddef>

namespace qdm {
namespace {

constexpr int kPixelsPerStep = 8;
constexpr int kBarHeight = 10;

}  // namespace

SerialStringDisplay::SerialStringDisplay(QWidget* parent)
    : QWidget(parent),
      DisplayImage(new StringPicture(this)),
      OffsetBar(new QScrollBar(Qt::Horizontal, this)),
      menuHidden(new QMenu(this)) {
  DisplayImage->setObjectName(QStringLiteral("DisplayImage"));
  DisplayImage->setToolTip(tr("Double click to edit"));
  OffsetBar->setObjectName(QStringLiteral("OffsetBar"));
  OffsetBar->setFocusPolicy(Qt::NoFocus);
  OffsetBar->hide();
  menuHidden->setObjectName(QStringLiteral("menuHidden"));
  MakeMenu();
  UpdateCommands();
  InstallStringAccess();
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(OffsetBar, &QScrollBar::valueChanged, this, &SerialStringDisplay::OffsetBar_Change);
}

void SerialStringDisplay::Bind(Globals& globals, UserPrompts& prompts) {
  globals_ = &globals;
  prompts_ = &prompts;
  UpdateCommands();
}

QAction* SerialStringDisplay::MakeCommand(const char* name, const char* caption,
                                          const QList<QKeySequence>& keys,
                                          void (SerialStringDisplay::*handler)()) {
  auto* command = new QAction(tr(caption), this);
  command->setObjectName(QLatin1String(name));
  command->setShortcuts(keys);
  command->setShortcutContext(Qt::WidgetShortcut);
  connect(command, &QAction::triggered, this, handler);
  addAction(command);  // for its keys
  menuHidden->addAction(command);
  return command;
}

void SerialStringDisplay::MakeMenu() {
  using Self = SerialStringDisplay;
  menuEdit =
      MakeCommand("menuEdit", QT_TR_NOOP("&Edit"), {Qt::Key_Return, Qt::Key_Enter}, &Self::menuEdit_Click);
  menuHidden->addSeparator()->setObjectName(QStringLiteral("menuSpace"));
  menCopy = MakeCommand("menCopy", QT_TR_NOOP("&Copy"), {QKeySequence::Copy}, &Self::menCopy_Click);
  menCut = MakeCommand("menCut", QT_TR_NOOP("C&ut"), {QKeySequence::Cut}, &Self::menCut_Click);
  menuPaste = MakeCommand("menuPaste", QT_TR_NOOP("&Paste"), {QKeySequence::Paste}, &Self::menuPaste_Click);
  menuDelete = MakeCommand("menuDelete", QT_TR_NOOP("&Delete"), {Qt::Key_Delete}, &Self::menuDelete_Click);
  menuHidden->addSeparator()->setObjectName(QStringLiteral("menuSpace2"));
  menuTest = MakeCommand("menuTest", QT_TR_NOOP("&Test"), {Qt::Key_F5, QKeySequence(Qt::CTRL | Qt::Key_T)},
                         &Self::menuTest_Click);
}

void SerialStringDisplay::UpdateCommands() {
  menCopy->setEnabled(globals_ != nullptr);
  for (QAction* command : {menCut, menuPaste, menuDelete, menuTest}) {
    command->setEnabled(slot_ >= 0 && !menuDisabled_);
  }
}

const SerialString& SerialStringDisplay::String() const { return DisplayImage->String(); }

SerialString& SerialStringDisplay::SlotString() {
  return globals_->CurrentProjector.Strings.at(static_cast<std::size_t>(slot_));
}

void SerialStringDisplay::Display(int slot) {
  slot_ = slot;
  UpdateCommands();
  ShowString(SlotString());
}

void SerialStringDisplay::FillWithReceiveString() { ShowString(globals_->ReceivedReply); }

void SerialStringDisplay::ReturnValue() { SlotString() = String(); }

void SerialStringDisplay::DisableMenu() {
  menuDisabled_ = true;
  UpdateCommands();
}

void SerialStringDisplay::ShowString(const SerialString& string) {
  DisplayImage->SetString(string);
  setAccessibleDescription(QString::fromStdString(CompactText(string)));
  ResizeMe();
}

void SerialStringDisplay::ResizeMe() {
  const int barHeight = std::min(kBarHeight, height() / 3);
  const int hidden = DisplayImage->TotalWidth() - width();
  OffsetBar->setVisible(hidden > 0);
  if (hidden > 0) {
    const int maximum = hidden / kPixelsPerStep + 1;
    OffsetBar->setRange(0, maximum);
    OffsetBar->setPageStep(std::max(1, maximum / 4));
  } else {
    OffsetBar->setValue(0);
  }
  DisplayImage->setGeometry(0, 0, width(), height() - (hidden > 0 ? barHeight : 0));
  OffsetBar->setGeometry(0, height() - barHeight, width(), barHeight);
  OffsetBar_Change();
}

void SerialStringDisplay::OffsetBar_Change() {
  DisplayImage->SetOffset(OffsetBar->isHidden() ? 0 : kPixelsPerStep * OffsetBar->value());
}

// Room for the bar is kept, so that a longer string moves nothing.
QSize SerialStringDisplay::sizeHint() const {
  return {DisplayImage->minimumSizeHint().width() * 3, DisplayImage->minimumSizeHint().height() + kBarHeight};
}

QSize SerialStringDisplay::minimumSizeHint() const {
  return {DisplayImage->minimumSizeHint().width(), sizeHint().height()};
}

// ---- commands ----

void SerialStringDisplay::menuEdit_Click() {
  requestedByte_ = -1;
  Q_EMIT EditRequest();
}

void SerialStringDisplay::menCopy_Click() { CopyString(*globals_, String()); }

void SerialStringDisplay::menCut_Click() {
  CopyString(*globals_, String());
  Empty();
}

void SerialStringDisplay::menuDelete_Click() { Empty(); }

void SerialStringDisplay::menuPaste_Click() {
  const auto string = StringToPaste(this, *globals_, *prompts_, static_cast<std::size_t>(slot_));
  if (string) ChangeString(*string);
}

void SerialStringDisplay::menuTest_Click() { Q_EMIT TestRequest(); }

void SerialStringDisplay::Empty() {
  SerialString emptied = String();
  emptied.Count = 0;
  ChangeString(emptied);
}

void SerialStringDisplay::ChangeString(const SerialString& string) {
  ShowString(string);
  ReturnValue();
  Q_EMIT StringChanged();
}

// ---- mouse and keys ----

void SerialStringDisplay::mouseDoubleClickEvent(QMouseEvent* event) {
  doubleClicked_ = event->button() == Qt::LeftButton;
}

void SerialStringDisplay::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton && !menuDisabled_)
    menuHidden->popup(event->globalPosition().toPoint());
  if (event->button() != Qt::LeftButton || !doubleClicked_) return;
  doubleClicked_ = false;
  requestedByte_ = DisplayImage->ByteAt(event->position().toPoint().x());
  Q_EMIT EditRequest();
}

// The mouse's menu comes with the release of its button.
void SerialStringDisplay::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() != QContextMenuEvent::Keyboard || menuDisabled_) return;
  menuHidden->popup(mapToGlobal(QPoint(kPixelsPerStep, height() / 2)));
}

void SerialStringDisplay::keyPressEvent(QKeyEvent* event) {
  const int steps = event->key() == Qt::Key_Left    ? -1
                    : event->key() == Qt::Key_Right ? 1
                    : event->key() == Qt::Key_Home  ? -OffsetBar->maximum()
                    : event->key() == Qt::Key_End   ? OffsetBar->maximum()
                                                    : 0;
  if (steps == 0 || OffsetBar->isHidden()) return QWidget::keyPressEvent(event);
  OffsetBar->setValue(OffsetBar->value() + steps);
}

void SerialStringDisplay::focusInEvent(QFocusEvent* event) {
  DisplayImage->SetFocusShown(true);
  QWidget::focusInEvent(event);
}

void SerialStringDisplay::focusOutEvent(QFocusEvent* event) {
  DisplayImage->SetFocusShown(event->reason() == Qt::PopupFocusReason);
  doubleClicked_ = false;
  QWidget::focusOutEvent(event);
}

void SerialStringDisplay::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ResizeMe();
}

void SerialStringDisplay::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) ResizeMe();
  QWidget::changeEvent(event);
}

}  // namespace qdm
