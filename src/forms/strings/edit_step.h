// One step of the string editor that can be undone: the string before and after it. What is typed into one
// entry while it has the focus is one step: the steps of one round of typing merge.
#pragma once

#include "serial_strings/string_edit.h"

#include <QUndoCommand>

#include <functional>
#include <utility>

namespace qdm {

class EditStep : public QUndoCommand {
 public:
  static constexpr int kNoTyping = -1;

  EditStep(const QString& what, int round, const StringEdit& before, const StringEdit& after,
           std::function<void(const StringEdit&)> show)
      : QUndoCommand(what), round_(round), before_(before), after_(after), show_(std::move(show)) {}

  int id() const override { return round_; }
  bool mergeWith(const QUndoCommand* next) override {
    after_ = static_cast<const EditStep*>(next)->after_;
    setObsolete(after_ == before_);
    return true;
  }
  void undo() override { show_(before_); }
  void redo() override { show_(after_); }

 private:
  int round_;
  StringEdit before_;
  StringEdit after_;
  std::function<void(const StringEdit&)> show_;
};

}  // namespace qdm
