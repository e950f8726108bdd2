#include "forms/controls/undo_actions.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QUndoStack>
#include <QWidget>

namespace qdm {
namespace {

struct Undo {
  Q_DECLARE_TR_FUNCTIONS(qdm::Undo)
};

QList<QKeySequence> UndoKeys() { return {QKeySequence(Qt::CTRL | Qt::Key_Z)}; }
QList<QKeySequence> RedoKeys() {
  return {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)};
}

class UndoKeysPassBy : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) return false;
    const QKeySequence key(static_cast<QKeyEvent*>(event)->keyCombination());
    if (!UndoKeys().contains(key) && !RedoKeys().contains(key)) return false;
    event->ignore();
    return true;
  }
};

QAction* MakeAction(QWidget* window, const char* name, const QString& caption, const char* icon,
                    const QList<QKeySequence>& keys) {
  auto* action = new QAction(QIcon(QLatin1String(icon)), caption, window);
  action->setObjectName(QLatin1String(name));
  action->setShortcuts(keys);
  window->addAction(action);
  return action;
}

// "Undo: Delete ACME / One (Ctrl+Z)"
void Follow(QAction* action, const QString& nothing, const QString& what, bool can) {
  const QString keys = action->shortcut().toString(QKeySequence::NativeText);
  action->setEnabled(can);
  action->setToolTip(can ? QStringLiteral("%1 (%2)").arg(what, keys) : nothing);
}

}  // namespace

UndoActions MakeUndoActions(QUndoStack& stack, QWidget* window) {
  const UndoActions actions = {MakeAction(window, "UNDO", Undo::tr("Undo"), ":/icons/undo.png", UndoKeys()),
                               MakeAction(window, "REDO", Undo::tr("Redo"), ":/icons/redo.png", RedoKeys())};
  const auto follow = [actions, &stack] {
    Follow(actions.Undo, Undo::tr("Nothing to undo"), Undo::tr("Undo: %1").arg(stack.undoText()),
           stack.canUndo());
    Follow(actions.Redo, Undo::tr("Nothing to redo"), Undo::tr("Redo: %1").arg(stack.redoText()),
           stack.canRedo());
  };
  QObject::connect(&stack, &QUndoStack::undoTextChanged, window, follow);
  QObject::connect(&stack, &QUndoStack::redoTextChanged, window, follow);
  QObject::connect(&stack, &QUndoStack::canUndoChanged, window, follow);
  QObject::connect(&stack, &QUndoStack::canRedoChanged, window, follow);
  QObject::connect(actions.Undo, &QAction::triggered, &stack, &QUndoStack::undo);
  QObject::connect(actions.Redo, &QAction::triggered, &stack, &QUndoStack::redo);
  follow();
  return actions;
}

void LeaveUndoToWindow(QWidget* textBox) { textBox->installEventFilter(new UndoKeysPassBy(textBox)); }

}  // namespace qdm
