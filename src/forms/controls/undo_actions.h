// Undo and redo of a window as actions for its toolbar: Ctrl+Z, and Ctrl+Shift+Z or Ctrl+Y; the tool tips say
// what would be undone ("Undo: Delete ACME / One").
#pragma once

class QAction;
class QUndoStack;
class QWidget;

namespace qdm {

struct UndoActions {
  QAction* Undo;
  QAction* Redo;
};

// The window's own actions then. `stack` must outlive the window.
UndoActions MakeUndoActions(QUndoStack& stack, QWidget* window);

// A text box's keys for undo and redo are the window's: typing in one entry is one step of the window, and
// the box's own steps would fall behind it.
void LeaveUndoToWindow(QWidget* textBox);

}  // namespace qdm
