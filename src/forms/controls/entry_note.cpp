#include "forms/controls/entry_note.h"

#include <QAccessible>
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPointer>

namespace qdm {
namespace {

constexpr int kWidest = 320;

class EntryNote : public QLabel {
 public:
  EntryNote(QWidget* entry, const QString& text) : QLabel(entry->window()), entry_(entry) {
    setObjectName(QStringLiteral("EntryNote"));
    setTextFormat(Qt::PlainText);
    setText(text);
    setAccessibleName(text);
    setFrameShape(QFrame::Box);
    setMargin(3);
    setAutoFillBackground(true);
    QPalette colours = entry->palette();
    colours.setBrush(QPalette::Window, colours.brush(QPalette::Active, QPalette::Base));
    colours.setBrush(QPalette::WindowText, colours.brush(QPalette::Active, QPalette::Text));
    setPalette(colours);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setWordWrap(fontMetrics().horizontalAdvance(text) > kWidest);
    if (wordWrap()) setFixedWidth(kWidest);
    adjustSize();
    Place();
    qApp->installEventFilter(this);
    show();
    raise();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool gone = watched == entry_ && (event->type() == QEvent::Hide || event->type() == QEvent::Move);
    // A key that is a shortcut never arrives as a key.
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (key || gone) Go();
    return false;
  }

 private:
  // Below the entry, above it where there is no room, and within the window.
  void Place() {
    const QRect room = parentWidget()->rect();
    QPoint corner = entry_->mapTo(parentWidget(), QPoint(0, entry_->height() + 1));
    if (corner.y() + height() > room.bottom())
      corner = entry_->mapTo(parentWidget(), QPoint(0, -height() - 1));
    corner.setX(qBound(0, corner.x(), qMax(0, room.width() - width())));
    move(corner);
  }
  void Go() {
    qApp->removeEventFilter(this);
    hide();
    deleteLater();
  }

  QPointer<QWidget> entry_;
};

}  // namespace

void ShowEntryNote(QWidget* entry, const QString& text) {
  delete entry->window()->findChild<QLabel*>(QStringLiteral("EntryNote"), Qt::FindDirectChildrenOnly);
  new EntryNote(entry, text);  // the window's
}

}  // namespace qdm
