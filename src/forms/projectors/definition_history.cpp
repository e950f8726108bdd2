#include "forms/projectors/definition_history.h"

#include "projectors/field_captions.h"
#include "projectors/record_difference.h"

#include <QUndoCommand>

#include <algorithm>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace qdm {
namespace {

// A string rather than the flags that went along with it.
QString CaptionOfChange(const ProjectorDefinition& before, const ProjectorDefinition& after) {
  const std::vector<FieldDifference> differences = Differences(before, after);
  auto named = std::find_if(differences.begin(), differences.end(), [](const FieldDifference& difference) {
    return std::holds_alternative<SerialString>(difference.First);
  });
  if (named == differences.end()) named = differences.begin();
  return QString::fromStdString(CaptionOf(named->Place));
}

}  // namespace

class DefinitionHistory::Step : public QUndoCommand {
 public:
  Step(DefinitionHistory& history, const ProjectorDefinition& after, int typing)
      : QUndoCommand(CaptionOfChange(history.now_, after)),
        history_(history),
        before_(history.now_),
        after_(after),
        typing_(typing) {}

  void undo() override { Restore(before_); }
  void redo() override {
    if (std::exchange(done_, true)) Restore(after_);
  }
  int id() const override { return typing_ > 0 ? typing_ : -1; }
  bool mergeWith(const QUndoCommand* other) override {
    if (other->text() != text()) return false;
    after_ = static_cast<const Step*>(other)->after_;
    setObsolete(after_ == before_);
    return true;
  }

 private:
  void Restore(const ProjectorDefinition& projector) {
    history_.now_ = projector;
    Q_EMIT history_.Restored(projector);
  }

  DefinitionHistory& history_;
  const ProjectorDefinition before_;
  ProjectorDefinition after_;
  const int typing_;
  bool done_ = false;  // pushing it on the stack calls redo
};

void DefinitionHistory::Begin(const ProjectorDefinition& start) {
  stack_.clear();
  now_ = start;
}

void DefinitionHistory::Note(const ProjectorDefinition& now, int typing) {
  if (now == now_) return;
  auto* step = new Step(*this, now, typing);
  now_ = now;
  stack_.push(step);
}

}  // namespace qdm
