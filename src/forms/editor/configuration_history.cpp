#include "forms/editor/configuration_history.h"

#include "config/configuration_words.h"

#include <QCoreApplication>
#include <QUndoCommand>

#include <utility>

namespace qdm {
namespace {

QString NameOf(const PanelConfiguration& before, const PanelConfiguration& after) {
  if (before.Projector != after.Projector) return QCoreApplication::translate("qdm::History", "Projector");
  const auto differences = DifferencesInWords(before, after);
  return differences.empty() ? QCoreApplication::translate("qdm::History", "Options")
                             : QString::fromStdString(differences.front().Field);
}

}  // namespace

class ConfigurationHistory::Step : public QUndoCommand {
 public:
  // `typing` is the same for steps that may become one, -1 for those that stay.
  Step(ConfigurationHistory& history, const PanelConfiguration& after, int typing)
      : QUndoCommand(NameOf(history.now_, after)),
        history_(history),
        before_(history.now_),
        after_(after),
        typing_(typing) {}

  int id() const override { return typing_; }
  bool mergeWith(const QUndoCommand* next) override {
    if (next->text() != text()) return false;
    after_ = static_cast<const Step*>(next)->after_;
    setObsolete(after_ == before_);
    return true;
  }
  void undo() override { history_.Show(before_); }
  // Called for a new step too, which is what is shown already.
  void redo() override {
    if (history_.now_ != after_) history_.Show(after_);
  }

 private:
  ConfigurationHistory& history_;
  PanelConfiguration before_;
  PanelConfiguration after_;
  int typing_;
};

void ConfigurationHistory::Begin(const PanelConfiguration& configuration) {
  stack_.clear();
  now_ = configuration;
  EndTyping();
}

void ConfigurationHistory::Note(const PanelConfiguration& now, Change change) {
  if (now != now_) {
    auto* step = new Step(*this, now, change == Change::Typing ? typing_ : -1);
    now_ = now;
    stack_.push(step);
  }
  if (change == Change::Step) EndTyping();
}

void ConfigurationHistory::Undo() {
  stack_.undo();
  EndTyping();
}

void ConfigurationHistory::Redo() {
  stack_.redo();
  EndTyping();
}

void ConfigurationHistory::Show(const PanelConfiguration& configuration) {
  now_ = configuration;
  restore_(configuration);
}

}  // namespace qdm
