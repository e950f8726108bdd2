// The steps of the main window's undo: each holds the configuration before and after a change, which is a
// few kilobytes. Whatever changed the configuration, the window hands over how it is now, and what differs is
// a step named after its first field. Steps of one kind that follow each other are one while the user types.
#pragma once

#include "config/panel_configuration.h"

#include <QUndoStack>

#include <functional>
#include <utility>

namespace qdm {

class ConfigurationHistory {
 public:
  using Restore = std::function<void(const PanelConfiguration&)>;

  // `restore` shows a configuration of the past.
  explicit ConfigurationHistory(Restore restore) : restore_(std::move(restore)) {}

  // Nothing to undo from here on.
  void Begin(const PanelConfiguration& configuration);
  enum class Change { Step, Typing };
  void Note(const PanelConfiguration& now, Change change);
  // What is typed from here on is another step.
  void EndTyping() { ++typing_; }
  void Undo();
  void Redo();

  const QUndoStack& Steps() const { return stack_; }

 private:
  class Step;

  void Show(const PanelConfiguration& configuration);

  Restore restore_;
  PanelConfiguration now_;
  QUndoStack stack_;
  int typing_ = 0;
};

}  // namespace qdm
