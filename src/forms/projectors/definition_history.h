// Undo and redo while a definition is edited: a step is the definition before and after, named by the field
// that changed. What is typed into one field in one go is one step.
#pragma once

#include "projectors/projector_definition.h"

#include <QObject>
#include <QUndoStack>

namespace qdm {

class DefinitionHistory : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  void Begin(const ProjectorDefinition& start);
  // The definition is that now. Changes of one field that bear the same number are one step; 0 is a step of
  // its own.
  void Note(const ProjectorDefinition& now, int typing = 0);

  QUndoStack& Stack() { return stack_; }

 Q_SIGNALS:
  // After undo and redo: what the definition is to be.
  void Restored(const ProjectorDefinition& projector);

 private:
  class Step;

  QUndoStack stack_;
  ProjectorDefinition now_;
};

}  // namespace qdm
